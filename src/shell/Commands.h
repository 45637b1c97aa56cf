#pragma once

#include <array>

/// The main window's commands as rows: menus, entries and tool bar buttons.
namespace zth::shell {

struct Menu {
  const char* name;  ///< objectName, as "mnuFile"
  const char* caption;
};

/// A menu entry that opens a window. An entry without one does what frmMain gives it. Those of the window menu stand
/// at its end.
struct MenuEntry {
  const char* menu;     ///< the menu it stands in; the menu bar itself when empty
  const char* name;     ///< objectName of its action, as "mnuSave"
  const char* caption;  ///< its mnemonic marked by an ampersand
  const char* shortcut;
  const char* window;  ///< objectName of the window that it opens; may be empty
};

/// A button of the tool bar. Its action is named after its key, as "tbToolBar(Save)", its icon is icons/<key>.svg.
struct ToolButton {
  const char* key;
  const char* toolTip;
  const char* window;
};

extern const std::array<Menu, 6> kMenus;
extern const std::array<MenuEntry, 21> kMenuEntries;
extern const std::array<ToolButton, 10> kToolButtons;

}  // namespace zth::shell

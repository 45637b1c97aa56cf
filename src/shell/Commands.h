#pragma once

#include <array>

/// The main window's commands as rows: menus, menu entries and tool bar buttons.
namespace zth::shell {

struct Menu {
  const char* name;  ///< objectName, for example "mnuFile"
  const char* caption;
};

/// A menu entry. It opens its window, or does what frmMain defines when it has none. The entries of the window menu
/// come last.
struct MenuEntry {
  const char* menu;     ///< the menu that contains it; empty for the menu bar itself
  const char* name;     ///< objectName of its action, for example "mnuSave"
  const char* caption;  ///< with an ampersand before its mnemonic
  const char* shortcut;
  const char* window;  ///< objectName of the window to open; may be empty
};

/// A button of the tool bar. Its action is named after its key, for example "tbToolBar(Save)"; its icon is
/// icons/<key>.svg.
struct ToolButton {
  const char* key;
  const char* toolTip;
  const char* window;
};

extern const std::array<Menu, 7> kMenus;
extern const std::array<MenuEntry, 25> kMenuEntries;
extern const std::array<ToolButton, 10> kToolButtons;

}  // namespace zth::shell

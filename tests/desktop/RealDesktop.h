#pragma once

#include <functional>

#include <QTemporaryDir>

#include "tests/support/Desk.h"
#include "tests/support/ModalHand.h"

namespace zth::testing {

/// The program in virtual time on the fake board, with the desktop's own services where a user meets it: boxes, file
/// dialogs, settings, files, clipboard and the event loop. Its folder is an empty one that can be written.
class RealDesktop {
 public:
  RealDesktop();

  /// Runs Main, and the event loop for what it left there.
  void Start();

  /// Does something from within the program's event loop, as deep in it as a user's input comes, and lets the loop run
  /// until what it has set off is done. Ends when the main window is closed, as the program does.
  void Do(const std::function<void()>& act);

  /// Opens a window that fails the test when it is deleted while what Do was given has not returned.
  QPointer<windows::ChildWindow> Open(const std::string& name);

  /// Closes a window by its frame, as a tool does that asks nobody.
  static void CloseFrame(QWidget& window);

  /// The program works: no question stands, and the master timer polls the chip unless the main window is closed.
  void ExpectAlive();

  QString Path(const QString& name) const { return folder.filePath(name); }

  bool handling = false;  ///< what Do was given is on the stack
  QTemporaryDir folder;
  QTemporaryDir home;
  Desk desk;
  platform::DesktopPrompts prompts;
  platform::IniSettings settings{home.filePath("settings.conf")};
  platform::DesktopFileDialogs fileDialogs{settings};
  platform::DesktopEvents events;
  platform::DesktopFiles files;
  platform::DesktopClipboard clipboard;
  platform::Services services{prompts, fileDialogs,    settings, desk.shell, desk.clock,
                              events,  desk.libraries, files,    clipboard,  desk.process};
};

}  // namespace zth::testing

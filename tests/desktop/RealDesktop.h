#pragma once

#include <functional>

#include <QTemporaryDir>

#include "tests/support/Desk.h"
#include "tests/support/ModalHand.h"

namespace zth::testing {

/// The program in virtual time on the fake board, with the desktop's real services for the user: boxes, file dialogs,
/// settings, files, clipboard and the event loop. Its folder is empty and writable.
class RealDesktop {
 public:
  RealDesktop();

  /// Runs Main, then the event loop for what it left pending.
  void Start();

  /// Does something from within the program's event loop, at the level of a user's input, and lets the loop run until
  /// its effects are done. Ends when the main window is closed, as the program does.
  void Do(const std::function<void()>& act);

  /// Opens a window that fails the test if it is deleted before the action given to Do has returned.
  QPointer<windows::ChildWindow> Open(const std::string& name);

  /// Closes a window through its frame, as a tool would without asking.
  static void CloseFrame(QWidget& window);

  /// The program works: no question is open, and the master timer polls the chip unless the main window is closed.
  void ExpectAlive();

  QString Path(const QString& name) const { return folder.filePath(name); }

  bool handling = false;  ///< the action given to Do is on the stack
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

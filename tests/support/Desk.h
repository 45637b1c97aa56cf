#pragma once

#include <QString>
#include <QWidget>

#include "shell/frmMain.h"
#include "tests/support/Doubles.h"
#include "windows/ChildWindow.h"

namespace zth::testing {

/// The whole program on a fake board, in virtual time: one Desk per test.
///
///   Desk desk;                          // a chip at 58h on USB and one at 2Ch on SMBus
///   desk.Start();                       // Main, from its first step to polling; Easy Setup does not open
///   auto& window = desk.Open("frmTherm");
///   desk.board.TakeTraffic();
///   desk.Check(window, "chkLoc1", true);
///   desk.Press(window, "cmdApply");
///   EXPECT_EQ(desk.board.TakeTraffic(), Concat(R(0x0D), W(0x0D, 0x05)));
class Desk {
 public:
  enum class Buses { Usb, Smbus, Both };

  explicit Desk(Buses buses = Buses::Both);
  ~Desk();
  Desk(const Desk&) = delete;
  Desk& operator=(const Desk&) = delete;

  /// Runs Main and clears the traffic. `InterfaceMode` is USB if there is a chip on USB.
  void Start();

  /// Runs Main. Returns the exit status of the process, or nothing if it is running.
  std::optional<int> RunMain();

  /// Opens a window as its menu entry does. Fails the test if it does not open.
  windows::ChildWindow& Open(const QString& name);

  /// Lets time pass with the timers firing, then runs the deferred deletions.
  void Advance(int milliseconds);

  /// Runs what is pending in the event loop: deferred deletions, posted events.
  static void Settle();

  shell::frmMain& Main() { return *shell::MainForm; }

  // The controls of a window, found by name. A missing control fails the test with a list of the existing ones.
  template <typename Control>
  static Control& Get(const QWidget& window, const QString& name) {
    auto* control = window.findChild<Control*>(name);
    if (control == nullptr) FailToFind(window, name);
    return *control;
  }
  static void Press(const QWidget& window, const QString& button);
  static void Check(const QWidget& window, const QString& box, bool on);
  static bool Checked(const QWidget& window, const QString& box);
  static void Type(const QWidget& window, const QString& box, const QString& text);
  static void Pick(const QWidget& window, const QString& list, int index);
  static QString Text(const QWidget& window, const QString& name);  ///< of a box, a label or a button
  /// Any operation of a custom control, by name.
  static QVariant Property(const QWidget& window, const QString& name, const char* property);

  FakeBoard board;
  ScriptedPrompts prompts;
  ScriptedFileDialogs fileDialogs;
  MemorySettings settings;
  RecordingShell shell;
  VirtualClock clock;
  QuietEvents events;
  FakeLibraries libraries{board};
  FailingFiles files;
  MemoryClipboard clipboard;
  RecordedProcess process;
  platform::Services services{prompts, fileDialogs, settings, shell,     clock,
                              events,  libraries,   files,    clipboard, process};

 private:
  [[noreturn]] static void FailToFind(const QWidget& window, const QString& name);
};

}  // namespace zth::testing

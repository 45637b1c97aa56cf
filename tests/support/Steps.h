#pragma once

#include <functional>
#include <string>

#include "tests/support/Desk.h"

/// Short texts for what tests of windows are made of: transfers, registers, what a user does and what stands there
/// then. Several stand apart by blanks, steps of a user by "; "; "name(0..3)" is name(0), name(1) and so on.
namespace zth::testing {

/// Transfers on the link in use: "R0D W0D=A4 B88+8" to the chip, "P4A P4A=3F D4A=3C H H1=50" to the board as Traffic
/// has them, which SMBus does not reach, so that they are left out there.
Traffic T(const std::string& text);

/// The transfers among `traffic` that write a register.
Traffic Writes(Traffic traffic);

/// Puts bytes into registers, all in hexadecimal: "0D=FD 21..24=E0".
void Put(FakeBoard::Registers& registers, const std::string& text);

/// "cmdApply" presses a button or clicks a box, "chkLoc1=1" ticks it, "txtMaxPWM=50" types, "cmbControl(2)=7" picks by
/// position, "sldHeater(0)=30" moves a slider, "SSTab1=1" a tab.
void Do(const QWidget& window, const QString& steps);

/// What those controls hold, apart by "|": a text, "1" or "0" of a tick or a lamp, a position, a slider's value.
std::string Held(const QWidget& window, const QString& controls);

/// A program with one window open. What its load sent stands in `load`, and `board` begins anew.
class WindowDesk : public Desk {
 public:
  explicit WindowDesk(const QString& name, Buses buses = Buses::Both, const std::function<void(Desk&)>& arrange = {});
  /// Puts registers before the window opens.
  WindowDesk(const QString& name, const std::string& registers);

  void Do(const QString& steps) const { testing::Do(*window, steps); }
  std::string Held(const QString& controls) const { return testing::Held(*window, controls); }
  /// The transfers that those steps make.
  Traffic Sent(const QString& steps);
  /// The window that stands there now is closed and opened anew.
  void Reopen();
  bool IsOpen() { return Main().FindWindow(name_) != nullptr; }

  windows::ChildWindow* window;
  Traffic load;

 private:
  QString name_;
};

}  // namespace zth::testing

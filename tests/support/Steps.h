#pragma once

#include <functional>
#include <string>

#include "tests/support/Desk.h"

/// A short notation for window tests: transfers, registers, a user's steps and the contents of controls afterwards.
/// Items are separated by blanks, a user's steps by "; ". "name(0..3)" is name(0), name(1) and so on.
namespace zth::testing {

/// Transfers on the link in use: "R0D W0D=A4 B88+8" to the chip, "P4A P4A=3F D4A=3C H H1=50" to the board, as in
/// Traffic. SMBus does not reach the board, so these are left out there.
Traffic T(const std::string& text);

/// The transfers among `traffic` that write a register.
Traffic Writes(Traffic traffic);

/// Sets registers, all in hexadecimal: "0D=FD 21..24=E0".
void Put(FakeBoard::Registers& registers, const std::string& text);

/// "cmdApply" presses a button or clicks a box, "chkLoc1=1" ticks it, "txtMaxPWM=50" types, "cmbControl(2)=7" selects
/// by position, "sldHeater(0)=30" moves a slider, "SSTab1=1" selects a tab.
void Do(const QWidget& window, const QString& steps);

/// What those controls hold, separated by "|": a text, "1" or "0" for a tick or a lamp, a position, a slider's value.
std::string Held(const QWidget& window, const QString& controls);

/// A program with one window open. `load` holds what its load sent, and `board` records from then on.
class WindowDesk : public Desk {
 public:
  explicit WindowDesk(const QString& name, Buses buses = Buses::Both, const std::function<void(Desk&)>& arrange = {});
  /// Sets registers before the window opens.
  WindowDesk(const QString& name, const std::string& registers);

  void Do(const QString& steps) const { testing::Do(*window, steps); }
  std::string Held(const QString& controls) const { return testing::Held(*window, controls); }
  /// Carries out the steps and returns their transfers.
  Traffic Sent(const QString& steps);
  /// Closes the window and opens it again.
  void Reopen();
  bool IsOpen() { return Main().FindWindow(name_) != nullptr; }

  windows::ChildWindow* window;
  Traffic load;

 private:
  QString name_;
};

}  // namespace zth::testing

#pragma once

#include <memory>
#include <string>

#include "simulator/SmbusHost.h"
#include "simulator/UsbAdapter.h"
#include "tests/support/Desk.h"

namespace zth::testing {

/// The whole program on the simulated board, both in virtual time: what passes between two transfers by the program's
/// clock passes on the board before the second. `desk` starts and drives the program.
class SimulatedDesk {
 public:
  /// `settings` is the text of a settings file of the simulated libraries, behind "noise = 0".
  explicit SimulatedDesk(const std::string& settings = {});
  ~SimulatedDesk();
  SimulatedDesk(const SimulatedDesk&) = delete;
  SimulatedDesk& operator=(const SimulatedDesk&) = delete;

  /// A register of the chip at 0x58, past the link.
  std::uint8_t Register(std::uint8_t reg) { return usb.TheBus().Read(0x58, reg); }

  /// Lets the board catch up with the clock.
  void CatchUp();

  Desk desk;
  simulator::UsbAdapter usb;
  simulator::SmbusHost smbus;
  int usbRequests = 0;

 private:
  explicit SimulatedDesk(const simulator::Settings& settings);

  double last_;
};

}  // namespace zth::testing

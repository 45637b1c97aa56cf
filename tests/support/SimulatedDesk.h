#pragma once

#include <array>
#include <functional>
#include <map>
#include <string>

#include "simulator/SmbusHost.h"
#include "simulator/UsbAdapter.h"
#include "tests/support/Desk.h"

namespace zth::testing {

/// The whole program on the simulated board, both in virtual time: the time that passes between two transfers on the
/// program's clock passes on the board before the second. `desk` starts and operates the program.
class SimulatedDesk : private BoardEntries {
 public:
  /// `settings` is the text of a settings file for the simulated libraries, added after "noise = 0".
  explicit SimulatedDesk(const std::string& settings = {});
  SimulatedDesk(const SimulatedDesk&) = delete;
  SimulatedDesk& operator=(const SimulatedDesk&) = delete;

  /// A register of the chip at 0x58, read without the link.
  std::uint8_t Register(std::uint8_t reg) { return usb.TheBus().Read(0x58, reg); }

  /// Lets the board catch up with the clock.
  void CatchUp();

  Desk desk;
  simulator::UsbAdapter usb;
  simulator::SmbusHost smbus;
  /// Called before each USB request: whether it fails without reaching the board.
  std::function<bool(std::int16_t request, bool isRead)> fails;
  int refused = 0;  ///< USB requests that the adapter failed
  std::map<std::array<int, 3>, std::int64_t> requests;

 private:
  explicit SimulatedDesk(const simulator::Settings& settings);

  std::int16_t LoadFirmWare(const char* /*path*/) override { return usb.LoadFirmware(); }
  std::int16_t VendorIORequest(std::int16_t request, std::int32_t value, std::int32_t index, std::int16_t direction,
                               std::int16_t length, std::uint8_t* buffer) override;
  void DetectSmbus() override {}
  std::uint8_t ReadSmbus(std::uint8_t address, std::uint8_t reg) override {
    return CatchUp(), smbus.Read(address, reg);
  }
  void WriteSmbus(std::uint8_t address, std::uint8_t reg, std::uint8_t value) override {
    ++requests[{0, 0, reg}];
    CatchUp();
    smbus.Write(address, reg, value);
  }
  std::int32_t SmbusFailures(std::uint8_t address) override { return smbus.Failures(address); }

  double last_;
};

}  // namespace zth::testing

#include "tests/support/SimulatedDesk.h"

#include <chrono>
#include <cmath>
#include <stdexcept>

#include "simulator/SettingsText.h"

namespace zth::testing {
namespace {

simulator::Settings Parsed(const std::string& text) {
  const auto parsed = simulator::ParseSettings("noise = 0\n" + text);
  if (const auto* settings = std::get_if<simulator::Settings>(&parsed)) return *settings;
  throw std::runtime_error("settings of the board: " + text);
}

}  // namespace

SimulatedDesk::SimulatedDesk(const std::string& settings) : SimulatedDesk(Parsed(settings)) {}

SimulatedDesk::SimulatedDesk(const simulator::Settings& settings)
    : usb(settings), smbus(settings), last_(desk.clock.Now()) {
  desk.libraries.load = [this](const QString& name) { return platform::LoadedLibrary{LibraryOf(*this, name), {}}; };
  for (const char* library : {"USBFunctions", "smbus"}) boardNames[library] = simulator::kBoardName;
  usb.TheBus().PowerUp();
  smbus.TheBus().PowerUp();
}

std::int16_t SimulatedDesk::VendorIORequest(std::int16_t request, std::int32_t value, std::int32_t index,
                                            std::int16_t direction, std::int16_t length, std::uint8_t* buffer) {
  ++requests[{request, direction, index & 0xFF}];
  CatchUp();
  const bool isLost = fails && fails(request, direction == 1);
  const auto result =
      isLost ? simulator::UsbAdapter::kTransferFailed : usb.Request(request, value, index, direction, length, buffer);
  if (result != 0) ++refused;
  desk.clock.WaitMs(static_cast<float>(usb.TheBus().TakeDelay().count()));
  return result;
}

void SimulatedDesk::CatchUp() {
  const double now = desk.clock.Now();
  const std::chrono::nanoseconds passed(std::llround((now - last_) * 1e9));
  usb.TheBus().AdvanceReal(passed);
  smbus.TheBus().AdvanceReal(passed);
  last_ = now;
}

}  // namespace zth::testing

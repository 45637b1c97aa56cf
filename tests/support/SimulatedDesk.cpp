#include "tests/support/SimulatedDesk.h"

#include <chrono>
#include <cmath>
#include <map>
#include <stdexcept>

#include "link/Declarations.h"
#include "simulator/SettingsText.h"

namespace zth::testing {
namespace {

SimulatedDesk* running = nullptr;

std::int16_t ZTH_LIBRARY_CALL LoadFirmWare(const char* /*path*/) {
  return running->usb.LoadFirmware();
}

std::int16_t ZTH_LIBRARY_CALL VendorIORequest(std::int16_t request, std::int32_t value, std::int32_t index,
                                              std::int16_t direction, std::int16_t length, std::uint8_t* buffer) {
  ++running->usbRequests;
  ++running->requests[{request, direction, index & 0xFF}];
  running->CatchUp();
  const auto result = running->usb.Request(request, value, index, direction, length, buffer);
  if (result != 0) ++running->refused;
  running->desk.clock.WaitMs(static_cast<float>(running->usb.TheBus().TakeDelay().count()));
  return result;
}

void ZTH_LIBRARY_CALL DetectSmbus() {}

std::uint8_t ZTH_LIBRARY_CALL ReadSmbus(std::uint8_t address, std::uint8_t reg) {
  running->CatchUp();
  return running->smbus.Read(address, reg);
}

void ZTH_LIBRARY_CALL WriteSmbus(std::uint8_t address, std::uint8_t reg, std::uint8_t value) {
  ++running->requests[{0, 0, reg}];
  running->CatchUp();
  running->smbus.Write(address, reg, value);
}

class SimulatedLibrary final : public platform::Library {
 public:
  void* Symbol(const char* name) const override {
    static const std::map<std::string, void*> kEntries{
        {"LoadFirmWare", reinterpret_cast<void*>(&LoadFirmWare)},
        {"VendorIORequest", reinterpret_cast<void*>(&VendorIORequest)},
        {"DetectSmbus", reinterpret_cast<void*>(&DetectSmbus)},
        {"ReadSmbus", reinterpret_cast<void*>(&ReadSmbus)},
        {"WriteSmbus", reinterpret_cast<void*>(&WriteSmbus)},
    };
    return kEntries.at(name);
  }
};

simulator::Settings Parsed(const std::string& text) {
  const auto parsed = simulator::ParseSettings("noise = 0\n" + text);
  if (const auto* settings = std::get_if<simulator::Settings>(&parsed)) return *settings;
  throw std::runtime_error("settings of the board: " + text);
}

}  // namespace

SimulatedDesk::SimulatedDesk(const std::string& settings) : SimulatedDesk(Parsed(settings)) {}

SimulatedDesk::SimulatedDesk(const simulator::Settings& settings)
    : usb(settings), smbus(settings), last_(desk.clock.Now()) {
  running = this;
  desk.libraries.load = [](const QString& /*name*/) {
    return platform::LoadedLibrary{std::make_shared<SimulatedLibrary>(), {}};
  };
  usb.TheBus().PowerUp();
  smbus.TheBus().PowerUp();
}

SimulatedDesk::~SimulatedDesk() {
  running = nullptr;
}

void SimulatedDesk::CatchUp() {
  const double now = desk.clock.Now();
  const std::chrono::nanoseconds passed(std::llround((now - last_) * 1e9));
  usb.TheBus().AdvanceReal(passed);
  smbus.TheBus().AdvanceReal(passed);
  last_ = now;
}

}  // namespace zth::testing

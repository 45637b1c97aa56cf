#include "BenchBoard.h"

#include <chrono>
#include <cmath>
#include <map>
#include <stdexcept>

#include "link/Declarations.h"
#include "simulator/SettingsText.h"

namespace zth::gallery {
namespace {

BenchBoard* onBench = nullptr;

std::int16_t ZTH_LIBRARY_CALL LoadFirmWare(const char* /*path*/) {
  return onBench->Usb().LoadFirmware();
}

std::int16_t ZTH_LIBRARY_CALL VendorIORequest(std::int16_t request, std::int32_t value, std::int32_t index,
                                              std::int16_t direction, std::int16_t length, std::uint8_t* buffer) {
  return onBench->Usb().Request(request, value, index, direction, length, buffer);
}

void ZTH_LIBRARY_CALL DetectSmbus() {}

std::uint8_t ZTH_LIBRARY_CALL ReadSmbus(std::uint8_t address, std::uint8_t reg) {
  return onBench->Smbus().Read(address, reg);
}

void ZTH_LIBRARY_CALL WriteSmbus(std::uint8_t address, std::uint8_t reg, std::uint8_t value) {
  onBench->Smbus().Write(address, reg, value);
}

class BenchLibrary final : public platform::Library {
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
  const auto parsed = simulator::ParseSettings(text);
  if (const auto* settings = std::get_if<simulator::Settings>(&parsed)) return *settings;
  throw std::runtime_error("settings of the board: " + std::get<simulator::SettingsError>(parsed).text);
}

}  // namespace

BenchBoard::BenchBoard(BenchClock& clock, const std::string& settings) : BenchBoard(clock, Parsed(settings)) {}

BenchBoard::BenchBoard(BenchClock& clock, const simulator::Settings& settings)
    : clock_(clock), usb_(settings), smbus_(settings), last_(clock.Now()) {
  onBench = this;
  usb_.TheBus().PowerUp();
  smbus_.TheBus().PowerUp();
}

BenchBoard::~BenchBoard() {
  onBench = nullptr;
}

platform::LoadedLibrary BenchBoard::Load(const QString& /*name*/) {
  return {std::make_shared<BenchLibrary>(), {}};
}

simulator::UsbAdapter& BenchBoard::Usb() {
  CatchUp();
  return usb_;
}

simulator::SmbusHost& BenchBoard::Smbus() {
  CatchUp();
  return smbus_;
}

void BenchBoard::CatchUp() {
  const double now = clock_.Now();
  const std::chrono::nanoseconds passed(std::llround((now - last_) * 1e9));
  usb_.TheBus().AdvanceReal(passed);
  smbus_.TheBus().AdvanceReal(passed);
  last_ = now;
}

}  // namespace zth::gallery

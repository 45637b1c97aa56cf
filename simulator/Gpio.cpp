#include "simulator/Gpio.h"

#include <cstdint>
#include <optional>

#include "simulator/Alerts.h"
#include "simulator/PinInputs.h"

namespace zth::simulator {
namespace {

constexpr int kStatus = 0xBF;  // a 0 bit is an active pin, whatever its polarity

constexpr std::uint8_t BitMask(int bit) {
  return static_cast<std::uint8_t>(1 << bit);
}

}  // namespace

void Gpio::Tick(const PinInputs& inputs) {
  std::uint8_t inactive = 0;
  for (int gpio = 0; gpio < kGpios; ++gpio) {
    if (inputs.gpioHigh[At(gpio)] != ActiveHigh(gpio)) inactive |= BitMask(gpio);
  }
  Show(inactive);
}

void Gpio::LevelsWritten(std::uint8_t value) {
  latch_ = value;
  Show(registers_[kStatus]);
}

void Gpio::Show(std::uint8_t inactiveInputs) {
  std::uint8_t status = 0;
  for (int gpio = 0; gpio < kGpios; ++gpio) {
    // A pin that is not a GPIO reads 0, as at power-up.
    if (!Live(gpio)) continue;
    const std::uint8_t levels = Output(gpio) ? latch_ : inactiveInputs;
    status |= static_cast<std::uint8_t>(BitMask(gpio) & levels);
  }
  registers_.Put(kStatus, status);
}

std::optional<bool> Gpio::OutputHigh(int gpio) const {
  if (!Live(gpio) || !Output(gpio)) return std::nullopt;
  const bool active = (latch_ & BitMask(gpio)) == 0;
  return active == ActiveHigh(gpio);
}

std::uint8_t Gpio::ActiveInputs() const {
  std::uint8_t active = 0;
  for (int gpio = 0; gpio < kGpios; ++gpio) {
    if (Live(gpio) && !Output(gpio) && !registers_.Bit(kStatus, gpio)) active |= BitMask(gpio);
  }
  return active;
}

bool Gpio::EdoAsserted(int edo, const Alerts& alerts) const {
  if (!registers_.Bit(0x16, edo)) return false;
  const bool fan = alerts.Live(Alerts::Fans) != 0;
  const bool therm = alerts.Live(Alerts::ThermLimits) != 0;
  const bool voltage = (alerts.Live(Alerts::Voltage1) | alerts.Live(Alerts::Voltage2)) != 0;
  const int events = (ActiveInputs() & 0x0F) | fan << 5 | therm << 6 | voltage << 7;
  return (events & ~registers_[0x37 + edo]) != 0;
}

}  // namespace zth::simulator

#include "simulator/ThermPins.h"

#include <array>
#include <optional>

#include "simulator/ChipTime.h"
#include "simulator/Encodings.h"
#include "simulator/Measurement.h"
#include "simulator/PinInputs.h"

namespace zth::simulator {
namespace {

constexpr std::array kWindowSeconds{0.25, 0.5, 1.0, 2.0, 4.0, 8.0, 8.0, 8.0};

constexpr int LimitRegister(int therm, int channel) {
  return 0x4C + 4 * therm + channel;
}

}  // namespace

void ThermPins::Compare(const Measurement& measurement) {
  for (int therm = 0; therm < kTherms; ++therm) {
    Pin& pin = pin_[At(therm)];
    pin.driven = false;
    for (int channel = 0; channel < kTemperatures; ++channel) {
      bool& exceeded = pin.exceeded[At(channel)];
      const std::optional<int> reading = measurement.Quarters(channel);
      // If the pin is a 1.5 V input, Local's limit register is the high limit of that input.
      const bool limitIsVoltage = channel == 0 && pins_.IsVoltage(therm == 0 ? VoltagePin::P28 : VoltagePin::P29);
      if (!reading || limitIsVoltage) {
        exceeded = false;
        continue;
      }
      const int limit = WholeDegrees(registers_[LimitRegister(therm, channel)]);
      const int hysteresis = 4 * registers_.Field(0x54 + channel / 2, channel % 2 == 0 ? 0 : 4, 4);
      exceeded = *reading > (exceeded ? limit - hysteresis : limit);
      const bool letThrough = registers_.Bit(0x0E + therm, 1 + channel);
      pin.driven = pin.driven || (exceeded && letThrough);
    }
  }
}

void ThermPins::Tick(const PinInputs& inputs) {
  for (int therm = 0; therm < kTherms; ++therm) {
    Pin& pin = pin_[At(therm)];
    const bool before = pin.asserted;
    pin.asserted = pin.driven || (inputs.thermLow[At(therm)] && pins_.HasTherm(therm));
    pin.event = pin.asserted && !before;
    RunTimer(therm);
  }
}

void ThermPins::RunTimer(int therm) {
  Pin& pin = pin_[At(therm)];
  const bool running = registers_.Bit(0x0E + therm, 0) && pins_.HasTherm(therm);
  if (!running) {
    pin.windowTicks = 0;
    pin.onTicks = 0;
    registers_.Put(0xAE + therm, 0);
    return;
  }
  ++pin.windowTicks;
  if (pin.asserted) ++pin.onTicks;
  const int window = Ticks(kWindowSeconds[At(registers_.Field(0x0D, therm == 0 ? 2 : 5, 3))]);
  if (pin.windowTicks < window) return;
  registers_.Put(0xAE + therm, (255 * pin.onTicks + pin.windowTicks / 2) / pin.windowTicks);
  pin.windowTicks = 0;
  pin.onTicks = 0;
}

}  // namespace zth::simulator

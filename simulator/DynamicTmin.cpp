#include "simulator/DynamicTmin.h"

#include <algorithm>
#include <optional>

#include "simulator/ChipTime.h"
#include "simulator/Encodings.h"

namespace zth::simulator {
namespace {

constexpr double kShortestCycleSeconds = 0.5;  // for field 0; each further value doubles it
constexpr int kFarQuarters = 4 * 8;            // beyond this distance, the standard loop takes double steps

}  // namespace

void DynamicTmin::Reset() {
  loops_ = {};
}

void DynamicTmin::Tick(const Measurement& measurement, const ThermPins& therm) {
  for (int remote = 0; remote < 2; ++remote) {
    LoadOperatingPoint(remote, measurement, therm);

    Loop& loop = loops_[At(remote)];
    const std::optional<int> reading = measurement.Quarters(remote + 1);
    if (!registers_.Bit(0x0B, remote) || !reading) {
      loop = {};
      continue;
    }
    if (!loop.lastQuarters) loop.lastQuarters = reading;
    const int cycle = Ticks(kShortestCycleSeconds * (1 << registers_.Field(0x0C, 3 * remote, 3)));
    if (++loop.ticks < cycle) continue;
    loop.ticks = 0;
    Step(remote, *reading);
    loop.lastQuarters = reading;
  }
}

void DynamicTmin::LoadOperatingPoint(int remote, const Measurement& measurement, const ThermPins& therm) {
  const std::optional<int> reading = measurement.Quarters(remote + 1);
  if (!reading) return;
  for (int pin = 0; pin < kTherms; ++pin) {
    const bool wanted = registers_.Bit(0x0B, 2 + 2 * pin + remote);
    if (wanted && therm.Event(pin)) registers_.Put(0x5A + remote, *reading >> 2);
  }
}

void DynamicTmin::Step(int remote, int quarters) {
  const int operatingPoint = WholeDegrees(registers_[0x5A + remote]);
  const int hysteresis = 4 * registers_.Field(0x64, 4, 4);
  int direction = 0;
  if (quarters > operatingPoint) direction = -1;
  if (quarters < operatingPoint - hysteresis) direction = 1;
  if (direction == 0) return;

  int degrees = 1;
  const bool standardLoop = registers_.Bit(0x0C, 6);
  if (standardLoop) {
    // A temperature that is already returning needs no further correction.
    const int change = quarters - *loops_[At(remote)].lastQuarters;
    if (direction < 0 ? change < 0 : change > 0) return;
    const int error = direction < 0 ? quarters - operatingPoint : operatingPoint - hysteresis - quarters;
    if (error > kFarQuarters) degrees = 2;
  }

  const int low = registers_[0x45 + remote];
  const int high = std::max<int>(low, registers_[0x49 + remote]);
  registers_.Put(0x5D + remote, std::clamp(registers_[0x5D + remote] + direction * degrees, low, high));
}

}  // namespace zth::simulator

#include "simulator/Alerts.h"

#include <cstddef>
#include <cstdint>
#include <optional>

#include "simulator/Encodings.h"

namespace zth::simulator {
namespace {

constexpr int kHost = 0xB8;
constexpr int kBmc = 0xC0;
// These bits show the pin's present state; all other bits stay set until read.
constexpr std::uint8_t kThermStates = 0x24;
constexpr int kChassisIntrusion = 7;
constexpr int kVid = 6;
constexpr int kFan2Max = 3;

constexpr std::uint8_t BitMask(int bit, bool set) {
  return static_cast<std::uint8_t>(set ? 1 << bit : 0);
}

// Two of the seven groups have only one reader.
constexpr bool HasBmcCopy(std::size_t group) {
  return group != Alerts::ThermLimits;
}

}  // namespace

void Alerts::Reset() {
  live_.fill(0);
}

void Alerts::Tick(bool converted, bool vidChanged, const Measurement& measurement, const ThermPins& therm,
                  const PinInputs& inputs) {
  if (converted) {
    live_[Thermal1] = Temperatures(measurement);
    live_[Voltage1] = Voltages(0);
    live_[Voltage2] = Voltages(1);
  }
  live_[Thermal2] = ThermEvents(therm, inputs);
  live_[ThermLimits] = ThermLimitBits(therm);
  live_[Fans] = SlowFans(measurement);
  live_[Digital] = static_cast<std::uint8_t>(DigitalInputs(inputs) | BitMask(kVid, vidChanged));
  for (std::size_t group = 0; group < kGroups; ++group) {
    const std::uint8_t follows = group == Thermal2 ? kThermStates : 0;
    for (const int base : {kHost, kBmc}) {
      if (base == kBmc && !HasBmcCopy(group)) continue;
      const int address = base + static_cast<int>(group);
      // The host's copy does not include FAN2MAX.
      const int shown = group == Digital && base == kHost ? live_[group] & ~BitMask(kFan2Max, true) : live_[group];
      registers_.Put(address, (registers_[address] & ~follows) | shown);
    }
  }
}

void Alerts::StatusRead(int address) {
  const auto group = static_cast<std::size_t>(address - (address < kBmc ? kHost : kBmc));
  registers_.Put(address, registers_[address] & live_[group]);
}

std::uint8_t Alerts::Temperatures(const Measurement& measurement) const {
  std::uint8_t bits = 0;
  for (int channel = 0; channel < kTemperatures; ++channel) {
    const std::optional<int> reading = measurement.Quarters(channel);
    const bool out = reading && (*reading > WholeDegrees(registers_[0x48 + channel]) ||
                                 *reading < WholeDegrees(registers_[0x44 + channel]));
    bits |= BitMask(1 + channel, out);
    if (channel > 0) bits |= BitMask(4 + channel, pins_.HasDiode(channel) && measurement.DiodeFault(channel));
  }
  return bits;
}

std::uint8_t Alerts::ThermEvents(const ThermPins& therm, const PinInputs& inputs) const {
  std::uint8_t bits = 0;
  for (int i = 0; i < kTherms; ++i) {
    const bool low = therm.Asserted(i) && pins_.HasTherm(i);
    bits |= BitMask(3 * i, therm.OverTime(i));
    bits |= BitMask(3 * i + 1, low);
    bits |= BitMask(3 * i + 2, low);
    bits |= BitMask(6 + i, inputs.vrHot[At(i)] && pins_.HasVrHot(i));
  }
  return bits;
}

std::uint8_t Alerts::ThermLimitBits(const ThermPins& therm) const {
  std::uint8_t bits = 0;
  for (int i = 0; i < kTherms; ++i) {
    for (int channel = 0; channel < kTemperatures; ++channel) {
      bits |= BitMask(kTemperatures * i + channel, therm.Exceeded(i, channel));
    }
  }
  return bits;
}

std::uint8_t Alerts::Voltages(int group) const {
  std::uint8_t bits = 0;
  for (int n = 0; n < kVoltagePins; ++n) {
    const auto pin = static_cast<VoltagePin>(n);
    const VoltageRow& row = RowOf(pin);
    if (row.statusGroup != group || !pins_.IsVoltage(pin)) continue;
    const int code = registers_[row.valueRegister];
    bits |= BitMask(row.statusBit, code > registers_[row.highRegister] || code < registers_[row.lowRegister]);
  }
  return bits;
}

std::uint8_t Alerts::SlowFans(const Measurement& measurement) const {
  std::uint8_t bits = 0;
  for (int fan = 0; fan < kTachs; ++fan) {
    // A limit is the high byte of a count whose low byte is 0xFF; no count exceeds a limit of 0xFF.
    const int limit = registers_[0x78 + fan] << 8 | 0xFF;
    bits |= BitMask(fan, measurement.TachLive(fan) && measurement.TachCountOf(fan) > limit);
  }
  return bits;
}

std::uint8_t Alerts::DigitalInputs(const PinInputs& inputs) const {
  const bool intrusion = pins_.HasChassisIntrusion();
  return BitMask(intrusion ? kChassisIntrusion : kFan2Max, inputs.pin27Asserted);
}

bool Alerts::AlertAsserted(std::uint8_t gpioActive) const {
  // Each group's mask register; the THERM limits have none and never alert.
  constexpr struct {
    Group group;
    int mask;
  } kMasks[] = {{Thermal1, 0x30}, {Thermal2, 0x31}, {Voltage1, 0x32}, {Voltage2, 0x33}, {Fans, 0x34}, {Digital, 0x35}};
  const bool comparator = registers_.Bit(0x01, 3);
  for (const auto& [group, mask] : kMasks) {
    const int cause = comparator ? live_[group] : registers_[kHost + group];
    if ((cause & ~registers_[mask]) != 0) return true;
  }
  return (gpioActive & ~registers_[0x36]) != 0;
}

}  // namespace zth::simulator

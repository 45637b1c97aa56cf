#include "simulator/Chip.h"

#include <cstdint>

#include "simulator/Noise.h"
#include "simulator/RegisterRules.h"

namespace zth::simulator {
namespace {

constexpr int kReady = 0x80;  // bits of Configuration 1
constexpr int kLockBit = 6;

/// The written value, except for the bits that the writer cannot change.
constexpr std::uint8_t Merged(std::uint8_t before, std::uint8_t written, int kept) {
  return static_cast<std::uint8_t>((before & kept) | (written & ~kept));
}

}  // namespace

Chip::Chip(const ChipOptions& options)
    : options_(options),
      pins_(registers_),
      measurement_(registers_, pins_, Noise(options.seed), options.noise),
      therm_(registers_, pins_),
      dynamicTmin_(registers_),
      fans_(registers_, pins_, options.revision == 0),
      alerts_(registers_, pins_),
      gpio_(registers_, pins_),
      vid_(registers_, pins_) {
  Reset();
}

void Chip::Reset() {
  registers_.Reset();
  registers_.Put(0x3F, options_.revision);
  measurement_.Reset();
  therm_.Reset();
  dynamicTmin_.Reset();
  fans_.Reset();
  alerts_.Reset();
  gpio_.Reset();
  vid_.Reset();
}

std::uint8_t Chip::Read(std::uint8_t address) {
  const RegisterRule* rule = RuleOf(address);
  if (rule == nullptr) return 0;
  const std::uint8_t value = registers_[address];
  if (rule->onRead == OnRead::Latch) alerts_.StatusRead(address);
  return value;
}

void Chip::Write(std::uint8_t address, std::uint8_t value) {
  const RegisterRule* rule = RuleOf(address);
  if (rule == nullptr || rule->onWrite == OnWrite::Ignore) return;
  const bool locked = registers_.Bit(0x01, kLockBit);
  if (locked && rule->Lockable()) return;
  if (rule->onWrite == OnWrite::GpioLevels) {
    gpio_.LevelsWritten(value);
    return;
  }
  if (rule->onWrite == OnWrite::Duty) {
    fans_.DutyWritten(address - 0xAA, value);
    return;
  }
  const std::uint8_t before = registers_[address];
  if (rule->onWrite == OnWrite::Config1) value = Merged(before, value, kReady);
  if (rule->onWrite == OnWrite::TachOrVid) value = Merged(before, value, vid_.OwnBits());
  registers_.Put(address, value);
  AfterWrite(*rule, before);
}

void Chip::AfterWrite(const RegisterRule& rule, std::uint8_t before) {
  const std::uint8_t value = registers_[rule.address];
  switch (rule.onWrite) {
    case OnWrite::Reset:
      if ((value & 0x80) != 0) Reset();
      break;
    case OnWrite::Easy:
      ApplyEasyOption(registers_, value);
      measurement_.DropDisabledTachs();
      break;
    case OnWrite::PinConfig:
      DropLeftOption(registers_);
      measurement_.DropDisabledTachs();
      break;
    case OnWrite::TachEnable:
      measurement_.DropDisabledTachs();
      break;
    case OnWrite::Therm:
      therm_.Compare(measurement_);
      break;
    case OnWrite::PwmConfig:
      fans_.ConfigWritten(rule.address - 0x21, before);
      break;
    case OnWrite::Keep:
    case OnWrite::Config1:
    case OnWrite::TachOrVid:
    case OnWrite::Ignore:
    case OnWrite::Duty:
    case OnWrite::GpioLevels:
      break;
  }
}

void Chip::Tick(const PinInputs& inputs) {
  const bool converted = measurement_.Tick(inputs);
  if (converted) {
    // The first round of conversions sets the ready bit. From then on the readings are valid.
    registers_.Put(0x01, registers_[0x01] | kReady);
    therm_.Compare(measurement_);
  }
  therm_.Tick(inputs);
  dynamicTmin_.Tick(measurement_, therm_);
  fans_.Tick(measurement_, therm_, inputs);
  const bool vidChanged = vid_.Tick(inputs);
  alerts_.Tick(converted, vidChanged, measurement_, therm_, inputs);
  gpio_.Tick(inputs);
}

PinOutputs Chip::Outputs() const {
  PinOutputs out;
  for (int i = 0; i < kPwms; ++i) out.pwmHigh[At(i)] = fans_.PinHigh(i);
  for (int i = 0; i < kTherms; ++i) out.thermAsserted[At(i)] = therm_.Driven(i) && pins_.HasTherm(i);
  for (int i = 0; i < kGpios; ++i) out.gpioHigh[At(i)] = gpio_.OutputHigh(i);
  for (int i = 0; i < 2; ++i) out.edo[At(i)] = gpio_.EdoAsserted(i, alerts_);
  out.alert = alerts_.AlertAsserted(gpio_.ActiveInputs());
  return out;
}

}  // namespace zth::simulator

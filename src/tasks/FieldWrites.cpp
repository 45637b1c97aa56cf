#include "tasks/FieldWrites.h"

#include <algorithm>

#include "base/BitField.h"
#include "chip/PwmModes.h"
#include "chip/RegisterFields.h"
#include "chip/WriteEffects.h"
#include "link/Declarations.h"
#include "link/Transfers.h"
#include "link/USBStuff.h"

namespace zth::tasks {
namespace {

std::vector<chip::NamedField> FieldsAt(std::uint8_t reg) {
  const chip::RegisterRow* row = chip::RowAt(reg);
  return row == nullptr ? std::vector<chip::NamedField>() : chip::FieldsOf(row->bitNames);
}

std::uint8_t Byte(unsigned value) {
  return static_cast<std::uint8_t>(value);
}

bool IsDuty(std::uint8_t reg) {
  return reg >= "PWM 1 Value"_reg && reg < "PWM 1 Value"_reg + chip::kPwmChannels;
}

/// The register's value, or nothing if the transfer failed.
std::optional<unsigned> Read(std::uint8_t reg) {
  const link::FailureWatch watch;
  const std::int16_t value = link::ReadRegister(link::Bus.DeviceAddress, reg);
  return watch.Failed() ? std::nullopt : std::optional<unsigned>(static_cast<std::uint8_t>(value));
}

/// Whether the duty is the chip's own, not a setting.
bool IsAutomatic(std::uint8_t duty) {
  const auto config = Read(Byte("PWM1 Config"_reg + unsigned{duty} - "PWM 1 Value"_reg));
  return config && base::GetField(*config, chip::kBehaviour) != chip::kManualMode;
}

void Run(const WriteStep& step, std::vector<Left>& left) {
  if (IsDuty(step.reg) && IsAutomatic(step.reg)) {
    left.push_back({step.reg, step.mask, Reason::Automatic});
    return;
  }
  const auto now = Read(step.reg);
  if (!now) {
    left.push_back({step.reg, step.mask, Reason::Failed});
    return;
  }
  const unsigned departed = *now ^ step.to;
  const unsigned foreign = step.written ? WholeFields(step.reg, (*now ^ *step.written) & departed) & step.mask : 0U;
  if (foreign != 0) left.push_back({step.reg, Byte(foreign), Reason::Changed});
  const unsigned own = step.mask & ~foreign;
  const unsigned wanted = (*now & ~own) | (step.to & own);
  if (wanted == *now) return;
  const link::FailureWatch watch;
  link::WriteRegisterValue(link::Bus.DeviceAddress, step.reg, static_cast<std::int32_t>(wanted));
  const auto after = Read(step.reg);
  const unsigned wrong = after ? WholeFields(step.reg, *after ^ wanted) & own : own;
  if (wrong != 0) left.push_back({step.reg, Byte(wrong), watch.Failed() ? Reason::Failed : Reason::NotTaken});
}

}  // namespace

int WriteRank(std::uint8_t reg) {
  if (reg == "Easy Config"_reg) return 0;
  if (chip::IsOfEasyOption(reg)) return 1;
  if (chip::IsOfTminControl(reg)) return 2;
  return IsDuty(reg) ? 4 : 3;
}

std::vector<Left> RunSteps(const std::vector<WriteStep>& steps) {
  std::vector<Left> left;
  for (const WriteStep& step : steps) Run(step, left);
  // A later write may have changed an earlier register again, as a pin register does with the Easy option.
  for (const WriteStep& step : steps) {
    if (!chip::IsOfEasyOption(step.reg)) continue;
    const auto now = Read(step.reg);
    const bool isNamed = std::ranges::any_of(left, [&](const Left& one) { return one.reg == step.reg; });
    if (now && !isNamed && ((*now ^ step.to) & step.mask) != 0) {
      left.push_back({step.reg, step.mask, Reason::NotTaken});
    }
  }
  return left;
}

std::uint8_t WholeFields(std::uint8_t reg, unsigned bits) {
  unsigned whole = 0;
  unsigned unnamed = 0xFF;
  for (const chip::NamedField& field : FieldsAt(reg)) {
    const unsigned mask = base::Mask(field.bits);
    unnamed &= ~mask;
    if ((mask & bits) != 0) whole |= mask;
  }
  return static_cast<std::uint8_t>((unnamed & bits) != 0 ? whole | unnamed : whole);
}

std::string FieldNames(std::uint8_t reg, std::uint8_t mask) {
  if (mask == 0xFF) return {};
  std::string names;
  for (const chip::NamedField& field : FieldsAt(reg)) {
    if ((base::Mask(field.bits) & mask) == 0) continue;
    names += (names.empty() ? "" : ", ") + std::string(field.name);
  }
  return names;
}

}  // namespace zth::tasks

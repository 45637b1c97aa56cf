#include "tasks/PutBack.h"

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

/// The fields that contain one of the bits, whole. Bits without a name are one field.
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

std::uint8_t Byte(unsigned value) {
  return static_cast<std::uint8_t>(value);
}

bool IsDuty(std::uint8_t reg) {
  return reg >= "PWM 1 Value"_reg && reg < "PWM 1 Value"_reg + chip::kPwmChannels;
}

/// "Easy Config" first, because it sets the pin registers, and those before the rest, because they decide what other
/// registers mean. Then what lets the chip move registers itself. Duties last, because they can be written only once
/// their PWMs are manual again.
int Rank(const PutBackPlan::Step& step) {
  if (step.reg == "Easy Config"_reg) return 0;
  if (chip::IsOfEasyOption(step.reg)) return 1;
  if (chip::IsOfTminControl(step.reg)) return 2;
  return IsDuty(step.reg) ? 4 : 3;
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

void Run(const PutBackPlan::Step& step, std::vector<Left>& left) {
  if (IsDuty(step.reg) && IsAutomatic(step.reg)) return;
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
  link::WriteRegisterValue(link::Bus.DeviceAddress, step.reg, static_cast<std::int32_t>(wanted));
  const auto after = Read(step.reg);
  const unsigned wrong = after ? WholeFields(step.reg, *after ^ wanted) & own : own;
  if (wrong != 0) left.push_back({step.reg, Byte(wrong), after ? Reason::NotTaken : Reason::Failed});
}

}  // namespace

PutBackPlan PlanPutBack(const std::vector<Touched>& changes) {
  PutBackPlan plan;
  for (auto change = changes.rbegin(); change != changes.rend(); ++change) {
    const std::uint8_t fixed = chip::BitsNotPutBack(change->reg);
    if (!change->before) {
      plan.left.push_back({change->reg, 0xFF, fixed == 0xFF ? Reason::NotWrittenBack : Reason::NeverRead});
      continue;
    }
    const unsigned differing = change->after ? *change->before ^ *change->after : 0xFFU;
    const unsigned mask = WholeFields(change->reg, differing);
    // Bits that only the chip could have changed are nothing that was asked for.
    if (change->after && (mask & fixed) != 0) {
      plan.left.push_back({change->reg, Byte(mask & fixed), Reason::NotWrittenBack});
    }
    if ((mask & ~fixed) == 0) continue;
    plan.steps.push_back({change->reg, *change->before, Byte(mask & ~unsigned{fixed}), change->after});
  }
  std::ranges::stable_sort(plan.steps, {}, Rank);
  return plan;
}

std::vector<Left> RunPutBack(const PutBackPlan& plan) {
  std::vector<Left> left;
  for (const PutBackPlan::Step& step : plan.steps) Run(step, left);
  // A later write may have changed an earlier register again, as a pin register does with the Easy option.
  for (const PutBackPlan::Step& step : plan.steps) {
    if (!chip::IsOfEasyOption(step.reg)) continue;
    const auto now = Read(step.reg);
    const bool isNamed = std::ranges::any_of(left, [&](const Left& one) { return one.reg == step.reg; });
    if (now && !isNamed && ((*now ^ step.to) & step.mask) != 0) {
      left.push_back({step.reg, step.mask, Reason::NotTaken});
    }
  }
  return left;
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

#include "tasks/WriteImage.h"

#include <algorithm>
#include <array>

#include "base/BitField.h"
#include "chip/WriteEffects.h"
#include "link/Declarations.h"
#include "link/Transfers.h"
#include "link/USBStuff.h"

namespace zth::tasks {
namespace {

constexpr unsigned kLockMask = base::Mask(chip::kLock.bits);

std::uint8_t ToByte(unsigned value) {
  return static_cast<std::uint8_t>(value);
}

/// Whether the step lets the chip move Tmin and operating points: after that they do not stay as written.
bool StartsTminControl(const WriteStep& step) {
  constexpr unsigned kChannels = 0b11;  // remote 1 and 2, which have no names in the table
  return step.reg == "Tmin_Cal1"_reg && (step.to & step.mask & kChannels) != 0;
}

int Rank(const WriteStep& step) {
  if (step.reg == "Configuration 1"_reg) return 6;
  return StartsTminControl(step) ? 5 : WriteRank(step.reg);
}

/// Adds the step for the wanted bits of a register that can be written, and what is left of them.
void Plan(const HeldByte& held, const Wanted& wanted, unsigned writable, WritePlan& plan) {
  const unsigned have = wanted.mask & held.known;
  if ((wanted.mask & ~have) != 0) plan.left.push_back({wanted.reg, ToByte(wanted.mask & ~have), Reason::NotHeld});
  if (have == 0) return;
  const unsigned step = have & writable;
  unsigned kept = have & ~writable;
  if (step != 0) {
    // The chip sets the ready bit itself, so that every configuration has it.
    if (wanted.reg == chip::kReady.reg) kept &= ~base::Mask(chip::kReady.bits);
    kept &= held.value;
    plan.steps.push_back({wanted.reg, ToByte(held.value & step), ToByte(step), {}});
  }
  if (kept != 0) plan.left.push_back({wanted.reg, ToByte(kept), Reason::NotWritable});
}

bool IsLocked() {
  const link::FailureWatch watch;
  const std::int16_t value = link::ReadRegister(link::Bus.DeviceAddress, chip::kLock.reg);
  return !watch.Failed() && (static_cast<unsigned>(value) & kLockMask) != 0;
}

}  // namespace

WritePlan PlanWrite(const RegisterImage& image, const std::vector<Wanted>& wanted, Lock lock) {
  std::array<unsigned, 256> masks{};
  for (const Wanted& each : wanted) masks[each.reg] |= each.mask;
  WritePlan plan;
  for (unsigned address = 0; address < masks.size(); ++address) {
    const Wanted each{ToByte(address), ToByte(masks.at(address))};
    if (each.mask == 0) continue;
    const unsigned fixed = chip::BitsNotPutBack(each.reg);
    if (fixed == 0xFF) {
      plan.left.push_back({each.reg, each.mask, Reason::NotWritable});
      continue;
    }
    const bool setsLock = lock == Lock::Set && each.reg == chip::kLock.reg;
    Plan(image.bytes[each.reg], each, ~fixed | (setsLock ? kLockMask : 0U), plan);
  }
  std::ranges::stable_sort(plan.steps, {}, Rank);
  return plan;
}

std::vector<Wanted> AllOf(const RegisterImage& image) {
  std::vector<Wanted> all;
  for (const std::uint8_t reg : ComparableRegisters()) {
    if (image.Holds(reg)) all.push_back({reg, image.bytes[reg].known});
  }
  return all;
}

std::vector<Wanted> DifferencesOf(const RegisterImage& image, const RegisterImage& other) {
  std::vector<Wanted> differences;
  for (const std::uint8_t reg : ComparableRegisters()) {
    const HeldByte& held = image.bytes[reg];
    const HeldByte& against = other.bytes[reg];
    const unsigned bits = ((held.value ^ against.value) | ~unsigned{against.known}) & held.known;
    const auto mask = ToByte(WholeFields(reg, bits) & held.known);
    if (mask != 0) differences.push_back({reg, mask});
  }
  return differences;
}

std::vector<Left> RunWrite(const WritePlan& plan) {
  std::vector<Left> left = RunSteps(plan.steps);
  const bool locks = std::ranges::any_of(plan.steps, [](const WriteStep& step) {
    return step.reg == chip::kLock.reg && (step.to & step.mask & kLockMask) != 0;
  });
  const bool isRefused = std::ranges::any_of(left, [](const Left& one) { return one.reason == Reason::NotTaken; });
  if (!isRefused || locks || !IsLocked()) return left;
  for (Left& one : left) {
    if (one.reason == Reason::NotTaken) one.reason = Reason::Locked;
  }
  return left;
}

}  // namespace zth::tasks

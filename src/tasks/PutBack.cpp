#include "tasks/PutBack.h"

#include <algorithm>

#include "chip/WriteEffects.h"

namespace zth::tasks {
namespace {

std::uint8_t Byte(unsigned value) {
  return static_cast<std::uint8_t>(value);
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
  std::ranges::stable_sort(plan.steps, {}, [](const WriteStep& step) { return WriteRank(step.reg); });
  return plan;
}

std::vector<Left> RunPutBack(const PutBackPlan& plan) {
  std::vector<Left> left = RunSteps(plan.steps);
  // A duty that the chip sets itself was nobody's setting.
  std::erase_if(left, [](const Left& one) { return one.reason == Reason::Automatic; });
  return left;
}

}  // namespace zth::tasks

#include "tasks/PutBack.h"

#include <algorithm>

#include "chip/WriteEffects.h"

namespace zth::tasks {

PutBackPlan PlanPutBack(const std::vector<Touched>& changes) {
  PutBackPlan plan;
  for (auto change = changes.rbegin(); change != changes.rend(); ++change) {
    const std::uint8_t fixed = chip::BitsNotPutBack(change->reg);
    if (!change->before) {
      plan.left.push_back({change->reg, 0xFF, fixed == 0xFF ? Reason::NotWrittenBack : Reason::NeverRead});
      continue;
    }
    const unsigned differing = change->after ? *change->before ^ *change->after : 0xFFU;
    const std::uint8_t mask = WholeFields(change->reg, differing);
    const auto kept = static_cast<std::uint8_t>(mask & fixed);
    // Bits that only the chip could have changed are nothing that was asked for.
    if (change->after && kept != 0) plan.left.push_back({change->reg, kept, Reason::NotWrittenBack});
    if (kept == mask) continue;
    plan.steps.push_back({change->reg, *change->before, static_cast<std::uint8_t>(mask ^ kept), change->after});
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

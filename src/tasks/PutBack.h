#pragma once

#include <vector>

#include "tasks/FieldWrites.h"
#include "tasks/Journal.h"

/// Puts registers back to what they were before they were written.
namespace zth::tasks {

/// What is to be done, known without a transfer.
struct PutBackPlan {
  /// `written` is what was written; without it only the chip has changed the register, and whatever it holds now is
  /// replaced.
  using Step = WriteStep;
  std::vector<Step> steps;  ///< in the order of the writes: the reverse of that of the changes
  std::vector<Left> left;   ///< what cannot be put back
};

/// `changes` in the order in which they were made.
PutBackPlan PlanPutBack(const std::vector<Touched>& changes);

/// Carries out a plan on the chip in use: reads each register, writes the fields that still have what was written, and
/// reads it again. A field that has its old value already is not written. Returns what did not get its old value,
/// without what the plan has left.
std::vector<Left> RunPutBack(const PutBackPlan& plan);

}  // namespace zth::tasks

#pragma once

#include <cstdint>
#include <vector>

#include "tasks/FieldWrites.h"
#include "tasks/RegisterImage.h"

/// Writes a configuration, or parts of it, to the chip in use.
namespace zth::tasks {

/// A register, or fields of it, that are wanted from a configuration.
struct Wanted {
  std::uint8_t reg = 0;
  std::uint8_t mask = 0xFF;

  bool operator==(const Wanted&) const = default;
};

/// What happens to the lock, which only a reset ends.
enum class Lock : std::uint8_t {
  Leave,  ///< it is not set, even if the configuration has it
  Set,    ///< it is set, last of all, if the configuration has it and it is wanted
};

/// What is to be done, known without a transfer.
struct WritePlan {
  std::vector<WriteStep> steps;  ///< in an order that the chip takes, whatever the order of the wishes
  std::vector<Left> left;        ///< what cannot be written, and why: NotHeld or NotWritable
};

/// The software reset and the ready bit are never written. The reset and the lock are in `left` if the configuration
/// has them set, the ready bit only if it alone is wanted.
WritePlan PlanWrite(const RegisterImage& image, const std::vector<Wanted>& wanted, Lock lock = Lock::Leave);

/// Everything that an image holds of ComparableRegisters().
std::vector<Wanted> AllOf(const RegisterImage& image);

/// The fields of ComparableRegisters() in which `image` differs from `other`, whole; registers that only `image` holds,
/// too.
std::vector<Wanted> DifferencesOf(const RegisterImage& image, const RegisterImage& other);

/// Carries out a plan: RunSteps, and at the end one read of the lock if the chip has not taken something. Returns what
/// did not get its value, without what the plan has left.
std::vector<Left> RunWrite(const WritePlan& plan);

}  // namespace zth::tasks

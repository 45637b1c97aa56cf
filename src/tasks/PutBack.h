#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tasks/Journal.h"

/// Puts registers back to what they were before they were written.
namespace zth::tasks {

/// Why a register, or a field of it, does not get its old value.
enum class Reason : std::uint8_t {
  NeverRead,       ///< nobody has read it before it was written
  NotWrittenBack,  ///< reset, lock, or read only
  Changed,         ///< it no longer has the value that was written: something else has changed it
  NotTaken,        ///< the chip does not show the value after the write
  Failed,          ///< a transfer failed
};

struct Left {
  std::uint8_t reg = 0;
  std::uint8_t mask = 0;  ///< the bits concerned: whole fields
  Reason reason = Reason::NeverRead;

  bool operator==(const Left&) const = default;
};

/// What is to be done, known without a transfer.
struct PutBackPlan {
  struct Step {
    std::uint8_t reg = 0;
    std::uint8_t to = 0;    ///< the old value
    std::uint8_t mask = 0;  ///< the fields to put back
    /// What was written. Empty if only the chip has changed the register: then whatever it holds now is replaced.
    std::optional<std::uint8_t> written;
  };
  std::vector<Step> steps;  ///< in the order of the writes: the reverse of that of the changes
  std::vector<Left> left;   ///< what cannot be put back
};

/// `changes` in the order in which they were made.
PutBackPlan PlanPutBack(const std::vector<Touched>& changes);

/// Carries out a plan on the chip in use: reads each register, writes the fields that still have what was written, and
/// reads it again. A field that has its old value already is not written. Returns what did not get its old value,
/// without what the plan has left.
std::vector<Left> RunPutBack(const PutBackPlan& plan);

/// The fields of a register that a mask covers, by their names: "Bhvr, Inv". Empty if that is the whole register or its
/// bits have no names.
std::string FieldNames(std::uint8_t reg, std::uint8_t mask);

}  // namespace zth::tasks

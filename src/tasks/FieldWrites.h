#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// Writes fields of registers to the chip in use, each read back.
namespace zth::tasks {

/// Why a register, or a field of it, does not get its value.
enum class Reason : std::uint8_t {
  NeverRead,       ///< to put back: nobody has read it before it was written
  NotWrittenBack,  ///< to put back: reset, lock, or read only
  Changed,         ///< to put back: it no longer has the value that was written: something else has changed it
  NotTaken,        ///< the chip does not show the value after the write
  Failed,          ///< a transfer failed
  NotHeld,         ///< to write: the configuration does not hold it
  NotWritable,     ///< to write: read only, reset or lock
  Automatic,       ///< a duty that the chip sets itself, because the PWM is not in manual mode
  Locked,          ///< the chip does not take the value, and its lock is set
};

struct Left {
  std::uint8_t reg = 0;
  std::uint8_t mask = 0;  ///< the bits concerned: whole fields
  Reason reason = Reason::NeverRead;

  bool operator==(const Left&) const = default;
};

/// One write.
struct WriteStep {
  std::uint8_t reg = 0;
  std::uint8_t to = 0;    ///< the value
  std::uint8_t mask = 0;  ///< the bits to set; the others keep what the chip holds
  /// If set, a field that no longer holds this value is left alone: something else has changed it.
  std::optional<std::uint8_t> written;

  bool operator==(const WriteStep&) const = default;
};

/// The place of a register in an order that the chip takes: lower first. "Easy Config", because it sets the pin
/// registers, and those, because they decide what other registers mean. Then what lets the chip move registers itself.
/// Duties last, because they can be written only once their PWMs are manual.
int WriteRank(std::uint8_t reg);

/// Carries out the steps in their order: reads each register, writes the bits of the mask if one of them differs, and
/// reads it again. For a duty it first reads whether the PWM is manual. Returns what did not get its value.
std::vector<Left> RunSteps(const std::vector<WriteStep>& steps);

/// The fields of a register that contain one of the bits, whole. Bits without a name are one field.
std::uint8_t WholeFields(std::uint8_t reg, unsigned bits);

/// The fields of a register that a mask covers, by their names: "Bhvr, Inv". Empty if that is the whole register or its
/// bits have no names.
std::string FieldNames(std::uint8_t reg, std::uint8_t mask);

}  // namespace zth::tasks

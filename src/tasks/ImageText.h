#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "tasks/RegisterImage.h"

namespace zth::tasks {

/// What the head of a text tells besides the registers; all in UTF-8 and put on one line each. The same notes and the
/// same image give the same text, byte for byte.
struct TextNotes {
  std::string date;     ///< as it is to be shown; empty: exports name no date
  std::string time;     ///< as it is to be shown
  std::string comment;  ///< may be empty
  /// The chip that a script writes to unless it is told otherwise, in 7 bits: the board's adapter calls it 58h.
  std::uint8_t i2cAddress = 0x2C;
};

/// A configuration read from a text, or why it could not be read.
struct ImageOrError {
  std::optional<RegisterImage> image;
  std::string error;  ///< for people, without the name of the file: "line 12: \"0xZZ\" is no byte"

  explicit operator bool() const { return image.has_value(); }
};

}  // namespace zth::tasks

#pragma once

#include <cstdint>
#include <map>

#include "command/Session.h"

namespace zth::command {

/// What registers ought to hold after a command's writes.
class Expected {
 public:
  /// The bits of `mask` have been written as in `value`.
  void Put(std::uint8_t reg, unsigned mask, unsigned value);

  /// Reads each register once. Throws Failure for the first that holds something else; bits that the chip sets itself
  /// do not count.
  void Verify(Session& session) const;

 private:
  struct Bits {
    unsigned mask = 0;
    unsigned value = 0;
  };
  std::map<std::uint8_t, Bits> registers_;
};

}  // namespace zth::command

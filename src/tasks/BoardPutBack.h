#pragma once

#include <cstdint>
#include <vector>

#include "tasks/Journal.h"
#include "tasks/PutBack.h"

/// Puts heaters and switches back to what they were before they were set. Only after the user has said so: something
/// may depend on them that the program does not see.
namespace zth::tasks {

/// A part of the board that does not get its old value.
struct BoardLeft {
  BoardPart part = BoardPart::Heater;
  std::uint8_t number = 0;
  Reason reason = Reason::NeverRead;

  bool operator==(const BoardLeft&) const = default;
};

/// What nobody has read before it was set, and so cannot be put back.
std::vector<BoardLeft> NeverReadOf(const std::vector<BoardTouched>& changes);

/// Reads each part, sets it to its old value if it still has what was set, and reads it again. Returns what did not get
/// its old value, without what was never read. Reaches the board on USB only.
std::vector<BoardLeft> RunBoardPutBack(const std::vector<BoardTouched>& changes);

}  // namespace zth::tasks

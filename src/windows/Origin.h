#pragma once

#include <optional>

#include <QString>

#include "chip/ChipModel.h"

namespace zth::windows {

/// What a window shows that was read from a chip; flags can be ORed.
enum Shows : unsigned {
  kShowsNothing = 0,
  kShowsChip = 1U << 0,     ///< registers that its load step reads
  kShowsBoard = 1U << 1,    ///< devices on the USB adapter, the same for every chip there
  kShowsDetails = 1U << 2,  ///< registers that the user reads one by one
  kShowsPins = 1U << 3,     ///< `PinFunctions` and what depends on them
  kShowsManual = 1U << 4,   ///< `PwmManual`
  kShowsDuties = 1U << 5,   ///< measured duties, which depend on `ChipRevision`
  kFollowsModel = 1U << 6,  ///< the three above as they are now, not as they were at the load step
};

/// The chip that a window was read from, and the message to show if it is not the chip in use.
class Origin {
 public:
  explicit Origin(unsigned shows) : shows_(shows) {}

  /// Records that the window has just been read from the chip in use.
  void Note();

  /// True if anything in the window is from a chip that is not in use.
  bool IsOther() const { return Find().has_value(); }

  /// The suffix of the window's caption, " (read from 58h on USB)"; empty if everything is from the chip in use.
  QString TitleNote() const;
  /// The same as a full sentence.
  QString Explanation() const;

  /// True if the window shows registers or the board, so that reading it again is useful in itself.
  bool IsReadItself() const { return (shows_ & (kShowsChip | kShowsBoard | kShowsDetails)) != 0; }
  /// True if the load step reads it; otherwise the window records each read itself.
  bool IsReadAtLoad() const { return (shows_ & kShowsDetails) == 0; }
  /// True if reading it again also updates the program's model of the chip. The board and single registers do not need
  /// it.
  bool IsReadWithModel() const { return (shows_ & ~unsigned{kShowsBoard | kShowsDetails}) != 0; }

 private:
  struct Other {
    link::ChipId chip;
    const char* part;  ///< the part of the window read from it; null for its own registers
  };
  /// True if it is not another chip that a part was read from, but none: its read failed.
  static bool IsUnread(const Other& other) { return other.part != nullptr && other.chip == chip::kUnread; }
  std::optional<Other> Find() const;
  std::optional<Other> FindInModel(const link::ChipId& inUse) const;

  unsigned shows_;
  std::optional<link::ChipId> readFrom_;
  chip::ModelOrigin modelAtLoad_;
};

}  // namespace zth::windows

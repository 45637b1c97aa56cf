#pragma once

#include <optional>

#include <QString>

#include "chip/ChipModel.h"

namespace zth::windows {

/// What a window shows that was read from a chip; several are or-ed together.
enum Shows : unsigned {
  kShowsNothing = 0,
  kShowsChip = 1U << 0,     ///< registers that its load step reads
  kShowsBoard = 1U << 1,    ///< what hangs on the USB adapter, whichever chip is in use there
  kShowsDetails = 1U << 2,  ///< registers that the user asks for one by one
  kShowsPins = 1U << 3,     ///< `PinFunctions` and what follows from them
  kShowsManual = 1U << 4,   ///< `PwmManual`
  kShowsDuties = 1U << 5,   ///< measured duties, which `ChipRevision` turns the right way up
  kFollowsModel = 1U << 6,  ///< the three above as they stand now, not as they stood at its load step
};

/// Which chip a window was read from, and what to say when it is another one than all windows work on now.
class Origin {
 public:
  explicit Origin(unsigned shows) : shows_(shows) {}

  /// The window has just been read from the chip in use.
  void Note();

  /// Something of what the window shows stands on a chip that is not in use.
  bool IsOther() const { return Find().has_value(); }

  /// What goes behind the window's caption, " (read from 58h on USB)"; empty while all is of the chip in use.
  QString TitleNote() const;
  /// The same at length.
  QString Explanation() const;

  /// It shows registers or the board, so that reading it again has a meaning of its own.
  bool IsReadItself() const { return (shows_ & (kShowsChip | kShowsBoard | kShowsDetails)) != 0; }
  /// Its load step is what reads it; otherwise the window notes each read by itself.
  bool IsReadAtLoad() const { return (shows_ & kShowsDetails) == 0; }
  /// Reading it again renews the program's model of the chip as well. Neither the board nor single registers ask for
  /// it.
  bool IsReadWithModel() const { return (shows_ & ~unsigned{kShowsBoard | kShowsDetails}) != 0; }

 private:
  struct Other {
    link::ChipId chip;
    const char* part;  ///< what of the window stands on it; null for its own registers
  };
  std::optional<Other> Find() const;
  std::optional<Other> FindInModel(const link::ChipId& inUse) const;

  unsigned shows_;
  std::optional<link::ChipId> readFrom_;
  chip::ModelOrigin modelAtLoad_;
};

}  // namespace zth::windows

#pragma once

#include <array>

#include "link/ChipId.h"
#include "link/Transfers.h"

/// What all windows share about a chip: `PinFunctions`, `PwmManual` and `ChipRevision`. Selecting another chip changes
/// none of it, and a write to that chip updates only a part. So each part records the chip it was read from. A part
/// whose read failed keeps what it held, and its origin is `kUnread` until a read succeeds.
namespace zth::chip {

inline constexpr link::ChipId kUnread{};

struct ModelOrigin {
  link::ChipId pins;
  std::array<link::ChipId, 4> manual;  ///< PWM1 to PWM4
  link::ChipId revision;

  bool operator==(const ModelOrigin&) const = default;
};

ModelOrigin ModelReadFrom();

/// True if the whole model was read from the chip in use.
bool ModelIsOfChipInUse();

/// True if the last read of any part failed.
bool ModelIsUnread();

/// The origin of a part that has been read since `watch` was made.
link::ChipId OriginOfRead(const link::FailureWatch& watch);

/// Read `PwmManual` and `ChipRevision` from the chip in use.
void ReadManualFlags();
void ReadChipRevision();

/// Reads the whole model from the chip in use, as at the start. The board's switches are not changed.
void ReadChipModel();

}  // namespace zth::chip

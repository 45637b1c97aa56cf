#pragma once

#include <array>

#include "link/ChipId.h"

/// What all windows share about a chip: `PinFunctions`, `PwmManual` and `ChipRevision`. Selecting another chip changes
/// none of it, and a write to that chip updates only a part. So each part records the chip it was read from.
namespace zth::chip {

struct ModelOrigin {
  link::ChipId pins;
  std::array<link::ChipId, 4> manual;  ///< PWM1 to PWM4
  link::ChipId revision;

  bool operator==(const ModelOrigin&) const = default;
};

ModelOrigin ModelReadFrom();

/// True if the whole model was read from the chip in use.
bool ModelIsOfChipInUse();

/// Read `PwmManual` and `ChipRevision` from the chip in use.
void ReadManualFlags();
void ReadChipRevision();

/// Reads the whole model from the chip in use, as at the start. The board's switches are not changed.
void ReadChipModel();

}  // namespace zth::chip

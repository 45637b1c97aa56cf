#pragma once

#include <array>

#include "link/ChipId.h"

/// What the program knows of a chip for all windows: `PinFunctions`, `PwmManual` and `ChipRevision`. Another chip in
/// the device list changes none of it, and a write to that one renews a part; so each part keeps where it was read.
namespace zth::chip {

struct ModelOrigin {
  link::ChipId pins;
  std::array<link::ChipId, 4> manual;  ///< PWM1 to PWM4
  link::ChipId revision;

  bool operator==(const ModelOrigin&) const = default;
};

ModelOrigin ModelReadFrom();

/// All of the model was read from the chip in use.
bool ModelIsOfChipInUse();

/// Reads `PwmManual` and `ChipRevision` from the chip in use, in this order.
void ReadManualFlags();
void ReadChipRevision();

/// Reads the whole model from the chip in use, as the start does. The board's switches stay as they are.
void ReadChipModel();

}  // namespace zth::chip

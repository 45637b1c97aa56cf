#pragma once

#include <array>
#include <vector>

#include "windows/fancontrol/CurveModel.h"

/// The corners of the duty that the chip itself computes. The curve's line goes by whole degrees and percent; the chip
/// goes by its registers, with fractional ranges and in steps of 1/255 of the duty.
namespace zth::windows {

/// What the chip computes a ramp from.
struct ChipRamp {
  int tmin = 0;               ///< degrees C
  int trange = 0;             ///< the register field, a position in kTrangeItems
  int minDuty = 0;            ///< 0 to 255, as in the registers
  int maxDuty = 0;            ///< the same
  int limit = kNoThermLimit;  ///< EffectiveThermLimit
};

struct ChipCorner {
  double x = 0;  ///< degrees C
  double y = 0;  ///< percent

  bool operator==(const ChipCorner&) const = default;
};

ChipRamp RampOf(const CurveModel& model, int pwm, int source);

/// Where the ramp begins, at Tmin, and where it ends: at the lowest reading, in quarters of a degree, for which the
/// duty is at its maximum, or at the THERM limit if that comes first. One corner if the duty is at its maximum from
/// Tmin on, none if the limit leaves no ramp.
std::vector<ChipCorner> ChipCorners(const ChipRamp& ramp);

}  // namespace zth::windows

#pragma once

#include "widgets/StripSetup.h"

/// Set-up of the fan control charts.
namespace zth::windows {

/// The transfer curve: traces 0 to 3 are the curves of the sources, 4 to 7 their live dots, 8 to 11 their hysteresis
/// curves, from kTrailTrace on the trails of the dots, four sources for each age, newest first, and from kCornerTrace
/// on the chip's own corners.
widgets::StripSetup CurveChart();

/// The label slot for the unit of the duty axis, after the slots of the legend.
inline constexpr int kCurveUnitSlot = 6;

inline constexpr int kDotTrace = 4;
inline constexpr int kHysteresisTrace = 8;
inline constexpr int kTrailTrace = 12;
/// The corners of the duty that the chip computes for each source, as rings.
inline constexpr int kCornerTrace = 28;

/// The dynamic Tmin of Remote1 (index 0) or Remote2 (index 1).
widgets::StripSetup DynTminChart(int index);

inline constexpr int kFirstDutyTrace = 5;
inline constexpr int kHysteresisFloorTrace = 9;

/// The label slots of the two zones' units.
inline constexpr int kUnitSlot = 9;
inline constexpr int kDutyUnitSlot = 10;

/// The label slot of row 0 to 3 in the duty legend.
constexpr int DutySlot(int row) {
  return row < 3 ? row + 6 : 11;
}

}  // namespace zth::windows

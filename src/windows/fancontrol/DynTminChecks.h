#pragma once

#include <array>
#include <cstdint>

#include "windows/fancontrol/Registers.h"

/// The check boxes of the dynamic Tmin control. A bit is added to the window by adding a row.
namespace zth::windows {

inline constexpr int kRemotes = 2;

/// A check box and its bit.
struct DynTminCheck {
  const char* name;
  const char* caption;
  std::int32_t number;
  int bit;
  bool inverted;
};

inline constexpr std::array<DynTminCheck, 7> kDynTminChecks{{
    {"chkEnDynR1", "E&nable Dynamic Tmin for Remote1", reg::kTminCal1, 0, false},
    {"chkEnDynR2", "E&nable Dynamic Tmin for Remote2", reg::kTminCal1, 1, false},
    {"chkLoadOp1Th1", "Load Remote1 Op-Point with Remote1 Value on THERM&1 event", reg::kTminCal1, 2, false},
    {"chkLoadOp2Th1", "Load Remote2 Op-Point with Remote2 Value on THERM&1 event", reg::kTminCal1, 3, false},
    {"chkLoadOp1Th2", "Load Remote1 Op-Point with Remote1 Value on THERM&2 event", reg::kTminCal1, 4, false},
    {"chkLoadOp2Th2", "Load Remote2 Op-Point with Remote2 Value on THERM&2 event", reg::kTminCal1, 5, false},
    {"chkConLoop", "&Backwards Compatible Control Loop", reg::kTminCal2, 6, true},
}};
inline constexpr int kControlLoop = 6;

}  // namespace zth::windows

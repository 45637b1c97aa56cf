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

// The bits of "Tmin_Cal1" go by number: the table names them in another order than that in which they work.
inline constexpr std::array<DynTminCheck, 7> kDynTminChecks{{
    {"chkEnDynR1", "E&nable Dynamic Tmin for Remote1", "Tmin_Cal1"_reg, 0, false},
    {"chkEnDynR2", "E&nable Dynamic Tmin for Remote2", "Tmin_Cal1"_reg, 1, false},
    {"chkLoadOp1Th1", "Load Remote1 Op-Point with Remote1 Value on THERM&1 event", "Tmin_Cal1"_reg, 2, false},
    {"chkLoadOp2Th1", "Load Remote2 Op-Point with Remote2 Value on THERM&1 event", "Tmin_Cal1"_reg, 3, false},
    {"chkLoadOp1Th2", "Load Remote1 Op-Point with Remote1 Value on THERM&2 event", "Tmin_Cal1"_reg, 4, false},
    {"chkLoadOp2Th2", "Load Remote2 Op-Point with Remote2 Value on THERM&2 event", "Tmin_Cal1"_reg, 5, false},
    {"chkConLoop", "&Backwards Compatible Control Loop", "Tmin_Cal2"_reg, chip::Field("Tmin_Cal2", "Ver").shift, true},
}};
inline constexpr int kControlLoop = 6;

}  // namespace zth::windows

#pragma once

#include <array>

/// The slope of the automatic fan control.
namespace zth::chip {

/// The items of the Trange lists: degrees over which the duty rises by 64 percent. An item's position is its value in
/// the register field.
inline constexpr std::array<const char*, 16> kTrangeItems{"2°C",  "2.5°C", "3.3°C",  "4°C",  "5°C",  "6.7°C",
                                                          "8°C",  "10°C",  "13.3°C", "16°C", "20°C", "26.7°C",
                                                          "32°C", "40°C",  "53.3°C", "80°C"};

/// The rise of the duty at a number of quarter degrees above Tmin, in steps of 1/255; `trange` is the register field, 0
/// to 15.
int DutyRise(int quarters, int trange);

}  // namespace zth::chip

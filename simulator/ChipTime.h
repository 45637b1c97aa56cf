#pragma once

#include <chrono>
#include <cmath>

namespace zth::simulator {

/// The simulation advances in whole ticks. All of the chip's own periods are multiples of one tick.
inline constexpr std::chrono::milliseconds kTick{10};
inline constexpr double kTickSeconds = 0.01;

/// The number of ticks in a period of the chip, at least one.
inline int Ticks(double seconds) {
  return seconds <= kTickSeconds ? 1 : static_cast<int>(std::lround(seconds / kTickSeconds));
}

inline constexpr double kConversionSeconds = 0.1;  ///< one round of all temperatures and voltages
inline constexpr double kTachSeconds = 1.0;        ///< one reading of every tach
inline constexpr double kFastTachSeconds = 0.25;   ///< the same in fast measurement

}  // namespace zth::simulator

#pragma once

#include <array>

/// The names of the chip's channels, and the lists of what can control a PWM.
namespace zth::chip {

/// In the order of MeasurementSet::Temperature.
inline constexpr std::array kTemperatureNames{"Local", "Remote1", "Remote2", "Remote3"};

inline constexpr int kTemperatures = static_cast<int>(kTemperatureNames.size());

/// What the behaviour field of a PWM's configuration can be; a name's position is the value of the field.
inline constexpr std::array kBehaviourNames{
    "Local", "Remote1", "Remote2", "Remote3", "Off", "Max of Local/Remote3", "Max of 4 Channels", "Manual Mode"};

}  // namespace zth::chip

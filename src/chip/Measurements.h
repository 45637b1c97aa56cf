#pragma once

#include <array>
#include <cstdint>

#include "chip/PinModel.h"
#include "chip/RegisterNames.h"

/// The chip's live values in engineering units, read in six groups.
namespace zth::chip {

/// Latest good values; zeros until the first pass of each group. Written by ReadMeasurementGroup, and by the dynamic
/// Tmin demo while it runs.
struct MeasurementSet {
  std::array<float, 4> Temperature{};             ///< degrees C: Local, Remote1, Remote2, Remote3
  std::array<std::int32_t, 8> TachRpm{};          ///< tach 1 to 8; 0 means no reading
  std::array<std::int16_t, 4> PwmPercent{};       ///< PWM1 to PWM4
  std::array<float, kVoltageChannels> Voltage{};  ///< volts, two decimals
  std::array<float, 2> ThermPercent{};            ///< THERM1, THERM2 on-time
  std::array<std::int16_t, 4> PolledTmin{};       ///< degrees C, same order as Temperature
  std::array<std::int16_t, 3> PolledOpPoint{};    ///< degrees C; 1 Remote1, 2 Remote2
  std::array<std::int16_t, 3> PolledHighLimit{};  ///< as PolledOpPoint
  std::array<std::int16_t, 3> PolledLowLimit{};   ///< as PolledOpPoint
  std::array<std::uint32_t, 7> Reads{};           ///< number of good reads of groups 1 to 6; 0 is not in use
};

/// A value that can be logged. `Available` and `Selected` are 1.0 for yes, 0.0 for no.
struct LogChannel {
  float Value = 0;
  float Available = 0;
  float Selected = 0;
};

inline constexpr int kLogChannels = 45;

/// A voltage channel's name, register and nominal volts.
struct VoltageInput {
  const char* name;
  std::uint8_t reg;
  double scale;
};

// The only place that pairs the last two channels with their registers. They are read in register order, although the
// pins, the limits and the log's captions pair them the other way round.
inline constexpr std::array<VoltageInput, kVoltageChannels> kVoltageInputs{{
    {"12V1", "+12V1 Voltage"_reg, 12},          {"12V2", "+12V2 Voltage"_reg, 12},
    {"3.3V(P13)", "+3.3V Voltage"_reg, 3.3},    {"2.5V(P15)", "Pin 15 Voltage"_reg, 2.5},
    {"1.8V(P15)", "Pin 15 Voltage"_reg, 1.8},   {"1.25V(P20)", "Pin 19 Voltage"_reg, 1.25},
    {"0.9V(P20)", "Pin 19 Voltage"_reg, 0.9},   {"5V(P21)", "+5V Voltage"_reg, 5},
    {"12V3", "+12V3 Voltage"_reg, 12},          {"Vccp1", "Pin 23 Voltage"_reg, 2.13},
    {"1.5V(P23)", "Pin 23 Voltage"_reg, 1.5},   {"1.8V(P23)", "Pin 23 Voltage"_reg, 1.8},
    {"2.5V(P23)", "Pin 23 Voltage"_reg, 2.5},   {"Vccp2", "Pin 24 Voltage"_reg, 2.13},
    {"1.5V(P24)", "Pin 24 Voltage"_reg, 1.5},   {"1.8V(P24)", "Pin 24 Voltage"_reg, 1.8},
    {"2.5V(P24)", "Pin 24 Voltage"_reg, 2.5},   {"1.2V(P25)", "Pin 25 Voltage"_reg, 1.2},
    {"3.3V(P25)", "Pin 25 Voltage"_reg, 3.3},   {"1.2V(P26)", "Pin 26 Voltage"_reg, 1.2},
    {"VBatt", "Pin 26 Voltage"_reg, 4},         {"1.5V1", "+1.5V1 (3GIO) Voltage"_reg, 1.5},
    {"1.5V2", "+1.5V2 (ICH) Voltage"_reg, 1.5},
}};

/// Reads one group from the chip in use: 1 temperatures, 2 fan speeds, 3 PWM duty, 4 voltages, 5 THERM on-time, 6 the
/// state of dynamic Tmin. Any other number does nothing. When the link's library reports a failed transfer, the group
/// becomes stale and keeps its old values, also in the log's table.
void ReadMeasurementGroup(std::int16_t group);

}  // namespace zth::chip

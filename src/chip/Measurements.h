#pragma once

#include <array>
#include <cstdint>

#include "chip/PinModel.h"

/// The chip's live values in engineering units, read in six groups.
namespace zth::chip {

/// Latest values; zeros until the first pass of each group. Written by ReadMeasurementGroup, and while the dynamic Tmin
/// demo runs by its adjustments.
struct MeasurementSet {
  std::array<float, 4> Temperature{};             ///< degrees C: Local, Remote1, Remote2, Remote3
  std::array<std::int32_t, 8> TachRpm{};          ///< tach 1 to 8, 0 for no reading
  std::array<std::int16_t, 4> PwmPercent{};       ///< PWM1 to PWM4
  std::array<float, kVoltageChannels> Voltage{};  ///< volts, two decimals
  std::array<float, 2> ThermPercent{};            ///< THERM1, THERM2 on-time
  std::array<std::int16_t, 4> PolledTmin{};       ///< degrees C, in the order of Temperature
  std::array<std::int16_t, 3> PolledOpPoint{};    ///< degrees C; 1 Remote1, 2 Remote2
  std::array<std::int16_t, 3> PolledHighLimit{};  ///< likewise
  std::array<std::int16_t, 3> PolledLowLimit{};   ///< likewise
  std::array<std::uint32_t, 7> Reads{};           ///< how often group 1 to 6 has been read; 0 is not in use
};

extern MeasurementSet Measurements;

/// One value that can be logged. `Available` and `Selected` are 1.0 for yes, 0.0 for no.
struct LogChannel {
  float Value = 0;
  float Available = 0;
  float Selected = 0;
};

inline constexpr int kLogChannels = 45;

/// 0-3 temperatures, 4-11 tachs, 12-15 PWMs, 16-38 voltages, 39-42 Tmin, 43-44 operating points of Remote1 and Remote2.
extern std::array<LogChannel, kLogChannels> LogChannelTable;

/// The name, the register and the nominal volts of a voltage channel.
struct VoltageInput {
  const char* name;
  std::uint8_t reg;
  double scale;
};

// The pairing of the last two channels with 0x94 and 0x95 stands here and nowhere else: they are read in the order of
// the registers, although the pins, the limits and the log's captions pair them the other way round.
inline constexpr std::array<VoltageInput, kVoltageChannels> kVoltageInputs{{
    {"12V1", 0xA3, 12},       {"12V2", 0xA5, 12},         {"3.3V(P13)", 0x96, 3.3}, {"2.5V(P15)", 0x8B, 2.5},
    {"1.8V(P15)", 0x8B, 1.8}, {"1.25V(P20)", 0x8F, 1.25}, {"0.9V(P20)", 0x8F, 0.9}, {"5V(P21)", 0xA7, 5},
    {"12V3", 0xA9, 12},       {"Vccp1", 0x90, 2.13},      {"1.5V(P23)", 0x90, 1.5}, {"1.8V(P23)", 0x90, 1.8},
    {"2.5V(P23)", 0x90, 2.5}, {"Vccp2", 0x91, 2.13},      {"1.5V(P24)", 0x91, 1.5}, {"1.8V(P24)", 0x91, 1.8},
    {"2.5V(P24)", 0x91, 2.5}, {"1.2V(P25)", 0x92, 1.2},   {"3.3V(P25)", 0x92, 3.3}, {"1.2V(P26)", 0x93, 1.2},
    {"VBatt", 0x93, 4},       {"1.5V1", 0x94, 1.5},       {"1.5V2", 0x95, 1.5},
}};

/// Tach clock in counts a second.
extern std::int32_t TachClock;

/// Register 0x3F as read at the start, and the chip that it was read from.
extern std::int16_t ChipRevision;
extern link::ChipId ChipRevisionFrom;

/// Gate and period of the measurement job.
extern bool PollEnabled;
extern std::int32_t PollPeriodMs;

/// Reads one group from the chip in use: 1 temperatures, 2 fan speeds, 3 PWM duty, 4 voltages, 5 THERM on-time, 6 the
/// state of dynamic Tmin. Any other number does nothing.
void ReadMeasurementGroup(std::int16_t group);

/// Puts all variables of this room back to the state of a program that has not started.
void ResetChip();

}  // namespace zth::chip

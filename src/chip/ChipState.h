#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "chip/Freshness.h"
#include "chip/Measurements.h"
#include "chip/PinModel.h"
#include "chip/PwmModes.h"
#include "chip/RegMapStuff.h"
#include "link/ChipId.h"

/// What the program knows about the chip, for all windows. For the user-interface thread only.
namespace zth::chip {

/// `Model = {}` is the state before the program has started.
struct ChipState {
  /// The table of registers, filled by InitRegisterTable.
  std::array<RegisterEntry, kRegisterCount> RegisterTable;

  /// The latest values, and which of them are stale.
  MeasurementSet Measurements;
  FreshnessState Freshness;

  /// 0-3 temperatures, 4-11 tachs, 12-15 PWMs, 16-38 voltages, 39-42 Tmin, 43-44 operating points of Remote1 and
  /// Remote2.
  std::array<LogChannel, kLogChannels> LogChannelTable;

  /// Tach clock in counts per second.
  std::int32_t TachClock = 0;

  /// "Revision Number" as read at the start, and the chip it was read from.
  std::int16_t ChipRevision = 0;
  link::ChipId ChipRevisionFrom;

  /// The measurement job's on/off switch and period.
  bool PollEnabled = true;
  std::int32_t PollPeriodMs = 100;

  /// The pin functions, and the chip they were read from.
  PinFunctionFlags PinFunctions;
  link::ChipId PinFunctionsFrom;

  /// The voltage channels that the pins provide; at most one for each pin.
  std::array<bool, kVoltageChannels> VoltagePresent{};

  /// Short names of the voltage channels, such as "12V1"; filled by InitVoltageNames.
  std::array<std::string, kVoltageChannels> VoltageName;

  /// The requested state of the switches, true for closed: 0 to 7 are bits 0 to 7 of device 0, 8 to 15 of device 1.
  std::array<bool, 16> BoardSwitch{};

  /// True if the behaviour field of PWM 1 to 4 (at index 1 to 4) is set to manual, and the chip each was read from.
  /// Index 0 is unused.
  std::array<bool, kPwmChannels + 1> PwmManual{};
  std::array<link::ChipId, kPwmChannels + 1> PwmManualFrom{};
};

extern ChipState Model;

}  // namespace zth::chip

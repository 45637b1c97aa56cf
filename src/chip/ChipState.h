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

/// What the program knows of the chip, for all windows. All of it belongs to the user-interface thread.
namespace zth::chip {

/// `Model = {}` is the state of a program that has not started.
struct ChipState {
  /// The catalogue of registers; filled by InitRegisterTable.
  std::array<RegisterEntry, kRegisterCount> RegisterTable;

  /// The latest values, and which of them are stale.
  MeasurementSet Measurements;
  FreshnessState Freshness;

  /// 0-3 temperatures, 4-11 tachs, 12-15 PWMs, 16-38 voltages, 39-42 Tmin, 43-44 operating points of Remote1 and
  /// Remote2.
  std::array<LogChannel, kLogChannels> LogChannelTable;

  /// Tach clock in counts a second.
  std::int32_t TachClock = 0;

  /// "Revision Number" as read at the start, and the chip that it was read from.
  std::int16_t ChipRevision = 0;
  link::ChipId ChipRevisionFrom;

  /// Gate and period of the measurement job.
  bool PollEnabled = true;
  std::int32_t PollPeriodMs = 100;

  /// What the pins do, and the chip that it was read from.
  PinFunctionFlags PinFunctions;
  link::ChipId PinFunctionsFrom;

  /// Which voltage channels the pins provide; at most one of each pin.
  std::array<bool, kVoltageChannels> VoltagePresent{};

  /// Short names of the voltage channels, as "12V1"; filled by InitVoltageNames.
  std::array<std::string, kVoltageChannels> VoltageName;

  /// Wanted state of the switches, true for closed: 0 to 7 are bits 0 to 7 of device 0, 8 to 15 of device 1.
  std::array<bool, 16> BoardSwitch{};

  /// PWM 1 to 4 at index 1 to 4: its behaviour field says manual; and the chip that each was read from. Index 0 is not
  /// in use.
  std::array<bool, kPwmChannels + 1> PwmManual{};
  std::array<link::ChipId, kPwmChannels + 1> PwmManualFrom{};
};

extern ChipState Model;

}  // namespace zth::chip

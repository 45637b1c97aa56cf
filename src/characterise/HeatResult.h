#pragma once

#include <optional>
#include <string>
#include <vector>

#include "characterise/FanResult.h"
#include "chip/RegisterNames.h"

/// What was found out about heat and about the chip's own control. Units as in Settings.h.
namespace zth::characterise {

/// The heater's step at one duty of the fans.
struct HeatStep {
  double duty = 0;
  double begin = 0;                      ///< of the heater's step
  double end = 0;                        ///< of the measurement
  Estimate before{};                     ///< temperature with the heater off
  Estimate rise{};                       ///< of the temperature, K, once settled, by the fit
  Estimate gain{};                       ///< K per percent of the heater
  Estimate timeConstant{};               ///< s
  std::optional<Estimate> resistance{};  ///< K/W, if the heater's power is known
  double residual = 0;                   ///< root of the mean square of what the fit leaves, K
  bool good = false;                     ///< false: the temperature did not rise enough, or the fit failed
  std::string words{};                   ///< why not; empty if good
};

/// One field of a register with its value.
struct FieldValue {
  std::string name{};  ///< as in the register table: "PWM1 Config.Bhvr", "Remote 1 Tmin"
  chip::RegisterField field{};
  unsigned value = 0;
  std::string words{};  ///< the value for people: "47 °C", "Remote1"
};

/// A point of the predicted behaviour.
struct CurvePoint {
  double temperature = 0;
  double duty = 0;      ///< the chip's duty at that temperature under the proposal
  double balanced = 0;  ///< the drive of the heater, percent, that this duty balances at that temperature
};

struct Proposal {
  bool possible = false;
  std::string words{};  ///< for people: what it does, or why there is none
  int tmin = 0;         ///< degrees C
  int trange = 0;       ///< the field's value, 0 to 15: chip::kTrangeItems
  double minDuty = 0;
  double predicted = 0;              ///< temperature at rest with the heater at `Settings::heaterStep`
  double predictedDuty = 0;          ///< and the duty
  std::vector<FieldValue> fields{};  ///< to be written in this order
  std::vector<CurvePoint> curve{};
};

struct HeatResult {
  int heater = 1;
  int channel = 1;  ///< the temperature: 1 Remote1, 2 Remote2
  std::vector<HeatStep> steps{};
  /// 1 / gain = base + slope * duty, percent per K, by least squares; empty with fewer than two good steps.
  std::optional<Estimate> conductanceBase{};
  std::optional<Estimate> conductanceSlope{};
  /// Temperature with the heater off = air + standing * gain: the air, and what warms the sensor besides the heater, as
  /// percent of the heater.
  std::optional<Estimate> air{};
  std::optional<Estimate> standing{};
  Proposal proposal{};
};

/// A part of the heater's profile under the chip's own control.
struct ProfileStep {
  double heater = 0;
  double begin = 0;
  double end = 0;
  double finalTemperature = 0;       ///< mean of the last quarter
  double finalDuty = 0;              ///< likewise, mean over the PWMs
  double overshoot = 0;              ///< K beyond the final temperature, in the direction of the change
  std::optional<double> settling{};  ///< s until within 0.5 K of it for good; empty: not within this part
  double temperatureNoise = 0;       ///< standard deviation in the last quarter, K
  double dutyNoise = 0;              ///< percent
  double speedNoise = 0;             ///< of the first turning tach, rpm
};

struct ControllerResult {
  int channel = 1;
  bool usedProposal = false;
  std::string words{};  ///< what the chip was set to, or why nothing was measured
  std::vector<ProfileStep> steps{};
};

}  // namespace zth::characterise

#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

/// What is asked of a run of Characterise. Numbers of PWMs, tachs and heaters begin at 1; duties and heaters are in
/// percent, temperatures in degrees C, times in seconds. Texts are UTF-8.
namespace zth::characterise {

inline constexpr int kPwms = 4;
inline constexpr int kTachs = 8;
inline constexpr int kTemperatures = 4;  ///< Local, Remote1, Remote2, Remote3: chip::kTemperatureNames
inline constexpr int kHeaters = 2;       ///< heater 1 warms Remote1, heater 2 Remote2

/// The parts of a run, in their order.
enum class Phase : std::uint8_t { Prepare, Fans, Heat, Controller, PutBack };

/// What is asked of a run. `CheckSettings` tells whether it can be done.
struct Settings {
  bool fans = true;
  bool heat = false;        ///< over USB only
  bool controller = false;  ///< over USB only

  std::vector<int> pwms{1, 2, 3, 4};  ///< each once
  /// Tachs of PWM 1 to 4. On the board, fans n and n + 4 are on PWM n.
  std::array<std::vector<int>, kPwms> tachs{{{1, 5}, {2, 6}, {3, 7}, {4, 8}}};
  /// Tach pulses of the fans per revolution, 1 to 4; 0: as the chip is set.
  int pulses = 0;

  int dutyStep = 5;        ///< fans: percent, 1 to 50
  double settleMost = 30;  ///< fans: longest wait for one speed, 5 to 120 s

  int heater = 1;                            ///< 1 or 2
  double heaterStep = 60;                    ///< heat, controller: drive in percent, 10 to 100
  double heaterWatts = 0;                    ///< of the heater at 100 %; 0: not known, and there are no results in K/W
  std::vector<int> heatDuties{100, 60, 35};  ///< percent; at least two for a fit over the duty
  double heatMost = 240;                     ///< longest wait for one temperature, 30 to 1800 s
  double keep = 60;                          ///< the temperature that the proposal keeps, 30 to 100
  int minDuty = 0;                           ///< of the proposal, percent; 0: from the duty of starting, or 30

  /// The controller's run uses the proposal of the heat's run, if there is one; else what the chip is set to.
  bool tryProposal = true;
  double profileHold = 120;  ///< controller: length of each part of the heater's profile, 20 to 1800 s

  double temperatureLimit = 85;  ///< any temperature above it ends the run, 30 to 120
  double timeLimit = 3600;       ///< of the whole run, 60 to 86400 s
};

/// Why a run cannot be done as asked, a sentence with its remedy; empty if it can. Makes no transfer.
std::string CheckSettings(const Settings& settings);

}  // namespace zth::characterise

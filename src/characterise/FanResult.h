#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// What was found out about fans. Units as in Settings.h.
namespace zth::characterise {

/// A value with its standard uncertainty.
struct Estimate {
  double value = 0;
  double sigma = 0;

  bool operator==(const Estimate&) const = default;
};

enum class Direction : std::uint8_t { Down, Up };

/// A tach at one duty.
struct SpeedAtDuty {
  Direction direction = Direction::Down;
  double duty = 0;
  double rpm = 0;       ///< mean once settled; 0: stands still
  double noise = 0;     ///< standard deviation of the readings, rpm
  double seconds = 0;   ///< from the change of the duty until it had settled
  bool settled = true;  ///< false: the longest wait was over first
};

enum class TachState : std::uint8_t {
  Good,
  Dead,           ///< never a speed: no fan, blocked, not connected, or its pin is no tach
  Noisy,          ///< the readings scatter by more than 3 %
  DoesNotFollow,  ///< turns, but hardly changes with the duty
  NeverStops,     ///< good, but turns at every duty: no duty of starting and stalling
};

/// A tach's result. All but `tach`, `state` and `words` are empty or 0 for a dead one.
struct TachResult {
  int tach = 0;
  TachState state = TachState::Dead;
  std::string words{};                     ///< the state for people, a sentence
  std::vector<SpeedAtDuty> speeds{};       ///< down from 100 %, then up, in the order measured
  std::optional<double> stallDuty{};       ///< the highest duty downwards at which it stands still
  std::optional<double> startDuty{};       ///< the lowest duty upwards at which it turns
  std::optional<double> hysteresis{};      ///< start - stall
  double topRpm = 0;                       ///< at 100 %
  double lowestRpm = 0;                    ///< the slowest settled speed
  std::optional<Estimate> slope{};         ///< rpm per percent of duty: straight line through the speeds while turning
  std::optional<Estimate> intercept{};     ///< rpm at 0 %
  double linearity = 0;                    ///< largest distance from that line, percent of topRpm
  double noise = 0;                        ///< percent, median over the settled speeds
  std::optional<double> spinUp{};          ///< from standstill to 90 % of the top speed at full duty, s
  std::optional<Estimate> timeConstant{};  ///< of that rise, s
};

struct FanResult {
  int pwm = 0;
  std::string words{};  ///< what is wrong with the PWM as a whole; empty: nothing
  std::vector<TachResult> tachs{};
};

}  // namespace zth::characterise

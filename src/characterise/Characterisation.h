#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "characterise/FanResult.h"
#include "characterise/HeatResult.h"
#include "characterise/Settings.h"

/// The data of one run of Characterise: what was asked, measured, computed and left behind. Plain values, without a
/// transfer. Units as in Settings.h; times in seconds since the start of the run.
namespace zth::characterise {

/// One sample. A tach that is not measured has a speed of 0.
struct Point {
  double time = 0;
  Phase phase = Phase::Prepare;
  std::array<double, kPwms> duty{};
  std::array<int, kTachs> rpm{};
  std::array<double, kTemperatures> temperature{};
  std::array<double, kHeaters> heater{};  ///< as set by the run
};

enum class Ending : std::uint8_t {
  Running,
  Done,
  Cancelled,
  TemperatureLimit,
  TimeLimit,
  TransferFailed,  ///< a write failed
  NoReadings,      ///< no good reading for some seconds
  Refused,         ///< nothing was begun: `endWords` says why
  OtherChip,       ///< another chip was selected
  Closed,          ///< the window or the program was closed
};

/// What became of a register or a heater that the run has set.
enum class Fate : std::uint8_t {
  InUse,        ///< the run is still going on
  Restored,     ///< as before, read back
  Off,          ///< a heater, off, read back
  Foreign,      ///< something else has changed it since; left alone
  NotVerified,  ///< written, but it reads something else
  Unknown,      ///< the link failed: it may still hold what the run had set
};

struct PartState {
  std::string name{};  ///< "PWM1 Config (21h)", "Heater 1"
  std::string before{};
  std::string set{};  ///< what the run set last
  Fate fate = Fate::InUse;
  std::string words{};  ///< the fate for people: "as before, verified"
};

/// A register that differs from its default.
struct Departure {
  std::uint8_t reg = 0;
  std::string name{};
  std::uint8_t value = 0;
  std::uint8_t standard = 0;
};

struct Characterisation {
  Settings settings{};
  std::string board{};    ///< as the link's library names it; may be empty
  std::string chip{};     ///< "58h on USB"
  std::string device{};   ///< revision and identification of the chip
  std::string version{};  ///< of this software
  std::string began{};    ///< local time, "2026-03-01 10:20:30"
  std::string ended{};    ///< empty while running
  double seconds = 0;     ///< since the start

  std::vector<Point> points{};
  std::vector<FanResult> fans{};
  std::optional<HeatResult> heat{};
  std::optional<ControllerResult> controller{};

  Ending ending = Ending::Running;
  std::string endWords{};               ///< for people, a sentence
  bool boardAsFound = false;            ///< all parts are as before, or heaters off, and verified
  std::vector<PartState> parts{};       ///< all that the run has set, in the order of the first writes
  std::vector<Departure> departures{};  ///< read before the run changes anything
  std::vector<std::string> remarks{};   ///< for people, sentences
};

}  // namespace zth::characterise

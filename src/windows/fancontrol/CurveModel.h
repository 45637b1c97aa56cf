#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "chip/ChannelNames.h"
#include "chip/PwmModes.h"

/// The transfer curve of the chip's automatic fan control, duty in percent against temperature in degrees C: what the
/// texts of the controls come to. No widgets, no chip.
namespace zth::windows {

/// The texts of the controls, and the Tmin that the chip reports.
struct CurveTexts {
  struct Pwm {
    std::string control;  ///< item of chip::kBehaviourNames
    std::string minPwm;   ///< percent
    bool minSpeed = false;
  };
  struct Channel {
    std::string tmin;
    std::string trange;  ///< item of kTrangeItems
    std::string tminHyst;
    std::string th1;
    std::string th2;
  };
  std::string maxPwm;  ///< percent
  bool thermFS1 = false;
  bool thermFS2 = false;
  std::array<Pwm, chip::kPwmChannels> pwms;
  std::array<Channel, chip::kTemperatures> channels;           ///< Local, Remote1, Remote2, Remote3
  std::array<std::int16_t, chip::kTemperatures> polledTmin{};  ///< degrees C, in the same order
};

/// The items of the lists of Trange; an item's position is the value of its register field.
extern const std::array<const char*, 16> kTrangeItems;

/// The position of the first item that reads `text`; -1 when none does.
template <std::size_t kCount>
int ItemPosition(const std::array<const char*, kCount>& items, const std::string& text) {
  for (std::size_t i = 0; i < kCount; ++i) {
    if (text == items[i]) return static_cast<int>(i);
  }
  return -1;
}

/// A temperature that drives a PWM; whole degrees.
struct CurveSource {
  std::int16_t Channel = 0;  ///< 1 Local, 2 Remote1, 3 Remote2, 4 Remote3, 0 none
  std::string Name;          ///< the channel's word, empty for none
  std::int16_t Tmin = 0;
  std::int16_t TminHyst = 0;
  std::int16_t Trange = 0;  ///< degrees over which the duty rises by 64 percent
  std::int16_t Therm1Limit = 0;
  std::int16_t Therm2Limit = 0;
};

struct PwmCurve {
  std::int16_t SourceCount = 0;  ///< 0, 1, 2 or 4
  std::array<CurveSource, chip::kTemperatures> Sources;
  std::int16_t MinDuty = 0;  ///< percent
  bool AlwaysOn = false;
};

struct CurveModel {
  std::int16_t MaxDuty = 0;  ///< percent
  bool UseTherm1 = false;
  bool UseTherm2 = false;
  std::array<PwmCurve, chip::kPwmChannels> Pwm;
};

/// The model of those texts. A number with a fraction counts as rounded half to even, one beyond 16 bits as the nearer
/// end. Tmin of Remote1 and Remote2 is the polled one, since the chip may move it by itself.
CurveModel BuildCurveModel(const CurveTexts& texts);

/// What EffectiveThermLimit gives when no THERM option is on.
inline constexpr int kNoThermLimit = 1000;

/// The temperature at which the fan goes to full speed.
int EffectiveThermLimit(const CurveModel& model, int pwm, int source);

/// Degrees from Tmin to where the line meets MaxDuty; 0 when MaxDuty is not above MinDuty.
float RampWidth(const CurveModel& model, int pwm, int source);

/// The line's duty at the THERM limit; MaxDuty when that is not above MinDuty.
float DutyAtThermLimit(const CurveModel& model, int pwm, int source);

struct CurvePoint {
  int x = 0;  ///< degrees C
  int y = 0;  ///< percent

  bool operator==(const CurvePoint&) const = default;
};

using DrawPath = std::vector<CurvePoint>;

/// What a source's curve is drawn by.
struct CurvePaths {
  DrawPath main;        ///< 4 to 7 points
  DrawPath hysteresis;  ///< the way down past Tmin: 3 points or none
};

/// The chart's X range as it is now.
struct ChartRange {
  double xSpan = 0;
  double xEnd = 0;
};

/// The paths of one source. Where MaxDuty is not above MinDuty, the model's MinDuty becomes MaxDuty.
CurvePaths BuildCurvePaths(CurveModel& model, int pwm, int source, const ChartRange& range);

/// The points that are drawn of a path: of the main path those beyond `xEnd` are left out, of the hysteresis path they
/// are drawn at the edge.
DrawPath VisibleMain(const DrawPath& path, double xEnd);
DrawPath VisibleHysteresis(const DrawPath& path, double xEnd);

}  // namespace zth::windows

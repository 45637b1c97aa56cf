#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "chip/ChannelNames.h"
#include "chip/FanCurve.h"
#include "chip/PwmModes.h"

/// The transfer curve of the chip's automatic fan control, duty in percent against temperature in degrees C, computed
/// from the texts of the controls. No widgets, no chip access.
namespace zth::windows {

/// The texts of the controls, and the Tmin that the chip reports.
struct CurveTexts {
  struct Pwm {
    std::string control;  ///< item of chip::kBehaviourNames
    std::string minPwm;   ///< percent
    bool minSpeed = false;
    unsigned minByte = 0;  ///< the chip's, 0 to 255: the text is rounded
  };
  struct Channel {
    std::string tmin;
    std::string trange;  ///< item of kTrangeItems
    std::string tminHyst;
    std::string th1;
    std::string th2;
  };
  std::string maxPwm;    ///< percent
  unsigned maxByte = 0;  ///< as minByte
  bool thermFS1 = false;
  bool thermFS2 = false;
  std::array<Pwm, chip::kPwmChannels> pwms;
  std::array<Channel, chip::kTemperatures> channels;           ///< Local, Remote1, Remote2, Remote3
  std::array<std::int16_t, chip::kTemperatures> polledTmin{};  ///< degrees C, in the same order as `channels`
};

using chip::kTrangeItems;

/// The position of the first item equal to `text`; -1 if there is none.
template <std::size_t kCount>
int ItemPosition(const std::array<const char*, kCount>& items, const std::string& text) {
  for (std::size_t i = 0; i < kCount; ++i) {
    if (text == items[i]) return static_cast<int>(i);
  }
  return -1;
}

/// A temperature that controls a PWM; whole degrees.
struct CurveSource {
  std::int16_t Channel = 0;  ///< 1 Local, 2 Remote1, 3 Remote2, 4 Remote3, 0 none
  std::string Name;          ///< short name of the channel, empty for none
  std::int16_t Tmin = 0;
  std::int16_t TminHyst = 0;
  std::int16_t Trange = 0;  ///< degrees over which the duty rises by 64 percent
  int TrangeField = 0;      ///< position in kTrangeItems
  std::int16_t Therm1Limit = 0;
  std::int16_t Therm2Limit = 0;
};

struct PwmCurve {
  std::int16_t SourceCount = 0;  ///< 0, 1, 2 or 4
  std::array<CurveSource, chip::kTemperatures> Sources;
  std::int16_t MinDuty = 0;  ///< percent
  int MinByte = 0;           ///< the chip's, 0 to 255
  bool AlwaysOn = false;
};

struct CurveModel {
  std::int16_t MaxDuty = 0;  ///< percent
  int MaxByte = 0;           ///< the chip's, 0 to 255
  bool UseTherm1 = false;
  bool UseTherm2 = false;
  std::array<PwmCurve, chip::kPwmChannels> Pwm;
};

/// Builds the model from the texts. Fractions are rounded half to even, and numbers beyond 16 bits are clamped. Tmin of
/// Remote1 and Remote2 is the polled value, since the chip may change it itself.
CurveModel BuildCurveModel(const CurveTexts& texts);

/// The largest distance, in steps of 1 / 255 of the duty, between the drawn line for an item of kTrangeItems and the
/// chip's duty, on the way up from `minDuty` to `maxDuty` percent. They differ because the line uses whole degrees. 0
/// for an item of whole degrees.
int DrawnApart(const std::string& trange, int minDuty, int maxDuty);

/// Returned by EffectiveThermLimit if no THERM option is on.
inline constexpr int kNoThermLimit = 1000;

/// The temperature at which the fan runs at full speed.
int EffectiveThermLimit(const CurveModel& model, int pwm, int source);

/// Degrees from Tmin to the point where the line reaches MaxDuty; 0 if MaxDuty is not above MinDuty.
float RampWidth(const CurveModel& model, int pwm, int source);

/// The line's duty at the THERM limit; MaxDuty if that is not above MinDuty.
float DutyAtThermLimit(const CurveModel& model, int pwm, int source);

struct CurvePoint {
  int x = 0;  ///< degrees C
  int y = 0;  ///< percent

  bool operator==(const CurvePoint&) const = default;
};

using DrawPath = std::vector<CurvePoint>;

/// The paths for drawing a source's curve.
struct CurvePaths {
  DrawPath main;        ///< 4 to 7 points
  DrawPath hysteresis;  ///< the way down past Tmin: 3 points or none
};

/// The chart's current X range.
struct ChartRange {
  double xSpan = 0;
  double xEnd = 0;
};

/// The paths of one source. If MaxDuty is not above MinDuty, the model's MinDuty is set to MaxDuty.
CurvePaths BuildCurvePaths(CurveModel& model, int pwm, int source, const ChartRange& range);

/// The points of a path to draw: points of the main path beyond `xEnd` are left out, those of the hysteresis path are
/// moved to the edge.
DrawPath VisibleMain(const DrawPath& path, double xEnd);
DrawPath VisibleHysteresis(const DrawPath& path, double xEnd);

}  // namespace zth::windows

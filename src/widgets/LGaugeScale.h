#pragma once

#include <functional>
#include <string>
#include <vector>

/// The arithmetic of a dial: positions of values, ticks and numbers. No drawing, no widgets.
namespace zth::widgets {

/// Angles are in degrees clockwise from twelve o'clock. The scale runs from -kDialHalfSweep to +kDialHalfSweep, with a
/// gap below for the caption.
inline constexpr double kDialHalfSweep = 135;

/// The shorter turn from one angle to another, -180 (excluded) to 180.
double TurnBetween(double fromDegrees, double toDegrees);

/// A linear scale bent around a dial. If its ends are equal or not finite, all values are at its start. If the minimum
/// is above the maximum, the scale runs backwards.
class DialScale {
 public:
  DialScale(double minimum, double maximum) : minimum_(minimum), maximum_(maximum) {}

  /// The position of `value`, 0 to 1; values outside the scale are clamped to its ends, NaN to the start.
  double Fraction(double value) const;
  double Angle(double value) const;
  /// The value at an angle from -kDialHalfSweep to kDialHalfSweep; angles outside are clamped. Rounded to Resolution(),
  /// so that the value shown is the value reported.
  double ValueAt(double angle) const;

  /// `value` clamped to the scale and rounded to Resolution().
  double Settle(double value) const;
  /// A power of ten finer than the user can set by hand: at most a thousandth of the span.
  double Resolution() const;
  /// A round step of at least a 256th of the span, so that one key press changes a limit stored in a byte.
  double KeyStep() const;
  /// `value` with as many decimals as Resolution().
  std::string Text(double value) const;

 private:
  bool Usable() const;

  double minimum_;
  double maximum_;
};

struct DialTick {
  double value = 0;
  double angle = 0;
  bool major = false;
  std::string text;   ///< of a major tick; empty on minor ticks
  double labelX = 0;  ///< centre of the text relative to the dial's centre, y downwards
  double labelY = 0;
};

struct TextSize {
  double width = 0;
  double height = 0;
};

/// The ticks of a scale from `minimum` to `maximum`, ascending, at round numbers: the finest division whose numbers do
/// not crowd each other. `measure` returns a number's size. The numbers' boxes touch a circle of `labelRadius` from
/// inside, and the ticks are at `tickRadius`, both in the units of `measure`. An invalid scale has no ticks.
std::vector<DialTick> DialTicks(double minimum, double maximum, double tickRadius, double labelRadius,
                                const std::function<TextSize(const std::string&)>& measure);

}  // namespace zth::widgets

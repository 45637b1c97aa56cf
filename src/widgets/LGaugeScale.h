#pragma once

#include <functional>
#include <string>
#include <vector>

/// The arithmetic of a dial: where a value stands, which ticks and numbers fit. No drawing, no widgets.
namespace zth::widgets {

/// Angles are degrees clockwise from twelve o'clock; the scale runs from -kDialHalfSweep to +kDialHalfSweep and leaves
/// a gap below for the caption.
inline constexpr double kDialHalfSweep = 135;

/// The turn from one angle to another by the shorter way, -180 (excluded) to 180.
double TurnBetween(double fromDegrees, double toDegrees);

/// A linear scale bent round a dial. A scale whose ends coincide or are not finite holds everything at its start; one
/// with the ends the wrong way round runs backwards.
class DialScale {
 public:
  DialScale(double minimum, double maximum) : minimum_(minimum), maximum_(maximum) {}

  /// Where `value` stands, 0 to 1; values outside the scale park at its ends, NaN at the start.
  double Fraction(double value) const;
  double Angle(double value) const;
  /// The value at an angle of -kDialHalfSweep to kDialHalfSweep; angles outside give the nearer end. Rounded to
  /// Resolution(), so that what is shown is what is reported.
  double ValueAt(double angle) const;

  /// `value` limited to the scale and rounded to Resolution().
  double Settle(double value) const;
  /// A power of ten that no hand can set more finely: at most a thousandth of the span.
  double Resolution() const;
  /// A round step of at least a 256th of the span, so that one key press moves a limit that is kept in a byte.
  double KeyStep() const;
  /// `value` with as many decimals as Resolution() has.
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
  std::string text;   ///< of a major tick; empty on others
  double labelX = 0;  ///< centre of the text, from the dial's centre, y downwards
  double labelY = 0;
};

struct TextSize {
  double width = 0;
  double height = 0;
};

/// The ticks of a scale from `minimum` to `maximum`, ascending, at round numbers: the finest division whose numbers
/// keep clear of each other. `measure` gives a number's size; the numbers' boxes touch a circle of `labelRadius` from
/// inside, the ticks stand at `tickRadius`, both in the units of `measure`. A scale that is no scale has none.
std::vector<DialTick> DialTicks(double minimum, double maximum, double tickRadius, double labelRadius,
                                const std::function<TextSize(const std::string&)>& measure);

}  // namespace zth::widgets

#pragma once

#include <vector>

#include <QString>

namespace zth::widgets {

/// A mark on an axis.
struct Tick {
  double value = 0;
  QString text;
};

/// Marks at round values (1, 2 or 5 times a power of ten) from `low` to `high`, ends included, at most `most` of them
/// (at least 2) and as many as that allows. None when the range is empty or not finite.
std::vector<Tick> RoundTicks(double low, double high, int most);

/// The range cut into `divisions` equal parts, both ends included.
std::vector<Tick> EvenTicks(double low, double high, int divisions);

/// Marks for seconds: round values, from a minute on whole minutes or hours. Written as plain seconds within ten
/// minutes of 0, else as a clock shows them ("12:30", "1:05:00").
std::vector<Tick> TimeTicks(double low, double high, int most);

/// `value` with `decimals` places, without a sign on a zero.
QString PlainText(double value, int decimals);

/// How many decimals tell values apart that are `step` from each other; 0 to 9.
int DecimalsFor(double step);

/// Seconds as a cursor shows them: "12.35 s", "-3:05.2", "2:14:07.5". `resolution` is what a pixel comes to.
QString TimeText(double seconds, double resolution);

}  // namespace zth::widgets

#pragma once

#include <vector>

#include <QString>

#include "widgets/StripDayTime.h"

namespace zth::widgets {

/// A mark on an axis.
struct Tick {
  double value = 0;
  QString text;
};

/// Ticks at round values (1, 2 or 5 times a power of ten) from `low` to `high`, ends included: as many as fit into
/// `most`, but at least two, since a single number shows no scale. None if the range is empty or not finite.
std::vector<Tick> RoundTicks(double low, double high, int most);

/// The range cut into `divisions` equal parts, both ends included.
std::vector<Tick> EvenTicks(double low, double high, int divisions);

/// Ticks for seconds: round values, from a minute on whole minutes or hours. Shown as plain seconds within ten minutes
/// of 0, otherwise as clock time ("12:30", "1:05:00").
std::vector<Tick> TimeTicks(double low, double high, int most);

/// Ticks from x `low` to `high` at round times of day, as "14:05:30". `most` is as for RoundTicks.
std::vector<Tick> DayTicks(double low, double high, int most, const StripDayTime& times);

/// A local time's hours, minutes and seconds: "14:05:30.5". `resolution` is the seconds per pixel.
QString DayText(double local, double resolution);

/// `value` with `decimals` places; zero has no sign.
QString PlainText(double value, int decimals);

/// The number of decimals that distinguishes values `step` apart; 0 to 9.
int DecimalsFor(double step);

/// Seconds in a cursor's format: "12.35 s", "-3:05.2", "2:14:07.5". `resolution` is the seconds per pixel.
QString TimeText(double seconds, double resolution);

}  // namespace zth::widgets

#pragma once

#include <cstddef>
#include <vector>

#include <QDateTime>

namespace zth::widgets {

/// The time of day at each x of a time chart. Someone may set the wall clock, daylight saving time may begin, and the
/// monotonic clock stands still while the computer sleeps: so samples bring the time of day along, and an x has that of
/// the stretch between two such jumps that it lies in.
class StripDayTime {
 public:
  /// Part of an axis, and what added to its x gives the seconds since 1970 of the local time.
  struct Stretch {
    double low = 0;
    double high = 0;
    double offset = 0;
  };

  /// The sample at x was taken at `local`. Later calls must have a later x.
  void Note(double x, const QDateTime& local);
  void Clear() { starts_.clear(); }

  bool Known() const { return !starts_.empty(); }
  /// The number of stretches.
  std::size_t Count() const { return starts_.size(); }
  /// The stretches between two x, in order. Before the first sample its own counts, after the newest one the last.
  std::vector<Stretch> Within(double low, double high) const;
  /// Seconds since 1970 of the local time at x; 0 when nothing is known.
  double LocalAt(double x) const;

 private:
  struct Start {
    double x;
    double offset;
  };
  std::vector<Start> starts_;
};

}  // namespace zth::widgets

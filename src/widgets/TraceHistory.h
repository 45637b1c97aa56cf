#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <span>
#include <vector>

#include "widgets/Ring.h"

namespace zth::widgets {

/// The samples of one trace of a time chart, for at most a day: every recent sample, and summaries of older ones. A
/// summary keeps the smallest and the largest value of its stretch, so that no spike is lost. Appending takes constant
/// time, memory is bounded regardless of the running time, and drawing costs are proportional to the picture's width.
class TraceHistory {
 public:
  /// Data older than the newest sample by more than this are dropped, in units of x (seconds).
  static constexpr double kKept = 24.0 * 60 * 60;

  /// The range of a trace's values within one pixel column; lo is above hi if there are none.
  struct Column {
    float lo = std::numeric_limits<float>::infinity();
    float hi = -std::numeric_limits<float>::infinity();
    bool Empty() const { return !(lo <= hi); }
  };
  struct Point {
    double x = 0;
    double y = 0;
  };
  /// A cursor reading: one sample (lo and hi are equal), or a summary of older data. NaN for a lost value.
  struct Reading {
    double x = 0;
    double lo = 0;
    double hi = 0;
  };

  TraceHistory();

  /// Adds the newest sample. A sample whose x is not finite is ignored; an x before the newest one is raised to the
  /// newest. A y of NaN is a gap: the line ends there, and no summary draws across it.
  void Append(double x, double y);
  void Clear();

  bool Empty() const { return samples_.Empty(); }
  /// Counts all samples and clearings ever: the same number means that nothing has changed.
  std::uint64_t Revision() const { return revision_; }
  /// The newest sample; the history must not be empty.
  Point Newest() const { return {samples_.Back().x, samples_.Back().y}; }

  /// Fills columns of `width` along x: out[i] covers (first + i) * width up to the next. The columns are fixed to the x
  /// axis, not to a window's edge, so that a sliding window does not regroup the samples. Neighbouring samples are
  /// joined, even across empty columns. Returns the number of samples and summaries examined.
  std::size_t Columns(std::int64_t first, double width, std::span<Column> out) const;

  /// The sample or summary nearest to x; nothing if x is left of the oldest or right of the newest.
  std::optional<Reading> At(double x) const;

  /// Everything from x0 to x1, oldest first. For the recent past these are all samples, with NaN for a gap. For a
  /// summary they are its lowest value at its start and its highest at its end, with NaN between them when values were
  /// lost there.
  std::vector<Point> Points(double x0, double x1) const;

  /// The memory that the samples use.
  std::size_t Bytes() const;

 private:
  // The number of entries of one level in a summary of the next; also the number of entries that a column may hold
  // before the next level is used. With a smaller limit, wide summaries would spill into neighbouring columns.
  static constexpr unsigned kFan = 4;
  // The number of individual samples kept: 54 minutes at 50 ms.
  static constexpr std::size_t kSamples = 65536;
  // Summaries kept per level: kFan columns' worth of a chart 4096 pixels wide.
  static constexpr std::size_t kSummaries = 16384;
  static constexpr std::size_t kLevels = 8;

  struct Sample {
    double x, y;
    double First() const { return x; }
    double Last() const { return x; }
  };
  /// min is NaN when the stretch contains no number. first and span cover its numbers, if it has any.
  struct Summary {
    double first;
    float span;  ///< distance to the last one, never rounded down
    float min, max;
    bool broken;  ///< it has numbers, and values were lost among them or next to them
    double First() const { return first; }
    double Last() const { return first + static_cast<double>(span); }
    /// Merges the entry that follows.
    void Take(const Summary& entry);
  };
  static_assert(sizeof(Summary) == 24, "a day of all charts has its room");
  struct Level {
    Ring<Summary> closed{kSummaries};
    Summary open{};
    unsigned count = 0;  ///< number of entries of the level below in `open`
  };
  /// A run of entries of one level; level 0 holds the samples.
  struct Run {
    std::size_t level, begin, end;
  };
  class Filler;

  static Summary SummaryOf(const Sample& sample);
  std::size_t CountWithin(std::size_t level, double x0, double x1) const;
  Run RunWithin(std::size_t level, double x0, double x1) const;
  double OldestOf(std::size_t level) const;
  bool HoldsNone(std::size_t level) const;
  std::size_t RunsFor(double x0, double x1, std::size_t limit, std::array<Run, kLevels + 1>& runs) const;

  Ring<Sample> samples_{kSamples};
  std::uint64_t revision_ = 0;
  std::array<Level, kLevels> levels_;  ///< levels_[0] is level 1
};

}  // namespace zth::widgets

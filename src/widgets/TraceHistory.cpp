#include "widgets/TraceHistory.h"

#include <algorithm>
#include <cmath>

namespace zth::widgets {
namespace {

// Infinities would spoil sums; anything beyond this is off every scale anyway.
constexpr double kLargest = 1e30;

float Limited(double y) {
  return static_cast<float>(std::clamp(y, -kLargest, kLargest));  // NaN is kept
}

template <class Entry>
void DropBefore(Ring<Entry>& ring, double horizon) {
  while (!ring.Empty() && ring.Front().Last() < horizon) ring.DropFront();
}

}  // namespace

class TraceHistory::Filler {
 public:
  Filler(std::int64_t first, double width, std::span<Column> out)
      : first_(static_cast<double>(first)),
        width_(width),
        perWidth_(1 / width),
        out_(out),
        end_(static_cast<std::int64_t>(out.size())) {}

  /// Adds the samples from `begin` to `end`. In a full window, most fall into the column of the one before or into the
  /// next, so these two cases are done here.
  void AddSamples(const Ring<Sample>& samples, std::size_t begin, std::size_t end) {
    while (begin < end) {
      Add(SummaryOf(samples[begin++]));
      if (!joined_ || lastIndex_ < 0 || lastIndex_ >= end_) continue;
      begin += AddNear(samples.Straight(begin, end));
    }
  }

  void Add(const Summary& entry) {
    ++visited_;
    if (std::isnan(entry.min)) {
      joined_ = false;
      return;
    }
    const std::int64_t begin = Index(entry.first);
    const std::int64_t last = entry.span == 0 ? begin : Index(entry.Last());
    if (joined_ && !entry.broken && begin > lastIndex_) Join(entry, begin);
    for (std::int64_t c = std::max<std::int64_t>(begin, 0); c <= last && c < end_; ++c) Extend(c, entry.min, entry.max);
    joined_ = !entry.broken;
    last_ = entry;
    lastIndex_ = last;
    nextBorder_ = (first_ + static_cast<double>(last) + 1) * width_;
  }

  std::size_t Visited() const { return visited_; }

 private:
  // Extends the last entry's column, and those after it, by samples until one leaves a gap. Returns their number.
  std::size_t AddNear(std::span<const Sample> samples) {
    Column span{last_.min, last_.max};
    double x = last_.first;
    float y = last_.max;
    double border = nextBorder_;
    std::size_t added = 0;
    for (const Sample& sample : samples) {
      if (std::isnan(sample.y)) break;
      const auto next = static_cast<float>(std::min(std::max(-kLargest, sample.y), kLargest));
      if (sample.x >= border) {
        const std::int64_t column = Index(sample.x);
        if (column > lastIndex_ + 1 || column >= end_) break;
        if (column > lastIndex_) {
          // The line crosses the border at one value, which both columns share.
          const double slope = (static_cast<double>(next) - static_cast<double>(y)) / (sample.x - x);
          const auto shared = static_cast<float>(static_cast<double>(y) + slope * (border - x));
          Extend(lastIndex_, std::min(span.lo, shared), std::max(span.hi, shared));
          span = {shared, shared};
          lastIndex_ = column;
          border = (first_ + static_cast<double>(column) + 1) * width_;
        }
      }
      span = {std::min(span.lo, next), std::max(span.hi, next)};
      x = sample.x;
      y = next;
      ++added;
    }
    if (added == 0) return 0;
    visited_ += added;
    nextBorder_ = border;
    Extend(lastIndex_, span.lo, span.hi);
    last_ = SummaryOf(samples[added - 1]);
    return added;
  }

  // Columns outside the range give -1 or end_, however far away they are.
  std::int64_t Index(double x) const {
    const double column = x * perWidth_ - first_;
    if (column < 0) return -1;
    return column < static_cast<double>(end_) ? static_cast<std::int64_t>(column) : end_;
  }

  void Extend(std::int64_t column, float lo, float hi) {
    Column& slot = out_[static_cast<std::size_t>(column)];
    slot.lo = std::min(slot.lo, lo);
    slot.hi = std::max(slot.hi, hi);
  }

  // Draws the line from the last entry to this one, between their nearest values. It crosses each column border at one
  // value that both columns share, so that a steep line has no gap.
  void Join(const Summary& entry, std::int64_t begin) {
    double from = last_.max;
    double to = entry.min;
    if (last_.min > entry.max) {
      from = last_.min;
      to = entry.max;
    } else if (last_.max >= entry.min) {
      from = to = (std::max(last_.min, entry.min) + std::min(last_.max, entry.max)) / 2.0;
    }
    const double x0 = last_.Last();
    const double slope = entry.first > x0 ? (to - from) / (entry.first - x0) : 0;
    const std::int64_t left = std::max<std::int64_t>(lastIndex_, -1);
    auto atLeft = static_cast<float>(left < 0 ? from + slope * (first_ * width_ - x0) : from);
    for (std::int64_t c = std::max<std::int64_t>(left, 0); c <= begin && c < end_; ++c) {
      const double border = (first_ + static_cast<double>(c) + 1) * width_;
      const auto atRight = static_cast<float>(c == begin ? to : from + slope * (border - x0));
      Extend(c, std::min(atLeft, atRight), std::max(atLeft, atRight));
      atLeft = atRight;
    }
  }

  double first_;
  double width_;
  double perWidth_;
  double nextBorder_ = 0;
  std::span<Column> out_;
  std::int64_t end_;
  bool joined_ = false;
  Summary last_{};
  std::int64_t lastIndex_ = 0;
  std::size_t visited_ = 0;
};

TraceHistory::TraceHistory() = default;

void TraceHistory::Summary::Take(const Summary& entry) {
  if (std::isnan(min) != std::isnan(entry.min)) {
    if (std::isnan(min)) *this = entry;
    broken = true;
    return;
  }
  span = static_cast<float>(entry.Last() - first);
  if (Last() < entry.Last()) span = std::nextafter(span, std::numeric_limits<float>::infinity());
  broken = broken || entry.broken;
  if (entry.min < min) min = entry.min;
  if (entry.max > max) max = entry.max;
}

TraceHistory::Summary TraceHistory::SummaryOf(const Sample& sample) {
  return {sample.x, 0, Limited(sample.y), Limited(sample.y), false};
}

void TraceHistory::Append(double x, double y) {
  if (!std::isfinite(x)) return;
  if (!samples_.Empty()) x = std::max(x, samples_.Back().x);
  const double horizon = x - kKept;
  samples_.Push({x, y});
  ++revision_;
  DropBefore(samples_, horizon);
  Summary entry = SummaryOf(samples_.Back());
  for (Level& level : levels_) {
    Summary& open = level.open;
    if (level.count == 0) {
      open = entry;
    } else {
      open.Take(entry);
    }
    if (++level.count < kFan) break;
    level.count = 0;
    level.closed.Push(open);
    DropBefore(level.closed, horizon);
    entry = open;
  }
}

void TraceHistory::Clear() {
  samples_.Clear();
  ++revision_;
  for (Level& level : levels_) {
    level.closed.Clear();
    level.count = 0;
  }
}

TraceHistory::Run TraceHistory::RunWithin(std::size_t level, double x0, double x1) const {
  const auto within = [&](const auto& ring) {
    const std::size_t begin = ring.PartitionPoint([&](const auto& entry) { return entry.Last() < x0; });
    const std::size_t end = ring.PartitionPoint([&](const auto& entry) { return entry.First() < x1; });
    return Run{level, begin, std::max(begin, end)};
  };
  return level == 0 ? within(samples_) : within(levels_[level - 1].closed);
}

std::size_t TraceHistory::CountWithin(std::size_t level, double x0, double x1) const {
  const Run run = RunWithin(level, x0, x1);
  return run.end - run.begin;
}

bool TraceHistory::HoldsNone(std::size_t level) const {
  return level == 0 ? samples_.Empty() : levels_[level - 1].closed.Empty();
}

double TraceHistory::OldestOf(std::size_t level) const {
  return level == 0 ? samples_.Front().x : levels_[level - 1].closed.Front().first;
}

// From the right edge to the left: uses the finest level with at most `limit` entries there; where that level ends,
// continues with a coarser one. The runs are returned newest first. Returns their number.
std::size_t TraceHistory::RunsFor(double x0, double x1, std::size_t limit, std::array<Run, kLevels + 1>& runs) const {
  std::size_t count = 0;
  double right = x1;
  for (std::size_t level = 0; level <= kLevels && !HoldsNone(level); ++level) {
    const bool coarser = level < kLevels && !HoldsNone(level + 1);
    if (coarser && CountWithin(level, x0, right) > limit) continue;
    const Run run = RunWithin(level, x0, right);
    if (run.end > run.begin || OldestOf(level) < right) runs[count++] = run;
    right = std::min(right, OldestOf(level));
    if (right <= x0) break;
  }
  return count;
}

std::size_t TraceHistory::Columns(std::int64_t first, double width, std::span<Column> out) const {
  std::fill(out.begin(), out.end(), Column{});
  if (samples_.Empty() || out.empty() || !(width > 0)) return 0;
  const double x0 = static_cast<double>(first) * width;
  const double x1 = x0 + width * static_cast<double>(out.size());
  std::array<Run, kLevels + 1> runs{};
  const std::size_t count = RunsFor(x0, x1, kFan * out.size(), runs);
  Filler filler(first, width, out);
  for (std::size_t i = count; i-- > 0;) {
    Run run = runs[i];
    // One more entry on either side, for the lines that enter and leave the window.
    if (i == count - 1 && run.begin > 0) --run.begin;
    const std::size_t size = run.level == 0 ? samples_.Size() : levels_[run.level - 1].closed.Size();
    if (i == 0 && run.end < size) ++run.end;
    if (run.level == 0) {
      filler.AddSamples(samples_, run.begin, run.end);
      continue;
    }
    for (std::size_t k = run.begin; k < run.end; ++k) filler.Add(levels_[run.level - 1].closed[k]);
  }
  // Samples since the newest closed summary are in the open summaries of this level and the levels below.
  for (std::size_t level = count > 0 ? runs[0].level : 0; level > 0; --level) {
    const Level& slot = levels_[level - 1];
    if (slot.count > 0 && slot.open.Last() >= x0) filler.Add(slot.open);
  }
  return filler.Visited();
}

std::optional<TraceHistory::Reading> TraceHistory::At(double x) const {
  if (samples_.Empty() || !(x <= samples_.Back().x)) return std::nullopt;
  std::size_t right = samples_.PartitionPoint([&](const Sample& sample) { return sample.x < x; });
  if (x >= samples_.Front().x) {
    if (right > 0 && x - samples_[right - 1].x < samples_[right].x - x) --right;
    return Reading{samples_[right].x, samples_[right].y, samples_[right].y};
  }
  for (const Level& level : levels_) {
    if (level.closed.Empty() || x < level.closed.Front().first) continue;
    const std::size_t at = level.closed.PartitionPoint([&](const Summary& entry) { return entry.Last() < x; });
    if (at == level.closed.Size()) continue;
    const Summary& entry = level.closed[at];
    return Reading{std::clamp(x, entry.first, entry.Last()), entry.min, entry.max};
  }
  return std::nullopt;
}

std::vector<TraceHistory::Point> TraceHistory::Points(double x0, double x1) const {
  std::vector<Point> points;
  if (samples_.Empty()) return points;
  std::array<Run, kLevels + 1> runs{};
  const double beyond = std::nextafter(x1, std::numeric_limits<double>::infinity());
  for (std::size_t i = RunsFor(x0, beyond, std::numeric_limits<std::size_t>::max(), runs); i-- > 0;) {
    for (std::size_t k = runs[i].begin; k < runs[i].end; ++k) {
      if (runs[i].level == 0) {
        points.push_back({samples_[k].x, samples_[k].y});
        continue;
      }
      const Summary& entry = levels_[runs[i].level - 1].closed[k];
      // The newest summary of a level can overlap what the finer level still holds.
      const double finer = OldestOf(runs[i].level - 1);
      points.push_back({std::min(entry.first, finer), entry.min});
      if (entry.broken) points.push_back({std::min((entry.first + entry.Last()) / 2, finer), std::nan("")});
      points.push_back({std::min(entry.Last(), finer), entry.max});
    }
  }
  return points;
}

std::size_t TraceHistory::Bytes() const {
  std::size_t bytes = sizeof(*this) + samples_.Bytes();
  for (const Level& level : levels_) bytes += level.closed.Bytes();
  return bytes;
}

}  // namespace zth::widgets

#include "widgets/TraceColumns.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace zth::widgets {

std::size_t TraceColumns::Keep(const TraceHistory& history, std::int64_t first, double width, std::size_t count,
                               int reach) {
  if (columns_.size() != count || width != width_ || first < first_) return 0;
  const auto shift = static_cast<std::uint64_t>(first) - static_cast<std::uint64_t>(first_);
  if (shift >= count) return 0;
  const bool changed = history.Revision() != revision_;
  if (changed && std::isnan(newest_)) return 0;
  // The last columns before the end may have been drawn without the sample that their line leads to.
  double holds = static_cast<double>(count - shift);
  if (shift > 0) holds -= reach;
  if (changed) holds = std::min(holds, std::floor(newest_ / width) - static_cast<double>(first) - reach);
  std::move(columns_.begin() + static_cast<std::ptrdiff_t>(shift), columns_.end(), columns_.begin());
  return static_cast<std::size_t>(std::max(holds, 0.0));
}

std::span<const TraceHistory::Column> TraceColumns::Of(const TraceHistory& history, std::int64_t first, double width,
                                                       std::size_t count, int reach) {
  const std::size_t kept = Keep(history, first, width, count, reach);
  columns_.resize(count);
  if (kept < count) {
    history.Columns(first + static_cast<std::int64_t>(kept), width, std::span(columns_).subspan(kept));
  }
  first_ = first;
  width_ = width;
  revision_ = history.Revision();
  newest_ = history.Empty() ? std::numeric_limits<double>::quiet_NaN() : history.Newest().x;
  return columns_;
}

}  // namespace zth::widgets

#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "widgets/TraceHistory.h"

namespace zth::widgets {

/// The pixel columns of a trace's history, kept from one picture to the next: a picture that stands still or scrolls
/// asks the history only for new columns.
class TraceColumns {
 public:
  /// `count` columns, each `width` along x, starting with column number `first`. Valid until the next call. `reach` is
  /// the number of columns before its own that a new sample may change.
  std::span<const TraceHistory::Column> Of(const TraceHistory& history, std::int64_t first, double width,
                                           std::size_t count, int reach);
  /// The result of the last call of Of; empty before the first.
  std::span<const TraceHistory::Column> Last() const { return columns_; }

 private:
  /// The number of columns that are still valid after moving them to begin at `first`.
  std::size_t Keep(const TraceHistory& history, std::int64_t first, double width, std::size_t count, int reach);

  std::vector<TraceHistory::Column> columns_;
  std::int64_t first_ = 0;
  double width_ = 0;
  std::uint64_t revision_ = 0;
  double newest_ = 0;  ///< NaN without data
};

}  // namespace zth::widgets

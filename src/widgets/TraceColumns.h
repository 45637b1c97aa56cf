#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "widgets/TraceHistory.h"

namespace zth::widgets {

/// What a history comes to in the pixel columns of a picture, kept from one picture to the next: one that stands or
/// scrolls asks the history only for what has come in since.
class TraceColumns {
 public:
  /// `count` columns of `width` along x from number `first` on; good until the next call. `reach`: how many columns
  /// before its own a new sample may change.
  std::span<const TraceHistory::Column> Of(const TraceHistory& history, std::int64_t first, double width,
                                           std::size_t count, int reach);
  /// What it last gave; nothing before.
  std::span<const TraceHistory::Column> Last() const { return columns_; }

 private:
  /// How many of the columns still hold once they are moved to begin at `first`.
  std::size_t Keep(const TraceHistory& history, std::int64_t first, double width, std::size_t count, int reach);

  std::vector<TraceHistory::Column> columns_;
  std::int64_t first_ = 0;
  double width_ = 0;
  std::uint64_t revision_ = 0;
  double newest_ = 0;  ///< NaN without data
};

}  // namespace zth::widgets

#include "shell/Tiling.h"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <numeric>

namespace zth::shell {
namespace {

/// Divides the room along one side: each part gets its minimum, and the rest goes out in proportion to the minimums, so
/// that charts get most of it.
std::vector<int> Share(int room, const std::vector<int>& least) {
  const int all = std::max(1, std::accumulate(least.begin(), least.end(), 0));
  const double free = std::max(0, room - all);
  std::vector<int> parts;
  int before = 0;
  for (const int each : least) {
    const auto border = [&](int at) { return static_cast<int>(free * at / all); };
    parts.push_back(each + border(before + each) - border(before));
    before += each;
  }
  return parts;
}

struct Column {
  std::vector<std::size_t> windows;
  QSize least{0, 0};
};

/// Puts each window, tallest first, into the column that is shortest so far.
std::vector<Column> Columns(int count, const std::vector<QSize>& least) {
  std::vector<std::size_t> order(least.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::ranges::stable_sort(order, std::ranges::greater(), [&least](std::size_t i) { return least[i].height(); });
  std::vector<Column> columns(static_cast<std::size_t>(count));
  for (const std::size_t window : order) {
    Column& lowest = *std::ranges::min_element(columns, {}, [](const Column& each) { return each.least.height(); });
    lowest.windows.push_back(window);
    lowest.least = {std::max(lowest.least.width(), least[window].width()),
                    lowest.least.height() + least[window].height()};
  }
  for (Column& column : columns) std::ranges::sort(column.windows);
  std::ranges::sort(columns, {}, [](const Column& each) { return each.windows.front(); });
  return columns;
}

QSize LeastOf(const std::vector<Column>& columns) {
  QSize all{0, 0};
  for (const Column& column : columns) {
    all = {all.width() + column.least.width(), std::max(all.height(), column.least.height())};
  }
  return all;
}

/// How bad an arrangement is: first how far it exceeds the desk, then how far it is from square.
double Badness(const QSize& desk, const std::vector<Column>& columns) {
  const QSize all = LeastOf(columns);
  const double beyond = std::max(0, all.width() - desk.width()) + std::max(0, all.height() - desk.height());
  const double rows = static_cast<double>(
      std::ranges::max(columns, {}, [](const Column& each) { return each.windows.size(); }).windows.size());
  return beyond * 1000 + std::abs(rows - static_cast<double>(columns.size()));
}

}  // namespace

std::vector<QRect> TileInto(const QSize& desk, const std::vector<QSize>& least) {
  std::vector<QRect> places(least.size());
  if (least.empty()) return places;
  std::vector<Column> best;
  double bestBadness = std::numeric_limits<double>::infinity();
  for (int count = 1; count <= static_cast<int>(least.size()); ++count) {
    std::vector<Column> columns = Columns(count, least);
    const double badness = Badness(desk, columns);
    // Of two equally good arrangements, take the one with more columns: desks are wider than high.
    if (badness > bestBadness) continue;
    bestBadness = badness;
    best = std::move(columns);
  }
  std::vector<int> widths;
  for (const Column& column : best) widths.push_back(column.least.width());
  widths = Share(desk.width(), widths);
  int left = 0;
  for (std::size_t i = 0; i < best.size(); ++i) {
    std::vector<int> heights;
    for (const std::size_t window : best[i].windows) heights.push_back(least[window].height());
    heights = Share(desk.height(), heights);
    int top = 0;
    for (std::size_t row = 0; row < heights.size(); ++row) {
      places[best[i].windows[row]] = QRect(left, top, widths[i], heights[row]);
      top += heights[row];
    }
    left += widths[i];
  }
  return places;
}

}  // namespace zth::shell

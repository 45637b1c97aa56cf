#include <cmath>
#include <random>
#include <tuple>
#include <utility>
#include <vector>

#include <gmock/gmock.h>

#include "widgets/TraceHistory.h"

namespace zth::widgets {
namespace {

using Column = TraceHistory::Column;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN(), kInfinity = std::numeric_limits<double>::infinity();

TEST(TraceHistory, ShowsEveryExtremeInItsColumnAndNoneBeyondTheNextOne) {
  TraceHistory history;
  std::vector<TraceHistory::Point> points;
  std::mt19937 random(7);
  std::normal_distribution<double> step(0, 1);
  std::uniform_real_distribution<double> period(0.025, 0.075);
  for (TraceHistory::Point next{}; points.size() < 400000; next.x += period(random)) {
    next.y += step(random);
    points.push_back(next);
    history.Append(next.x, next.y);
  }
  const double length = points.back().x;
  using Row = std::tuple<double, double, std::size_t>;  // from and to as fractions of the walk's length
  for (const auto& [begin, end, columns] : {Row{0, 1, 800}, Row{0.9, 1, 800}, Row{-0.5, 1.5, 800}, Row{0.8, 0.9, 200},
                                            Row{0.999, 1.0001, 300}, Row{0, 1, 3840}, Row{0.2, 0.95, 10}}) {
    SCOPED_TRACE(testing::Message() << begin << " to " << end << " in " << columns);
    const double width = length * (end - begin) / static_cast<double>(columns);
    const auto first = static_cast<std::int64_t>(std::floor(length * begin / width));
    std::vector<Column> shown(columns), exact(columns + 2);  // only the span of the samples, one column wider
    EXPECT_LE(history.Columns(first, width, shown), 12 * columns + 64);
    for (const auto& point : points) {
      const double at = std::floor(point.x / width) - static_cast<double>(first) + 1;
      if (at < 0 || at >= static_cast<double>(exact.size())) continue;
      Column& column = exact[static_cast<std::size_t>(at)];
      column = {std::min(column.lo, static_cast<float>(point.y)), std::max(column.hi, static_cast<float>(point.y))};
    }
    for (std::size_t i = 0; i < shown.size(); ++i) {
      const Column &before = exact[i], &own = exact[i + 1], &after = exact[i + 2];
      if (own.Empty()) continue;
      ASSERT_TRUE(shown[i].lo <= own.lo && shown[i].hi >= own.hi) << "column " << i;
      // A line to a neighbour without a sample extends beyond; the drawing tests check those.
      if (before.Empty() || after.Empty()) continue;
      ASSERT_GE(shown[i].lo, std::min({before.lo, own.lo, after.lo}) - 1e-3F) << "column " << i;
      ASSERT_LE(shown[i].hi, std::max({before.hi, own.hi, after.hi}) + 1e-3F) << "column " << i;
    }
  }
}

TEST(TraceHistory, TakesAsManyLookupsForADayAsForAMinute) {
  TraceHistory history;
  std::vector<Column> columns(800);
  std::size_t short_ = 0;
  for (int i = 0; i < 1728000; ++i) {
    history.Append(i * 0.05, std::sin(i * 0.01));
    if (i == 1999) short_ = history.Columns(0, 100.0 / 800, columns);
  }
  const std::size_t day = history.Columns(0, 86400.0 / 800, columns);
  EXPECT_GT(short_, 1900U);
  EXPECT_LE(day, 2 * short_);
  EXPECT_LE(history.Bytes() * 51, 150U * 1024 * 1024) << "51 traces of all charts share 150 MiB";
}

TEST(TraceHistory, DropsWhatIsOlderThanADayAndStopsGrowing) {
  TraceHistory history;
  for (int i = 0; i < 200000; ++i) history.Append(i * 1.0, i);
  const std::size_t bytes = history.Bytes();
  EXPECT_FALSE(history.At(199999 - TraceHistory::kKept - 70000).has_value());
  EXPECT_TRUE(history.At(199999 - TraceHistory::kKept + 10).has_value());
  std::vector<Column> columns(10);
  history.Columns(0, 1000, columns);  // 0 s to 10,000 s have long been dropped
  for (const Column& column : columns) EXPECT_TRUE(column.Empty());
  for (int i = 200000; i < 600000; ++i) history.Append(i * 1.0, i);
  EXPECT_EQ(history.Bytes(), bytes);
}

TEST(TraceHistory, TreatsOddSamplesByRule) {
  TraceHistory history;
  // A sample older than the newest one gets the time of the newest.
  for (const auto& [x, y] : {std::pair{1.0, 10}, {kNaN, 11}, {kInfinity, 12}, {0.5, 13}}) history.Append(x, y);
  EXPECT_TRUE(history.Newest().x == 1 && history.Newest().y == 13 && history.Points(-10, 10).size() == 2);
  history.Append(2, kInfinity);
  std::vector<Column> columns(4);
  history.Columns(0, 1, columns);
  EXPECT_FALSE(std::isnan(columns[1].hi));
  EXPECT_GT(columns[2].hi, 1e20F);
  history.Clear();
  EXPECT_TRUE(history.Empty());
  EXPECT_EQ(history.Columns(0, 1, columns), 0U);
  EXPECT_FALSE(history.At(1).has_value());
}

TEST(TraceHistory, JoinsSamplesAcrossEmptyColumnsButNotAcrossALostValue) {
  TraceHistory history;
  for (const auto& [x, y] : {std::pair{0.5, 0.0}, {4.5, 8.0}, {5.5, kNaN}, {8.5, 4.0}}) history.Append(x, y);
  std::vector<Column> columns(10);
  history.Columns(0, 1, columns);
  for (std::size_t i = 1; i < 4; ++i) {
    EXPECT_FLOAT_EQ(columns[i].lo, 2.0F * static_cast<float>(i) - 1.0F);
    EXPECT_FLOAT_EQ(columns[i].hi, 2.0F * static_cast<float>(i) + 1.0F);
  }
  EXPECT_TRUE(columns[6].Empty() && columns[7].Empty());
  EXPECT_FLOAT_EQ(columns[8].lo, 4);
  // A time window between two samples shows the line that crosses it.
  history.Columns(20, 0.1, std::span(columns).first(5));
  EXPECT_FALSE(columns[0].Empty());
  EXPECT_NEAR(static_cast<double>(columns[2].lo), 3.4, 1e-4);
}

TEST(TraceHistory, ReadsTheNearestSampleAndSummariesOfTheFarPast) {
  TraceHistory history;
  for (int i = 0; i < 100000; ++i) history.Append(i, i % 100);
  EXPECT_EQ(history.At(99990.4)->x, 99990);
  EXPECT_EQ(history.At(99990.6)->lo, 91);
  EXPECT_FALSE(history.At(100000).has_value());
  EXPECT_LT(history.At(20000).value().lo, history.At(20000).value().hi);
  const auto points = history.Points(-1e9, 1e9);
  EXPECT_TRUE(std::is_sorted(points.begin(), points.end(), [](const auto& a, const auto& b) { return a.x < b.x; }));
  EXPECT_EQ(points.back().x, 99999);
  EXPECT_LT(points.front().x, 99999 - TraceHistory::kKept + 300);
}

}  // namespace
}  // namespace zth::widgets

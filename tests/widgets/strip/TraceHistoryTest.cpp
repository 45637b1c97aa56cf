#include <cmath>
#include <random>
#include <vector>

#include <gmock/gmock.h>

#include "widgets/TraceHistory.h"

namespace zth::widgets {
namespace {

using Column = TraceHistory::Column;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

/// The span of the samples alone, for comparison.
std::vector<Column> TrueColumns(const std::vector<TraceHistory::Point>& points, std::int64_t first, double width,
                                std::size_t count) {
  std::vector<Column> columns(count);
  for (const auto& point : points) {
    const double at = std::floor(point.x / width) - static_cast<double>(first);
    if (at < 0 || at >= static_cast<double>(count)) continue;
    Column& column = columns[static_cast<std::size_t>(at)];
    column.lo = std::min(column.lo, static_cast<float>(point.y));
    column.hi = std::max(column.hi, static_cast<float>(point.y));
  }
  return columns;
}

struct Walk {
  TraceHistory history;
  std::vector<TraceHistory::Point> points;
};

Walk RandomWalk(std::size_t samples, double period) {
  Walk walk;
  std::mt19937 random(7);
  std::normal_distribution<double> step(0, 1);
  std::uniform_real_distribution<double> jitter(0.5, 1.5);
  for (double x = 0, y = 0; walk.points.size() < samples; x += period * jitter(random)) {
    walk.points.push_back({x, y += step(random)});
    walk.history.Append(x, y);
  }
  return walk;
}

TEST(TraceHistory, ShowsEveryExtremeInItsColumnAndNoneFurtherThanTheNextOne) {
  const Walk walk = RandomWalk(400000, 0.05);
  const double length = walk.points.back().x;
  struct Row {
    const char* name;
    double begin, end;  // of the walk's length
    std::size_t columns;
  };
  for (const Row& row :
       {Row{"everything", 0, 1, 800}, Row{"the last part", 0.9, 1.0, 800}, Row{"past both ends", -0.5, 1.5, 800},
        Row{"across the end of the samples", 0.8, 0.9, 200}, Row{"the newest samples", 0.999, 1.0001, 300},
        Row{"a wide screen", 0, 1, 3840}, Row{"few columns", 0.2, 0.95, 10}}) {
    const double width = length * (row.end - row.begin) / static_cast<double>(row.columns);
    const auto first = static_cast<std::int64_t>(std::floor(length * row.begin / width));
    std::vector<Column> shown(row.columns);
    EXPECT_LE(walk.history.Columns(first, width, shown), 12 * row.columns + 64);
    const std::vector<Column> wide = TrueColumns(walk.points, first - 1, width, shown.size() + 2);
    for (std::size_t i = 0; i < shown.size(); ++i) {
      const Column& exact = wide[i + 1];
      if (exact.Empty()) continue;
      ASSERT_TRUE(shown[i].lo <= exact.lo && shown[i].hi >= exact.hi) << row.name << ", column " << i;
      // A join to a neighbour that holds no sample reaches beyond: those are checked by the drawing tests.
      if (wide[i].Empty() || wide[i + 2].Empty()) continue;
      ASSERT_GE(shown[i].lo, std::min({wide[i].lo, exact.lo, wide[i + 2].lo}) - 1e-3F) << row.name << ", column " << i;
      ASSERT_LE(shown[i].hi, std::max({wide[i].hi, exact.hi, wide[i + 2].hi}) + 1e-3F) << row.name << ", column " << i;
    }
  }
}

TEST(TraceHistory, CostsAsManyLooksForADayAsForAMinute) {
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
  history.Columns(0, 1000, columns);  // 0 s to 10,000 s are long gone
  for (const Column& column : columns) EXPECT_TRUE(column.Empty());
  for (int i = 200000; i < 600000; ++i) history.Append(i * 1.0, i);
  EXPECT_EQ(history.Bytes(), bytes);
}

TEST(TraceHistory, TakesOddSamplesByRule) {
  TraceHistory history;
  history.Append(1, 10);
  history.Append(kNaN, 11);
  history.Append(std::numeric_limits<double>::infinity(), 12);
  history.Append(0.5, 13);  // before the newest: counts as the newest's time
  EXPECT_TRUE(history.Newest().x == 1 && history.Newest().y == 13 && history.Points(-10, 10).size() == 2);
  history.Append(2, std::numeric_limits<double>::infinity());
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
  history.Append(0.5, 0);
  history.Append(4.5, 8);
  history.Append(5.5, kNaN);
  history.Append(8.5, 4);
  std::vector<Column> columns(10);
  history.Columns(0, 1, columns);
  for (std::size_t i = 1; i < 4; ++i) {
    EXPECT_FLOAT_EQ(columns[i].lo, 2.0F * static_cast<float>(i) - 1.0F);
    EXPECT_FLOAT_EQ(columns[i].hi, 2.0F * static_cast<float>(i) + 1.0F);
  }
  EXPECT_TRUE(columns[6].Empty() && columns[7].Empty());
  EXPECT_FLOAT_EQ(columns[8].lo, 4);
  // A window between two samples shows the line that crosses it.
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

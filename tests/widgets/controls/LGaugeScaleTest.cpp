#include <algorithm>
#include <cmath>
#include <limits>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include <gmock/gmock.h>

#include "widgets/LGaugeScale.h"

namespace zth::widgets {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

TextSize Measure(const std::string& text, double pixels) {
  return {0.6 * pixels * static_cast<double>(text.size()), 0.75 * pixels};
}

TEST(DialScale, ParksValuesOutsideAtTheNearerEnd) {
  for (const auto& [value, angle] :
       {std::pair{-64.0, -135.0}, {63.5, 0.0}, {191.0, 135.0}, {-65.0, -135.0}, {1e9, 135.0}, {kNaN, -135.0}}) {
    EXPECT_DOUBLE_EQ(DialScale(-64, 191).Angle(value), angle);
  }
  EXPECT_DOUBLE_EQ(DialScale(5, 5).Angle(7), -135);
  EXPECT_DOUBLE_EQ(DialScale(10, 0).Angle(0), 135);  // runs backwards
}

TEST(DialScale, ReportsWhatItShows) {
  using Row = std::tuple<double, double, double, const char*, double>;
  for (const auto& [minimum, maximum, value, text, settled] :
       {Row{-64, 191, 25.4999, "25.5", 25.5}, Row{-64, 191, 24.53, "24.5", 24.5}, Row{0, 12000, 1004.9, "1000", 1000},
        Row{0, 15.94, 15.938, "15.94", 15.94}, Row{0, 15.94, 99, "", 15.94}, Row{0, 2.5, 1.23456, "1.235", 1.235},
        Row{0, 100, -3, "", 0}, Row{-64, 191, -0.04, "0.0", 0}}) {
    const DialScale scale(minimum, maximum);
    EXPECT_EQ(scale.Settle(value), settled) << value;
    if (value < minimum || value > maximum) continue;
    EXPECT_EQ(scale.Text(scale.Resolution() >= 1 ? scale.Settle(value) : value), text);
    EXPECT_NEAR(scale.ValueAt(scale.Angle(value)), settled, 1e-12);
  }
  EXPECT_EQ(DialScale(0, 10).ValueAt(500), 10);
  EXPECT_EQ(DialScale(0, 10).ValueAt(-136), 0);
}

TEST(DialScale, OneKeyStepMovesALimitOfOneByte) {
  for (const double span : {1.66, 1.99, 2.0, 2.39, 2.83, 3.32, 4.38, 5.31, 6.64, 15.94, 100.0, 255.0, 12000.0}) {
    const double step = DialScale(0, span).KeyStep();
    EXPECT_GT(step * 255 / span, 0.99) << span;
    EXPECT_LT(step * 255 / span, 5) << span;
  }
  EXPECT_EQ(DialScale(-64, 191).KeyStep(), 1);
}

TEST(DialScale, TurnsTheShorterWay) {
  for (const auto& [from, to, turn] : {std::tuple{170, -170, 20}, {-170, 170, -20}, {10, 40, 30}, {180, 0, 180}}) {
    EXPECT_DOUBLE_EQ(TurnBetween(from, to), turn);
  }
}

TEST(DialTicks, StandAtRoundNumbersOfAnyRange) {
  using Row = std::tuple<double, double, const char*>;
  for (const auto& [minimum, maximum, expected] :
       {Row{0, 100, "0 10 20 30 40 50 60 70 80 90 100 "}, Row{0, 2.5, "0.0 0.5 1.0 1.5 2.0 2.5 "},
        Row{-64, 191, "-50 -25 0 25 50 75 100 125 150 175 "}, Row{0, 12000, "0 2000 4000 6000 8000 10000 12000 "},
        Row{0, 15.94, "0 2 4 6 8 10 12 14 "}, Row{5, 5, ""}, Row{0, kInfinity, ""}, Row{kNaN, 1, ""},
        Row{1e15, 1e15 + 1, ""}, Row{-1e308, 1.7e308, ""}}) {
    std::string numbers;
    for (const DialTick& tick : DialTicks(minimum, maximum, 110, 100, [](const auto& t) { return Measure(t, 14); })) {
      if (tick.major) numbers += tick.text + " ";
    }
    EXPECT_EQ(numbers, expected);
  }
}

void ExpectGoodTicks(double minimum, double maximum, double radius) {
  const double pixels = std::clamp(radius * 0.18, 8.0, 26.0);
  const auto size = [pixels](const std::string& text) { return Measure(text, pixels); };
  const auto [low, high] = std::minmax(minimum, maximum);
  const double slack = (high - low) * 1e-8;
  std::vector<DialTick> majors;
  for (const DialTick& tick : DialTicks(minimum, maximum, radius * 1.2, radius, size)) {
    EXPECT_TRUE(tick.value >= low - slack && tick.value <= high + slack) << tick.value;
    if (!tick.major) continue;
    EXPECT_LE(std::hypot(tick.labelX, tick.labelY), radius);
    for (const DialTick& other : majors) {
      const double width = (size(tick.text).width + size(other.text).width) / 2;
      EXPECT_TRUE(std::abs(tick.labelX - other.labelX) > width ||
                  std::abs(tick.labelY - other.labelY) > size(tick.text).height)  // all texts are as high
          << tick.text << " touches " << other.text;
    }
    majors.push_back(tick);
  }
  const bool everyday = high >= 1 && high <= 12000;
  EXPECT_GE(majors.size(), everyday && radius >= 50 ? 4U : 1U);
}

TEST(DialTicks, NumbersNeverTouchAndNeverLeaveTheDial) {
  constexpr double kScales[][2] = {{0, 2.5},  {-64, 191},   {0, 12000},  {0, 100}, {0, 15.94},
                                   {0, 1.66}, {1e-6, 3e-6}, {-1e9, 1e9}, {100, 0}};
  for (const auto& [minimum, maximum] : kScales) {
    for (const double radius : {25.0, 50.0, 80.0, 200.0, 500.0}) {
      SCOPED_TRACE(testing::Message() << minimum << " to " << maximum << " at " << radius);
      ExpectGoodTicks(minimum, maximum, radius);
    }
  }
}

}  // namespace
}  // namespace zth::widgets

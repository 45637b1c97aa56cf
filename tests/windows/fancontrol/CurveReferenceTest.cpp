#include <algorithm>
#include <map>
#include <random>

#include <gtest/gtest.h>

#include "windows/fancontrol/CurveModel.h"

namespace zth::windows {
namespace {

// The curve once more, in whole numbers and fractions of 64 alone: the line from (Tmin, MinDuty) rises 64 percent
// in Trange degrees, so it meets MaxDuty (MaxDuty - MinDuty) * Trange / 64 degrees further on.

struct Chosen {
  int max, min, tmin, hyst, trange, th1, th2;
  bool use1, use2, on;
};

int Nearest(std::int64_t numerator, std::int64_t denominator) {
  std::int64_t low = numerator / denominator;
  if (numerator % denominator != 0 && (numerator < 0) != (denominator < 0)) --low;
  const std::int64_t rest = numerator - low * denominator;
  if (2 * rest > denominator || (2 * rest == denominator && low % 2 != 0)) ++low;
  return static_cast<int>(low);
}

struct Expected {
  std::string shape;
  bool tie = false;  ///< single precision decides
  DrawPath main, hysteresis;
};

Expected Reference(const Chosen& c, int left, int right) {
  Expected out;
  const int limit = std::min(c.use1 ? c.th1 : 1000, c.use2 ? c.th2 : (c.use1 ? c.th1 : 1000));
  const bool flat = c.max <= c.min;
  const int low = flat ? c.max : c.min;
  const int base = c.on ? low : 0;
  const std::int64_t end64 = c.tmin * std::int64_t{64} + (flat ? 0 : (c.max - c.min) * std::int64_t{c.trange});
  const std::int64_t rest = ((end64 % 64) + 64) % 64;
  out.tie = !flat && rest == 32;
  const auto add = [&out](int x, int y) { out.main.push_back({x, y}); };
  if (end64 <= limit * std::int64_t{64}) {
    out.tie = out.tie || (!flat && end64 == limit * std::int64_t{64});
    out.shape = limit == 1000 ? "A open" : "A";
    add(left, base), add(c.tmin, base), add(c.tmin, low), add(Nearest(end64, 64), c.max);
    add(limit, c.max), add(limit, 100), add(right, limit == 1000 ? c.max : 100);
  } else if (limit > c.tmin) {
    out.shape = "B";
    add(left, base), add(c.tmin, base), add(c.tmin, low);
    add(limit, Nearest(c.min * std::int64_t{c.trange} + (limit - c.tmin) * std::int64_t{64}, c.trange));
    add(limit, 100), add(right, 100);
  } else {
    out.shape = "C";
    add(left, base), add(limit, base), add(limit, 100), add(right, 100);
  }
  if (!c.on && out.shape != "C") {
    out.hysteresis = {{c.tmin - c.hyst, 0}, {c.tmin - c.hyst, low}, {c.tmin, low}};
  }
  if (flat) out.shape += " flat";
  if (c.on) out.shape += " on";
  return out;
}

/// What a path looks like when it is drawn: a point on top of the one before adds nothing.
DrawPath Line(DrawPath path) {
  path.erase(std::unique(path.begin(), path.end()), path.end());
  return path;
}

TEST(Curve, AgreesWithAnIndependentCalculation) {
  std::mt19937 random(4718);
  const auto pick = [&random](int from, int to) { return std::uniform_int_distribution<int>(from, to)(random); };
  const std::array<int, 16> tranges{2, 2, 3, 4, 5, 7, 8, 10, 13, 16, 20, 27, 32, 40, 53, 80};
  std::map<std::string, int> shapes;
  int ties = 0;
  for (int round = 0; round < 20000; ++round) {
    const auto item = static_cast<std::size_t>(pick(0, 15));
    const Chosen c{pick(0, 100),   pick(0, 100),   pick(-64, 120),  pick(0, 15),     tranges[item],
                   pick(-64, 140), pick(-64, 140), pick(0, 1) == 1, pick(0, 1) == 1, pick(0, 2) == 0};
    const int span2 = pick(10, 600);
    const int end2 = pick(-40, 400);  // in half degrees
    const ChartRange range{span2 / 2.0, end2 / 2.0};
    const Expected expected = Reference(c, Nearest(end2 - span2, 2), Nearest(end2 - 2, 2));

    const int pwm = pick(0, 3);
    const auto channel = static_cast<std::size_t>(pick(0, 3));
    CurveTexts texts;
    texts.maxPwm = std::to_string(c.max);
    texts.thermFS1 = c.use1;
    texts.thermFS2 = c.use2;
    texts.pwms[static_cast<std::size_t>(pwm)] = {kControlItems[channel], std::to_string(c.min), c.on};
    texts.channels[channel] = {std::to_string(c.tmin), kTrangeItems[item], std::to_string(c.hyst),
                               std::to_string(c.th1), std::to_string(c.th2)};
    texts.polledTmin[channel] = static_cast<std::int16_t>(c.tmin);
    CurveModel model = BuildCurveModel(texts);
    CurvePaths paths = BuildCurvePaths(model, pwm, 0, range);

    SCOPED_TRACE(testing::Message() << "round " << round << " shape " << expected.shape);
    if (expected.tie) {
      ++ties;
      // The ramp's end may stand on either side, by one degree; what is drawn goes on the same from there.
      EXPECT_NEAR(Line(paths.main)[3].x, Line(expected.main)[3].x, 1);
    } else {
      ++shapes[expected.shape];
      EXPECT_EQ(paths.main, expected.main);
    }
    EXPECT_EQ(paths.hysteresis, expected.hysteresis);
    for (const CurvePoint& point : VisibleMain(paths.main, range.xEnd)) EXPECT_LE(point.x, range.xEnd);
    for (const CurvePoint& point : VisibleHysteresis(paths.hysteresis, range.xEnd)) {
      EXPECT_LE(point.x, Nearest(end2, 2));
    }
    if (testing::Test::HasFailure()) return;
  }
  for (const char* shape : {"A", "A open", "B", "C", "A flat", "A open flat", "C flat", "A on", "A open on", "B on",
                            "C on", "A flat on", "A open flat on", "C flat on"}) {
    EXPECT_GE(shapes[shape], 100) << shape;
    RecordProperty(shape, shapes[shape]);
  }
  EXPECT_EQ(shapes.size(), 14U);
  EXPECT_LT(ties, 1200);
}

}  // namespace
}  // namespace zth::windows

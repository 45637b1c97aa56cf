#include <algorithm>
#include <map>
#include <random>
#include <sstream>

#include <gtest/gtest.h>

#include "windows/fancontrol/CurveModel.h"

namespace zth::windows {

std::ostream& operator<<(std::ostream& out, const CurvePoint& point) {
  return out << "(" << point.x << "," << point.y << ")";
}

namespace {

constexpr ChartRange kStartRange{160, 120};

/// The controls' texts, plain but for the changes: "therm1 therm2 on max=50 min=20 tmin=30 range=20°C th1=45 th2=50" of
/// PWM1 and its source Local.
CurveTexts Texts(const std::string& changes = {}) {
  CurveTexts texts;
  texts.maxPwm = "100";
  for (auto& pwm : texts.pwms) pwm = {"Local", "25", false};
  for (auto& channel : texts.channels) channel = {"30", "20°C", "4", "45", "50"};
  texts.polledTmin = {30, 30, 30, 30};
  std::istringstream words(changes);
  for (std::string word; words >> word;) {
    const std::string value = word.substr(word.find('=') + 1);
    if (word == "therm1") texts.thermFS1 = true;
    if (word == "therm2") texts.thermFS2 = true;
    if (word == "on") texts.pwms[0].minSpeed = true;
    if (word.starts_with("max=")) texts.maxPwm = value;
    if (word.starts_with("min=")) texts.pwms[0].minPwm = value;
    if (word.starts_with("tmin=")) texts.channels[0].tmin = value;
    if (word.starts_with("range=")) texts.channels[0].trange = value;
    if (word.starts_with("th1=")) texts.channels[0].th1 = value;
    if (word.starts_with("th2=")) texts.channels[0].th2 = value;
  }
  return texts;
}

// The curve of PWM1's first source as it is drawn.
TEST(Curve, HasTheShapesAnEngineerExpects) {
  struct Case {
    const char* what;
    const char* changes;
    DrawPath main;
    DrawPath hysteresis;
    ChartRange range = kStartRange;
  };
  const DrawPath plain{{-40, 0}, {30, 0}, {30, 25}, {53, 100}, {119, 100}};
  const DrawPath down{{26, 0}, {26, 25}, {30, 25}};
  const std::vector<Case> cases{
      {"no THERM option", "", plain, down},
      {"the limit cuts the ramp", "therm1", {{-40, 0}, {30, 0}, {30, 25}, {45, 73}, {45, 100}, {119, 100}}, down},
      {"the limit lies below Tmin", "therm1 th1=25", {{-40, 0}, {25, 0}, {25, 100}, {119, 100}}, {}},
      {"the limit lies at Tmin", "therm2 th2=30", {{-40, 0}, {30, 0}, {30, 100}, {119, 100}}, {}},
      {"the lower of two limits counts, behind the ramp",
       "therm1 therm2 th1=90 th2=80",
       {{-40, 0}, {30, 0}, {30, 25}, {53, 100}, {80, 100}, {80, 100}, {119, 100}},
       down},
      {"the limit lies exactly at the ramp's end",
       "therm1 max=89 range=16°C th1=46",
       {{-40, 0}, {30, 0}, {30, 25}, {46, 89}, {46, 89}, {46, 100}, {119, 100}},
       down},
      {"a limit beyond the chart is left out", "therm1 th1=125", plain, down},
      {"without a limit it ends at a low maximum", "max=60", {{-40, 0}, {30, 0}, {30, 25}, {41, 60}, {119, 60}}, down},
      {"a maximum below the minimum",
       "max=20",
       {{-40, 0}, {30, 0}, {30, 20}, {30, 20}, {119, 20}},
       {{26, 0}, {26, 20}, {30, 20}}},
      {"always on", "on", {{-40, 25}, {30, 25}, {30, 25}, {53, 100}, {119, 100}}, {}},
      {"zoomed in, with the way down beyond the edge",
       "",
       {{8, 0}, {27, 100}},
       {{26, 0}, {26, 25}, {28, 25}},
       {20.5, 28.25}},
  };
  for (const Case& row : cases) {
    CurveModel model = BuildCurveModel(Texts(row.changes));
    const CurvePaths paths = BuildCurvePaths(model, 0, 0, row.range);
    EXPECT_EQ(VisibleMain(paths.main, row.range.xEnd), row.main) << row.what;
    EXPECT_EQ(VisibleHysteresis(paths.hysteresis, row.range.xEnd), row.hysteresis) << row.what;
  }
}

// Ramp ends that lie half way between two degrees. The first rows tie to the even degree; in the last the single
// precision of the line tells, worked out apart with exact fractions rounded at each stored figure.
TEST(Curve, RoundsItsRampEndInSinglePrecision) {
  const std::vector<std::pair<const char*, int>> cases{
      {"range=2°C tmin=20 min=14 max=62", 22},    {"range=6.7°C tmin=69 min=45 max=77", 72},
      {"range=13.3°C tmin=61 min=50 max=82", 68}, {"range=26.7°C tmin=63 min=65 max=97", 76},
      {"range=53.3°C tmin=99 min=9 max=41", 126}, {"range=20°C tmin=1 min=86 max=94", 3},
      {"range=80°C tmin=2 min=75 max=81", 9},     {"range=80°C tmin=23 min=90 max=96", 31},
      {"range=80°C tmin=6 min=97 max=99", 9}};
  for (const auto& [changes, end] : cases) {
    CurveModel model = BuildCurveModel(Texts(changes));
    EXPECT_EQ(BuildCurvePaths(model, 0, 0, kStartRange).main[3].x, end) << changes;
  }
}

TEST(Curve, TakesItsSourcesAndNumbersFromTheTexts) {
  CurveTexts texts = Texts();
  texts.maxPwm = "82.5x";
  const std::vector<std::pair<std::string, std::vector<std::string>>> controls{
      {"Remote1", {"Remote1"}},
      {"Max of Local/Remote3", {"Local", "Remote3"}},
      {"Max of 4 Channels", {"Local", "Remote1", "Remote2", "Remote3"}},
      {"Off", {}},
  };
  for (std::size_t p = 0; p < controls.size(); ++p) texts.pwms[p] = {controls[p].first, "27.5", p == 1};
  for (auto& channel : texts.channels) channel = {"-12.5", "53.3°C", "99999", "-99999", "none"};
  texts.polledTmin = {1, 2, 3, 4};
  const CurveModel model = BuildCurveModel(texts);
  EXPECT_EQ(model.MaxDuty, 82) << "half to even";
  for (std::size_t p = 0; p < controls.size(); ++p) {
    std::vector<std::string> names;
    for (std::int16_t s = 0; s < model.Pwm[p].SourceCount; ++s) {
      names.push_back(model.Pwm[p].Sources[static_cast<std::size_t>(s)].Name);
    }
    EXPECT_EQ(names, controls[p].second) << controls[p].first;
    EXPECT_EQ(model.Pwm[p].MinDuty, 28);
    EXPECT_EQ(model.Pwm[p].AlwaysOn, p == 1);
  }
  std::vector<int> tmins;
  for (const CurveSource& source : model.Pwm[2].Sources) tmins.push_back(source.Tmin);
  EXPECT_EQ(tmins, (std::vector<int>{-12, 2, 3, -12})) << "the chip's own on Remote1 and Remote2";
  const CurveSource& local = model.Pwm[2].Sources[0];
  EXPECT_EQ(local.Trange, 53);
  EXPECT_EQ(local.TminHyst, 32767) << "limited to 16 bits";
  EXPECT_EQ(local.Therm1Limit, -32768);
  EXPECT_EQ(local.Therm2Limit, 0);
  EXPECT_EQ(model.Pwm[3].Sources[0].Channel, 0);
}

// ---- The curve once more, in whole numbers and fractions of 64 alone: the line from (Tmin, MinDuty) rises 64 percent
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
    CurveTexts texts = Texts();
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

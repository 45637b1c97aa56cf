#include <algorithm>
#include <map>
#include <random>
#include <sstream>

#include <gtest/gtest.h>

#include "simulator/Encodings.h"
#include "windows/fancontrol/ChipCorners.h"
#include "windows/fancontrol/CurveModel.h"

namespace zth::windows {
namespace {

constexpr ChartRange kStartRange{160, 120};

/// The controls' texts for a curve of one PWM by one channel, simple except for the changes: "therm1 therm2 on max=50
/// min=20 tmin=30 range=20°C hyst=4 th1=45 th2=50". All others hold something else.
CurveTexts Texts(const std::string& changes = {}, std::size_t pwm = 0, std::size_t channel = 0) {
  CurveTexts texts;
  texts.maxPwm = "100";
  for (auto& other : texts.pwms) other = {"Off", "77", true};
  for (auto& other : texts.channels) other = {"11", "2°C", "1", "12", "13"};
  texts.pwms[pwm] = {chip::kBehaviourNames[channel], "25", false};
  texts.channels[channel] = {"30", "20°C", "4", "45", "50"};
  auto& own = texts.channels[channel];
  std::map<std::string, std::string*> places{{"max", &texts.maxPwm},  {"min", &texts.pwms[pwm].minPwm},
                                             {"tmin", &own.tmin},     {"range", &own.trange},
                                             {"hyst", &own.tminHyst}, {"th1", &own.th1},
                                             {"th2", &own.th2}};
  std::istringstream words(changes);
  for (std::string word; words >> word;) {
    const auto mark = word.find('=');
    if (mark != std::string::npos) *places.at(word.substr(0, mark)) = word.substr(mark + 1);
    if (word == "therm1") texts.thermFS1 = true;
    if (word == "therm2") texts.thermFS2 = true;
    if (word == "on") texts.pwms[pwm].minSpeed = true;
  }
  texts.polledTmin.fill(-7);
  texts.polledTmin[channel] = static_cast<std::int16_t>(std::stoi(own.tmin));
  return texts;
}

/// What is drawn, as "-40,0 30,0".
std::string Text(const DrawPath& path) {
  std::string text;
  for (const auto& [x, y] : path) text += (text.empty() ? "" : " ") + std::to_string(x) + "," + std::to_string(y);
  return text;
}

// The drawn curve of each PWM by each channel.
TEST(Curve, HasTheShapesAnEngineerExpects) {
  constexpr const char* kPlain = "-40,0 30,0 30,25 53,100 119,100";
  constexpr const char* kDown = "26,0 26,25 30,25";
  struct Case {
    const char *what, *changes, *main, *hysteresis;
    ChartRange range = kStartRange;
  };
  const std::vector<Case> cases{
      {"no THERM option", "", kPlain, kDown},
      {"the limit cuts the ramp", "therm1", "-40,0 30,0 30,25 45,73 45,100 119,100", kDown},
      {"the lower of two limits cuts it, at a duty that is rounded", "therm1 therm2 range=13.3°C",
       "-40,0 30,0 30,25 45,99 45,100 119,100", kDown},
      {"the limit lies below Tmin", "therm1 th1=25", "-40,0 25,0 25,100 119,100", ""},
      {"the limit lies exactly at the ramp's end", "therm1 max=89 range=16°C th1=46",
       "-40,0 30,0 30,25 46,89 46,89 46,100 119,100", kDown},
      {"a limit beyond the chart is left out", "therm1 th1=125", kPlain, kDown},
      {"a maximum below the minimum", "max=20", "-40,0 30,0 30,20 30,20 119,20", "26,0 26,20 30,20"},
      {"always on", "on", "-40,25 30,25 30,25 53,100 119,100", ""},
      {"zoomed in, with the way down beyond the edge", "", "8,0 27,100", "26,0 26,25 28,25", {20.5, 28.25}},
  };
  for (const Case& row : cases) {
    for (std::size_t each = 0; each < 16; ++each) {
      CurveModel model = BuildCurveModel(Texts(row.changes, each / 4, each % 4));
      const CurvePaths paths = BuildCurvePaths(model, static_cast<int>(each / 4), 0, row.range);
      EXPECT_EQ(Text(VisibleMain(paths.main, row.range.xEnd)), row.main) << row.what << " " << each;
      EXPECT_EQ(Text(VisibleHysteresis(paths.hysteresis, row.range.xEnd)), row.hysteresis) << row.what << " " << each;
    }
  }
}

TEST(Curve, RoundsEachIntermediateValueToSinglePrecision) {
  // A limit at the very end of the ramp may cut it or not.
  for (const auto& [changes, cut] : {std::pair{"range=3.3°C tmin=50 min=0 max=64 th1=53", true},
                                     {"range=3.3°C tmin=25 min=0 max=64 th1=28", false},
                                     {"range=3.3°C tmin=7 min=0 max=64 th1=10", false}}) {
    CurveModel model = BuildCurveModel(Texts(std::string("therm1 ") + changes));
    EXPECT_EQ(BuildCurvePaths(model, 0, 0, kStartRange).main.size(), cut ? 6U : 7U) << changes;
  }
  const std::pair<const char*, int> rows[]{
      {"range=3.3°C tmin=25 min=0 max=32", 27},   {"range=3.3°C tmin=56 min=0 max=96", 60},
      {"range=3.3°C tmin=6 min=0 max=32", 8},     {"range=2°C tmin=20 min=14 max=62", 22},
      {"range=26.7°C tmin=63 min=65 max=97", 76}, {"range=80°C tmin=2 min=75 max=81", 9},
      {"range=80°C tmin=6 min=97 max=99", 9}};
  for (const auto& [changes, end] : rows) {
    CurveModel model = BuildCurveModel(Texts(changes));
    EXPECT_EQ(BuildCurvePaths(model, 0, 0, kStartRange).main[3].x, end) << changes;
  }
}

TEST(Curve, TakesItsSourcesAndNumbersFromTheTexts) {
  CurveTexts texts = Texts("max=82.5x");
  const std::vector<std::pair<std::string, std::string>> controls{
      {"Remote1", "Remote1 "},
      {"Max of Local/Remote3", "Local Remote3 "},
      {"Max of 4 Channels", "Local Remote1 Remote2 Remote3 "},
      {"Off", ""},
  };
  for (std::size_t p = 0; p < controls.size(); ++p) texts.pwms[p] = {controls[p].first, "27.5", p == 1};
  for (auto& channel : texts.channels) channel = {"-12.5", "53.3°C", "99999", "-99999", "none"};
  texts.polledTmin = {1, 2, 3, 4};
  const CurveModel model = BuildCurveModel(texts);
  EXPECT_EQ(model.MaxDuty, 82) << "half to even";
  for (std::size_t p = 0; p < controls.size(); ++p) {
    std::string names;
    for (const CurveSource& source : model.Pwm[p].Sources) names += source.Name + (source.Channel == 0 ? "" : " ");
    EXPECT_EQ(names, controls[p].second) << controls[p].first;
    EXPECT_EQ(model.Pwm[p].MinDuty, 28);
    EXPECT_EQ(model.Pwm[p].AlwaysOn, p == 1);
  }
  const auto& sources = model.Pwm[2].Sources;
  EXPECT_EQ((std::array{sources[0].Tmin, sources[1].Tmin, sources[2].Tmin, sources[3].Tmin}),
            (std::array<std::int16_t, 4>{-12, 2, 3, -12}))
      << "the chip's own on Remote1 and Remote2";
  EXPECT_EQ((std::array{sources[0].Trange, sources[0].TminHyst, sources[0].Therm1Limit, sources[0].Therm2Limit}),
            (std::array<std::int16_t, 4>{53, 32767, -32768, 0}))
      << "limited to 16 bits";
}

// The chip's duty rises over 2.5, 3.33, 6.67, ... degrees, the drawn line over 2, 3, 7, ...
TEST(Curve, TellsHowFarALineOfAFractionalTrangeIsFromTheChip) {
  for (const auto& [trange, low, high, steps] : {std::tuple{"2.5°C", 0, 100, 51},
                                                 {"3.3°C", 0, 100, 26},
                                                 {"6.7°C", 0, 100, 12},
                                                 {"53.3°C", 0, 100, 2},
                                                 {"2.5°C", 25, 60, 18},
                                                 {"2.5°C", 60, 25, 0},
                                                 {"20°C", 0, 100, 0}}) {
    EXPECT_EQ(DrawnApart(trange, low, high), steps) << trange << ' ' << low << " to " << high;
  }
}

// The curve again, in whole numbers and fractions of 64 only: the line from (Tmin, MinDuty) rises 64 percent in Trange
// degrees, so it meets MaxDuty (MaxDuty - MinDuty) * Trange / 64 degrees further on.

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
  bool tie = false;  ///< depends on single precision
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

/// The visible shape of a path: a point on top of the previous one adds nothing.
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
    std::ostringstream changes;
    changes << (c.use1 ? "therm1 " : "") << (c.use2 ? "therm2 " : "") << (c.on ? "on " : "") << "max=" << c.max
            << " min=" << c.min << " tmin=" << c.tmin << " hyst=" << c.hyst << " range=" << kTrangeItems[item]
            << " th1=" << c.th1 << " th2=" << c.th2;
    CurveModel model = BuildCurveModel(Texts(changes.str(), static_cast<std::size_t>(pwm), channel));
    CurvePaths paths = BuildCurvePaths(model, pwm, 0, range);

    SCOPED_TRACE(testing::Message() << "round " << round << " shape " << expected.shape);
    if (expected.tie) {
      ++ties;
      // The end of the ramp may be off by one degree on either side; the rest of the drawing is the same.
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
  }
  EXPECT_EQ(shapes.size(), 14U);
  EXPECT_LT(ties, 1200);
}

double Percent(int duty) {
  return duty * 100.0 / 255;
}

TEST(ChipCorners, AreWhereTheChipsDutyBeginsToRiseAndIsAtItsMaximum) {
  for (int trange = 0; trange < 16; ++trange) {
    for (const auto& [least, most] : {std::pair{0, 255}, {64, 255}, {77, 180}, {254, 255}}) {
      const auto corners = ChipCorners({.tmin = 30, .trange = trange, .minDuty = least, .maxDuty = most});
      ASSERT_EQ(corners.size(), 2U);
      EXPECT_EQ(corners[0], (ChipCorner{30, Percent(least)}));
      EXPECT_EQ(corners[1].y, Percent(most));
      const int quarters = static_cast<int>((corners[1].x - 30) * 4);
      EXPECT_GE(least + simulator::CurveRise(quarters, trange), most) << trange;
      EXPECT_LT(least + simulator::CurveRise(quarters - 1, trange), most) << trange;
    }
  }
  // At 13.3 degrees a limit cuts the ramp after 5 degrees: 64 percent * 5 / 13.33.
  const auto cut = ChipCorners({.tmin = 30, .trange = 8, .minDuty = 0, .maxDuty = 255, .limit = 35});
  EXPECT_EQ(cut.back(), (ChipCorner{35, Percent(61)}));
  EXPECT_EQ(ChipCorners({.tmin = 30, .minDuty = 90, .maxDuty = 80}), (std::vector{ChipCorner{30, Percent(80)}}));
  EXPECT_TRUE(ChipCorners({.tmin = 30, .maxDuty = 80, .limit = 30}).empty());
}

}  // namespace
}  // namespace zth::windows

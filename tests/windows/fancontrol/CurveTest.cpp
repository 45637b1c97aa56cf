#include <map>
#include <sstream>

#include <gtest/gtest.h>

#include "windows/fancontrol/CurveModel.h"

namespace zth::windows {

namespace {

constexpr ChartRange kStartRange{160, 120};

/// The controls' texts for a curve of one PWM by one channel, plain but for the changes: "therm1 therm2 on max=50
/// min=20 tmin=30 range=20°C th1=45 th2=50". All others hold something else.
CurveTexts Texts(const std::string& changes = {}, std::size_t pwm = 0, std::size_t channel = 0) {
  CurveTexts texts;
  texts.maxPwm = "100";
  for (auto& other : texts.pwms) other = {"Off", "77", true};
  for (auto& other : texts.channels) other = {"11", "2°C", "1", "12", "13"};
  texts.pwms[pwm] = {kControlItems[channel], "25", false};
  texts.channels[channel] = {"30", "20°C", "4", "45", "50"};
  auto& own = texts.channels[channel];
  std::map<std::string, std::string*> places{{"max", &texts.maxPwm}, {"min", &texts.pwms[pwm].minPwm},
                                             {"tmin", &own.tmin},    {"range", &own.trange},
                                             {"th1", &own.th1},      {"th2", &own.th2}};
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

// The curve as it is drawn, of each PWM by each channel.
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
      {"the limit lies at Tmin", "therm2 th2=30", "-40,0 30,0 30,100 119,100", ""},
      {"the lower of two limits counts, behind the ramp", "therm1 therm2 th1=90 th2=80",
       "-40,0 30,0 30,25 53,100 80,100 80,100 119,100", kDown},
      {"the limit lies exactly at the ramp's end", "therm1 max=89 range=16°C th1=46",
       "-40,0 30,0 30,25 46,89 46,89 46,100 119,100", kDown},
      {"a limit beyond the chart is left out", "therm1 th1=125", kPlain, kDown},
      {"without a limit it ends at a low maximum", "max=60", "-40,0 30,0 30,25 41,60 119,60", kDown},
      {"a maximum below the minimum", "max=20", "-40,0 30,0 30,20 30,20 119,20", "26,0 26,20 30,20"},
      {"always on", "on", "-40,25 30,25 30,25 53,100 119,100", ""},
      {"flat, cut by the limit", "max=20 therm2", "-40,0 30,0 30,20 30,20 50,20 50,100 119,100", "26,0 26,20 30,20"},
      {"from below zero", "tmin=-20 min=0 max=64 range=80°C", "-40,0 -20,0 -20,0 60,64 119,64", "-24,0 -24,0 -20,0"},
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

TEST(Curve, RoundsItsRampEndInSinglePrecision) {
  const std::pair<const char*, int> rows[]{{"range=2°C tmin=20 min=14 max=62", 22},
                                           {"range=26.7°C tmin=63 min=65 max=97", 76},
                                           {"range=80°C tmin=2 min=75 max=81", 9},
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

}  // namespace
}  // namespace zth::windows

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "characterise/Fits.h"
#include "characterise/Proposal.h"
#include "link/USBStuff.h"
#include "simulator/Noise.h"
#include "tests/characterise/Rig.h"

namespace zth::testing {
namespace {

using characterise::Characterisation;
using characterise::Ending;
using characterise::Settings;
using characterise::TachResult;
using characterise::TachState;

const TachResult& TachOf(const Characterisation& data, int tach) {
  for (const characterise::FanResult& fan : data.fans) {
    for (const TachResult& result : fan.tachs) {
      if (result.tach == tach) return result;
    }
  }
  throw std::runtime_error("no such tach");
}

TEST(CharacteriseDiagnosis, EachFaultOfAFanIsSaidInWords) {
  struct Case {
    const char* scenario;
    int tach;
    TachState state;
    const char* says;
  };
  const Case cases[] = {
      {"fault at 0 fan 2 stalled", 2, TachState::Dead, "No pulses"},
      {"fault at 0 tach 5 misses 100 %", 5, TachState::Dead, "No pulses"},
      {"fault at 0 tach 1 noisy 20 %", 1, TachState::Noisy, "scatter"},
      {"fan-stall = 0\nfan-start = 0", 1, TachState::NeverStops, "every duty"},
      {"fan-stall = 0\nfan-start = 0\nfan-idle = 90", 1, TachState::DoesNotFollow, "whatever the duty"},
      {"", 1, TachState::Good, "Turns from"},
  };
  for (const Case& one : cases) {
    Rig rig(std::string("noise = 1\n") + one.scenario);
    const auto before = rig.Found();
    Settings settings;
    settings.pwms = {1, 2};
    settings.dutyStep = 10;
    settings.settleMost = 12;
    const Characterisation& data = rig.Run(settings);
    ASSERT_EQ(data.ending, Ending::Done) << data.endWords;
    const TachResult& tach = TachOf(data, one.tach);
    EXPECT_EQ(tach.state, one.state) << one.scenario << ": " << tach.words;
    EXPECT_NE(tach.words.find(one.says), std::string::npos) << tach.words;
    EXPECT_EQ(TachOf(data, 6).state == TachState::Good, std::string(one.scenario).find("fan-") == std::string::npos);
    EXPECT_EQ(rig.Found(), before) << one.scenario;
  }
}

TEST(CharacteriseDiagnosis, AFanWithoutItsSignalDoesNotFollow) {
  Rig rig;
  link::WriteBoardPort(0x4A, 0x0F);  // the switches of PWM1 and PWM2 open
  link::WriteRegisterValue(0x58, "Pin Config 2"_reg, 0xCA);
  chip::ReadPinConfiguration();
  Settings settings;
  settings.pwms = {1, 3};
  settings.dutyStep = 25;
  const Characterisation& data = rig.Run(settings);
  EXPECT_EQ(TachOf(data, 1).state, TachState::DoesNotFollow) << TachOf(data, 1).words;
  EXPECT_EQ(TachOf(data, 3).state, TachState::Good) << TachOf(data, 3).words;
}

TEST(CharacteriseDiagnosis, AHeaterThatDoesNotHeatIsSwitchedOffSoon) {
  Rig rig("heater-power = 0");
  Settings settings;
  settings.fans = false;
  settings.heat = true;
  const Characterisation& data = rig.Run(settings);
  ASSERT_EQ(data.ending, Ending::Done) << data.endWords;
  for (const characterise::HeatStep& step : data.heat->steps) {
    EXPECT_FALSE(step.good);
    EXPECT_NE(step.words.find("does not rise"), std::string::npos) << step.words;
    EXPECT_LT(step.end - step.begin, 30);
  }
  EXPECT_FALSE(data.heat->proposal.possible);
  EXPECT_EQ(data.heat->proposal.fields.size(), 0U);
}

TEST(CharacteriseDiagnosis, TheProposalKeepsTheTemperatureOnTheBoard) {
  for (const double keep : {49.0, 53.0, 58.0}) {
    Rig rig("noise = 1\nspread = 0");
    const auto before = rig.Found();
    Settings settings;
    settings.heat = true;
    settings.controller = true;
    settings.heaterStep = 100;
    settings.keep = keep;
    settings.profileHold = 400;
    settings.temperatureLimit = 100;
    const Characterisation& data = rig.Run(settings);
    ASSERT_EQ(data.ending, Ending::Done) << data.endWords;
    EXPECT_EQ(rig.Found(), before);
    ASSERT_TRUE(data.heat->proposal.possible) << data.heat->proposal.words;
    ASSERT_TRUE(data.controller && data.controller->usedProposal);
    ASSERT_EQ(data.controller->steps.size(), 3U);
    const characterise::ProfileStep& heated = data.controller->steps[1];
    EXPECT_LT(heated.finalTemperature, keep + 1);
    EXPECT_NEAR(heated.finalTemperature, data.heat->proposal.predicted, 1.5);
    EXPECT_NEAR(heated.finalDuty, data.heat->proposal.predictedDuty, 6);
    EXPECT_TRUE(heated.settling);
    EXPECT_LT(heated.overshoot, 5);
    EXPECT_LT(heated.temperatureNoise, 0.5);
    EXPECT_GT(heated.speedNoise, 0);
  }
}

TEST(CharacteriseDiagnosis, ATemperatureThatCannotBeKeptIsNoProposal) {
  Characterisation data;
  data.heat.emplace();
  for (const double duty : {100.0, 60.0, 30.0}) {
    const double gain = 1 / (1.0 + 0.02 * duty);
    data.heat->steps.push_back({.duty = duty, .before = {25 + 20 * gain, 0.01}, .gain = {gain, 0.001}, .good = true});
  }
  characterise::FitDuties(*data.heat);
  EXPECT_NEAR(data.heat->air->value, 25, 0.01);
  EXPECT_NEAR(data.heat->standing->value, 20, 0.1);
  EXPECT_NEAR(characterise::RestTemperature(*data.heat, 50, 60), 65, 0.1);
  Settings settings;
  settings.keep = 50;
  characterise::Propose(data, settings);
  EXPECT_FALSE(data.heat->proposal.possible);
  settings.keep = 60;
  characterise::Propose(data, settings);
  EXPECT_TRUE(data.heat->proposal.possible) << data.heat->proposal.words;
  EXPECT_LE(data.heat->proposal.predicted, 60.01);
  EXPECT_EQ(data.heat->proposal.fields.front().name, "Remote 1 Tmin");
}

TEST(CharacteriseFits, UncertaintiesCoverTheErrors) {
  simulator::Noise noise(7);
  int covered = 0;
  constexpr int kRounds = 200;
  for (int round = 0; round < kRounds; ++round) {
    std::vector<characterise::Datum> rest;
    std::vector<characterise::Datum> heated;
    for (int i = 0; i < 100; ++i) {
      rest.push_back({i * 0.25, 30 + 0.1 * noise.Bell(), 0});
      heated.push_back({25 + i * 0.5, 30 + 20 * (1 - std::exp(-i * 0.5 / 17.0)) + 0.1 * noise.Bell(), 0});
    }
    const characterise::StepFit fit = characterise::FitStep(rest, heated, 1, 1000);
    ASSERT_TRUE(fit.good);
    EXPECT_NEAR(fit.timeConstant.value, 17, 1);
    EXPECT_NEAR(fit.after.value, 50, 0.5);
    covered += std::abs(fit.timeConstant.value - 17) < fit.timeConstant.sigma ? 1 : 0;
  }
  // A standard uncertainty covers 68 %.
  EXPECT_GT(covered, kRounds * 0.58);
  EXPECT_LT(covered, kRounds * 0.78);
}

TEST(CharacteriseProgress, GrowsToItsEndAndTheTimeLeftIsTrue) {
  Rig rig;
  Settings settings;
  settings.pwms = {1};
  rig.engine->Start(settings);
  double last = 0;
  double atHalf = 0;
  double leftAtHalf = 0;
  int finished = 0;
  rig.engine->OnFinished([&] { ++finished; });
  while (rig.engine->IsRunning()) {
    rig.GoOn(1);
    const double progress = rig.engine->Progress();
    EXPECT_GE(progress, last);
    last = progress;
    if (progress < 0.5) {
      atHalf = rig.engine->Data().seconds;
      leftAtHalf = rig.engine->SecondsLeft();
    }
  }
  EXPECT_EQ(last, 1);
  EXPECT_EQ(finished, 1);
  EXPECT_NEAR(leftAtHalf, rig.engine->Data().seconds - atHalf, 0.4 * leftAtHalf);
  EXPECT_GT(rig.engine->Data().points.size(), 500U);
}

}  // namespace
}  // namespace zth::testing

#include <array>
#include <cmath>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "characterise/Proposal.h"
#include "tests/characterise/Rig.h"

namespace zth::testing {
namespace {

using characterise::Settings;

/// A board whose physics are drawn at random, and what a run ought to find.
struct Drawn {
  explicit Drawn(unsigned seed) : random(seed) {
    speed = In(2000, 9000);
    idle = In(5, 25);
    stall = In(8, 30);
    start = stall + In(3, 25);
    rise = In(0.6, 1.5);
    coast = In(0.8, 2.5);
    power = In(4, 8);
    spill = In(0, 20);
    capacity = In(2, 6);
    still = In(0.08, 0.14);
    moving = In(0.15, 0.3);
    scenario = "spread = 0\nnoise = 1\nseed = " + std::to_string(seed) + Line("fan-speed", speed) +
               Line("fan-idle", idle) + Line("fan-stall", stall) + Line("fan-start", start) + Line("fan-rise", rise) +
               Line("fan-coast", coast) + Line("heater-power", power) + Line("heater-to-local", spill) +
               Line("heat-capacity", capacity) + Line("still-air", still) + Line("moving-air", moving) + "\n";
  }

  double In(double low, double high) { return std::uniform_real_distribution(low, high)(random); }
  static std::string Line(const char* key, double value) {
    return std::string("\n") + key + " = " + std::to_string(value);
  }

  double Rpm(double duty) const { return speed * (idle / 100 + (1 - idle / 100) * duty / 100); }
  /// With all eight fans at the duty, the whole flow is Rpm / speed.
  double Conductance(double duty) const { return still + moving * Rpm(duty) / speed; }
  double TimeConstant(double duty) const { return capacity / Conductance(duty); }
  /// K per percent of the heater.
  double Gain(double duty) const { return power / 100 * (1 - spill / 100) / Conductance(duty); }

  std::mt19937 random;
  double speed = 0, idle = 0, stall = 0, start = 0, rise = 0, coast = 0;
  double power = 0, spill = 0, capacity = 0, still = 0, moving = 0;
  std::string scenario;
};

/// The largest error of each kind over all boards.
struct Worst {
  void Take(double& worst, double measured, double truth) {
    worst = std::max(worst, std::abs(measured - truth) / truth);
  }
  double speed = 0, fanConstant = 0, heatConstant = 0, gain = 0, predicted = 0;
};

class Accuracy : public ::testing::TestWithParam<unsigned> {};

TEST_P(Accuracy, AnyBoardIsMeasuredAsItIs) {
  const Drawn board(GetParam());
  Rig rig(board.scenario);
  const auto before = rig.Found();
  Settings settings;
  settings.heat = true;
  settings.pulses = 2;
  settings.heaterStep = 50;
  settings.temperatureLimit = 110;
  const characterise::Characterisation& data = rig.Run(settings);
  ASSERT_EQ(data.ending, characterise::Ending::Done) << data.endWords;
  EXPECT_TRUE(data.boardAsFound);
  EXPECT_EQ(rig.Found(), before);

  Worst worst;
  for (const characterise::FanResult& fan : data.fans) {
    for (const characterise::TachResult& tach : fan.tachs) {
      ASSERT_EQ(tach.state, characterise::TachState::Good) << tach.words;
      EXPECT_GT(board.stall, *tach.stallDuty - 0.3) << "tach " << tach.tach;
      EXPECT_LT(board.stall, *tach.stallDuty + settings.dutyStep + 0.3);
      EXPECT_LT(board.start, *tach.startDuty + 0.3);
      EXPECT_GT(board.start, *tach.startDuty - settings.dutyStep - 0.3);
      for (const characterise::SpeedAtDuty& speed : tach.speeds) {
        if (speed.rpm > 0) worst.Take(worst.speed, speed.rpm, board.Rpm(speed.duty));
      }
      ASSERT_TRUE(tach.timeConstant);
      worst.Take(worst.fanConstant, tach.timeConstant->value, board.rise);
    }
  }
  ASSERT_TRUE(data.heat);
  for (const characterise::HeatStep& step : data.heat->steps) {
    ASSERT_TRUE(step.good) << step.duty << ": " << step.words;
    worst.Take(worst.heatConstant, step.timeConstant.value, board.TimeConstant(step.duty));
    worst.Take(worst.gain, step.gain.value, board.Gain(step.duty));
  }
  EXPECT_LT(worst.speed, 0.01);
  EXPECT_LT(worst.fanConstant, 0.05);
  EXPECT_LT(worst.heatConstant, 0.05);
  EXPECT_LT(worst.gain, 0.05);
  for (const auto& [name, worstOf] : {std::pair("speed", worst.speed), std::pair("fan_constant", worst.fanConstant),
                                      std::pair("heat_constant", worst.heatConstant), std::pair("gain", worst.gain)}) {
    RecordProperty(name, std::to_string(worstOf));
  }
}

INSTANTIATE_TEST_SUITE_P(Twenty, Accuracy, ::testing::Range(1U, 21U));

}  // namespace
}  // namespace zth::testing

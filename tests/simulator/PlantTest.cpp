#include <cmath>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "simulator/Plant.h"

namespace zth::simulator {
namespace {

TEST(Plant, RestsAtTheClosedFormTemperaturesForEveryDriveOfFansAndHeaters) {
  for (const double fanDrive : {0.0, 0.4, 1.0}) {
    for (const double heater : {0.0, 0.5, 1.0}) {
      const PlantOptions options{.spread = 0, .ripple = 0};
      Plant plant(options);
      for (int fan = 0; fan < kTachs; ++fan) plant.SetFanDrive(fan, fanDrive);
      plant.SetHeater(0, heater);
      plant.SetHeater(1, heater / 2);
      for (int i = 0; i < 100; ++i) plant.Step(10);

      // All fans alike: the flow is the speed's share of full speed, and watts over watts a kelvin is what it lifts.
      const double flow = fanDrive == 0 ? 0 : 0.1 + 0.9 * fanDrive;
      const double watts[] = {0.55 + 0.12 * 6 * 1.5 * heater, 1.4 + 0.88 * 6 * heater, 1.6 + 0.88 * 3 * heater, 1.3};
      const double still[] = {0.09, 0.08, 0.08, 0.08};
      const double moving[] = {0.08, 0.22, 0.22, 0.22};
      for (int i = 0; i < kTemperatures; ++i) {
        const double lift = watts[i] / (still[i] + moving[i] * flow);
        EXPECT_NEAR(plant.TemperatureC(i) - 25, lift, lift * 0.01) << i;
      }
      for (int fan = 0; fan < kTachs; ++fan) EXPECT_NEAR(plant.Rpm(fan), 4800 * flow, 1);
    }
  }
}

TEST(Plant, WarmsAsTheExponentialOfItsHeatCapacity) {
  Plant plant({.spread = 0, .ripple = 0});
  const double start = plant.TemperatureC(1);
  plant.SetHeater(0, 1);
  plant.Step(20);
  // 5.28 W more over 0.08 W/K, with 4 J/K behind it.
  EXPECT_NEAR(plant.TemperatureC(1) - start, 66 * (1 - std::exp(-20 * 0.08 / 4)), 0.01);
}

TEST(Plant, EnergyInIsEnergyOutPlusWhatTheBodiesKeep) {
  const PlantOptions options;
  Plant plant(options);
  std::mt19937 random(3);
  const auto drive = [&random] { return static_cast<double>(random() % 101) / 100.0; };
  double balance = 0, kept = 0, moved = 0;
  std::vector<double> before;
  for (int i = 0; i < kTemperatures; ++i) before.push_back(plant.TemperatureC(i));
  constexpr double kStep = 0.01;
  for (int n = 0; n < 30000; ++n) {
    if (n % 1500 == 0) {
      plant.SetHeater(0, drive());
      plant.SetHeater(1, drive());
      for (int fan = 0; fan < kTachs; ++fan) plant.SetFanDrive(fan, drive());
    }
    plant.Step(kStep);
    for (int i = 0; i < kTemperatures; ++i) {
      balance += kStep * (plant.Heating(i) - plant.Cooling(i) * (plant.TemperatureC(i) - options.ambientC));
      moved += kStep * plant.Heating(i);
    }
  }
  for (int i = 0; i < kTemperatures; ++i) {
    kept += options.heatCapacity[static_cast<std::size_t>(i)] *
            (plant.TemperatureC(i) - before[static_cast<std::size_t>(i)]);
  }
  EXPECT_NEAR(balance, kept, 0.001 * moved);
}

TEST(Plant, AnyCuttingOfAStretchOfTimeComesToTheSame) {
  std::mt19937 random(7);
  const auto drive = [](Plant& plant) {
    for (int fan = 0; fan < kTachs; ++fan) plant.SetFanDrive(fan, 0.15 * fan);
    plant.SetHeater(0, 0.8);
    plant.SetHeater(1, 0.3);
  };
  Plant whole;
  drive(whole);
  whole.Step(30);
  for (int round = 0; round < 5; ++round) {
    Plant cut;
    drive(cut);
    double left = 30;
    while (left > 0) {
      const double piece = std::min(left, std::ldexp(1.0, -static_cast<int>(random() % 12)));
      cut.Step(piece);
      left -= piece;
    }
    for (int i = 0; i < kTemperatures; ++i) EXPECT_NEAR(cut.TemperatureC(i), whole.TemperatureC(i), 0.01);
    for (int fan = 0; fan < kTachs; ++fan) EXPECT_NEAR(cut.Rpm(fan), whole.Rpm(fan), 0.001 * whole.Rpm(fan));
  }
}

TEST(Plant, AFanStartsAtItsStartThresholdAndKeepsTurningDownToItsStallThreshold) {
  Plant plant({.spread = 0});
  const auto settle = [&plant](double duty) {
    plant.SetFanDrive(0, duty);
    plant.Step(30);
    return plant.Rpm(0);
  };
  EXPECT_EQ(settle(0.27), 0);
  EXPECT_NEAR(settle(0.29), plant.SteadyRpm(0, 0.29), 1);
  EXPECT_NEAR(settle(0.16), plant.SteadyRpm(0, 0.16), 1);
  EXPECT_EQ(settle(0.14), 0);
  EXPECT_EQ(settle(0.16), 0);
  settle(1);
  plant.SetFanBlocked(0, true);
  plant.Step(0.01);
  EXPECT_EQ(plant.Rpm(0), 0);
}

TEST(Plant, UnitsDifferBySeedWithinTheirSpread) {
  Plant one({.seed = 1}), same({.seed = 1}), other({.seed = 2});
  bool differs = false;
  for (int fan = 0; fan < kTachs; ++fan) {
    EXPECT_EQ(one.SteadyRpm(fan, 1), same.SteadyRpm(fan, 1));
    EXPECT_NEAR(one.SteadyRpm(fan, 1), 4800, 4800 * 0.04);
    differs = differs || one.SteadyRpm(fan, 1) != other.SteadyRpm(fan, 1);
  }
  EXPECT_TRUE(differs);
}

TEST(Plant, SuppliesStayWithinAPercentOfNominalAndMove) {
  Plant plant;
  double low = 2, high = 0;
  for (int i = 0; i < 2000; ++i) {
    plant.Step(0.05);
    for (int pin = 0; pin < kVoltagePins; ++pin)
      EXPECT_NEAR(plant.SupplyRatio(static_cast<VoltagePin>(pin)), 1, 0.0101);
    low = std::min(low, plant.SupplyRatio(VoltagePin::P23));
    high = std::max(high, plant.SupplyRatio(VoltagePin::P23));
  }
  EXPECT_NEAR(high - low, 0.008, 0.0005);
}

}  // namespace
}  // namespace zth::simulator

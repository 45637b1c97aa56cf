#include <cmath>

#include <gtest/gtest.h>

#include "simulator/Plant.h"

namespace zth::simulator {
namespace {

TEST(Plant, RestsAtTheClosedFormTemperaturesForEveryDriveOfFansAndHeaters) {
  for (const double fanDrive : {0.0, 0.4, 1.0}) {
    for (const double heater : {0.0, 0.5, 1.0}) {
      Plant plant({.spread = 0, .ripple = 0});
      for (int fan = 0; fan < kTachs; ++fan) plant.SetFanDrive(fan, fanDrive);
      plant.SetHeater(0, heater);
      plant.SetHeater(1, heater / 2);
      plant.Step(1000);

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

TEST(Plant, WarmsAsTheExponentialOfItsHeatCapacityHoweverTheTimeIsCut) {
  Plant whole({.spread = 0, .ripple = 0});
  whole.SetFanDrive(7, 0.5);
  whole.Step(20);
  for (const double step : {20.0, 1.0, 0.01, 1.0 / 1024}) {
    Plant still({.spread = 0, .ripple = 0}), blown = still;
    const double start = still.TemperatureC(1);
    still.SetHeater(0, 1);
    blown.SetFanDrive(7, 0.5);
    for (double left = 20; left > step / 2; left -= step) still.Step(step), blown.Step(step);
    // 5.28 W more over 0.08 W/K, with 4 J/K behind it.
    EXPECT_NEAR(still.TemperatureC(1) - start, 66 * (1 - std::exp(-20 * 0.08 / 4)), 0.01) << step;
    EXPECT_NEAR(blown.TemperatureC(1), whole.TemperatureC(1), 0.01) << step;
    EXPECT_NEAR(blown.Rpm(7), whole.Rpm(7), 0.001 * whole.Rpm(7)) << step;
  }
}

TEST(Plant, AFanStartsAtItsStartThresholdAndKeepsTurningDownToItsStallThreshold) {
  Plant plant({.spread = 0});
  for (const auto& [duty, turns] : {std::pair{0.27, 0}, {0.29, 1}, {0.16, 1}, {0.14, 0}, {0.16, 0}, {1.0, 1}}) {
    plant.SetFanDrive(0, duty);
    plant.Step(30);
    EXPECT_NEAR(plant.Rpm(0), turns * 4800 * (0.1 + 0.9 * duty), 1) << duty;
  }
  const double turning = plant.Rpm(0);
  plant.SetFanDrive(0, 0.5);
  plant.Step(0.8);
  EXPECT_NEAR(plant.Rpm(0), 2640 + (turning - 2640) * std::exp(-0.5), 15) << "it coasts more slowly than it spins up";
  plant.SetFanBlocked(0, true);
  plant.Step(0.01);
  EXPECT_EQ(plant.Rpm(0), 0);
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

#include <gtest/gtest.h>

#include "chip/Measurements.h"
#include "tests/support/SimulatedDesk.h"
#include "tests/support/Steps.h"

namespace zth::testing {
namespace {

/// What a new user sees: a start with Easy Setup's defaults, ten seconds, then a heater.
TEST(OutOfTheBox, FansSpinTheDiodesAreWarmAndAHeaterWarmsOne) {
  SimulatedDesk board;
  Desk& desk = board.desk;
  desk.settings.values.erase("OpenEasySetup");
  EXPECT_EQ(desk.RunMain(), std::nullopt);
  auto* easySetup = desk.Main().FindWindow("frmEasySetup");
  ASSERT_NE(easySetup, nullptr);
  Desk::Press(*easySetup, "cmdApply");
  desk.Advance(10000);
  const chip::MeasurementSet& now = chip::Measurements;
  for (const float degrees : now.Temperature) {
    EXPECT_GT(degrees, 20);
    EXPECT_LT(degrees, 60);
  }
  for (std::size_t fan = 0; fan < 4; ++fan) EXPECT_GT(now.TachRpm[fan], 500) << fan;
  for (const auto percent : now.PwmPercent) EXPECT_GT(percent, 20);
  EXPECT_NEAR(now.Voltage[18], 3.3F, 0.1F);

  const float before = now.Temperature[1];
  Do(desk.Open("frmHeaters"), "sldHeater(0)=100");
  desk.Advance(10000);
  EXPECT_GT(now.Temperature[1], before + 2) << "in seconds, not in minutes";
}

}  // namespace
}  // namespace zth::testing

#include <gtest/gtest.h>

#include "tests/simulator/ChipOnBench.h"

namespace zth::simulator {
namespace {

TEST(Output, ManualDutyIsTakenInManualModeOnlyAndReadsInvertedAtRevisionZero) {
  for (const int revision : {0, 1}) {
    ChipOnBench bench(revision);
    bench.Play("~1 d0:192 AA=20 ~1 d0:192 21=F0 ~1 d0:192 AA=20 ~1 d0:32");  // manual keeps the duty before
    EXPECT_EQ(bench.Read(0xAA), revision == 0 ? 0xDF : 0x20);
    bench.Play("AA=30 21=F1 ~1 d0:48");  // so does a write that stays in manual
  }
}

TEST(Output, PolarityTurnsThePinOverAndNotTheDuty) {
  ChipOnBench bench("21=F0 22=E0 ~0.1 AA=33 AB=33 ~0.1 AB:33");
  EXPECT_DOUBLE_EQ(*bench.chip.Outputs().pwmHigh[0], 0.2);
  EXPECT_DOUBLE_EQ(*bench.chip.Outputs().pwmHigh[1], 0.8);
  bench.Write(0x13, 0xF4);  // pin 31 becomes GPIO 5
  EXPECT_FALSE(bench.chip.Outputs().pwmHigh[0].has_value());
}

TEST(Output, SpinUpLastsAsLongAsItsFieldSaysUnlessTheFanAnswersFirst) {
  constexpr double kSeconds[] = {0, 0.1, 0.25, 0.4, 0.667, 1, 2, 4};
  for (int field = 1; field < 8; ++field) {
    ChipOnBench bench({{0x21, 0xF0 | field}, {0xAA, 0x40}});
    bench.Run(kTickSeconds);
    const double seconds = kTickSeconds + bench.RunUntil([&] { return bench.Duty(0) != 255; });
    EXPECT_NEAR(seconds, kSeconds[field] + kTickSeconds, 0.0051) << field;
    EXPECT_EQ(bench.Duty(0), 0x40);
  }
  for (const char* steps : {"01=01 ~0.1 d0:64", "01=11 ~0.1 d0:255"}) {  // fast spin-up, and not
    ChipOnBench("21=F7 AA=40 f0=1200").Play(steps);
  }
}

TEST(Output, EnhancedAcousticsRampsOverTheTimeOfItsField) {  // NOLINT(readability-function-size): each by each
  constexpr double kSeconds[] = {35.0, 17.6, 11.8, 7.0, 4.4, 3.0, 1.6, 0.8};
  for (int pwm = 0; pwm < 4; ++pwm) {
    for (int row = 0; row < 12; ++row) {  // the last four slowed down
      const int field = row < 8 ? row : row - 4, slow = row < 8 ? 0 : 1;
      // Remote 2 drives the output from Min 50 to full duty in one leap of the temperature.
      ChipOnBench bench({{0x21 + pwm, 0x50 | slow << 3}, {0x28 + pwm, 50}, {0x2C, 255}, {0x62, 0x00}});
      bench.Write({{0x5E, Degrees(40)}, {0x1A + pwm / 2, pwm % 2 == 0 ? field << 2 : field << 5}});
      bench.Celsius(2) = 40;
      bench.Run(1);
      bench.Write(0x1A + pwm / 2, pwm % 2 == 0 ? field << 2 | 1 : field << 5 | 2);
      bench.Celsius(2) = 60;
      const double seconds = bench.RunUntil([&] { return bench.Duty(pwm) >= 254; });
      const double expected = kSeconds[field] * (slow == 1 ? 4 : 1) * (253.5 - 50) / 255;
      EXPECT_NEAR(seconds, expected, kConversionSeconds + 0.02) << "PWM" << pwm + 1 << " field " << field;
    }
  }
}

TEST(Output, ARampFromStandstillBeginsAtMinAndOneToStandstillGoesAllTheWayDown) {
  ChipOnBench bench("1A=01 21=10 28=64 2C=FF 5C=68 60=00 t0=30 ~1 d0:0 t0=42");  // Tmin 40, Min 100
  bench.Run(kConversionSeconds);
  EXPECT_NEAR(bench.Duty(0), 100, 1);
  bench.Play("t0=30 ~5");
  EXPECT_NEAR(bench.Duty(0), 100 - 5 * 255.0 / 35, 3);
  bench.Play("~15 d0:0");
}

TEST(Output, WhatGoesBeforeTheCurveSparesOffAndManualUnlessItIsForAll) {
  // Off, manual at 40, and two that follow Remote 2 far below its Tmin.
  ChipOnBench bench("21=90 22=F0 23=50 24=50 AB=28 5E=9A ~ d0:0 d1:40 d2:0 d3:0");
  bench.pins.vrHot[0] = true;
  bench.Play("t1=101 ~ d0:0 d1:40 d2:255 d3:255 0D=03 ~ d0:0 d1:40 d2:0 d3:0");   // THERM1 asserts at 100, may boost
  bench.Play("12=62 ~ d0:0 d1:40 d2:255 d3:255 02=88 ~ d0:0 d1:40 d2:0 d3:0");    // so may VR_Hot1
  bench.Play("02=A0 ~ d0:255 d1:255 d2:255 d3:255 02=A2 ~ d0:0 d1:0 d2:0 d3:0");  // full speed, shutdown
}

}  // namespace
}  // namespace zth::simulator

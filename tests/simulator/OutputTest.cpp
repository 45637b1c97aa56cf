#include <gtest/gtest.h>

#include "tests/simulator/ChipOnBench.h"

namespace zth::simulator {
namespace {

TEST(Output, ManualDutyIsTakenInManualModeOnlyAndReadsInvertedAtRevisionZero) {
  for (const int revision : {0, 1}) {
    ChipOnBench bench(static_cast<std::uint8_t>(revision));
    bench.Run(1);
    bench.Write(0xAA, 0x20);  // still automatic: lost
    bench.Run(0.1);
    EXPECT_EQ(bench.chip.Duty(0), 0xC0);
    bench.Write(0x21, 0xF0);  // manual keeps the duty until one is written
    bench.Run(0.1);
    EXPECT_EQ(bench.chip.Duty(0), 0xC0);
    bench.Write(0xAA, 0x20);
    bench.Run(0.1);
    EXPECT_EQ(bench.chip.Duty(0), 0x20);
    EXPECT_EQ(bench.Read(0xAA), revision == 0 ? 0xDF : 0x20);
    bench.Write(0xAA, 0x30);
    bench.Write(0x21, 0xF1);  // a write that stays in manual keeps what was written last
    bench.Run(1);
    EXPECT_EQ(bench.chip.Duty(0), 0x30);
    EXPECT_EQ(bench.Read(0xAA), revision == 0 ? 0xCF : 0x30);
  }
}

TEST(Output, PolarityTurnsThePinOverAndNotTheDuty) {
  ChipOnBench bench;
  bench.Write({{0x21, 0xF0}, {0x22, 0xE0}});
  bench.Run(0.1);
  bench.Write({{0xAA, 51}, {0xAB, 51}});
  bench.Run(0.1);
  const PinOutputs out = bench.chip.Outputs();
  EXPECT_DOUBLE_EQ(*out.pwmHigh[0], 0.2);
  EXPECT_DOUBLE_EQ(*out.pwmHigh[1], 0.8);
  EXPECT_EQ(bench.Read(0xAB), 51);
  bench.Write(0x13, 0xF4);  // pin 31 becomes GPIO 5
  EXPECT_FALSE(bench.chip.Outputs().pwmHigh[0].has_value());
}

TEST(Output, SpinUpLastsAsLongAsItsFieldSaysUnlessTheFanAnswersFirst) {
  struct Row {
    int field;
    double seconds;
  };
  for (const Row& row : {Row{1, 0.1}, Row{2, 0.25}, Row{3, 0.4}, Row{4, 0.667}, Row{5, 1}, Row{6, 2}, Row{7, 4}}) {
    ChipOnBench bench;
    bench.Write(0x21, 0xF0 | row.field);
    bench.Write(0xAA, 0x40);
    int full = 0;
    for (int i = 0; i < 500; ++i) {
      bench.chip.Tick(bench.pins);
      full += bench.chip.Duty(0) == 255;
    }
    EXPECT_NEAR(full * kTickSeconds, row.seconds, 0.0051) << row.field;
    EXPECT_EQ(bench.chip.Duty(0), 0x40);
  }
  for (const int disableFast : {0, 1}) {
    ChipOnBench bench;
    bench.pins.pulsesPerMinute[0] = 1200;
    bench.Write({{0x01, 0x01 | disableFast << 4}, {0x21, 0xF7}, {0xAA, 0x40}});
    bench.Run(0.1);
    EXPECT_EQ(bench.chip.Duty(0), disableFast == 0 ? 0x40 : 255);
  }
}

TEST(Output, EnhancedAcousticsRampsOverTheTimeOfItsField) {
  constexpr double kSeconds[] = {35.0, 17.6, 11.8, 7.0, 4.4, 3.0, 1.6, 0.8};
  for (int pwm = 0; pwm < 4; ++pwm) {
    for (int field = 0; field < 8; ++field) {
      for (const int slow : {0, 1}) {
        if (slow == 1 && field < 4) continue;
        ChipOnBench bench;
        // Remote 2 drives the output from Min 50 to full duty in one leap of the temperature.
        bench.pins.temperatureC[2] = 40;
        bench.Write(0x21 + pwm, 0x50 | slow << 3);
        bench.Write({{0x28 + pwm, 50}, {0x2C, 255}, {0x5E, Degrees(40)}, {0x62, 0x00}});
        bench.Run(1);
        bench.Write(0x1A + pwm / 2, pwm % 2 == 0 ? field << 2 | 1 : field << 5 | 2);
        bench.pins.temperatureC[2] = 60;
        double seconds = 0;
        for (; bench.chip.Duty(pwm) < 254 && seconds < 60; seconds += kTickSeconds) bench.chip.Tick(bench.pins);
        const double expected = kSeconds[field] * (slow == 1 ? 4 : 1) * (253.5 - 50) / 255;
        EXPECT_NEAR(seconds, expected, kConversionSeconds + 0.02) << "PWM" << pwm + 1 << " field " << field;
      }
    }
  }
}

TEST(Output, ARampFromStandstillBeginsAtMinAndOneToStandstillGoesAllTheWayDown) {
  ChipOnBench bench;
  bench.Write({{0x1A, 0x01}, {0x21, 0x10}, {0x28, 100}, {0x2C, 255}, {0x5C, Degrees(40)}, {0x60, 0x00}});
  bench.Run(1);
  ASSERT_EQ(bench.chip.Duty(0), 0);
  bench.pins.temperatureC[0] = 42;
  bench.Run(kConversionSeconds);
  EXPECT_NEAR(bench.chip.Duty(0), 100, 1);
  bench.pins.temperatureC[0] = 30;
  bench.Run(5);
  EXPECT_NEAR(bench.chip.Duty(0), 100 - 5 * 255.0 / 35, 3);
  bench.Run(15);
  EXPECT_EQ(bench.chip.Duty(0), 0);
}

TEST(Output, ThermFullSpeedAndRegulatorHeatSpareOffAndManual) {
  ChipOnBench bench;
  bench.Write({{0x21, 0x90}, {0x22, 0xF0}, {0x23, 0x50}, {0xAB, 40}, {0x5E, Degrees(90)}});
  bench.pins.temperatureC[1] = 101;  // Remote 1 asserts THERM1 at 100
  bench.Convert();
  EXPECT_EQ(bench.chip.Duty(0), 0);
  EXPECT_EQ(bench.chip.Duty(1), 40);
  EXPECT_EQ(bench.chip.Duty(2), 255);
  bench.Write(0x0D, 0x03);
  bench.Run(0.1);
  EXPECT_EQ(bench.chip.Duty(2), 0);
  bench.Write(0x12, 0x62);  // pin 25 is VR_Hot1
  bench.pins.vrHot[0] = true;
  bench.Run(0.1);
  EXPECT_EQ(bench.chip.Duty(2), 255);
  bench.Write(0x02, 0x88);
  bench.Run(0.1);
  EXPECT_EQ(bench.chip.Duty(2), 0);
}

}  // namespace
}  // namespace zth::simulator

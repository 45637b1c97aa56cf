#include <functional>

#include <gmock/gmock.h>

#include "tests/simulator/ChipOnBench.h"

namespace zth::simulator {
namespace {

using testing::ElementsAre;

TEST(Output, ManualDutyIsTakenInManualModeOnlyAndReadsInvertedAtRevisionZero) {
  for (const int revision : {0, 1}) {
    ChipOnBench bench(revision);
    const auto dutyAfter = [&bench](Writes writes) { return bench.Write(writes), bench.Run(1), bench.Duty(0); };
    EXPECT_EQ(dutyAfter({}), 0xC0);
    EXPECT_EQ(dutyAfter({{0xAA, 0x20}}), 0xC0) << "still automatic: lost";
    EXPECT_EQ(dutyAfter({{0x21, 0xF0}}), 0xC0) << "manual keeps the duty until one is written";
    EXPECT_EQ(dutyAfter({{0xAA, 0x20}}), 0x20);
    EXPECT_EQ(bench.Read(0xAA), revision == 0 ? 0xDF : 0x20);
    EXPECT_EQ(dutyAfter({{0xAA, 0x30}, {0x21, 0xF1}}), 0x30) << "a write that stays in manual keeps the last duty";
  }
}

TEST(Output, PolarityTurnsThePinOverAndNotTheDuty) {
  ChipOnBench bench({{0x21, 0xF0}, {0x22, 0xE0}});
  bench.Run(0.1);
  bench.Write({{0xAA, 51}, {0xAB, 51}});
  bench.Run(0.1);
  EXPECT_DOUBLE_EQ(*bench.chip.Outputs().pwmHigh[0], 0.2);
  EXPECT_DOUBLE_EQ(*bench.chip.Outputs().pwmHigh[1], 0.8);
  EXPECT_EQ(bench.Read(0xAB), 51);
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
  for (const auto& [configuration, duty] : {std::pair{0x01, 0x40}, {0x11, 255}}) {  // fast spin-up, and not
    ChipOnBench bench({{0x01, configuration}, {0x21, 0xF7}, {0xAA, 0x40}});
    bench.pins.pulsesPerMinute[0] = 1200;
    bench.Run(0.1);
    EXPECT_EQ(bench.Duty(0), duty);
  }
}

TEST(Output, EnhancedAcousticsRampsOverTheTimeOfItsField) {
  constexpr double kSeconds[] = {35.0, 17.6, 11.8, 7.0, 4.4, 3.0, 1.6, 0.8};
  for (int pwm = 0; pwm < 4; ++pwm) {
    for (int field = 0; field < 8; ++field) {
      for (const int slow : {0, 1}) {
        if (slow == 1 && field < 4) continue;
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
}

TEST(Output, ARampFromStandstillBeginsAtMinAndOneToStandstillGoesAllTheWayDown) {
  ChipOnBench bench({{0x1A, 0x01}, {0x21, 0x10}, {0x28, 100}, {0x2C, 255}, {0x5C, Degrees(40)}, {0x60, 0x00}});
  const auto dutyAt = [&bench](double celsius, double after) {
    bench.Celsius(0) = celsius;
    return bench.Run(after), bench.Duty(0);
  };
  EXPECT_EQ(dutyAt(30, 1), 0);
  EXPECT_NEAR(dutyAt(42, kConversionSeconds), 100, 1);
  EXPECT_NEAR(dutyAt(30, 5), 100 - 5 * 255.0 / 35, 3);
  EXPECT_EQ(dutyAt(30, 15), 0);
}

TEST(Output, WhatGoesBeforeTheCurveSparesOffAndManualUnlessItIsForAll) {
  // Off, manual at 40, and two that follow Remote 2 far below its Tmin.
  ChipOnBench bench({{0x21, 0x90}, {0x22, 0xF0}, {0x23, 0x50}, {0x24, 0x50}, {0xAB, 40}, {0x5E, Degrees(90)}});
  const auto duties = [&](const std::function<void()>& cause) {
    cause();
    bench.Convert();
    return std::array{bench.Duty(0), bench.Duty(1), bench.Duty(2), bench.Duty(3)};
  };
  EXPECT_THAT(duties([] {}), ElementsAre(0, 40, 0, 0));
  EXPECT_THAT(duties([&] { bench.Celsius(1) = 101; }), ElementsAre(0, 40, 255, 255)) << "THERM1 asserted at 100";
  EXPECT_THAT(duties([&] { bench.Write(0x0D, 0x03); }), ElementsAre(0, 40, 0, 0)) << "THERM does not boost";
  EXPECT_THAT(duties([&] { bench.Write(0x12, 0x62), bench.pins.vrHot[0] = true; }), ElementsAre(0, 40, 255, 255));
  EXPECT_THAT(duties([&] { bench.Write(0x02, 0x88); }), ElementsAre(0, 40, 0, 0)) << "VR_Hot1 does not boost";
  EXPECT_THAT(duties([&] { bench.Write(0x02, 0xA0); }), ElementsAre(255, 255, 255, 255)) << "full speed";
  EXPECT_THAT(duties([&] { bench.Write(0x02, 0xA2); }), ElementsAre(0, 0, 0, 0)) << "shutdown";
}

}  // namespace
}  // namespace zth::simulator

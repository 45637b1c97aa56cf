#include <algorithm>

#include "tests/simulator/ChipOnBench.h"

namespace zth::simulator {
namespace {

TEST(ControlLaw, EachChannelsCurveRisesByItsRangeToMaxAndEndsByItsHysteresis) {
  constexpr double kRange[] = {2,        2.5, 10.0 / 3, 4,        5,  20.0 / 3, 8,         10,
                               40.0 / 3, 16,  20,       80.0 / 3, 32, 40,       160.0 / 3, 80};
  for (int each = 0; each < 64; ++each) {
    const int field = each / 4, channel = each % 4, hysteresis = 15 - field;
    ChipOnBench bench({{0x21 + channel, channel << 5 | 0x10}, {0x28 + channel, 51}, {0x2C, 230}});
    bench.Write({{0x5C + channel, Degrees(40)}, {0x60 + channel, field << 4 | hysteresis}});
    const auto expect = [&](double celsius, double duty) {
      bench.Celsius(channel) = celsius;
      bench.Convert();
      EXPECT_EQ(bench.Duty(channel), duty) << "channel " << channel << " field " << field << " at " << celsius;
    };
    expect(39.75, 0);
    for (const int quarters : {0, 1, 2, 3, 5, 15, 44, 171}) {  // 64 percent over the range, ties to the even code
      expect(40 + quarters / 4.0, std::min(230.0, 51 + std::nearbyint(40.8 * quarters / kRange[field])));
    }
    expect(40 - hysteresis, 51);
    expect(39.75 - hysteresis, 0);
  }
}

TEST(ControlLaw, AnOutputFollowsItsSourcesAndTheHottestOfSeveral) {
  constexpr char kChip[] = "28=40 2C=FF 5C=68 5D=68 5E=68 5F=68 60=A0 61=A0 62=A0 63=A0 t0=41 t1=42 t2=44 t3=43 ";
  for (const char* steps :
       {"21=10 ~ d0:72", "21=30 ~ d0:80", "21=50 ~ d0:97", "21=70 ~ d0:88", "21=90 ~ d0:0",
        "21=B0 ~ d0:88 t0=44 ~ d0:97", "21=D0 ~ d0:97 t1=45 ~ d0:105", "21=D0 t0=45 ~ d0:105", "21=D0 t3=45 ~ d0:105",
        "25=91 21=10 t0=30 ~ d0:64", "25=90 21=10 t0=30 ~ d0:0", "21=50 2C=50 ~ d0:80", "21=50 2C=20 ~ d0:32",
        // Either THERM limit gives full duty if the channel is enabled for its pin and the boost is on.
        "21=50 4D=66 0D=02 ~ d0:255", "21=50 4D=66 0D=01 ~ d0:97", "21=50 51=66 0D=01 ~ d0:255",
        "21=50 51=66 0D=02 ~ d0:97", "21=50 4D=66 0E=1B 0D=02 ~ d0:97", "21=50 51=66 0F=1B 0D=01 ~ d0:97"}) {
    ChipOnBench{std::string(kChip) + steps};
  }
}

TEST(ControlLaw, TheCurveGoesThroughThePointsThatTheWindowDraws) {
  // Tmin 30, Trange 20, Min 25 %, Max 100 %, hysteresis 4.
  ChipOnBench("21=10 28=40 2C=FF 5C=5E 60=A4")
      .Play(
          "t0=29.75 ~ d0:0 t0=30 ~ d0:64 t0=50 ~ d0:227 t0=53.5 ~ d0:255 t0=60 ~ d0:255 "
          "t0=29 ~ d0:64 t0=26 ~ d0:64 t0=25.75 ~ d0:0 t0=29.75 ~ d0:0");
}

TEST(ControlLaw, AnOutputRunsAtMaxUntilASettingOfItsOwnDutySetsItUp) {
  // Each write separately; the outputs follow Local and Remote 1 to 3 in order. Writing a value back or writing the
  // present value does not set up an output: a saved configuration brings the fans back as they were.
  for (const auto& [writes, duties] :
       {std::pair{"21=10;28=81;5C=9B;60=C5", " d0:0 d1:192 d2:192 d3:192"},
        {"5D=9B;0B=01", " d0:192 d1:0 d2:192 d3:192"},
        {"5E=9B;0B=02", " d0:192 d1:192 d2:0 d3:192"},
        {"24=70;2B=81;5F=9B;63=C5", " d0:192 d1:192 d2:192 d3:0"},
        {"25=A0", " d0:0 d1:0 d2:192 d3:192"},
        {"26=A0", " d0:192 d1:192 d2:0 d3:0"},
        {"2C=FF", " d0:255 d1:255 d2:255 d3:255"},
        {"0B=3C;01=21;4C=A4;00=80;21=D1 00=80;21=11 25=90 28=80 5D=9A 63=C4 0B=00;28=81 ~1 28=80",
         " d0:192 d1:192 d2:192 d3:192"}}) {
    std::istringstream rest(writes);
    for (std::string write; std::getline(rest, write, ';');) ChipOnBench().Play(write + " ~0.2" + duties);
  }
}

/// Dynamic Tmin on one remote channel: operating point 60 with hysteresis 4, Tmin 50, range 20 to 80.
struct LoopOnBench : ChipOnBench {
  LoopOnBench(int channel, int cycleField, bool standardLoop, double celsius) : remote(channel) {
    Celsius(remote) = celsius;
    Write({{0x59 + remote, Degrees(60)}, {0x64, 0x40}, {0x5C + remote, Degrees(50)}, {0x44 + remote, Degrees(20)}});
    Write({{0x48 + remote, Degrees(80)}, {0x0C, cycleField << 3 * (remote - 1) | standardLoop << 6}});
    Convert();
    Write(0x0B, 1 << (remote - 1));
  }
  int TminAfter(double seconds) { return Run(seconds), Read(0x5C + remote) - 64; }

  int remote;
};

TEST(DynamicTmin, MovesTminOncePerCycleTowardsTheOperatingPoint) {
  for (const int remote : {1, 2}) {
    for (int field = 0; field < 8; ++field) {
      for (const auto& [celsius, step] : {std::pair{61.0, -1}, {60.0, 0}, {56.0, 0}, {55.75, 1}}) {
        LoopOnBench bench(remote, field, false, celsius);
        const double cycle = 0.5 * (1 << field);
        EXPECT_EQ(bench.TminAfter(cycle - 0.02), 50) << "not before the first cycle ends";
        EXPECT_EQ(bench.TminAfter(0.04), 50 + step) << celsius;
        EXPECT_EQ(bench.TminAfter(2 * cycle), 50 + 3 * step) << celsius;
      }
    }
  }
}

TEST(DynamicTmin, StaysWithinTheLimitsOfTheChannel) {
  for (const auto& [celsius, limit] : {std::pair{100.0, 20}, {10.0, 80}}) {
    LoopOnBench bench(1, 0, false, celsius);
    bench.Write(0x0D, 0x03);
    EXPECT_EQ(bench.TminAfter(60), limit);
  }
}

TEST(DynamicTmin, TheStandardLoopTakesLargeStepsWhenFarAndWaitsWhileTheTemperatureApproaches) {
  EXPECT_EQ(LoopOnBench(2, 0, true, 69).TminAfter(0.55), 48);
  for (const bool standardLoop : {true, false}) {
    LoopOnBench falling(2, 0, standardLoop, 66);
    falling.Run(0.2);
    falling.Celsius(2) = 64;
    EXPECT_EQ(falling.TminAfter(0.35), standardLoop ? 50 : 49);
  }
}

TEST(DynamicTmin, DoesNotTouchAChannelThatIsOffOrHasNoDiode) {
  LoopOnBench(1, 0, false, 70).Play("0B=02 ~5 5D:72 0B=01 10=3F ~5 5D:72");
}

TEST(DynamicTmin, AThermEventLoadsTheOperatingPointOfAnEnabledChannel) {
  for (const char* steps : {"0B=04 4E=40 ~.5 4E=9A ~.5 5A:69 5B:A4", "0B=08 4E=40 ~.5 4E=9A ~.5 5A:A4 5B:6B",
                            "0B=10 52=40 ~.5 52=9A ~.5 5A:69 5B:A4", "0B=20 52=40 ~.5 52=9A ~.5 5A:A4 5B:6B",
                            "0B=20 4E=40 ~.5 4E=9A ~.5 5A:A4 5B:A4", "0B=00 52=40 ~.5 52=9A ~.5 5A:A4 5B:A4"}) {
    ChipOnBench("t1=41.5 t2=43.75 ~").Play(steps);  // Remote 2 is above a limit of 0 at once; A4 is the default
  }
}

TEST(Output, ManualDutyIsAcceptedInManualModeOnlyAndReadsInvertedAtRevisionZero) {
  for (const int revision : {0, 1}) {
    ChipOnBench bench(revision);
    bench.Play("~1 d0:192 AA=20 ~1 d0:192 21=F0 ~1 d0:192 AA=20 ~1 d0:32");  // manual keeps the previous duty
    EXPECT_EQ(bench.Read(0xAA), revision == 0 ? 0xDF : 0x20);
    bench.Play("AA=30 21=F1 ~1 d0:48");  // so does a write that keeps it in manual
  }
}

TEST(Output, PolarityInvertsThePinAndNotTheDuty) {
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
  for (const char* steps : {"01=01 ~0.1 d0:64", "01=11 ~0.1 d0:255"}) {  // with and without fast spin-up
    ChipOnBench("21=F7 AA=40 f0=1200").Play(steps);
  }
}

TEST(Output, EnhancedAcousticsRampsOverTheTimeOfItsField) {  // NOLINT(readability-function-size): each by each
  constexpr double kSeconds[] = {35.0, 17.6, 11.8, 7.0, 4.4, 3.0, 1.6, 0.8};
  for (int pwm = 0; pwm < 4; ++pwm) {
    for (int row = 0; row < 12; ++row) {  // the last four are slow
      const int field = row < 8 ? row : row - 4, slow = row < 8 ? 0 : 1;
      // Remote 2 drives the output from Min 50 to full duty in one temperature step.
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

TEST(Output, ARampFromStandstillStartsAtMinAndOneToStandstillGoesAllTheWayDown) {
  ChipOnBench bench("1A=01 21=10 28=64 2C=FF 5C=68 60=00 t0=30 ~1 d0:0 t0=42");  // Tmin 40, Min 100
  bench.Run(kConversionSeconds);
  EXPECT_NEAR(bench.Duty(0), 100, 1);
  bench.Play("t0=30 ~5");
  EXPECT_NEAR(bench.Duty(0), 100 - 5 * 255.0 / 35, 3);
  bench.Play("~15 d0:0");
}

TEST(Output, WhatOverridesTheCurveExceptsOffAndManualUnlessItAppliesToAll) {
  // Off, manual at 40, and two that follow Remote 2 far below its Tmin.
  ChipOnBench bench("21=90 22=F0 23=50 24=50 AB=28 5E=9A ~ d0:0 d1:40 d2:0 d3:0");
  bench.pins.vrHot[0] = true;
  bench.Play("t1=101 ~ d0:0 d1:40 d2:255 d3:255 0D=03 ~ d0:0 d1:40 d2:0 d3:0");   // THERM1 asserts at 100, boost on
  bench.Play("12=62 ~ d0:0 d1:40 d2:255 d3:255 02=88 ~ d0:0 d1:40 d2:0 d3:0");    // VR_Hot1 boost on
  bench.Play("02=A0 ~ d0:255 d1:255 d2:255 d3:255 02=A2 ~ d0:0 d1:0 d2:0 d3:0");  // full speed, shutdown
}

}  // namespace
}  // namespace zth::simulator

#include "tests/simulator/ChipOnBench.h"

namespace zth::simulator {
namespace {

TEST(Status, EachCopyLatchesUntilItsOwnReaderHasSeenTheEndOfTheCause) {
  ChipOnBench("~ t2=90 ~ B8:08 B8:08 t2=30 ~ B8:08 B8:00 C0:08 C0:00");  // the high limit is 85
}

TEST(Status, TemperaturesAreOutOfLimitsOnlyBeyondThem) {
  for (const auto& [channel, out] : {std::pair{"t0", "02"}, {"t1", "04"}, {"t2", "08"}, {"t3", "10"}}) {
    for (const auto& [celsius, bits] : {std::pair{"=85", "00"}, {"=85.25", out}, {"=0", "00"}, {"=-0.25", out}}) {
      ChipOnBench(std::string(channel) + celsius + " ~ C0:" + bits);
    }
  }
}

TEST(Status, AFanIsSlowWhenItsCountPassesTheLimitAndAStalledOneToo) {
  for (int fan = 0; fan < 8; ++fan) {
    ChipOnBench bench({{0x07, 0xFF}, {0x02, 0x40}, {0x78 + fan, 0x10}});  // counts up to 0x10FF
    bench.pins.pulsesPerMinute.fill(3000);
    for (const auto& [count, slow] : {std::pair{0x10FF, false}, {0x1100, true}, {0x10FF, false}, {0, true}}) {
      bench.pins.pulsesPerMinute[static_cast<std::size_t>(fan)] = count == 0 ? 0 : 5400000.0 * 2 / count;
      bench.Run(1.2);
      EXPECT_EQ(bench.ReadAnew(0xC5), slow ? 1 << fan : 0) << count;
    }
    bench.Write(0x78 + fan, 0xFF);
    bench.Play("~0.1 C5 C5:00");  // at 0xFF the limit is off
  }
}

TEST(Status, ThermComparesWithHysteresisAndPassesWhatIsEnabled) {
  for (int therm = 0; therm < 2; ++therm) {
    for (int channel = 0; channel < 4; ++channel) {
      ChipOnBench bench({{0x54, 0x55}, {0x55, 0x55}, {0x0E, 0x01}, {0x0F, 0x01}, {0x0E + therm, 0x01 | 2 << channel}});
      bench.Write(0x4C + 4 * therm + channel, Degrees(70));
      for (const auto& [now, exceeded] :
           {std::pair{70.0, 0}, {70.25, 1}, {65.25, 1}, {65.0, 0}, {70.0, 0}, {80.0, 1}}) {
        bench.Celsius(channel) = now;
        bench.Convert();
        EXPECT_EQ(bench.ReadAnew(0xBA), exceeded << (4 * therm + channel)) << now;
        EXPECT_EQ(bench.Get('m', therm), exceeded);
        EXPECT_EQ((bench.Read(0xC1) >> (3 * therm + 2)) & 1, exceeded) << "the pin's state";
      }
      bench.Play("0E=01 0F=01 ~ m0:0 m1:0");
    }
  }
}

TEST(Status, TheOnTimeIsAFractionOfTheWindowAndHasALimit) {
  constexpr double kSeconds[] = {0.25, 0.5, 1, 2, 4, 8, 8, 8};
  for (int therm = 0; therm < 2; ++therm) {
    for (int field = 0; field < 8; ++field) {
      ChipOnBench bench({{0x0D, field << (therm == 0 ? 2 : 5)}, {0x80 + therm, 100}});
      bool& low = bench.pins.thermLow[static_cast<std::size_t>(therm)] = true;
      bench.Run(kSeconds[field] * 0.4);
      EXPECT_EQ(bench.Read(0xAE + therm), 0) << "nothing before the window ends";
      low = false;
      bench.Run(kSeconds[field] * 0.6 + 0.01);
      EXPECT_NEAR(bench.Read(0xAE + therm), 0.4 * 255, 0.6);
      EXPECT_EQ(bench.Read(0xB9), (1 | 2) << 3 * therm) << "over its limit, and was asserted";
      EXPECT_EQ(bench.Read(0xB9), 1 << 3 * therm);
    }
  }
}

TEST(Status, AlertFollowsTheMasksAndItsMode) {
  ChipOnBench bench("v=2 ~ a:0 t1=90 ~ a:1");
  bench.Play("30=04 a:0 C0:04 30=00");               // a mask affects the pin, not the status
  bench.Play("t1=30 ~ a:1 01=09 a:0 01=01 B8 a:0");  // held until the host has read it, except in comparator mode
}

TEST(Status, RegulatorHeatAndAnOpenCaseShowIfPinsReportThem) {
  ChipOnBench bench;
  bench.pins.vrHot = {true, true};
  bench.pins.pin27Asserted = true;
  bench.Play("~ C1:00 C6:80");
  // VR_Hot on pins 25 and 26; pin 27 is FANMAX instead of chassis intrusion, which the host has not read yet.
  bench.Play("14=02 ~ C1:C0 C6 C6:08 BE:80 BE:00");
}

/// Pins 1 to 4, 28, 29, 31 and 32 as GPIOs, enabled.
constexpr const char* kGpioPins = "10=61 13=00 03=01";

TEST(Gpio, EachPinReadsOrDrivesInItsPolarity) {  // NOLINT(readability-function-size): each by each
  for (int gpio = 0; gpio < 8; ++gpio) {
    for (int behaviour = 0; behaviour < 4; ++behaviour) {
      for (const bool level : {false, true}) {
        const bool output = behaviour >= 2, activeHigh = behaviour % 2 == 1;
        ChipOnBench bench(kGpioPins);
        const auto driven = [&](int pin) { return bench.chip.Outputs().gpioHigh[static_cast<std::size_t>(pin)]; };
        bench.Write(0x09 + gpio / 4, behaviour << 2 * (gpio % 4));
        bench.Set('g', gpio, level);
        bench.Run(0.02);
        for (const bool inactive : {true, false}) {  // an output takes what is written, an input does not
          bench.Write(0xBF, inactive << gpio);
          EXPECT_EQ((bench.Read(0xBF) >> gpio & 1) != 0, output ? inactive : level != activeHigh) << "0 is active";
          EXPECT_EQ(driven(gpio), output ? std::optional(inactive != activeHigh) : std::nullopt);
          EXPECT_EQ(driven((gpio + 1) % 8), std::nullopt);
        }
        bench.Play("03=00 ~0.02 BF:00");
      }
    }
  }
}

TEST(Edo, RisesOnEveryEventThatItsMaskLetsThrough) {
  for (const auto& [bit, cause] :
       {std::pair{0, "g0=0"}, {3, "g3=0"}, {5, "07=10 7C=01"}, {6, "t0=120"}, {7, "6A=10"}}) {
    for (int edo = 0; edo < 2; ++edo) {
      ChipOnBench bench(kGpioPins);
      const std::string own = "e" + std::to_string(edo), other = "e" + std::to_string(1 - edo);
      bench.Write(0x16, 1 << edo);
      bench.Play("v=2 ~ " + own + ":0 " + cause + " ~ " + own + ":1 " + other + ":0");  // the other is not enabled
      bench.Write(0x37 + edo, 0xFF & ~(1 << bit));
      bench.Play(own + ":1");
      bench.Write(0x37 + edo, 1 << bit);
      bench.Play(own + ":0");
    }
  }
}

}  // namespace
}  // namespace zth::simulator

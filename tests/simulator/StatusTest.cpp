#include <optional>

#include <gtest/gtest.h>

#include "tests/simulator/ChipOnBench.h"

namespace zth::simulator {
namespace {

TEST(Status, EachCopyLatchesUntilItsOwnReaderHasSeenTheEndOfTheCause) {
  ChipOnBench bench;
  bench.Convert();
  bench.Celsius(2) = 90;  // above the high limit of 85
  bench.Convert();
  EXPECT_EQ(bench.Read(0xB8), 0x08);
  EXPECT_EQ(bench.Read(0xB8), 0x08) << "the cause stands";
  bench.Celsius(2) = 30;
  bench.Convert();
  for (const int reader : {0xB8, 0xC0}) {
    EXPECT_EQ(bench.Read(reader), 0x08);
    EXPECT_EQ(bench.Read(reader), 0x00) << "each reader has looked for itself";
  }
}

TEST(Status, TemperaturesAreOutOnlyBeyondTheirLimits) {
  for (int channel = 0; channel < 4; ++channel) {
    for (const auto& [celsius, out] : {std::pair{85.0, false}, {85.25, true}, {0.0, false}, {-0.25, true}}) {
      ChipOnBench bench;
      bench.Celsius(channel) = celsius;
      bench.Convert();
      EXPECT_EQ(bench.Read(0xC0), out ? 1 << (1 + channel) : 0) << channel << " at " << celsius;
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
      bench.Read(0xC5);  // what the count before has left
      EXPECT_EQ(bench.Read(0xC5), slow ? 1 << fan : 0) << count;
    }
    bench.Write(0x78 + fan, 0xFF);
    bench.Run(0.1);
    EXPECT_EQ(bench.ReadAnew(0xC5), 0) << "at 0xFF the limit is off";
  }
}

TEST(Status, ThermComparesWithHysteresisAndLetsThroughWhatIsEnabled) {
  for (int therm = 0; therm < 2; ++therm) {
    for (int channel = 0; channel < 4; ++channel) {
      ChipOnBench bench({{0x54, 0x55}, {0x55, 0x55}, {0x0E, 0x01}, {0x0F, 0x01}, {0x0E + therm, 0x01 | 2 << channel}});
      bench.Write(0x4C + 4 * therm + channel, Degrees(70));
      const auto driven = [&] { return bench.chip.Outputs().thermAsserted[static_cast<std::size_t>(therm)]; };
      for (const auto& [now, exceeded] :
           {std::pair{70.0, false}, {70.25, true}, {65.25, true}, {65.0, false}, {70.0, false}, {80.0, true}}) {
        bench.Celsius(channel) = now;
        bench.Convert();
        EXPECT_EQ(bench.ReadAnew(0xBA), exceeded ? 1 << (4 * therm + channel) : 0) << now;
        EXPECT_EQ(driven(), exceeded);
        EXPECT_EQ((bench.Read(0xC1) >> (3 * therm + 2)) & 1, exceeded ? 1 : 0) << "the pin's state";
      }
      bench.Write(0x0E + therm, 0x01);
      bench.Convert();
      EXPECT_FALSE(driven());
    }
  }
}

TEST(Status, TheOnTimeIsTheShareOfTheWindowAndHasItsLimit) {
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

TEST(Status, AlertGoesByTheMasksAndItsMode) {
  ChipOnBench bench;
  const auto alert = [&bench] { return bench.chip.Outputs().alert; };
  bench.pins.volts.fill(2);
  bench.Convert();
  EXPECT_FALSE(alert());
  bench.Celsius(1) = 90;
  bench.Convert();
  EXPECT_TRUE(alert());
  bench.Write(0x30, 0x04);
  EXPECT_FALSE(alert());
  EXPECT_EQ(bench.Read(0xC0), 0x04) << "a mask holds back the pin, not the status";
  bench.Write(0x30, 0x00);
  bench.Celsius(1) = 30;
  bench.Convert();
  EXPECT_TRUE(alert()) << "held until the host has read";
  bench.Write(0x01, 0x09);
  EXPECT_FALSE(alert()) << "in comparator mode it follows the cause";
  bench.Write(0x01, 0x01);
  bench.Read(0xB8);
  EXPECT_FALSE(alert());
}

TEST(Status, RegulatorHeatAndAnOpenCaseShowWherePinsReportThem) {
  ChipOnBench bench;
  bench.pins.vrHot = {true, true};
  bench.pins.pin27Asserted = true;
  bench.Convert();
  EXPECT_EQ(bench.Read(0xC1), 0x00);
  EXPECT_EQ(bench.Read(0xC6), 0x80);
  bench.Write(0x14, 0x02);  // VR_Hot on pins 25 and 26, pin 27 no longer chassis intrusion
  bench.Convert();
  EXPECT_EQ(bench.Read(0xC1), 0xC0);
  EXPECT_EQ(bench.ReadAnew(0xC6), 0x08) << "the pin is FANMAX now";
  EXPECT_EQ(bench.Read(0xBE), 0x80) << "the host's copy, not read so far, has no bit for it";
  EXPECT_EQ(bench.Read(0xBE), 0x00);
}

/// Pins 1 to 4, 28, 29, 31 and 32 as GPIOs, enabled.
constexpr Writes kGpioPins{{0x10, 0x61}, {0x13, 0x00}, {0x03, 0x01}};

TEST(Gpio, EachPinReadsOrDrivesInItsPolarity) {
  for (int gpio = 0; gpio < 8; ++gpio) {
    for (int behaviour = 0; behaviour < 4; ++behaviour) {
      for (const bool level : {false, true}) {
        const bool output = behaviour >= 2, activeHigh = behaviour % 2 == 1;
        ChipOnBench bench(kGpioPins);
        const auto driven = [&](int pin) { return bench.chip.Outputs().gpioHigh[static_cast<std::size_t>(pin)]; };
        bench.Write(0x09 + gpio / 4, behaviour << 2 * (gpio % 4));
        bench.pins.gpioHigh[static_cast<std::size_t>(gpio)] = level;
        bench.Run(0.02);
        for (const bool inactive : {true, false}) {  // what is written; an input does not take it
          bench.Write(0xBF, inactive << gpio);
          EXPECT_EQ((bench.Read(0xBF) >> gpio & 1) != 0, output ? inactive : level != activeHigh) << "0 is active";
          EXPECT_EQ(driven(gpio), output ? std::optional(inactive != activeHigh) : std::nullopt);
          EXPECT_EQ(driven((gpio + 1) % 8), std::nullopt);
        }
        bench.Write(0x03, 0x00);
        bench.Run(0.02);
        EXPECT_EQ(bench.Read(0xBF), 0);
      }
    }
  }
}

TEST(Edo, RisesOnEveryEventThatItsMaskLetsThrough) {
  const struct {
    int bit;
    void (*cause)(ChipOnBench&);
  } rows[] = {{0, [](ChipOnBench& b) { b.pins.gpioHigh[0] = false; }},
              {3, [](ChipOnBench& b) { b.pins.gpioHigh[3] = false; }},
              {5, [](ChipOnBench& b) { b.Write(0x07, 0x10), b.Write(0x7C, 0x01); }},
              {6, [](ChipOnBench& b) { b.Celsius(0) = 120; }},
              {7, [](ChipOnBench& b) { b.Write(0x6A, 0x10); }}};
  for (const auto& row : rows) {
    for (int edo = 0; edo < 2; ++edo) {
      ChipOnBench bench(kGpioPins);
      const auto asserted = [&](int which) { return bench.chip.Outputs().edo[static_cast<std::size_t>(which)]; };
      bench.pins.volts.fill(2.0);
      bench.Write(0x16, 1 << edo);
      bench.Convert();
      EXPECT_FALSE(asserted(edo)) << row.bit;
      row.cause(bench);
      bench.Convert();
      EXPECT_TRUE(asserted(edo)) << row.bit;
      EXPECT_FALSE(asserted(1 - edo)) << "not enabled";
      bench.Write(0x37 + edo, 0xFF & ~(1 << row.bit));
      EXPECT_TRUE(asserted(edo)) << "the others masked";
      bench.Write(0x37 + edo, 1 << row.bit);
      EXPECT_FALSE(asserted(edo)) << row.bit;
    }
  }
}

}  // namespace
}  // namespace zth::simulator

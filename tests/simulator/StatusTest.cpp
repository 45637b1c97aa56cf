#include <array>
#include <cstdint>
#include <vector>

#include <gtest/gtest.h>

#include "tests/simulator/ChipOnBench.h"

namespace zth::simulator {
namespace {

TEST(Status, EachCopyLatchesUntilItsOwnReaderHasSeenTheEndOfTheCause) {
  ChipOnBench bench;
  bench.Convert();
  bench.pins.temperatureC[2] = 90;  // above the high limit of 85
  bench.Convert();
  EXPECT_EQ(bench.Read(0xB8), 0x08);
  EXPECT_EQ(bench.Read(0xB8), 0x08) << "the cause stands";
  bench.pins.temperatureC[2] = 30;
  bench.Convert();
  EXPECT_EQ(bench.Read(0xB8), 0x08);
  EXPECT_EQ(bench.Read(0xB8), 0x00);
  EXPECT_EQ(bench.Read(0xC0), 0x08) << "the other reader has not looked yet";
  EXPECT_EQ(bench.Read(0xC0), 0x00);
}

TEST(Status, TemperaturesAreOutOnlyBeyondTheirLimits) {
  for (int channel = 0; channel < 4; ++channel) {
    for (const auto& [celsius, out] : {std::pair{85.0, false}, {85.25, true}, {0.0, false}, {-0.25, true}}) {
      ChipOnBench bench;
      bench.pins.temperatureC[static_cast<std::size_t>(channel)] = celsius;
      bench.Convert();
      EXPECT_EQ(bench.Read(0xC0), out ? 1 << (1 + channel) : 0) << channel << " at " << celsius;
    }
  }
}

struct VoltageCase {
  VoltagePin pin;
  int pinRegister, pinValue;
  double nominal;
  int low, high, status, bit;
};

TEST(Status, EveryVoltageHasItsLimitsAndItsBit) {
  using enum VoltagePin;
  for (const VoltageCase& c :
       {VoltageCase{P7, 0x10, 0x7E, 12, 0x6D, 0x7C, 0xC3, 0}, VoltageCase{P8, 0x11, 0x4E, 12, 0x6E, 0x7D, 0xC3, 1},
        VoltageCase{P22, 0x11, 0xCA, 12, 0x6F, 0x7F, 0xC3, 2}, VoltageCase{P13, 0x11, 0x8E, 3.3, 0x70, 0x68, 0xC3, 3},
        VoltageCase{P15, 0x10, 0x3F, 2.5, 0x45, 0x49, 0xC3, 4}, VoltageCase{P19, 0x10, 0x5F, 1.25, 0x47, 0x4B, 0xC3, 5},
        VoltageCase{P21, 0x11, 0xC6, 5, 0x71, 0x7E, 0xC3, 6}, VoltageCase{P23, 0x11, 0xCE, 1.8, 0x72, 0x69, 0xC3, 7},
        VoltageCase{P24, 0x12, 0x42, 2.5, 0x73, 0x6A, 0xC4, 3}, VoltageCase{P25, 0x12, 0x42, 3.3, 0x74, 0x6B, 0xC4, 4},
        VoltageCase{P26, 0x12, 0x42, 4, 0x75, 0x6C, 0xC4, 5}, VoltageCase{P28, 0x13, 0x7C, 1.5, 0x76, 0x4C, 0xC4, 6},
        VoltageCase{P29, 0x13, 0xDC, 1.5, 0x77, 0x50, 0xC4, 7}}) {
    for (const auto& [low, high, out] :
         {std::tuple{192, 192, true}, {150, 200, false}, {180, 180, false}, {181, 200, true}, {100, 179, true}}) {
      ChipOnBench bench;
      bench.pins.volts.fill(0.5);
      bench.Write(c.pinRegister, c.pinValue);
      bench.Write({{c.low, low}, {c.high, high}, {0x72, c.low == 0x72 ? low : 0}});
      bench.pins.volts[static_cast<std::size_t>(c.pin)] = c.nominal * 180 / 192;
      bench.Convert();
      const int other = c.status == 0xC3 ? 0xC4 : 0xC3;
      EXPECT_EQ(bench.Read(c.status), out ? 1 << c.bit : 0) << std::hex << c.low << " " << low << " " << high;
      EXPECT_EQ(bench.Read(c.status - 8), out ? 1 << c.bit : 0) << "host copy";
      EXPECT_EQ(bench.Read(other), 0);
    }
  }
}

TEST(Status, AFanIsSlowWhenItsCountPassesTheLimitAndAStalledOneToo) {
  for (int fan = 0; fan < 8; ++fan) {
    ChipOnBench bench;
    bench.Write({{0x07, 0xFF}, {0x02, 0x40}});
    bench.Write(0x78 + fan, 0x10);  // counts up to 0x10FF
    bench.pins.pulsesPerMinute.fill(3000);
    bench.pins.pulsesPerMinute[static_cast<std::size_t>(fan)] = 5400000.0 * 2 / 0x10FF;
    bench.Run(1.2);
    EXPECT_EQ(bench.Read(0xC5), 1 << fan) << "before the first count it reads as standing";
    EXPECT_EQ(bench.Read(0xC5), 0);
    bench.pins.pulsesPerMinute[static_cast<std::size_t>(fan)] = 5400000.0 * 2 / 0x1100;
    bench.Run(1.2);
    EXPECT_EQ(bench.Read(0xC5), 1 << fan);
    bench.pins.pulsesPerMinute[static_cast<std::size_t>(fan)] = 0;
    bench.Run(1.2);
    EXPECT_EQ(bench.Read(0xC5), 1 << fan);
    bench.Write(0x78 + fan, 0xFF);
    bench.Run(0.1);
    bench.Read(0xC5);
    EXPECT_EQ(bench.Read(0xC5), 0) << "at 0xFF the limit is off";
  }
}

TEST(Status, ThermComparesWithHysteresisAndLetsThroughWhatIsEnabled) {
  for (int therm = 0; therm < 2; ++therm) {
    for (int channel = 0; channel < 4; ++channel) {
      ChipOnBench bench;
      const int bit = 1 << (4 * therm + channel);
      bench.Write({{0x54, 0x55}, {0x55, 0x55}, {0x0E, 0x01}, {0x0F, 0x01}});
      bench.Write(0x0E + therm, 0x01 | 2 << channel);
      bench.Write(0x4C + 4 * therm + channel, Degrees(70));
      auto& celsius = bench.pins.temperatureC[static_cast<std::size_t>(channel)];
      for (const auto& [now, exceeded] :
           {std::pair{70.0, false}, {70.25, true}, {65.25, true}, {65.0, false}, {70.0, false}}) {
        celsius = now;
        bench.Convert();
        bench.Read(0xBA);
        EXPECT_EQ(bench.Read(0xBA), exceeded ? bit : 0) << now;
        EXPECT_EQ(bench.chip.Outputs().thermAsserted[static_cast<std::size_t>(therm)], exceeded);
        EXPECT_EQ((bench.Read(0xC1) >> (3 * therm + 2)) & 1, exceeded ? 1 : 0) << "the pin's state";
      }
      celsius = 80;
      bench.Write(0x0E + therm, 0x01);
      bench.Convert();
      EXPECT_FALSE(bench.chip.Outputs().thermAsserted[static_cast<std::size_t>(therm)]);
    }
  }
}

TEST(Status, TheOnTimeIsTheShareOfTheWindowAndHasItsLimit) {
  constexpr double kSeconds[] = {0.25, 0.5, 1, 2, 4, 8, 8, 8};
  for (int therm = 0; therm < 2; ++therm) {
    for (int field = 0; field < 8; ++field) {
      ChipOnBench bench;
      bench.Write(0x0D, field << (therm == 0 ? 2 : 5));
      bench.Write(0x80 + therm, 100);
      bench.pins.thermLow[static_cast<std::size_t>(therm)] = true;
      bench.Run(kSeconds[field] * 0.4);
      EXPECT_EQ(bench.Read(0xAE + therm), 0) << "nothing before the window ends";
      bench.pins.thermLow[static_cast<std::size_t>(therm)] = false;
      bench.Run(kSeconds[field] * 0.6 + 0.01);
      EXPECT_NEAR(bench.Read(0xAE + therm), 0.4 * 255, 0.6);
      EXPECT_EQ(bench.Read(0xB9), (1 | 2) << 3 * therm) << "over its limit, and was asserted";
      EXPECT_EQ(bench.Read(0xB9), 1 << 3 * therm);
    }
  }
}

TEST(Status, AlertGoesByTheMasksAndItsMode) {
  ChipOnBench bench;
  bench.pins.volts.fill(2);
  bench.Convert();
  EXPECT_FALSE(bench.chip.Outputs().alert);
  bench.pins.temperatureC[1] = 90;
  bench.Convert();
  EXPECT_TRUE(bench.chip.Outputs().alert);
  bench.Write(0x30, 0x04);
  EXPECT_FALSE(bench.chip.Outputs().alert);
  EXPECT_EQ(bench.Read(0xC0), 0x04) << "a mask holds back the pin, not the status";
  bench.Write(0x30, 0x00);
  bench.pins.temperatureC[1] = 30;
  bench.Convert();
  EXPECT_TRUE(bench.chip.Outputs().alert) << "held until the host has read";
  bench.Write(0x01, 0x09);
  EXPECT_FALSE(bench.chip.Outputs().alert) << "in comparator mode it follows the cause";
  bench.Write(0x01, 0x01);
  bench.Read(0xB8);
  EXPECT_FALSE(bench.chip.Outputs().alert);
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
  bench.Read(0xC6);
  EXPECT_EQ(bench.Read(0xC6), 0x08) << "the pin is FANMAX now";
  EXPECT_EQ(bench.Read(0xBE), 0x80) << "the host's copy, not read so far, has no bit for it";
  EXPECT_EQ(bench.Read(0xBE), 0x00);
}

/// Pins 1 to 4, 28, 29, 31 and 32 as GPIOs, enabled.
void MakeGpios(ChipOnBench& bench) {
  bench.Write({{0x10, 0x61}, {0x13, 0x00}, {0x03, 0x01}});
}

TEST(Gpio, AnInputReadsZeroWhenItIsActiveInItsPolarity) {
  for (int gpio = 0; gpio < 8; ++gpio) {
    for (const bool activeHigh : {false, true}) {
      for (const bool high : {false, true}) {
        ChipOnBench bench;
        MakeGpios(bench);
        bench.Write(0x09 + gpio / 4, activeHigh << 2 * (gpio % 4));
        bench.pins.gpioHigh[static_cast<std::size_t>(gpio)] = high;
        bench.Run(0.02);
        EXPECT_EQ((bench.Read(0xBF) >> gpio) & 1, high == activeHigh ? 0 : 1);
        bench.Write(0xBF, 0xFF);
        bench.Write(0xBF, 0x00);
        EXPECT_EQ((bench.Read(0xBF) >> gpio) & 1, high == activeHigh ? 0 : 1) << "an input takes no level";
        bench.Write(0x03, 0x00);
        bench.Run(0.02);
        EXPECT_EQ(bench.Read(0xBF), 0);
      }
    }
  }
}

TEST(Gpio, AnOutputDrivesWhatIsWrittenInItsPolarity) {
  for (int gpio = 0; gpio < 8; ++gpio) {
    for (const bool activeHigh : {false, true}) {
      for (const bool inactive : {false, true}) {
        ChipOnBench bench;
        MakeGpios(bench);
        bench.Write(0x09 + gpio / 4, (2 | static_cast<int>(activeHigh)) << 2 * (gpio % 4));
        bench.Write(0xBF, inactive << gpio);
        bench.Run(0.02);
        EXPECT_EQ((bench.Read(0xBF) >> gpio) & 1, inactive ? 1 : 0);
        const PinOutputs out = bench.chip.Outputs();
        EXPECT_EQ(out.gpioHigh[static_cast<std::size_t>(gpio)], inactive != activeHigh);
        EXPECT_FALSE(out.gpioHigh[static_cast<std::size_t>((gpio + 1) % 8)].has_value());
      }
    }
  }
}

TEST(Edo, RisesOnEveryEventThatItsMaskLetsThrough) {
  struct Row {
    int bit;
    void (*cause)(ChipOnBench&);
  };
  for (const Row& row : {Row{0, [](ChipOnBench& b) { b.pins.gpioHigh[0] = false; }},
                         Row{3, [](ChipOnBench& b) { b.pins.gpioHigh[3] = false; }},
                         Row{5,
                             [](ChipOnBench& b) {
                               b.Write({{0x07, 0x10}, {0x7C, 0x01}});
                             }},
                         Row{6, [](ChipOnBench& b) { b.pins.temperatureC[0] = 120; }},
                         Row{7, [](ChipOnBench& b) { b.Write(0x6A, 0x10); }}}) {
    for (std::size_t edo = 0; edo < 2; ++edo) {
      ChipOnBench bench;
      MakeGpios(bench);
      bench.pins.volts.fill(2.0);
      bench.Write(0x16, 1 << edo);
      bench.Convert();
      EXPECT_FALSE(bench.chip.Outputs().edo[edo]) << row.bit;
      row.cause(bench);
      bench.Convert();
      EXPECT_TRUE(bench.chip.Outputs().edo[edo]) << row.bit;
      EXPECT_FALSE(bench.chip.Outputs().edo[1 - edo]) << "not enabled";
      bench.Write(0x37 + static_cast<int>(edo), 0xFF & ~(1 << row.bit));
      EXPECT_TRUE(bench.chip.Outputs().edo[edo]) << "the others masked";
      bench.Write(0x37 + static_cast<int>(edo), 1 << row.bit);
      EXPECT_FALSE(bench.chip.Outputs().edo[edo]) << row.bit;
    }
  }
}

}  // namespace
}  // namespace zth::simulator

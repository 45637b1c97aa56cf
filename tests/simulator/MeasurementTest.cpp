#include <cmath>
#include <tuple>

#include <gtest/gtest.h>

#include "tests/simulator/ChipOnBench.h"

namespace zth::simulator {
namespace {

TEST(Measurement, TemperaturesComeInQuartersFromMinus64Up) {
  for (const auto& [celsius, bytes] : {std::pair{25.0, 0x5900},
                                       {25.75, 0x59C0},
                                       {25.3, 0x5940},
                                       {-64.0, 0x0000},
                                       {-90.0, 0x0000},
                                       {191.75, 0xFFC0},
                                       {300.0, 0xFFC0},
                                       {0.0, 0x4000}}) {
    ChipOnBench bench;
    bench.pins.temperatureC.fill(celsius);
    bench.Convert();
    for (int channel = 0; channel < 4; ++channel) {
      EXPECT_EQ(bench.Read(0x89 + 2 * channel) << 8 | bench.Read(0x88 + 2 * channel), bytes) << celsius;
    }
  }
}

TEST(Measurement, AnOffsetMovesAReadingByHalfDegrees) {
  ChipOnBench bench({{0x56, 3}, {0x58, 0xFE}});
  bench.Convert();
  EXPECT_EQ(bench.Quarters(0), Degrees(30) * 4 + 6);
  EXPECT_EQ(bench.Read(0x8D), Degrees(29));
}

TEST(Measurement, StopsWithMonitoringOffAndInShutdownAndHoldsTheLastValues) {
  for (const auto& [reg, value] : {std::pair{0x01, 0x00}, std::pair{0x02, 0x82}}) {
    ChipOnBench bench;
    bench.Convert();
    bench.Write(reg, value);
    bench.pins.temperatureC.fill(50);
    bench.Run(1);
    EXPECT_EQ(bench.Read(0x89), Degrees(30));
  }
}

TEST(Measurement, AnOpenDiodeIsTheStatusBitAndLeavesTheReading) {
  ChipOnBench bench;
  bench.Convert();
  bench.pins.diodeOpen = {true, false, true, true};
  bench.pins.temperatureC.fill(70);
  bench.Convert();
  EXPECT_EQ(bench.Read(0x89), Degrees(70));  // Local has no wires
  EXPECT_EQ(bench.Read(0x8D), Degrees(30));
  EXPECT_EQ(bench.Read(0xC0), 0xC0);
  bench.pins.diodeOpen.fill(false);
  bench.Convert();
  EXPECT_EQ(bench.Read(0xC0), 0xC0) << "latched until it has been read";
  EXPECT_EQ(bench.Read(0xC0), 0x00);
  EXPECT_EQ(bench.Read(0x8D), Degrees(70));
}

TEST(Measurement, TachCountsFollowSpeedPulsesAndTheirPeriod) {
  for (int pulses = 1; pulses <= 4; ++pulses) {
    ChipOnBench bench({{0x07, 0xFF}, {0x02, (pulses - 1) << 6}});
    bench.pins.pulsesPerMinute.fill(6000);
    bench.Run(1.1);
    for (int fan = 1; fan <= 8; ++fan) EXPECT_EQ(bench.Tach(fan), 5400000 * pulses / 6000) << fan;
  }
}

TEST(Measurement, ATachThatIsOffOrStandsStillReadsAllOnes) {
  ChipOnBench bench({{0x07, 0x7F}, {0x10, 0x7E}});  // tach 8 not enabled, pin 7 a voltage
  bench.pins.pulsesPerMinute.fill(3000);
  bench.pins.pulsesPerMinute[2] = 0;
  bench.pins.pulsesPerMinute[3] = 100;  // slower than the counter can tell
  bench.Volts(VoltagePin::P7) = 12;
  bench.Run(1.2);
  EXPECT_NE(bench.Tach(1), 0xFFFF);
  for (const int fan : {3, 4, 8}) EXPECT_EQ(bench.Tach(fan), 0xFFFF) << fan;
  EXPECT_EQ(bench.Tach(5), 192 << 8 | 0xFF) << "the high byte is the pin's voltage";
  bench.Write(0x07, 0x00);
  EXPECT_EQ(bench.Tach(1), 0xFFFF) << "at once";
}

TEST(Measurement, TachReadingsComeAtTheRateOfTheirMode) {
  for (const auto& [configuration2, tachConfiguration, seconds] :
       {std::tuple{0x40, 0x0F, 1.0}, {0x41, 0x0F, 0.25}, {0x40, 0x00, 4.0}, {0x41, 0x00, 1.0}, {0x44, 0x00, 1.0}}) {
    ChipOnBench bench({{0x02, configuration2}, {0x08, tachConfiguration}, {0x07, 0x02}});
    bench.pins.pulsesPerMinute.fill(3000);
    EXPECT_NEAR(bench.RunUntil([&bench] { return bench.Tach(2) != 0xFFFF; }), seconds, 0.011)
        << std::hex << configuration2 << " " << tachConfiguration;
  }
}

TEST(Measurement, AveragingTakesMostOfTheNoiseAway) {
  for (const auto& [configuration1, deviation] : {std::pair{0x01, 0.8}, {0x05, 0.2}}) {
    ChipOnBench bench(1, 10);
    bench.Write(0x01, configuration1);
    double sum = 0;
    constexpr int kRounds = 2000;
    for (int i = 0; i < kRounds; ++i) {
      bench.Run(kConversionSeconds);
      sum += std::pow(bench.Quarters(2) / 4.0 - Degrees(30), 2);
    }
    EXPECT_NEAR(std::sqrt(sum / kRounds), deviation, 0.05);
  }
}

}  // namespace
}  // namespace zth::simulator

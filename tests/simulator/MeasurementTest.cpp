#include <cmath>
#include <cstdint>
#include <vector>

#include <gtest/gtest.h>

#include "simulator/RegisterRules.h"
#include "tests/simulator/ChipOnBench.h"

namespace zth::simulator {
namespace {

TEST(Measurement, TemperaturesComeInQuartersFromMinus64Up) {
  struct Row {
    double celsius;
    int high, low;
  };
  for (const Row& row : {Row{25, 0x59, 0x00}, Row{25.75, 0x59, 0xC0}, Row{25.3, 0x59, 0x40}, Row{-64, 0x00, 0x00},
                         Row{-90, 0x00, 0x00}, Row{191.75, 0xFF, 0xC0}, Row{300, 0xFF, 0xC0}, Row{0, 0x40, 0x00}}) {
    ChipOnBench bench;
    bench.pins.temperatureC.fill(row.celsius);
    bench.Convert();
    for (int channel = 0; channel < 4; ++channel) {
      EXPECT_EQ(bench.Read(0x89 + 2 * channel), row.high) << row.celsius;
      EXPECT_EQ(bench.Read(0x88 + 2 * channel), row.low) << row.celsius;
    }
  }
}

TEST(Measurement, AnOffsetMovesAReadingByHalfDegrees) {
  ChipOnBench bench;
  bench.Write({{0x56, 3}, {0x58, 0xFE}});
  bench.Convert();
  EXPECT_EQ(bench.Read(0x89) * 4 + bench.Read(0x88) / 64, Degrees(30) * 4 + 6);
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

struct Pin {
  VoltagePin pin;
  int value, attenuator, bit;
  std::vector<std::pair<std::vector<std::pair<int, int>>, double>> functions;  // writes, nominal
};

const std::vector<Pin>& VoltagePins() {
  using enum VoltagePin;
  static const std::vector<Pin> pins{
      {P7, 0xA3, 0x18, 1, {{{{0x10, 0x7E}}, 12}}},
      {P8, 0xA5, 0x18, 2, {{{{0x11, 0x4E}}, 12}}},
      {P13, 0x96, 0x18, 3, {{{{0x11, 0x8E}}, 3.3}}},
      {P15, 0x8B, 0x18, 4, {{{{0x10, 0x3F}}, 2.5}, {{{0x10, 0x3F}, {0x11, 0xEE}}, 1.8}}},
      {P19, 0x8F, 0x18, 5, {{{{0x10, 0x5F}}, 1.25}, {{{0x10, 0x5F}, {0x11, 0xDE}}, 0.9}}},
      {P21, 0xA7, 0x18, 6, {{{{0x11, 0xC6}}, 5}}},
      {P22, 0xA9, 0x18, 7, {{{{0x11, 0xCA}}, 12}}},
      {P23, 0x90, 0x19, 0, {{{{0x11, 0xCC}}, 2.13}, {{{0x11, 0xCD}}, 2.5}, {{}, 1.8}, {{{0x11, 0xCF}}, 1.5}}},
      {P24, 0x91, 0x19, 1, {{{{0x12, 0x02}}, 2.13}, {{}, 2.5}, {{{0x12, 0x82}}, 1.8}, {{{0x12, 0xC2}}, 1.5}}},
      {P25, 0x92, 0x19, 2, {{{}, 3.3}, {{{0x12, 0x52}}, 1.2}}},
      {P26, 0x93, 0x19, 3, {{{}, 4}, {{{0x12, 0x46}}, 1.2}}},
      {P28, 0x95, 0x19, 4, {{{{0x13, 0x7C}}, 1.5}}},
      {P29, 0x94, 0x19, 5, {{{{0x13, 0xDC}}, 1.5}}},
  };
  return pins;
}

TEST(Measurement, EveryVoltageFunctionReads192AtItsNominalVoltage) {
  for (const Pin& pin : VoltagePins()) {
    for (const auto& [writes, nominal] : pin.functions) {
      for (const double share : {1.0, 0.5, 1.25, 1.5}) {
        ChipOnBench bench;
        bench.Write(0x19, 0x3F);
        for (const auto& [address, value] : writes) bench.Write(address, value);
        bench.pins.volts[static_cast<std::size_t>(pin.pin)] = nominal * share;
        bench.Convert();
        EXPECT_EQ(bench.Read(pin.value), std::min(255.0, 192 * share)) << std::hex << pin.value << " at " << nominal;
      }
    }
  }
}

TEST(Measurement, WithoutItsAttenuatorAnInputSpansTwoAndAQuarterVolts) {
  for (const Pin& pin : VoltagePins()) {
    ChipOnBench bench;
    const auto& [writes, nominal] = pin.functions.front();
    for (const auto& [address, value] : writes) bench.Write(address, value);
    bench.Write({{0x18, 0xFF}, {0x19, 0x3F}});
    bench.Write(pin.attenuator, 0xFF & ~(1 << pin.bit));
    bench.pins.volts[static_cast<std::size_t>(pin.pin)] = 1.125;
    bench.Convert();
    const int expected = pin.pin == VoltagePin::P26 ? 54 : 128;  // the battery input keeps its divider
    EXPECT_EQ(bench.Read(pin.value), expected) << std::hex << pin.value;
  }
}

TEST(Measurement, TachCountsFollowSpeedPulsesAndTheirPeriod) {
  for (int pulses = 1; pulses <= 4; ++pulses) {
    ChipOnBench bench;
    bench.Write({{0x07, 0xFF}, {0x02, (pulses - 1) << 6}});
    bench.pins.pulsesPerMinute.fill(6000);
    bench.Run(1.1);
    for (int fan = 1; fan <= 8; ++fan) EXPECT_EQ(bench.Tach(fan), 5400000 * pulses / 6000) << fan;
  }
}

TEST(Measurement, ATachThatIsOffOrStandsStillReadsAllOnes) {
  ChipOnBench bench;
  bench.Write({{0x07, 0x7F}, {0x10, 0x7E}});  // tach 8 not enabled, pin 7 a voltage
  bench.pins.pulsesPerMinute.fill(3000);
  bench.pins.pulsesPerMinute[2] = 0;
  bench.pins.pulsesPerMinute[3] = 100;  // slower than the counter can tell
  bench.pins.volts[static_cast<std::size_t>(VoltagePin::P7)] = 12;
  bench.Run(1.2);
  EXPECT_NE(bench.Tach(1), 0xFFFF);
  EXPECT_EQ(bench.Tach(3), 0xFFFF);
  EXPECT_EQ(bench.Tach(4), 0xFFFF);
  EXPECT_EQ(bench.Tach(5), 192 << 8 | 0xFF) << "the high byte is the pin's voltage";
  EXPECT_EQ(bench.Tach(8), 0xFFFF);
  bench.Write(0x07, 0x00);
  EXPECT_EQ(bench.Tach(1), 0xFFFF) << "at once";
}

TEST(Measurement, TachReadingsComeAtTheRateOfTheirMode) {
  struct Row {
    int configuration2, tachConfiguration;
    double seconds;
  };
  for (const Row& row : {Row{0x40, 0x0F, 1.0}, Row{0x41, 0x0F, 0.25}, Row{0x40, 0x00, 4.0}, Row{0x41, 0x00, 1.0},
                         Row{0x44, 0x00, 1.0}}) {
    ChipOnBench bench;
    bench.Write({{0x02, row.configuration2}, {0x08, row.tachConfiguration}, {0x07, 0x02}});
    bench.pins.pulsesPerMinute.fill(3000);
    double seconds = 0;
    for (; bench.Tach(2) == 0xFFFF && seconds < 10; seconds += kTickSeconds) bench.chip.Tick(bench.pins);
    EXPECT_NEAR(seconds, row.seconds, 0.011) << std::hex << row.configuration2 << " " << row.tachConfiguration;
  }
}

TEST(Measurement, AveragingTakesMostOfTheNoiseAway) {
  const auto deviation = [](int configuration1) {
    Chip chip(ChipOptions{.revision = 1, .seed = 5, .noise = 10});
    chip.Write(0x01, static_cast<std::uint8_t>(configuration1));
    PinInputs pins;
    pins.temperatureC.fill(30);
    double sum = 0;
    constexpr int kRounds = 2000;
    for (int i = 0; i < kRounds; ++i) {
      for (int tick = 0; tick < 10; ++tick) chip.Tick(pins);
      const double celsius = chip.Read(0x8D) - 64 + 0.25 * (chip.Read(0x8C) >> 6);
      sum += (celsius - 30) * (celsius - 30);
    }
    return std::sqrt(sum / kRounds);
  };
  EXPECT_NEAR(deviation(0x01), 0.8, 0.05);
  EXPECT_NEAR(deviation(0x05), 0.2, 0.05);
}

}  // namespace
}  // namespace zth::simulator

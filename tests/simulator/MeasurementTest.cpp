#include <algorithm>
#include <tuple>
#include <vector>

#include "tests/simulator/ChipOnBench.h"

namespace zth::simulator {
namespace {

TEST(Measurement, ReadingsByStep) {
  for (const char* steps : {
           // Quarter degrees from -64 up, limited at both ends.
           "t0=25 t1=25.75 t2=25.3 t3=-64 ~ 89:59 88:00 8B:59 8A:C0 8D:59 8C:40 8F:00 8E:00",
           "t0=-90 t1=191.75 t2=300 t3=0 ~ 89:00 88:00 8B:FF 8A:C0 8D:FF 8C:C0 8F:40 8E:00",
           "56=03 58=FE ~ 89:5F 88:80 8D:5D 8C:00",  // an offset counts half degrees
           "~ 01=00 t0=50 ~1 89:5E",
           "~ 02=82 t0=50 ~1 89:5E",  // monitoring off, shutdown: the last value stays
           // Local has no wires; an open diode keeps its reading and is latched until it has been read.
           "~ o0=1 o2=1 o3=1 t0=70 t2=70 ~ 89:86 8D:5E C0:C0 o2=0 o3=0 ~ C0:C0 C0:00 8D:86",
       }) {
    ChipOnBench{std::string(steps)};
  }
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
  bench.pins.pulsesPerMinute[3] = 100;  // slower than the counter can measure
  bench.Volts(VoltagePin::P7) = 12;
  bench.Run(1.2);
  EXPECT_NE(bench.Tach(1), 0xFFFF);
  for (const int fan : {3, 4, 8}) EXPECT_EQ(bench.Tach(fan), 0xFFFF) << fan;
  EXPECT_EQ(bench.Tach(5), 192 << 8 | 0xFF) << "the high byte is the pin's voltage";
  bench.Play("07=00 98:FF 99:FF");  // at once
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

TEST(Measurement, AveragingRemovesMostOfTheNoise) {
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

using enum VoltagePin;

/// A voltage input, and what to write so that its pin measures it: each function with its nominal voltage.
const struct Input {
  VoltagePin pin;
  int value, attenuator, attenuatorBit, low, high, status, statusBit;
  std::vector<std::pair<std::vector<std::pair<int, int>>, double>> functions;
} kInputs[] = {
    {P7, 0xA3, 0x18, 1, 0x6D, 0x7C, 0xC3, 0, {{{{0x10, 0x7E}}, 12}}},
    {P8, 0xA5, 0x18, 2, 0x6E, 0x7D, 0xC3, 1, {{{{0x11, 0x4E}}, 12}}},
    {P13, 0x96, 0x18, 3, 0x70, 0x68, 0xC3, 3, {{{{0x11, 0x8E}}, 3.3}}},
    {P15, 0x8B, 0x18, 4, 0x45, 0x49, 0xC3, 4, {{{{0x10, 0x3F}}, 2.5}, {{{0x10, 0x3F}, {0x11, 0xEE}}, 1.8}}},
    {P19, 0x8F, 0x18, 5, 0x47, 0x4B, 0xC3, 5, {{{{0x10, 0x5F}}, 1.25}, {{{0x10, 0x5F}, {0x11, 0xDE}}, 0.9}}},
    {P21, 0xA7, 0x18, 6, 0x71, 0x7E, 0xC3, 6, {{{{0x11, 0xC6}}, 5}}},
    {P22, 0xA9, 0x18, 7, 0x6F, 0x7F, 0xC3, 2, {{{{0x11, 0xCA}}, 12}}},
    {P23, 0x90, 0x19, 0, 0x72, 0x69, 0xC3, 7, {{{{0x11, 0xCC}}, 2.13}, {{{0x11, 0xCD}}, 2.5}, {{}, 1.8}}},
    {P23, 0x90, 0x19, 0, 0x72, 0x69, 0xC3, 7, {{{{0x11, 0xCF}}, 1.5}}},
    {P24, 0x91, 0x19, 1, 0x73, 0x6A, 0xC4, 3, {{{{0x12, 0x02}}, 2.13}, {{}, 2.5}, {{{0x12, 0x82}}, 1.8}}},
    {P24, 0x91, 0x19, 1, 0x73, 0x6A, 0xC4, 3, {{{{0x12, 0xC2}}, 1.5}}},
    {P25, 0x92, 0x19, 2, 0x74, 0x6B, 0xC4, 4, {{{}, 3.3}, {{{0x12, 0x52}}, 1.2}}},
    {P26, 0x93, 0x19, 3, 0x75, 0x6C, 0xC4, 5, {{{}, 4}, {{{0x12, 0x46}}, 1.2}}},
    {P28, 0x95, 0x19, 4, 0x76, 0x4C, 0xC4, 6, {{{{0x13, 0x7C}}, 1.5}}},
    {P29, 0x94, 0x19, 5, 0x77, 0x50, 0xC4, 7, {{{{0x13, 0xDC}}, 1.5}}},
};

/// A chip with one of the input's functions. All pins are at half a volt, and the low limit of pin 23 is off.
struct InputOnBench : ChipOnBench {
  explicit InputOnBench(const Input& input, std::size_t function = 0)
      : ChipOnBench({{0x19, 0x3F}, {0x72, 0}}), nominal(input.functions[function].second) {
    for (const auto& [address, value] : input.functions[function].first) Write(address, value);
    pins.volts.fill(0.5);
  }

  double nominal;
};

TEST(Voltage, EveryFunctionReads192AtItsNominalVoltage) {
  for (const Input& input : kInputs) {
    for (std::size_t function = 0; function < input.functions.size(); ++function) {
      for (const double share : {1.0, 0.5, 1.25, 1.5}) {
        InputOnBench bench(input, function);
        bench.Volts(input.pin) = bench.nominal * share;
        bench.Convert();
        EXPECT_EQ(bench.Read(input.value), std::min(255.0, 192 * share))
            << std::hex << input.value << " at " << bench.nominal;
      }
    }
  }
}

TEST(Voltage, WithoutItsAttenuatorAnInputHasARangeOfTwoAndAQuarterVolts) {
  for (const Input& input : kInputs) {
    InputOnBench bench(input);
    bench.Write(input.attenuator, 0xFF & ~(1 << input.attenuatorBit));
    bench.Volts(input.pin) = 1.125;
    bench.Convert();
    const int expected = input.pin == P26 ? 54 : 128;  // the battery input keeps its divider
    EXPECT_EQ(bench.Read(input.value), expected) << std::hex << input.value;
  }
}

TEST(Voltage, EveryInputHasItsLimitsAndItsStatusBit) {
  for (const Input& input : kInputs) {
    for (const auto& [low, high, out] :
         {std::tuple{192, 192, true}, {150, 200, false}, {180, 180, false}, {181, 200, true}, {100, 179, true}}) {
      InputOnBench bench(input);
      bench.Write({{input.low, low}, {input.high, high}});
      bench.Volts(input.pin) = bench.nominal * 180 / 192;
      bench.Convert();
      const int bit = out ? 1 << input.statusBit : 0;
      EXPECT_EQ(bench.Read(input.status), bit) << std::hex << input.low << " " << low << " " << high;
      EXPECT_EQ(bench.Read(input.status - 8), bit) << "host copy";
      EXPECT_EQ(bench.Read(input.status ^ 7), 0) << "the other voltage status";
    }
  }
}

}  // namespace
}  // namespace zth::simulator

#include <cmath>
#include <string>
#include <tuple>

#include <gtest/gtest.h>

#include "tests/simulator/ChipOnBench.h"

namespace zth::simulator {
namespace {

TEST(Measurement, ReadingsByStep) {
  for (const char* steps : {
           // Quarters from -64 up, held at both ends.
           "t0=25 t1=25.75 t2=25.3 t3=-64 ~ 89:59 88:00 8B:59 8A:C0 8D:59 8C:40 8F:00 8E:00",
           "t0=-90 t1=191.75 t2=300 t3=0 ~ 89:00 88:00 8B:FF 8A:C0 8D:FF 8C:C0 8F:40 8E:00",
           "56=03 58=FE ~ 89:5F 88:80 8D:5D 8C:00",  // an offset counts half degrees
           "~ 01=00 t0=50 ~1 89:5E",
           "~ 02=82 t0=50 ~1 89:5E",  // monitoring off, shutdown: the last value stands
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
  bench.pins.pulsesPerMinute[3] = 100;  // slower than the counter can tell
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

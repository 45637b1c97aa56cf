#include <gtest/gtest.h>

#include "tests/simulator/ChipOnBench.h"

namespace zth::simulator {
namespace {

/// Dynamic Tmin on one remote channel: operating point 60 with hysteresis 4, Tmin 50, free between 20 and 80.
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

TEST(DynamicTmin, TheStandardLoopHurriesWhenFarAndWaitsForATemperatureOnItsWay) {
  EXPECT_EQ(LoopOnBench(2, 0, true, 69).TminAfter(0.55), 48);
  for (const bool standardLoop : {true, false}) {
    LoopOnBench falling(2, 0, standardLoop, 66);
    falling.Run(0.2);
    falling.Celsius(2) = 64;
    EXPECT_EQ(falling.TminAfter(0.35), standardLoop ? 50 : 49);
  }
}

TEST(DynamicTmin, LeavesAChannelAloneThatIsOffOrHasNoDiode) {
  LoopOnBench bench(1, 0, false, 70);
  bench.Write(0x0B, 0x02);
  EXPECT_EQ(bench.TminAfter(5), 50);
  bench.Write({{0x0B, 0x01}, {0x10, 0x3F}});
  EXPECT_EQ(bench.TminAfter(5), 50);
}

TEST(DynamicTmin, AThermEventLoadsTheOperatingPointOfTheChannelThatAsksForIt) {
  struct Row {
    int calibration, therm, point1, point2;  // 0xA4 is the default
  };
  for (const Row& row :
       {Row{0x04, 0, Degrees(41), 0xA4}, Row{0x08, 0, 0xA4, Degrees(43)}, Row{0x10, 1, Degrees(41), 0xA4},
        Row{0x20, 1, 0xA4, Degrees(43)}, Row{0x20, 0, 0xA4, 0xA4}, Row{0x00, 1, 0xA4, 0xA4}}) {
    ChipOnBench bench;
    bench.Write(0x0B, row.calibration);
    bench.pins.temperatureC = {30, 41.5, 43.75, 30};
    bench.Convert();
    bench.Write(0x4E + 4 * row.therm, Degrees(0));  // Remote 2 is above it at once
    bench.Run(0.5);
    bench.Write(0x4E + 4 * row.therm, Degrees(90));
    bench.Run(0.5);
    EXPECT_EQ(bench.Read(0x5A), row.point1) << row.calibration;
    EXPECT_EQ(bench.Read(0x5B), row.point2) << row.calibration;
  }
}

}  // namespace
}  // namespace zth::simulator

#include <gtest/gtest.h>

#include "tests/simulator/ChipOnBench.h"

namespace zth::simulator {
namespace {

int Tmin(ChipOnBench& bench, int remote) {
  return bench.Read(0x5C + remote) - 64;
}

/// Dynamic Tmin on one remote channel: operating point 60 with hysteresis 4, Tmin 50, free between 20 and 80.
struct LoopOnBench : ChipOnBench {
  LoopOnBench(int remote, int cycleField, bool standardLoop, double celsius) {
    pins.temperatureC[static_cast<std::size_t>(remote)] = celsius;
    Write({{0x59 + remote, Degrees(60)}, {0x64, 0x40}, {0x5C + remote, Degrees(50)}, {0x44 + remote, Degrees(20)}});
    Write({{0x48 + remote, Degrees(80)}, {0x0C, cycleField << 3 * (remote - 1) | standardLoop << 6}});
    Convert();
    Write(0x0B, 1 << (remote - 1));
  }
};

TEST(DynamicTmin, MovesTminOncePerCycleTowardsTheOperatingPoint) {
  struct Row {
    double celsius;
    int step;
  };
  for (const int remote : {1, 2}) {
    for (int field = 0; field < 8; ++field) {
      for (const Row& row : {Row{61, -1}, Row{60, 0}, Row{56, 0}, Row{55.75, 1}}) {
        LoopOnBench bench(remote, field, false, row.celsius);
        const double cycle = 0.5 * (1 << field);
        bench.Run(cycle - 0.02);
        EXPECT_EQ(Tmin(bench, remote), 50) << "not before the first cycle ends";
        bench.Run(0.04);
        EXPECT_EQ(Tmin(bench, remote), 50 + row.step) << row.celsius;
        bench.Run(2 * cycle);
        EXPECT_EQ(Tmin(bench, remote), 50 + 3 * row.step) << row.celsius;
      }
    }
  }
}

TEST(DynamicTmin, StaysWithinTheLimitsOfTheChannel) {
  for (const double celsius : {100.0, 10.0}) {
    LoopOnBench bench(1, 0, false, celsius);
    bench.Write({{0x0D, 0x03}});
    bench.Run(60);
    EXPECT_EQ(Tmin(bench, 1), celsius > 60 ? 20 : 80);
  }
}

TEST(DynamicTmin, TheStandardLoopHurriesWhenFarAndWaitsForATemperatureOnItsWay) {
  LoopOnBench far(2, 0, true, 69);
  far.Run(0.55);
  EXPECT_EQ(Tmin(far, 2), 48);

  for (const bool standardLoop : {true, false}) {
    LoopOnBench falling(2, 0, standardLoop, 66);
    falling.Run(0.2);
    falling.pins.temperatureC[2] = 64;
    falling.Run(0.35);
    EXPECT_EQ(Tmin(falling, 2), standardLoop ? 50 : 49);
  }
}

TEST(DynamicTmin, LeavesAChannelAloneThatIsOffOrHasNoDiode) {
  LoopOnBench bench(1, 0, false, 70);
  bench.Write(0x0B, 0x02);
  bench.Run(5);
  EXPECT_EQ(Tmin(bench, 1), 50);
  bench.Write({{0x0B, 0x01}, {0x10, 0x3F}});
  bench.Run(5);
  EXPECT_EQ(Tmin(bench, 1), 50);
}

TEST(DynamicTmin, AThermEventLoadsTheOperatingPointOfTheChannelThatAsksForIt) {
  struct Row {
    int calibration;
    int therm;
    bool loads1, loads2;
  };
  for (const Row& row : {Row{0x04, 0, true, false}, Row{0x08, 0, false, true}, Row{0x10, 1, true, false},
                         Row{0x20, 1, false, true}, Row{0x20, 0, false, false}, Row{0x00, 1, false, false}}) {
    ChipOnBench bench;
    bench.pins.temperatureC = {30, 41.5, 43.75, 30};
    bench.Write(0x0B, row.calibration);
    bench.Convert();
    bench.Write(0x4E + 4 * row.therm, Degrees(0));  // Remote 2 is above it at once
    bench.Run(0.5);
    bench.Write(0x4E + 4 * row.therm, Degrees(90));
    bench.Run(0.5);
    EXPECT_EQ(bench.Read(0x5A), row.loads1 ? Degrees(41) : 0xA4) << row.calibration;
    EXPECT_EQ(bench.Read(0x5B), row.loads2 ? Degrees(43) : 0xA4) << row.calibration;
  }
}

}  // namespace
}  // namespace zth::simulator

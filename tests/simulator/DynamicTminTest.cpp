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
  LoopOnBench(1, 0, false, 70).Play("0B=02 ~5 5D:72 0B=01 10=3F ~5 5D:72");
}

TEST(DynamicTmin, AThermEventLoadsTheOperatingPointOfTheChannelThatAsksForIt) {
  for (const char* steps : {"0B=04 4E=40 ~.5 4E=9A ~.5 5A:69 5B:A4", "0B=08 4E=40 ~.5 4E=9A ~.5 5A:A4 5B:6B",
                            "0B=10 52=40 ~.5 52=9A ~.5 5A:69 5B:A4", "0B=20 52=40 ~.5 52=9A ~.5 5A:A4 5B:6B",
                            "0B=20 4E=40 ~.5 4E=9A ~.5 5A:A4 5B:A4", "0B=00 52=40 ~.5 52=9A ~.5 5A:A4 5B:A4"}) {
    ChipOnBench("t1=41.5 t2=43.75 ~").Play(steps);  // Remote 2 is above a limit of 0 at once; A4 is the default
  }
}

}  // namespace
}  // namespace zth::simulator

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <ctime>
#include <utility>

#include <benchmark/benchmark.h>

#include "simulator/Board.h"
#include "simulator/Settings.h"
#include "simulator/UsbAdapter.h"
#include "simulator/entry/RealTime.h"

namespace zth::simulator {
namespace {

constexpr double kWantedSpeed = 1000;  // simulated seconds per second of one core

void AdvanceBoard(benchmark::State& state) {
  Board board;
  for (const auto& [reg, value] : {std::pair{0x07, 0xFF}, {0x0B, 0x03}, {0x1A, 0x03}, {0x1B, 0x03}, {0x5D, 0x60}}) {
    board.TheChip().Write(static_cast<std::uint8_t>(reg), static_cast<std::uint8_t>(value));
  }
  board.SetHeater(1, 70);
  board.SetHeater(2, 30);
  constexpr std::chrono::seconds kPiece{10};
  double simulated = 0;
  const std::clock_t start = std::clock();
  while (state.KeepRunning()) {
    board.Advance(kPiece);
    simulated += static_cast<double>(kPiece.count());
  }
  // Processor time, so that other load on the machine does not count.
  const double real = static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
  state.counters["times_real_time"] = simulated / real;
  const bool measured = real > 0.01;
  if (measured && simulated / real < kWantedSpeed) state.SkipWithError("slower than 1000 times real time");
}
BENCHMARK(AdvanceBoard)->Unit(benchmark::kMillisecond);

/// The calls that catch up after a pause of ten minutes at a time factor of 1000, on four busy boards. Fails when one
/// of them computes for 20 ms.
void CatchUpInCalls(benchmark::State& state) {
  constexpr double kLongest = 0.020;  // seconds of processor time
  UsbAdapter adapter{Settings{.timeFactor = 1000, .usbChips = {0x58, 0x5A, 0x5C, 0x5E}}};
  Bus& bus = adapter.TheBus();
  RealTime time;
  double longest = 0;
  while (state.KeepRunning()) {
    bus.Owe(std::chrono::minutes(10));
    const std::clock_t start = std::clock();
    time.CatchUp(bus);
    longest = std::max(longest, static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC);
  }
  state.counters["longest_ms"] = 1000 * longest;
  if (longest >= kLongest) state.SkipWithError("a call computes for 20 ms");
}
BENCHMARK(CatchUpInCalls)->Unit(benchmark::kMillisecond);

/// Reads one register over USB without advancing time.
void ReadRegister(benchmark::State& state) {
  UsbAdapter adapter{Settings{}};
  std::uint8_t value = 0;
  while (state.KeepRunning()) {
    adapter.Request(0xDE, 0x58, 0x89, 1, 1, &value);
    benchmark::DoNotOptimize(value);
  }
}
BENCHMARK(ReadRegister);

}  // namespace
}  // namespace zth::simulator

BENCHMARK_MAIN();

#include <chrono>
#include <cstdint>
#include <ctime>
#include <utility>

#include <benchmark/benchmark.h>

#include "simulator/Board.h"
#include "simulator/Settings.h"
#include "simulator/UsbAdapter.h"

namespace zth::simulator {
namespace {

constexpr double kWantedSpeed = 1000;  // simulated seconds in a second of one core

/// A busy board: all tachs, both heaters, dynamic Tmin and ramps at work. Fails below a thousand times real time.
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
  // Time of the processor, so that a busy machine does not count.
  const double real = static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
  state.counters["times_real_time"] = simulated / real;
  const bool measured = real > 0.01;
  if (measured && simulated / real < kWantedSpeed) state.SkipWithError("slower than 1000 times real time");
}
BENCHMARK(AdvanceBoard)->Unit(benchmark::kMillisecond);

/// One register over USB, without time going by.
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

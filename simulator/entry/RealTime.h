#pragma once

#include <chrono>
#include <cstdint>
#include <thread>

#include "simulator/Bus.h"

namespace zth::simulator {

/// No transfer waits longer than this for a board that is behind, as after a pause at a great time factor: the rest is
/// made up for by the following ones. Nor does it compute more than so many ticks of boards, whatever the clock says: a
/// core of no great speed does them in these milliseconds.
inline constexpr std::chrono::milliseconds kCatchUpTime{10};
inline constexpr std::int64_t kTicksInACall = 10'000;

/// Connects real time to the simulation: advances a bus to now before a transfer, and delays after a slow transfer.
template <typename Clock>
class RealTimeBy {
 public:
  void CatchUp(Bus& bus) {
    const auto now = Clock::now();
    bus.Owe(now - last_);
    last_ = now;
    const std::int64_t last = bus.TicksRun() + kTicksInACall - Bus::kTicksInASlice;
    while (bus.CatchUp() && bus.TicksRun() <= last && Clock::now() - now < kCatchUpTime) {
    }
  }

  static void Linger(Bus& bus) {
    const std::chrono::milliseconds delay = bus.TakeDelay();
    if (delay.count() > 0) std::this_thread::sleep_for(delay);
  }

 private:
  typename Clock::time_point last_ = Clock::now();
};

using RealTime = RealTimeBy<std::chrono::steady_clock>;

}  // namespace zth::simulator

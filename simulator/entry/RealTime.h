#pragma once

#include <chrono>
#include <cstdint>
#include <thread>

#include "simulator/Bus.h"

namespace zth::simulator {

/// The longest that one transfer waits for a board that is behind, as after a pause at a high time factor; the
/// following transfers catch up on the rest. One transfer also never computes more than a fixed number of board ticks,
/// whatever the clock says: a slow core needs about this long for them.
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

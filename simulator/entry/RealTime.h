#pragma once

#include <chrono>
#include <thread>

#include "simulator/Bus.h"

namespace zth::simulator {

/// The one place where real time meets the simulation: brings a bus up to now before a transfer, and lets a slow
/// transfer take its time behind it.
class RealTime {
 public:
  void CatchUp(Bus& bus) {
    const auto now = std::chrono::steady_clock::now();
    bus.AdvanceReal(now - last_);
    last_ = now;
  }

  static void Linger(Bus& bus) {
    const std::chrono::milliseconds delay = bus.TakeDelay();
    if (delay.count() > 0) std::this_thread::sleep_for(delay);
  }

 private:
  std::chrono::steady_clock::time_point last_ = std::chrono::steady_clock::now();
};

}  // namespace zth::simulator

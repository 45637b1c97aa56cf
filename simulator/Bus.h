#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <memory>
#include <vector>

#include "simulator/Board.h"
#include "simulator/FaultPlan.h"
#include "simulator/Settings.h"

namespace zth::simulator {

/// The boards on one link, in simulated time, with the plan of faults between them and the link.
class Bus {
 public:
  /// The boards that the settings put on a link. Each has a seed of its own, taken from the settings' one and the
  /// address.
  Bus(const Settings& settings, Link link);

  /// The boards have been under power for two seconds when the link first looks at them. The plan's time starts here.
  void PowerUp();

  /// Lets real time go by, which the time factor turns into simulated time. A pause of more than ten minutes, as of a
  /// computer put to sleep, counts as ten.
  void AdvanceReal(std::chrono::nanoseconds elapsed) {
    Owe(elapsed);
    while (CatchUp()) {
    }
  }

  /// The same in slices: notes the time, and lets a slice of what is owed go by on the boards. False when none is owed
  /// any more. Cut in whatever way, the boards come out the same. A slice is of kTicksInASlice ticks, those of all
  /// boards added, but at least of one for each.
  void Owe(std::chrono::nanoseconds elapsed);
  bool CatchUp();
  bool Owes() const { return owed_.count() > 0; }

  /// Ticks that slices have run so far, those of all boards added: the computing that was done.
  std::int64_t TicksRun() const { return ticksRun_; }

  static constexpr int kTicksInASlice = 100;

  /// Judges one transfer before it is made: false when it fails. What it takes longer is added to TakeDelay().
  bool Admit(const Transfer& transfer);
  /// The time that transfers since the last call should have taken longer.
  std::chrono::milliseconds TakeDelay();
  bool Unplugged() const { return faults_.Unplugged(now_); }

  /// A chip answers at an address.
  bool Answers(int address) { return At(address) != nullptr; }
  /// One register of the chip at an address; 0xFF where no chip answers.
  std::uint8_t Read(int address, std::uint8_t reg);
  void Write(int address, std::uint8_t reg, std::uint8_t value);

  /// The first board, which the adapter's heaters and switches belong to; nullptr when there is none.
  Board* First() { return first_; }

 private:
  Board* At(int address);

  std::map<int, std::unique_ptr<Board>> boards_;
  Board* first_ = nullptr;
  FaultClock faults_;
  double timeFactor_;
  std::chrono::nanoseconds now_{0};
  std::chrono::nanoseconds owed_{0};  ///< simulated time that the boards are behind
  std::chrono::milliseconds delay_{0};
  std::int64_t ticksRun_ = 0;
};

}  // namespace zth::simulator

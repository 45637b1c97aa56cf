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

/// The boards on one link in simulated time, and the plan of faults between them and the link.
class Bus {
 public:
  /// The boards that the settings put on a link. Each has its own seed, derived from the settings' seed and the
  /// address.
  Bus(const Settings& settings, Link link);

  /// Sets the chips up and lets two seconds pass under power before the link first accesses the boards. The plan's time
  /// starts here.
  void PowerUp();

  /// Advances real time, which the time factor converts to simulated time. A pause of more than ten minutes, for
  /// example of a sleeping computer, counts as ten minutes.
  void AdvanceReal(std::chrono::nanoseconds elapsed) {
    Owe(elapsed);
    while (CatchUp()) {
    }
  }

  /// The same in slices: adds the elapsed time to what is owed, and runs one slice of it on the boards. False when
  /// nothing is owed any more. The boards end up the same however the time is cut. A slice is kTicksInASlice ticks over
  /// all boards, but at least one tick per board.
  void Owe(std::chrono::nanoseconds elapsed);
  bool CatchUp();
  bool Owes() const { return owed_.count() > 0; }

  /// Ticks run by slices so far, summed over all boards: a measure of the computing done.
  std::int64_t TicksRun() const { return ticksRun_; }

  static constexpr int kTicksInASlice = 100;

  /// Checks a transfer before it is made: false if it fails. Any extra duration is added to TakeDelay().
  bool Admit(const Transfer& transfer);
  /// The extra duration of the transfers since the last call.
  std::chrono::milliseconds TakeDelay();
  bool Unplugged() const { return faults_.Unplugged(now_); }

  /// True when a chip answers at the address.
  bool Answers(int address) { return At(address) != nullptr; }
  /// Access to one register of the chip at an address; reads 0xFF if no chip answers.
  std::uint8_t Read(int address, std::uint8_t reg);
  void Write(int address, std::uint8_t reg, std::uint8_t value);

  /// The first board, which has the adapter's heaters and switches; nullptr if there is none.
  Board* First() { return first_; }

 private:
  Board* At(int address);

  std::map<int, std::unique_ptr<Board>> boards_;
  std::vector<std::uint8_t> setUp_;  ///< as in Settings
  Board* first_ = nullptr;
  FaultClock faults_;
  double timeFactor_;
  std::chrono::nanoseconds now_{0};
  std::chrono::nanoseconds owed_{0};  ///< simulated time by which the boards are behind
  std::chrono::milliseconds delay_{0};
  std::int64_t ticksRun_ = 0;
};

}  // namespace zth::simulator

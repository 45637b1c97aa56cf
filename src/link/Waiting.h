#pragma once

#include <cstdint>
#include <functional>

#include <QString>

/// What the user sees while waiting for transfers. Transfers run on the thread that also paints, so nothing can be
/// shown during one: the signs appear between two transfers.
namespace zth::link {

/// Up to this much time in transfers, in seconds, does not count as waiting.
inline constexpr double kNoWaiting = 0.25;
/// A link is slow when a transfer takes at least this long, in seconds: loading a window then exceeds kNoWaiting.
inline constexpr double kSlowTransfer = 0.02;

enum class Direction : std::uint8_t { Read, Write };

/// Shows and removes the signs of waiting. Neither call may handle events.
struct WaitSigns {
  std::function<void(const QString& text)> show;  ///< may be called again with another text; paints at once
  std::function<void()> hide;
};

/// For whom transfers run.
enum class Waiter : std::uint8_t { Nobody, User, Timer };

struct WaitState {
  WaitSigns signs;
  Waiter waiter = Waiter::Nobody;
  std::function<QString()> window;  ///< the caption of the window the user acts in; empty without one
  double used = 0;                  ///< seconds spent in transfers for the user
  bool writes = false;              ///< whether one of them was a write
  QString shown;                    ///< the text shown; empty when no signs are shown
  double lastBegan = 0;             ///< monotonic time at which the last transfer began, in seconds
  double lastTransfer = 0;          ///< its duration in seconds, for whomever it ran
};

/// One action of the user, for its own lifetime. It shows the signs once its transfers have taken kNoWaiting. An action
/// inside another one, or inside a timer tick, is part of that.
class UserAction {
 public:
  explicit UserAction(const std::function<QString()>& window);
  ~UserAction();
  UserAction(const UserAction&) = delete;
  UserAction& operator=(const UserAction&) = delete;

 private:
  bool outermost_;
};

/// A tick of the timer. Nobody waits for it, so its transfers show no signs, even when it runs below an open box.
class TimerTick {
 public:
  TimerTick();
  ~TimerTick();
  TimerTick(const TimerTick&) = delete;
  TimerTick& operator=(const TimerTick&) = delete;

 private:
  Waiter before_;
};

/// Measures one transfer: create it right before, destroy it right after. Shows the signs when they are due.
class TransferTime {
 public:
  explicit TransferTime(Direction direction);
  ~TransferTime();
  TransferTime(const TransferTime&) = delete;
  TransferTime& operator=(const TransferTime&) = delete;
};

/// Ends the wait because the user is asked something. Resets the time waited so far.
void StopWaiting();

/// Whether the last transfer was slow.
bool IsSlow();

}  // namespace zth::link

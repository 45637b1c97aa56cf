#pragma once

#include <cstdint>
#include <functional>

#include <QString>

/// What the user is told while he waits for transfers. They run on the one thread that also paints, so that nothing can
/// be shown while one lasts: the signs come between two transfers.
namespace zth::link {

/// So much time in transfers is no waiting yet, in seconds.
inline constexpr double kNoWaiting = 0.25;
/// From so long a transfer on the link counts as slow: a window's load is over that bound then.
inline constexpr double kSlowTransfer = 0.02;

enum class Direction : std::uint8_t { Read, Write };

/// The signs of waiting. Both calls handle no event.
struct WaitSigns {
  std::function<void(const QString& text)> show;  ///< may be called again with another text; paints at once
  std::function<void()> hide;
};

/// In whose name transfers run.
enum class Waiter : std::uint8_t { Nobody, User, Timer };

struct WaitState {
  WaitSigns signs;
  Waiter waiter = Waiter::Nobody;
  std::function<QString()> window;  ///< the caption of the one that the user acts in; empty without one
  double used = 0;                  ///< seconds of transfers in the user's name
  bool writes = false;              ///< one of them has written
  QString shown;                    ///< the signs' text; empty without signs
  double lastTransfer = 0;          ///< seconds that the last one took, in whosever name
};

/// One thing that the user does, for as long as it lives: from kNoWaiting of transfers on it shows the signs. Within
/// another one, or within a tick of the timer, it is a part of that.
class UserAction {
 public:
  explicit UserAction(const std::function<QString()>& window);
  ~UserAction();
  UserAction(const UserAction&) = delete;
  UserAction& operator=(const UserAction&) = delete;

 private:
  bool outermost_;
};

/// A tick of the timer, which nobody waits for: its transfers bring no signs, though a box stands beneath it.
class TimerTick {
 public:
  TimerTick();
  ~TimerTick();
  TimerTick(const TimerTick&) = delete;
  TimerTick& operator=(const TimerTick&) = delete;

 private:
  Waiter before_;
};

/// One transfer: made right before it, gone right behind it. Shows the signs when it is time for them.
class TransferTime {
 public:
  explicit TransferTime(Direction direction);
  ~TransferTime();
  TransferTime(const TransferTime&) = delete;
  TransferTime& operator=(const TransferTime&) = delete;

 private:
  double began_ = 0;
};

/// The user is asked something, and does not wait any more. What he has waited is forgotten.
void StopWaiting();

/// The last transfer was a slow one.
bool IsSlow();

}  // namespace zth::link

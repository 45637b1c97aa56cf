#include "link/Waiting.h"

#include "link/Declarations.h"

namespace zth::link {
namespace {

/// Null until the program has attached itself: nobody waits before that.
const platform::Clock* TheClock() {
  return Bus.reporter.services == nullptr ? nullptr : &Bus.reporter.services->clock;
}

/// An action that both reads and writes counts as writing from its first write on, so that its text does not flicker.
QString TextOfWaiting() {
  const QString window = Bus.wait.window ? Bus.wait.window() : QString();
  const QString what = Bus.wait.writes ? "Writing" : "Reading the chip";
  return what + (window.isEmpty() ? "" : " for " + window) + "...";
}

void ShowSigns() {
  const QString text = TextOfWaiting();
  if (text == Bus.wait.shown || !Bus.wait.signs.show) return;
  Bus.wait.shown = text;
  Bus.wait.signs.show(text);
}

}  // namespace

UserAction::UserAction(const std::function<QString()>& window) : outermost_(Bus.wait.waiter == Waiter::Nobody) {
  if (!outermost_) return;
  Bus.wait.waiter = Waiter::User;
  Bus.wait.window = window;
}

UserAction::~UserAction() {
  if (!outermost_) return;
  StopWaiting();
  Bus.wait.waiter = Waiter::Nobody;
  Bus.wait.window = nullptr;
}

TimerTick::TimerTick() : before_(Bus.wait.waiter) {
  Bus.wait.waiter = Waiter::Timer;
}

TimerTick::~TimerTick() {
  Bus.wait.waiter = before_;
}

TransferTime::TransferTime(Direction direction) {
  if (TheClock() == nullptr) return;
  if (Bus.wait.waiter == Waiter::User) {
    if (direction == Direction::Write) Bus.wait.writes = true;
    if (Bus.wait.used >= kNoWaiting) ShowSigns();
  }
  Bus.wait.lastBegan = TheClock()->Now();
}

TransferTime::~TransferTime() {
  if (TheClock() == nullptr) return;
  Bus.wait.lastTransfer = TheClock()->Now() - Bus.wait.lastBegan;
  if (Bus.wait.waiter == Waiter::User) Bus.wait.used += Bus.wait.lastTransfer;
}

void StopWaiting() {
  Bus.wait.used = 0;
  Bus.wait.writes = false;
  if (Bus.wait.shown.isEmpty()) return;
  Bus.wait.shown.clear();
  if (Bus.wait.signs.hide) Bus.wait.signs.hide();
}

bool IsSlow() {
  return Bus.wait.lastTransfer >= kSlowTransfer;
}

}  // namespace zth::link

#include "platform/SignalWatch.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>
#include <utility>

#include <QSocketNotifier>

namespace zth::platform {
namespace {

/// A signal handler may call almost nothing, so it wakes the event loop with a byte through a pipe.
std::array<int, 2> wakeUp{-1, -1};

void OnSignal(int /*number*/) {
  const int before = errno;
  // If the pipe is full, a byte is already waiting, and that is enough.
  [[maybe_unused]] const auto written = ::write(wakeUp[1], "", 1);
  errno = before;
}

bool OpenPipe() {
  if (wakeUp[0] >= 0) return true;
  if (::pipe(wakeUp.data()) != 0) return false;
  for (const int end : wakeUp) {
    ::fcntl(end, F_SETFL, O_NONBLOCK);
    ::fcntl(end, F_SETFD, FD_CLOEXEC);  // not for a browser that the program starts
  }
  return true;
}

void Catch(int number) {
  struct sigaction action {};
  ::sigaction(number, nullptr, &action);
  // Under nohup, the program outlives its terminal.
  if (number == SIGHUP && action.sa_handler == SIG_IGN) return;
  action = {};
  action.sa_handler = OnSignal;
  action.sa_flags = SA_RESTART;  // do not interrupt a library's transfer
  ::sigaction(number, &action, nullptr);
}

}  // namespace

void IgnoreBrokenPipes() {
  std::signal(SIGPIPE, SIG_IGN);
}

void SignalWatch::Watch() {
  if (!OpenPipe()) return;
  auto notifier = std::make_unique<QSocketNotifier>(wakeUp[0], QSocketNotifier::Read);
  QObject::connect(notifier.get(), &QSocketNotifier::activated, this, [this] {
    std::array<char, 16> bytes{};
    while (::read(wakeUp[0], bytes.data(), bytes.size()) > 0) {
    }
    end_();
  });
  waker_ = std::move(notifier);
  for (const int number : {SIGTERM, SIGHUP, SIGINT}) Catch(number);
}

SignalWatch::SignalWatch(std::function<void()> end) : end_(std::move(end)) {
  Watch();
}

SignalWatch::~SignalWatch() = default;

}  // namespace zth::platform

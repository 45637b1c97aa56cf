#include "platform/SignalWatch.h"

#include <mutex>
#include <utility>
#include <windows.h>

namespace zth::platform {
namespace {

/// The system calls the handler in a thread of its own.
std::mutex guard;
SignalWatch* watching = nullptr;
std::function<void()> order;

BOOL WINAPI OnConsole(DWORD kind) {
  {
    const std::scoped_lock lock(guard);
    if (watching == nullptr) return FALSE;
    QMetaObject::invokeMethod(watching, order, Qt::QueuedConnection);
  }
  // When the console closes or the user logs off, the system ends the process as soon as this returns. It waits some
  // seconds for that; until then the event loop can end the process properly.
  if (kind != CTRL_C_EVENT && kind != CTRL_BREAK_EVENT) ::Sleep(INFINITE);
  return TRUE;
}

}  // namespace

void IgnoreBrokenPipes() {}  // writing to one fails as an ordinary write error here

void SignalWatch::Watch() {
  const std::scoped_lock lock(guard);
  watching = this;
  order = end_;
  ::SetConsoleCtrlHandler(OnConsole, TRUE);
}

SignalWatch::SignalWatch(std::function<void()> end) : end_(std::move(end)) {
  Watch();
}

SignalWatch::~SignalWatch() {
  const std::scoped_lock lock(guard);
  watching = nullptr;
  order = nullptr;
  ::SetConsoleCtrlHandler(OnConsole, FALSE);
}

}  // namespace zth::platform

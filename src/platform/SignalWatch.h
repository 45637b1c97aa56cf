#pragma once

#include <functional>
#include <memory>

#include <QObject>

namespace zth::platform {

/// Ignores SIGPIPE, so that writing to a pipe without a reader fails as an ordinary write error and does not end the
/// process. Call it first in main: libraries write to standard error, which may be such a pipe, and so does Qt while
/// the application object is created.
void IgnoreBrokenPipes();

/// Waits for SIGTERM, SIGHUP and SIGINT, on Windows for Ctrl+C, Ctrl+Break and the end of the console, and runs `end`
/// in the event loop. Only one exists at a time; create it after the application object.
class SignalWatch final : public QObject {
 public:
  explicit SignalWatch(std::function<void()> end);
  ~SignalWatch() override;

 private:
  void Watch();

  std::function<void()> end_;
  std::unique_ptr<QObject> waker_;  ///< if the system needs one
};

}  // namespace zth::platform

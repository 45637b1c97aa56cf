#pragma once

#include <csignal>
#include <functional>
#include <string>
#include <sys/resource.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "tests/support/Steps.h"

namespace zth::testing {

std::string Content(const QString& path);

/// A log's header for columns such as "Local Temp ,".
std::string LogHead(const std::string& columns);

/// A log's lines from first to last, ten per second, of one channel at 0.
std::string LogLines(int first, int last);

/// A started program with its own folder; the chip's measurements are constant.
class DataTest : public ::testing::Test {
 protected:
  DataTest();

  QString Path(const QString& name) const { return folder_.filePath(name); }

  /// Opens the log window, ticks the channels and starts a log into that file.
  void StartLog(const QString& path, std::initializer_list<int> channels, const QString& period = "100");

  /// Presses the log window's button, which asks for a file.
  void PressLog(const QString& path);

  /// Lets the log job run that many times.
  void Log(int lines);

  QString Status() { return Desk::Text(desk.Main(), "sbStatusBar(1)"); }
  windows::ChildWindow& Logging() { return desk.Open("frmLogging"); }
  /// Closes the window and opens it again.
  windows::ChildWindow& Reopen(const char* name) {
    desk.Open(name).Unload();
    Desk::Settle();
    return desk.Open(name);
  }

  Desk desk;

 private:
  QTemporaryDir folder_;
};

/// Limits files to that many bytes while `act` runs, like an almost full disk.
inline void OnNearlyFullDisk(rlim_t bytes, const std::function<void()>& act) {
  const auto handler = std::signal(SIGXFSZ, SIG_IGN);
  rlimit old{};
  getrlimit(RLIMIT_FSIZE, &old);
  const rlimit small{bytes, old.rlim_max};
  setrlimit(RLIMIT_FSIZE, &small);
  act();
  setrlimit(RLIMIT_FSIZE, &old);
  std::signal(SIGXFSZ, handler);
}

}  // namespace zth::testing

#pragma once

#include <csignal>
#include <string>
#include <sys/resource.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include "tests/support/Desk.h"

namespace zth::testing {

std::string Content(const QString& path);

/// A started program with a folder of its own; what the chip measures stands still.
class DataTest : public ::testing::Test {
 protected:
  DataTest();

  QString Path(const QString& name) const { return folder_.filePath(name); }

  /// Opens the log window, ticks the channels and starts a log into that file.
  void StartLog(const QString& path, std::initializer_list<int> channels, const QString& period = "100");

  /// Lets the log job run so many times.
  void Log(int lines);

  QString Status() { return Desk::Text(desk.Main(), "sbStatusBar(1)"); }
  windows::ChildWindow& Logging() { return desk.Open("frmLogging"); }

  Desk desk;

 private:
  QTemporaryDir folder_;
};

/// Grants files so many bytes, as a disk that is nearly full does.
class NearlyFullDisk {
 public:
  explicit NearlyFullDisk(rlim_t bytes) : handler_(std::signal(SIGXFSZ, SIG_IGN)) {
    getrlimit(RLIMIT_FSIZE, &old_);
    const rlimit small{bytes, old_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &small);
  }
  ~NearlyFullDisk() {
    setrlimit(RLIMIT_FSIZE, &old_);
    std::signal(SIGXFSZ, handler_);
  }
  NearlyFullDisk(const NearlyFullDisk&) = delete;
  NearlyFullDisk& operator=(const NearlyFullDisk&) = delete;

 private:
  rlimit old_{};
  void (*handler_)(int);
};

}  // namespace zth::testing

#pragma once

#include <string>

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

}  // namespace zth::testing

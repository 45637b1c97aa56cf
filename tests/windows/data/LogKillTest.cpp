#include <chrono>
#include <csignal>
#include <cstdio>
#include <random>
#include <string>
#include <thread>

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include "chip/Measurements.h"

namespace zth::testing {
namespace {

std::string Content(const QString& path) {
  QFile file(path);
  EXPECT_TRUE(file.open(QIODevice::ReadOnly));
  return file.readAll().toStdString();
}

// The kernel's own end of a process, at moments spread over some thousand lines.
TEST(LogKill, AHundredKillsLeaveWholeLinesAndNoneMissing) {
  const QTemporaryDir folder;
  std::string row;
  for (int i = 0; i < chip::kLogChannels; ++i) row += ".3333333 ,";
  std::mt19937 random(4718);
  for (int kill = 0; kill < 100; ++kill) {
    const QString path = folder.filePath(QString("%1.csv").arg(kill));
    QProcess victim;
    victim.start(LOG_VICTIM, {path});
    ASSERT_TRUE(victim.waitForReadyRead());
    std::this_thread::sleep_for(std::chrono::microseconds(random() % 8000));
    ::kill(static_cast<pid_t>(victim.processId()), SIGKILL);
    ASSERT_TRUE(victim.waitForFinished());
    ASSERT_EQ(victim.exitStatus(), QProcess::CrashExit);
    const auto told = static_cast<std::size_t>(victim.readAllStandardOutput().size());

    const std::string content = Content(path);
    std::size_t at = content.find("\r\n0,");
    ASSERT_NE(at, std::string::npos);
    at += 2;
    std::size_t lines = 0;
    while (at < content.size()) {
      char time[32];
      std::snprintf(time, sizeof time, "%g", static_cast<double>(lines) / 100);
      const std::string text = (time[0] == '0' && time[1] != '\0' ? time + 1 : time) + std::string(",") + row + "\r\n";
      const std::string found = content.substr(at, text.size());
      at += found.size();
      if (at == content.size() && found.size() < text.size()) {
        ASSERT_EQ(found, text.substr(0, found.size())) << "a torn last line";
        break;
      }
      ASSERT_EQ(found, text);
      ++lines;
    }
    ASSERT_GE(lines, told);
    ASSERT_LE(lines, told + 1);
  }
}

}  // namespace
}  // namespace zth::testing

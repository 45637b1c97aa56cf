#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <string>
#include <unistd.h>

#include <QTemporaryDir>
#include <gtest/gtest.h>

#include "tests/support/Steps.h"
#include "windows/SharedState.h"

namespace zth::testing {
namespace {

std::int64_t MemoryInUse() {
  std::int64_t pages[2]{};
  std::ifstream("/proc/self/statm") >> pages[0] >> pages[1];
  return pages[1] * sysconf(_SC_PAGESIZE);
}

/// In accelerated time. Memory may grow by 4 MiB from the first third on.
TEST(NightLog, OfThreeHoursMissesNoRow) {
  constexpr int kSeconds = 3 * 60 * 60;
  Desk desk;
  desk.Start();
  const QTemporaryDir folder;
  desk.fileDialogs.script.push_back(folder.filePath("night.csv"));
  Do(desk.Open("frmLogging"),
     "chkLog(0..1)=1; chkLog(4)=1; chkLog(12)=1; chkLog(39)=1; chkLog(44)=1; cmdLogData; cmdClose");
  Desk::Settle();
  [[maybe_unused]] std::int64_t early = 0;
  for (int second = 0; second < kSeconds; second += 60) {
    desk.clock.Advance(60'000);
    desk.board.TakeTraffic();
    if (second <= kSeconds / 3) early = MemoryInUse();
  }
#if !defined(__SANITIZE_ADDRESS__)  // which keeps freed memory for a while
  EXPECT_LT(MemoryInUse() - early, 4 << 20);
#endif

  std::ifstream file(folder.filePath("night.csv").toStdString());
  std::string line;
  for (int i = 0; i < 4; ++i) std::getline(file, line);
  std::int64_t rows = 0;
  for (; std::getline(file, line); ++rows) {
    ASSERT_DOUBLE_EQ(std::strtod(line.c_str(), nullptr), static_cast<double>(rows) / 10) << line;
    ASSERT_EQ(std::count(line.begin(), line.end(), ','), 7) << line;
    ASSERT_EQ(line.back(), '\r');
  }
  EXPECT_EQ(rows, windows::LogSampleCount);
  EXPECT_NEAR(static_cast<double>(rows), kSeconds / 0.15, 2);
}

}  // namespace
}  // namespace zth::testing

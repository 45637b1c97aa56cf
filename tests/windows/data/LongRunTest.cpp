#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <unistd.h>

#include <QTemporaryDir>
#include <gtest/gtest.h>

#include "chip/RegMapStuff.h"
#include "link/Declarations.h"
#include "link/USBStuff.h"
#include "tests/support/SimulatedDesk.h"
#include "windows/SharedState.h"

namespace zth::testing {
namespace {

std::int64_t MemoryInUse() {
  std::ifstream statm("/proc/self/statm");
  std::int64_t all = 0;
  std::int64_t resident = 0;
  statm >> all >> resident;
  return resident * sysconf(_SC_PAGESIZE);
}

/// Logs for so long in accelerated time. Memory may grow by 4 MiB from the first third on.
void ExpectNoRowMissing(Desk& desk, int seconds) {
  const QTemporaryDir folder;
  windows::ChildWindow& window = desk.Open("frmLogging");
  for (const int channel : {0, 1, 4, 12, 39, 44}) Desk::Check(window, QString("chkLog(%1)").arg(channel), true);
  desk.fileDialogs.script.push_back(folder.filePath("night.csv"));
  Desk::Press(window, "cmdLogData");
  window.Unload();
  Desk::Settle();
  [[maybe_unused]] std::int64_t early = 0;
  for (int second = 0; second < seconds; second += 60) {
    desk.clock.Advance(60'000);
    desk.board.TakeTraffic();
    if (second <= seconds / 3) early = MemoryInUse();
  }
#if !defined(__SANITIZE_ADDRESS__)  // which keeps freed memory for a while
  EXPECT_LT(MemoryInUse() - early, 4 << 20);
#endif

  std::ifstream file(folder.filePath("night.csv").toStdString());
  std::string line;
  for (int i = 0; i < 4; ++i) std::getline(file, line);
  std::int64_t rows = 0;
  while (std::getline(file, line)) {
    char time[32];
    std::snprintf(time, sizeof time, "%.1f", static_cast<double>(rows) / 10);
    ASSERT_EQ(std::strtod(line.c_str(), nullptr), std::strtod(time, nullptr)) << line;
    ASSERT_EQ(std::count(line.begin(), line.end(), ','), 7) << line;
    ASSERT_EQ(line.back(), '\r');
    ++rows;
  }
  EXPECT_EQ(rows, windows::LogSampleCount);
  EXPECT_NEAR(static_cast<double>(rows), seconds / 0.15, 2);
}

TEST(NightLog, OfThreeHoursMissesNoRow) {
  Desk desk;
  desk.Start();
  ExpectNoRowMissing(desk, 3 * 60 * 60);
}

TEST(DataOnTheSimulatedBoard, ALogOfTenMinutesMissesNoRow) {
  SimulatedDesk sim;
  sim.desk.Start();
  ExpectNoRowMissing(sim.desk, 10 * 60);
}

TEST(DataOnTheSimulatedBoard, RecallGivesEveryWritableRegisterItsValueBack) {
  SimulatedDesk sim;
  Desk& desk = sim.desk;
  desk.Start();
  const QTemporaryDir folder;
  const auto save = [&](const QString& name) {
    desk.fileDialogs.script.push_back(folder.filePath(name));
    Desk::Press(desk.Open("frmSave"), "cmdsave");
    std::ifstream file(folder.filePath(name).toStdString());
    std::string text{std::istreambuf_iterator<char>(file), {}};
    return text.substr(text.find("{\r\n"));
  };
  // Above the pin fields, which the chip has rules for; a PWM's value is its own unless it is manual.
  const auto writable = [](const chip::RegisterEntry& row) {
    return !row.ReadOnly && row.Address > 0x14 && row.Address != 0x1C && row.Address != 0x1D;
  };
  for (const chip::RegisterEntry& row : chip::RegisterTable) {
    const bool pwmConfig = row.Address >= 0x21 && row.Address <= 0x24;
    const int value = pwmConfig ? row.Default | 0xE0 : row.Default ^ 0x15;
    if (writable(row)) link::WriteRegisterValue(link::DeviceAddress, row.Address, value);
  }
  const std::string before = save("before.sav");
  for (const chip::RegisterEntry& row : chip::RegisterTable) {
    if (writable(row)) link::WriteRegisterValue(link::DeviceAddress, row.Address, row.Default);
  }
  const std::string between = save("between.sav");
  EXPECT_NE(before, between);
  desk.fileDialogs.script.push_back(folder.filePath("before.sav"));
  Desk::Press(desk.Open("frmSave"), "cmdRecall");
  EXPECT_EQ(save("after.sav"), before);
}

}  // namespace
}  // namespace zth::testing

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <malloc.h>

#include <QTemporaryDir>

#include "tasks/TasksState.h"
#include "tests/support/EveryWindow.h"
#include "tests/support/SimulatedDesk.h"
#include "tests/support/Steps.h"
#include "widgets/Strip.h"

namespace zth::testing {
namespace {

#if defined(__SANITIZE_ADDRESS__)
constexpr bool kMemoryIsTold = false;  // the sanitizer holds freed memory for a while
#else
constexpr bool kMemoryIsTold = true;
#endif

/// Two hours reveal a lost run or line, or a leak in a tick. ZTH_DAY_HOURS sets more, as `./test soak` does.
int Hours() {
  return std::max(2, qEnvironmentVariableIntValue("ZTH_DAY_HOURS"));
}

constexpr int kTickMs = 50;
constexpr int kTicksAnHour = 60 * 60 * 1000 / kTickMs;

/// The memory that is allocated, in bytes.
std::int64_t MemoryInUse() {
  const auto info = mallinfo2();
  return static_cast<std::int64_t>(info.uordblks + info.hblkhd);
}

/// A job and the rule when it is due, at ticks that take no time: more than its period has passed since it last ran.
struct Due {
  void Tick(double now) {
    if (last + period < now) last = now, ++runs;
  }

  double period;
  std::array<int, 3> request;  ///< that each run starts with, or every sixth run of the measurement
  std::int64_t runs = 0;
  double last = 0;
};

class Day {
 public:
  Day() {
    desk.clock.lookUs = 0;
    // The traffic's ring takes hours to fill, which is no leak; a short one is full within the first hour.
    tasks::Work.traffic = std::make_unique<tasks::Traffic>(1000);
    desk.Start();
    for (const auto& [name, open] : OpenFlags()) desk.Open(name.c_str());
    Do(Window("frmGraph"), "txtUpdate=250");  // the most expensive job
    Do(Window("frmRegMap"), "chkContRead=1; txtReadAddr=3E");
    windows::ChildWindow& logging = desk.Open("frmLogging");
    desk.fileDialogs.script = {LogPath()};
    Do(logging, "chkLog(0..1)=1; chkLog(4)=1; chkLog(12)=1; chkLog(39)=1; chkLog(44)=1; txtLogInt=100; cmdLogData");
    logging.Unload();
    Desk::Settle();
    sim.requests.clear();
  }

  QWidget& Window(const char* name) { return *desk.Main().FindWindow(name); }
  QString LogPath() const { return folder.filePath("day.csv"); }

  void ClearCharts() {
    for (auto* chart : desk.Main().findChildren<widgets::Strip*>()) chart->ClearData();
    Desk::Settle();
  }

  QTemporaryDir folder;
  SimulatedDesk sim{"smbus = none"};
  Desk& desk = sim.desk;
};

TEST(Day, WithEveryJobLosesNoRunAndNoLineAndLeaksNoMemory) {
  Day day;
  Due log{0.1, {}}, measurement{0.1, {0xDC, 1, 0x88}};
  Due others[]{{1.0, {0xDE, 1, 0x3E}}, {0.5, {0xDE, 1, 0xC0}}, {0.1, {0xDC, 1, 0x21}}, {0.5, {0xDC, 1, 0x09}}};
  std::int64_t memory = 0;
  qsizetype objects = 0;
  for (int tick = 1; tick <= Hours() * kTicksAnHour; ++tick) {
    day.desk.clock.Advance(kTickMs);
    for (Due* job : {&log, &measurement}) job->Tick(day.desk.clock.Now());
    for (Due& job : others) job.Tick(day.desk.clock.Now());
    if (tick % kTicksAnHour == 0) Desk::Settle();
    if (tick == kTicksAnHour) {
      // The charts may keep a day; everything else has allocated what it needs by now.
      day.ClearCharts();
      memory = MemoryInUse();
      objects = day.desk.Main().findChildren<QObject*>().size();
    }
  }
  day.ClearCharts();
  EXPECT_EQ(day.desk.Main().findChildren<QObject*>().size(), objects);
  if (kMemoryIsTold) {
    EXPECT_LT(MemoryInUse() - memory, 64 << 10);
  }

  for (const Due& job : others) EXPECT_EQ(day.sim.requests[job.request], job.runs) << std::hex << job.request[2];
  EXPECT_EQ(day.sim.requests[measurement.request], (measurement.runs + 5) / 6);

  std::ifstream file(day.LogPath().toStdString());
  std::string line;
  for (int i = 0; i < 4; ++i) std::getline(file, line);
  std::int64_t rows = 0;
  for (; std::getline(file, line); ++rows) {
    ASSERT_EQ(std::lround(std::strtod(line.c_str(), nullptr) * 10), rows) << line;
    ASSERT_EQ(std::count(line.begin(), line.end(), ','), 7) << line;
  }
  EXPECT_EQ(rows, log.runs);
}

}  // namespace
}  // namespace zth::testing

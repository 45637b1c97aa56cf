#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <malloc.h>
#include <string>

#include <QLabel>
#include <QTemporaryDir>

#include "chip/Measurements.h"
#include "tests/support/EveryWindow.h"
#include "tests/support/SimulatedDesk.h"
#include "tests/support/Steps.h"
#include "widgets/Strip.h"
#include "windows/SharedState.h"

namespace zth::testing {
namespace {

#if defined(__SANITIZE_ADDRESS__)
constexpr bool kMemoryIsTold = false;  // freed memory is kept for a while
#else
constexpr bool kMemoryIsTold = true;
#endif

/// Two hours show a run that is lost or a leak in a tick; ZTH_DAY_HOURS asks for more, as `./test soak` does.
int Hours() {
  return std::max(2, qEnvironmentVariableIntValue("ZTH_DAY_HOURS"));
}

constexpr int kTickMs = 50;
constexpr int kTicksAnHour = 60 * 60 * 1000 / kTickMs;

/// What the allocator has handed out, in bytes.
std::int64_t MemoryInUse() {
  const auto info = mallinfo2();
  return static_cast<std::int64_t>(info.uordblks + info.hblkhd);
}

/// The rule that a job is due by, at ticks that take no time: more than its period has passed since it last ran.
struct Due {
  void Tick(double now) {
    if (last + period < now) last = now, ++runs;
  }

  double period;
  double last = 0;
  std::int64_t runs = 0;
};

class Day {
 public:
  Day() {
    desk.clock.lookUs = 0;
    desk.Start();
    for (const auto& [name, open] : OpenFlags()) desk.Open(name.c_str());
    Do(Window("frmGraph"), "txtUpdate=250");  // the job that costs most
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
  std::int64_t Reads(int first) { return sim.requests[{0xDC, 1, first}]; }

  void ClearCharts() {
    for (auto* chart : desk.Main().findChildren<widgets::Strip*>()) chart->ClearData();
    Desk::Settle();
  }

  QTemporaryDir folder;
  SimulatedDesk sim{"smbus = none"};
  Desk& desk = sim.desk;
};

TEST(Day, OfAllJobsLosesNoRunAndNoMemory) {
  Day day;
  Due measurement{chip::PollPeriodMs / 1000.0}, graph{windows::GraphPeriodMs / 1000.0};
  Due regMap{1.0}, heaters{1.0}, limits{0.5}, manual{1.0}, autoGraph{0.3}, dynTmin{0.1}, gpio{0.5}, log{0.1};
  std::int64_t graphRuns = 0, heatersRuns = 0, manualRuns = 0, autoGraphRuns = 0;
  auto& chart = *day.Window("frmGraph").findChildren<widgets::Strip*>().first();
  auto& curve = *day.Window("frmAutoGraph").findChildren<widgets::Strip*>().first();
  auto& heater = Desk::Get<QLabel>(day.Window("frmHeaters"), "lblTemp(0)");
  auto& state = Desk::Get<QLabel>(day.Window("frmManualControl"), "lblManual(0)");
  const int trail = curve.TraceCount() - 1;

  const int ticks = Hours() * kTicksAnHour;
  std::int64_t memory = 0;
  qsizetype objects = 0;
  for (int tick = 1; tick <= ticks; ++tick) {
    day.desk.clock.Advance(kTickMs);
    const double now = day.desk.clock.Now();
    for (Due* job : {&measurement, &graph, &regMap, &heaters, &limits, &manual, &autoGraph, &dynTmin, &gpio, &log}) {
      job->Tick(now);
    }
    // The jobs without a transfer are told by what they write over a mark.
    chart.SetLabelIndex(1);
    if (chart.Caption() != "?") ++graphRuns, chart.SetCaption("?");
    if (heater.text() != "?") ++heatersRuns, heater.setText("?");
    if (state.text() != "?") ++manualRuns, state.setText("?");
    const QVariantList points = curve.TracePoints(trail);
    if (points.isEmpty() || points.first().toList().first() != -1.0) ++autoGraphRuns, curve.PlotXY(trail, -1, 0);
    if (tick % kTicksAnHour == 0) Desk::Settle();
    if (tick == kTicksAnHour) {
      // The charts may keep a day; all else of the program has what it needs by now.
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

  EXPECT_EQ(graphRuns, graph.runs);
  EXPECT_EQ(heatersRuns, heaters.runs);
  EXPECT_EQ(manualRuns, manual.runs);
  EXPECT_EQ(autoGraphRuns - 1, autoGraph.runs) << "one mark went with the cleared chart";
  std::int64_t groups = 0;
  for (const int first : {0x88, 0x98, 0xAA, 0x8B, 0xAE, 0x5A}) groups += day.Reads(first);
  EXPECT_EQ(groups, measurement.runs);
  EXPECT_EQ((day.sim.requests[{0xDE, 1, 0x3E}]), regMap.runs);
  EXPECT_EQ((day.sim.requests[{0xDE, 1, 0xC0}]), limits.runs);
  EXPECT_EQ(day.Reads(0x21), dynTmin.runs);
  EXPECT_EQ(day.Reads(0x09), gpio.runs);

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

// The pace of each job of the master timer, observed from outside over minutes.

#include <QTemporaryDir>

#include "chip/ChipState.h"
#include "chip/Measurements.h"
#include "tests/support/Seen.h"
#include "tests/support/Steps.h"
#include "windows/SharedState.h"
#include "windows/data/LogJob.h"

namespace zth::testing {
namespace {

/// What changes with each run of a job: a displayed number that follows a measurement, or a number of transfers.
using Look = std::function<double(Desk&)>;

struct Pace {
  const char* job;
  const char* window;
  int milliseconds;      ///< between runs: the first tick at which more than the period has passed
  const char* transfer;  ///< starts each run; or
  Look look;
};

Look Chart(const char* window, const char* chart, int trace) {
  return [=](Desk& desk) {
    const Points points = PointsOf(Desk::Get<widgets::Strip>(*desk.Main().FindWindow(window), chart), trace);
    return points.empty() ? 0 : points.back().first;
  };
}

Look Number(const char* window, const char* control) {
  return [=](Desk& desk) {
    const QWidget& at = *desk.Main().FindWindow(window);
    const QVariant value = Desk::Property(at, control, "Value");
    return value.isValid() ? value.toDouble()
                           : Desk::Text(at, control).section(' ', 2).section(QChar(0xB0), 0, 0).toDouble();
  };
}

const Pace kPaces[]{
    {"measurement", "", 900, "usb B 58:88+8", {}},  // each of six groups at 150
    {"graphs", "frmGraph", 100, nullptr, Chart("frmGraph", "stpGraph(0)", 0)},
    {"register map", "frmRegMap", 1050, "usb R 58:00", {}},
    {"heaters", "frmHeaters", 1050, nullptr, Number("frmHeaters", "lblTemp(0)")},
    {"limits", "frmLimits", 550, "usb R 58:C0", {}},
    {"manual control", "frmManualControl", 1050, nullptr, Number("frmManualControl", "sldManual(0)")},
    {"automatic control", "frmAutoGraph", 350, nullptr, Chart("frmAutoGraph", "stpGraph", 4)},
    {"dynamic Tmin", "frmDynamicTmin", 150, "usb B 58:21+4", {}},
    {"GPIO", "frmGPIO", 550, "usb R 58:BF", {}},
    {"log", "", 150, nullptr, [](Desk&) { return static_cast<double>(windows::Shared.LogSampleCount); }},
    {"log that is stopped and owes a line", "", 1050, nullptr, [](Desk& desk) { return desk.files.appends * 1.0; }},
};

/// What else must be set up before the job runs.
void Prepare(Desk& desk, const std::string& job, const QString& path) {
  chip::Model.PollEnabled = job == "measurement";
  if (job == "register map") Do(*desk.Main().FindWindow("frmRegMap"), "chkContRead=1");
  if (!job.starts_with("log")) return;
  windows::Shared.LogFileName = path;
  windows::StartLog(100, desk.Main());
  if (job == "log") return;
  desk.files.locked = true;
  windows::RunLogJob({desk.services, desk.Main()});
  windows::StopLog({desk.services, desk.Main()});
}

TEST(Periods, EachJobKeepsItsPeriodOverMinutes) {
  constexpr int kTickMs = 50;
  const QTemporaryDir folder;
  for (const auto& [job, window, milliseconds, transfer, look] : kPaces) {
    SCOPED_TRACE(job);
    Desk desk(Desk::Buses::Usb);
    desk.Start();
    if (*window != 0) desk.Open(window);
    Prepare(desk, job, folder.filePath(job));
    std::set<int> gaps;
    double seen = look ? look(desk) : 0;
    for (int at = 0, last = -1; at < 3 * 60'000; at += kTickMs) {
      chip::Model.Measurements.Temperature.fill(static_cast<float>(at % 6'350) / 50);
      chip::Model.Measurements.PwmPercent.fill(static_cast<std::int16_t>(at / kTickMs % 101));
      desk.board.TakeTraffic();
      desk.Advance(kTickMs);
      const bool sent = transfer != nullptr && std::ranges::count(desk.board.traffic, transfer) > 0;
      const double now = look ? look(desk) : 0;
      if (!sent && now == seen) continue;
      seen = now;
      if (last >= 0) gaps.insert(at - last);
      last = at;
    }
    EXPECT_EQ(gaps, std::set{milliseconds});
  }
}

}  // namespace
}  // namespace zth::testing

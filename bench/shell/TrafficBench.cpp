// The window of the bus traffic with all the calls that can be held.
#include <fstream>

#include <QApplication>
#include <QTemporaryDir>
#include <QTimer>
#include <benchmark/benchmark.h>

#include "bench/shell/Running.h"
#include "tasks/TasksState.h"
#include "tasks/TrafficText.h"
#include "tests/support/EveryWindow.h"

namespace zth {
namespace {

// What the window may take, in seconds of CPU time.
constexpr double kLongestFilter = 0.25;
constexpr double kLongestOpening = 1;
constexpr double kLargestShare = 0.01;  // of a core, while it follows the calls of every window

constexpr double kRefreshesPerSecond = 1000.0 / 1000;  // of what the monitor reads

tasks::TrafficRecord Some(std::uint64_t i) {
  tasks::TrafficRecord record;
  record.mode = 1;
  record.address = 0x58;
  record.form = i % 7 == 0 ? link::Form::Write : i % 5 == 0 ? link::Form::ReadBlock : link::Form::Read;
  record.reg = static_cast<std::uint8_t>(i * 31);
  record.count = record.form == link::Form::ReadBlock ? 8 : 1;
  for (std::size_t byte = 0; byte < record.count; ++byte) record.bytes[byte] = static_cast<std::uint8_t>(i / 3 + byte);
  record.time = static_cast<double>(i) * 1e-3;
  return record;
}

void AddCalls(tasks::Traffic& traffic, std::uint64_t count) {
  const std::uint64_t end = traffic.End() + count;
  while (traffic.End() < end) {
    traffic.Add(Some(traffic.End()), traffic.End() % 9 == 0 ? "monitor" : "monitor frmLimits");
  }
}

void Refresh(const QWidget& window) {
  for (int look = 0; look < 10; ++look) {
    QMetaObject::invokeMethod(window.findChild<QTimer*>("tmrTraffic"), "timeout", Qt::DirectConnection);
  }
  QApplication::processEvents();  // paints
}

struct FullTraffic : Running {
  FullTraffic() {
    desk.Main().resize(1366, 768);
    desk.Main().show();
    AddCalls(*tasks::Work.traffic, tasks::Traffic::kMostRecords);
    Refresh(window);
  }
  QWidget& window = desk.Open("frmTraffic");
};

void FilterAllCalls(benchmark::State& state) {
  const FullTraffic full;
  const double before = CpuSeconds();
  int times = 0;
  for (auto _ : state) testing::Desk::Type(full.window, "txtFilter", ++times % 2 == 0 ? "Bhvr = 3" : "PWM1");
  if (CpuSeconds() - before > times * kLongestFilter) state.SkipWithError("filtering takes too long");
}
BENCHMARK(FilterAllCalls)->Unit(benchmark::kMillisecond);

/// The oldest calls are forgotten at the rate at which new ones come, and the view follows.
void FollowEveryWindow(benchmark::State& state) {
  FullTraffic full;
  for (const std::string& name : testing::EveryWindow()) full.desk.Open(name.c_str());
  full.desk.Open("frmTraffic");
  const std::uint64_t first = tasks::Work.traffic->End();
  full.desk.Advance(20'000);
  const double calls = static_cast<double>(tasks::Work.traffic->End() - first) / 20;
  const auto each = static_cast<std::uint64_t>(calls / kRefreshesPerSecond) + 1;
  const auto follow = [&] {
    AddCalls(*tasks::Work.traffic, each);
    Refresh(full.window);
  };
  for (auto _ : state) follow();
  // Separate from the loop above, which may run only once and then includes the first painting.
  constexpr int kTimes = 100;
  const double before = CpuSeconds();
  for (int i = 0; i < kTimes; ++i) follow();
  const double share = (CpuSeconds() - before) / kTimes * kRefreshesPerSecond;
  state.counters["calls_per_second"] = calls;
  state.counters["percent_of_a_core"] = share * 100;
  if (share > kLargestShare) state.SkipWithError("following the calls takes too much");
}
BENCHMARK(FollowEveryWindow)->Unit(benchmark::kMicrosecond);

void OpenLongFile(benchmark::State& state) {
  FullTraffic full;
  const QTemporaryDir folder;
  const QString path = folder.filePath("long.txt");
  {
    std::ofstream file(path.toStdString());
    file << tasks::TrafficHeadText({});
    const tasks::Traffic& traffic = *tasks::Work.traffic;
    for (std::uint64_t i = traffic.First(); i < traffic.End(); ++i) {
      file << tasks::TrafficLineText(traffic.At(i), traffic.TextOf(traffic.At(i)), 0) << '\n';
    }
  }
  const double before = CpuSeconds();
  int times = 0;
  for (auto _ : state) {
    full.desk.fileDialogs.script.push_back(path);
    testing::Desk::Press(full.window, "cmdOpen");
    QApplication::processEvents();
    ++times;
  }
  if (CpuSeconds() - before > times * kLongestOpening) state.SkipWithError("opening takes too long");
}
BENCHMARK(OpenLongFile)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace zth

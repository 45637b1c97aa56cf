#include <algorithm>

#include <QApplication>
#include <QLocale>
#include <QTimer>
#include <benchmark/benchmark.h>

#include "chip/Measurements.h"
#include "link/Declarations.h"
#include "tests/support/Desk.h"

namespace zth {
namespace {

/// A transfer that costs nothing, so that what is left is the program's own time.
std::int16_t ZTH_LIBRARY_CALL FreeTransfer(std::int16_t /*request*/, std::int32_t /*value*/, std::int32_t /*index*/,
                                           std::int16_t direction, std::int16_t length, std::uint8_t* buffer) {
  if (direction == 1) std::fill_n(buffer, length, std::uint8_t{0x59});
  return 0;
}

/// The running program on a link at zero cost.
class Running {
 public:
  Running() {
    desk.Start();
    link::UsbFunctions.VendorIORequest = FreeTransfer;
  }

  testing::Desk desk{testing::Desk::Buses::Usb};
};

/// One tick at which every job is due: the clock moves on by more than the longest period in between.
void TickOf(benchmark::State& state, Running& running) {
  auto* timer = running.desk.Main().findChild<QTimer*>("tmrMaster");
  for (auto _ : state) {
    running.desk.clock.WaitMs(1100);
    QMetaObject::invokeMethod(timer, "timeout", Qt::DirectConnection);
  }
}

void TickAlone(benchmark::State& state) {
  Running running;
  TickOf(state, running);
}
BENCHMARK(TickAlone)->Unit(benchmark::kMicrosecond);

/// With every window open that has a job, and the register map reading continuously.
void TickWithAllWindows(benchmark::State& state) {
  Running running;
  for (const char* name : {"frmGraph", "frmRegMap", "frmHeaters", "frmLimits", "frmManualControl", "frmAutoGraph",
                           "frmDynamicTmin", "frmGPIO"}) {
    running.desk.Open(name);
  }
  testing::Desk::Check(*running.desk.Main().FindWindow("frmRegMap"), "chkContRead", true);
  TickOf(state, running);
}
BENCHMARK(TickWithAllWindows)->Unit(benchmark::kMicrosecond);

void MeasurementGroup(benchmark::State& state) {
  const Running running;
  for (auto _ : state) chip::ReadMeasurementGroup(static_cast<std::int16_t>(state.range(0)));
}
BENCHMARK(MeasurementGroup)->DenseRange(1, 6)->Unit(benchmark::kMicrosecond);

/// From the first step of Main to polling, with the waits taken out.
void StartToPolling(benchmark::State& state) {
  for (auto _ : state) {
    testing::Desk desk;
    desk.Start();
    benchmark::DoNotOptimize(desk.Main());
  }
}
BENCHMARK(StartToPolling)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace zth

int main(int argc, char** argv) {
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  QLocale::setDefault(QLocale::c());
  const QApplication application(argc, argv);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}

#include <algorithm>
#include <cstdio>

#include <QApplication>
#include <QLocale>
#include <QTimer>
#include <benchmark/benchmark.h>

#include "bench/shell/Running.h"
#include "chip/Measurements.h"
#include "link/Declarations.h"
#include "tests/support/EveryWindow.h"

namespace zth {
namespace {

/// A transfer that takes no time.
std::int16_t ZTH_LIBRARY_CALL FreeTransfer(std::int16_t /*request*/, std::int32_t /*value*/, std::int32_t /*index*/,
                                           std::int16_t direction, std::int16_t length, std::uint8_t* buffer) {
  if (direction == 1) std::fill_n(buffer, length, std::uint8_t{0x59});
  return 0;
}

/// The longest that a tick with every window open may take, not counting its transfers, in seconds.
constexpr double kLongestTick = 1e-3;

/// One tick at which every job is due: before it the clock advances by more than the longest period.
void Tick(Running& running) {
  running.desk.clock.WaitMs(1100);
  QMetaObject::invokeMethod(running.desk.Main().findChild<QTimer*>("tmrMaster"), "timeout", Qt::DirectConnection);
}

void TickAlone(benchmark::State& state) {
  Running running;
  for (auto _ : state) Tick(running);
}
BENCHMARK(TickAlone)->Unit(benchmark::kMicrosecond);

/// With every window open and the register map reading continuously. Fails if it takes too long.
void TickWithAllWindows(benchmark::State& state) {
  Running running;
  for (const std::string& name : testing::EveryWindow()) running.desk.Open(name.c_str());
  testing::Desk::Check(*running.desk.Main().FindWindow("frmRegMap"), "chkContRead", true);
  for (auto _ : state) Tick(running);
  // Separate from the loop above, which may run only once and then includes the set-up of the first tick.
  constexpr int kTicks = 200;
  const double before = CpuSeconds();
  for (int tick = 0; tick < kTicks; ++tick) Tick(running);
  if (CpuSeconds() - before > kTicks * kLongestTick) state.SkipWithError("a tick takes more than a millisecond");
}
BENCHMARK(TickWithAllWindows)->Unit(benchmark::kMicrosecond);

void MeasurementGroup(benchmark::State& state) {
  const Running running;
  for (auto _ : state) chip::ReadMeasurementGroup(static_cast<std::int16_t>(state.range(0)));
}
BENCHMARK(MeasurementGroup)->DenseRange(1, 6)->Unit(benchmark::kMicrosecond);

}  // namespace

Running::Running() {
  desk.Start();
  link::Bus.UsbFunctions.VendorIORequest = FreeTransfer;
}

}  // namespace zth

int main(int argc, char** argv) {
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  // For each window the offscreen platform warns that it cannot pass on size hints.
  qInstallMessageHandler([](QtMsgType type, const QMessageLogContext& /*context*/, const QString& text) {
    if (type != QtWarningMsg || !text.contains("propagateSizeHints")) std::fprintf(stderr, "%s\n", qPrintable(text));
  });
  QLocale::setDefault(QLocale::c());
  const QApplication application(argc, argv);
  benchmark::Initialize(&argc, argv);
  zth::RegisterOpenings();
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}

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

/// A transfer that costs nothing.
std::int16_t ZTH_LIBRARY_CALL FreeTransfer(std::int16_t /*request*/, std::int32_t /*value*/, std::int32_t /*index*/,
                                           std::int16_t direction, std::int16_t length, std::uint8_t* buffer) {
  if (direction == 1) std::fill_n(buffer, length, std::uint8_t{0x59});
  return 0;
}

/// What a tick with every window open may take beside its transfers, in seconds.
constexpr double kLongestTick = 1e-3;

/// One tick at which every job is due: the clock moves on by more than the longest period in between.
void Tick(Running& running) {
  running.desk.clock.WaitMs(1100);
  QMetaObject::invokeMethod(running.desk.Main().findChild<QTimer*>("tmrMaster"), "timeout", Qt::DirectConnection);
}

void TickAlone(benchmark::State& state) {
  Running running;
  for (auto _ : state) Tick(running);
}
BENCHMARK(TickAlone)->Unit(benchmark::kMicrosecond);

/// With every window open, and the register map reading continuously. Ends with an error when it takes too long.
void TickWithAllWindows(benchmark::State& state) {
  Running running;
  for (const std::string& name : testing::EveryWindow()) running.desk.Open(name.c_str());
  testing::Desk::Check(*running.desk.Main().FindWindow("frmRegMap"), "chkContRead", true);
  for (auto _ : state) Tick(running);
  // Apart from the loop above, which may run once only, with all that a first tick sets up.
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
  // The offscreen platform tells at each window that it has no size hints to pass on.
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

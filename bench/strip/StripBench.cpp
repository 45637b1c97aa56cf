// The time for a frame of the strip chart and of two other chart libraries, on the same samples in the same run, and
// the time to append a sample. Offscreen raster, 800 x 500, 12 traces with 2,000 visible points each.
#include <cstdio>
#include <vector>

#include <QApplication>
#include <QImage>
#include <benchmark/benchmark.h>

#include "Peers.h"
#include "widgets/Strip.h"
#include "widgets/TraceHistory.h"

namespace {

using bench::kTraces;

constexpr int kDaySamples = 24 * 60 * 60 * 20;

/// Two zones, twelve traces and a legend whose texts change with each sample, like the busiest of the graphs.
class StripCompetitor final : public bench::Competitor {
 public:
  explicit StripCompetitor(int samples, double shown = bench::kPoints * bench::kPeriod)
      : strip_([this] { return now_; }) {
    zth::widgets::StripSetup setup{.title = QStringLiteral("Temperature"),
                                   .xMin = -shown + 10,
                                   .axes = {{0, 12000, 0, 0.47}, {0, 12000, 0.53, 1}},
                                   .widestLegend = QStringLiteral("Remote1 = 100.25 C")};
    for (int t = 0; t < kTraces; ++t) {
      setup.traces.push_back({.colour = QColor::fromHsv(t * 30, 255, 160), .axis = t < 4 ? 0 : 1});
      setup.labels.push_back({.slot = t + 1, .text = QStringLiteral("Tach"), .trace = t});
    }
    strip_.SetUp(setup);
    strip_.resize(bench::kWidth, bench::kHeight);
    for (int i = 0; i < samples; ++i) Add();
    strip_.show();
  }
  QWidget& Widget() override { return strip_; }
  void Feed() override {
    Add();
    for (int t = 0; t < kTraces; ++t) {
      strip_.SetLabelIndex(t + 1);
      strip_.SetCaption(bench::LegendText(t, next_ - 1));
    }
  }
  void Draw() override { strip_.repaint(); }

 private:
  void Add() {
    now_ = next_ * bench::kPeriod;
    for (int t = 0; t < kTraces; ++t) strip_.PlotValue(t, bench::ValueAt(t, next_));
    ++next_;
  }

  double now_ = 0;
  int next_ = 0;
  zth::widgets::Strip strip_;
};

void Run(benchmark::State& state, bench::Competitor& competitor) {
  QApplication::processEvents();
  for (auto _ : state) {
    competitor.Feed();
    competitor.Draw();
  }
}

void FrameStrip(benchmark::State& state) {
  StripCompetitor strip(bench::kPoints);
  Run(state, strip);
}
/// A zoom in every frame, so that nothing of the previous picture can be reused.
void FrameStripRedrawn(benchmark::State& state) {
  StripCompetitor strip(bench::kPoints);
  QApplication::processEvents();
  double high = 12000;
  for (auto _ : state) {
    strip.Feed();
    high = high > 12500 ? 12000 : high + 50;
    strip.Widget().setProperty("AxisMax", high);
    strip.Draw();
  }
}
void FrameStripDayBehind(benchmark::State& state) {
  StripCompetitor strip(kDaySamples);
  Run(state, strip);
}
void FrameStripDayShown(benchmark::State& state) {
  StripCompetitor strip(kDaySamples, 24 * 60 * 60);
  Run(state, strip);
}
void FrameQCustomPlot(benchmark::State& state) {
  const auto peer = bench::MakeQCustomPlot();
  Run(state, *peer);
}
void FrameQtCharts(benchmark::State& state) {
  const auto peer = bench::MakeQtCharts();
  Run(state, *peer);
}

void Append(benchmark::State& state) {
  zth::widgets::TraceHistory history;
  double x = 0;
  for (auto _ : state) {
    x += bench::kPeriod;
    history.Append(x, x);
  }
}

void Columns(benchmark::State& state) {
  zth::widgets::TraceHistory history;
  for (int i = 0; i < kDaySamples; ++i) history.Append(i * bench::kPeriod, bench::ValueAt(1, i));
  std::vector<zth::widgets::TraceHistory::Column> columns(bench::kWidth);
  const double width = static_cast<double>(state.range(0)) / bench::kWidth;
  const auto first = static_cast<std::int64_t>(kDaySamples * bench::kPeriod / width) - bench::kWidth;
  for (auto _ : state) history.Columns(first, width, columns);
  state.counters["bytes"] = static_cast<double>(history.Bytes());
}

BENCHMARK(FrameStrip)->Unit(benchmark::kMicrosecond);
BENCHMARK(FrameStripRedrawn)->Unit(benchmark::kMicrosecond);
BENCHMARK(FrameStripDayBehind)->Unit(benchmark::kMicrosecond);
BENCHMARK(FrameStripDayShown)->Unit(benchmark::kMicrosecond);
BENCHMARK(FrameQCustomPlot)->Unit(benchmark::kMicrosecond);
BENCHMARK(FrameQtCharts)->Unit(benchmark::kMicrosecond);
BENCHMARK(Append);
BENCHMARK(Columns)->Arg(100)->Arg(3600)->Arg(86400)->Unit(benchmark::kMicrosecond);

}  // namespace

int main(int argc, char** argv) {
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(argc, argv);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}

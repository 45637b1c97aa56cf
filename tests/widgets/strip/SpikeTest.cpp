#include <gtest/gtest.h>

#include "widgets/Strip.h"

namespace zth::widgets {
namespace {

constexpr double kDay = 86400;
constexpr double kRate = 20;  // samples a second

/// How many pixels of the trace's colour stand in the upper quarter of the chart's picture, which nothing but a spike
/// reaches.
int PixelsOfSpike(const Strip& chart, QColor colour) {
  const QImage picture = chart.Picture().convertToFormat(QImage::Format_RGB32);
  int pixels = 0;
  for (int y = 0; y < picture.height() / 4; ++y) {
    for (int x = 0; x < picture.width(); ++x) pixels += picture.pixelColor(x, y) == colour ? 1 : 0;
  }
  return pixels;
}

TEST(Spike, OfOneSampleStaysOnThePaperAtEveryZoomOfADay) {
  const QColor colour(255, 0, 255);
  StripSetup setup;
  setup.axes = {{.min = 0, .max = 100}};
  setup.traces = {{.colour = colour}};
  double now = 0;
  Strip chart([&now] { return now; });
  chart.resize(800, 500);
  chart.SetUp(setup);
  const double spikes[] = {10, 30000.35, 86350};
  std::size_t next = 0;
  for (int i = 0; i <= static_cast<int>(kDay * kRate); ++i) {
    now = i / kRate;
    const bool spike = next < std::size(spikes) && now >= spikes[next];
    if (spike) ++next;
    chart.PlotXY(0, now, spike ? 98 : 2);
  }
  for (const double at : spikes) {
    for (double span = 2; span < 2 * kDay; span *= 3) {
      for (const double place : {0.1, 0.5, 0.93}) {
        chart.SetXSpan(span);
        chart.SetXEnd(at + span * place);
        EXPECT_GT(PixelsOfSpike(chart, colour), 0) << "spike at " << at << ", " << span << " s wide";
      }
    }
  }
  chart.SetXSpan(1000);
  chart.SetXEnd(20000);
  EXPECT_EQ(PixelsOfSpike(chart, colour), 0) << "where there is none";
}

}  // namespace
}  // namespace zth::widgets

#include <string>
#include <utility>
#include <vector>

#include <QStringList>
#include <gtest/gtest.h>

#include "widgets/StripColours.h"
#include "widgets/StripLayout.h"
#include "widgets/StripRaster.h"
#include "widgets/StripTicks.h"
#include "widgets/StripView.h"

namespace zth::widgets {
namespace {

using Column = TraceHistory::Column;

std::string Texts(const std::vector<Tick>& ticks) {
  QStringList texts;
  for (const Tick& tick : ticks) texts << tick.text;
  return texts.join(QLatin1Char(' ')).toStdString();
}

TEST(Ticks, AreAtRoundValuesWithDistinctLabels) {
  EXPECT_EQ(Texts(RoundTicks(0, 12000, 7)), "0 2000 4000 6000 8000 10000 12000");
  EXPECT_EQ(Texts(RoundTicks(-0.3, 0.3, 7)), "-0.3 -0.2 -0.1 0.0 0.1 0.2 0.3");
  EXPECT_EQ(Texts(RoundTicks(3.2991, 3.2999, 4)), "3.2992 3.2994 3.2996 3.2998");
  EXPECT_EQ(Texts(EvenTicks(0, 110, 10)), "0 11 22 33 44 55 66 77 88 99 110");
  EXPECT_EQ(Texts(EvenTicks(0, 10, 4)), "0.0 2.5 5.0 7.5 10.0");
  EXPECT_EQ(Texts(TimeTicks(-90, 10, 11)), "-90 -80 -70 -60 -50 -40 -30 -20 -10 0 10");
  EXPECT_EQ(Texts(TimeTicks(610, 650, 5)), "10:10 10:20 10:30 10:40 10:50");
  EXPECT_EQ(Texts(TimeTicks(0, 86400, 7)), "0:00 4:00:00 8:00:00 12:00:00 16:00:00 20:00:00 24:00:00");
}

TEST(Ticks, AreFewForAnyRangeAndNoneForAnImpossibleOne) {
  for (const double size : {1e-9, 3e-4, 0.07, 1.0, 99.0, 5e5, 7e11}) {
    for (const int most : {2, 5, 11}) {
      const auto ticks = RoundTicks(-0.3 * size, 0.7 * size, most);
      EXPECT_LE(static_cast<int>(ticks.size()), std::max(most, 4)) << size;
      EXPECT_GE(ticks.size(), 2U) << size << ": one number is no scale";
    }
  }
  EXPECT_TRUE(RoundTicks(1, 1, 5).empty());
  EXPECT_TRUE(RoundTicks(2, 1, 5).empty());
  EXPECT_TRUE(TimeTicks(0, std::numeric_limits<double>::infinity(), 5).empty());
}

TEST(TimeText, IsAClockTimeFromAMinuteOn) {
  EXPECT_EQ(TimeText(12.345, 0.01).toStdString(), "12.35 s");
  EXPECT_EQ(TimeText(-185.2, 0.1).toStdString(), "-3:05.2");
  EXPECT_EQ(TimeText(8047.5, 1).toStdString(), "2:14:08");
  EXPECT_EQ(TimeText(119.96, 0.1).toStdString(), "2:00.0");
}

TEST(DayTime, IsOfTheClocksAtEachSampleAndTicksAtRoundTimes) {
  StripDayTime times;
  const auto at = [](const char* local) { return QDateTime::fromString(local, Qt::ISODateWithMs); };
  EXPECT_EQ(Texts(DayTicks(0, 60, 6, times)), "") << "not known";
  times.Note(0, at("2026-03-01T23:59:47.500"));
  times.Note(1, at("2026-03-01T23:59:48.700")) /* read a little later, no jump */;
  EXPECT_EQ(Texts(DayTicks(-20, 25, 5, times)), "23:59:30 23:59:40 23:59:50 00:00:00 00:00:10");
  EXPECT_DOUBLE_EQ(DayTicks(-20, 25, 5, times)[3].value, 12.5);
  EXPECT_EQ(Texts(DayTicks(0, 7000, 4, times)), "00:00:00 00:30:00 01:00:00 01:30:00");
  times.Note(30, at("2026-03-02T07:00:00.000"));  // the computer has slept
  EXPECT_EQ(Texts(DayTicks(0, 60, 6, times)), "23:59:50 00:00:00 00:00:10 07:00:00 07:00:10 07:00:20 07:00:30");
  EXPECT_EQ(DayText(times.LocalAt(29.99), 0.1).toStdString(), "00:00:17.5");
  EXPECT_EQ(DayText(times.LocalAt(30), 1).toStdString(), "07:00:00");
}

/// Draws into a small picture and returns it as rows separated by blanks: '#' full, '+' partial, '.' untouched.
std::string Drawn(const std::vector<Column>& columns, int height, RasterLine line = {}) {
  const int width = static_cast<int>(columns.size());
  std::vector<QRgb> bits(columns.size() * static_cast<std::size_t>(height), 0xFFFFFFFF);
  line.colour = 0xFF000000;
  DrawColumns({bits.data(), width, width, height}, columns, 0, height - 1, line);
  std::string rows;
  for (std::size_t i = 0; i < bits.size(); ++i) {
    if (i > 0 && i % columns.size() == 0) rows += ' ';
    rows += qRed(bits[i]) == 255 ? '.' : qRed(bits[i]) == 0 ? '#' : '+';
  }
  return rows;
}

TEST(Raster, DrawsSpansGapsWidthsAndDashes) {
  EXPECT_EQ(Drawn({{0, 0}, {0, 2}, {2, 4}, {}, {1.3F, 1.3F}, {99, 99}, {-99, 99}}, 5),
            "..#..## ..#...# .##...# .#..#.# ##....#");
  EXPECT_EQ(Drawn({{1.25F, 2.75F}}, 5), ". + # + .") << "the ends of spans are softened";
  EXPECT_EQ(Drawn({{2.25F, 2.25F}}, 5), ". . # . .") << "and nothing else";
  const Column level{2, 2};
  EXPECT_EQ(Drawn({level, level, {}, {}}, 5, {.width = 3}), ".... ##.. ##.. ##.. ....");
  EXPECT_EQ(Drawn({{}, {}, {0, 8}, {}, {}}, 9, {.width = 3}).substr(24, 5), ".###.") << "wide both ways";
  for (const auto& [first, dashes] : {std::pair{0, "##..##.."}, {1, "#..##..#"}, {-1, ".##..##."}}) {
    const std::vector<Column> level8(8, {0, 0});
    EXPECT_EQ(Drawn(level8, 2, {.style = Qt::DotLine, .firstColumn = first}).substr(9), dashes);
  }
}

StripSetup TwoZones() {
  return {.axes = {{-10, 110, 0, 0.59}, {0, 110, 0.62, 1}}, .traces = {{.axis = 0}, {.axis = 1}}};
}

TEST(Colours, OnDarkPaperKeepTheirHueAndStayDistinct) {
  const StripColours dark(QPalette(QColor(240, 240, 240), QColor(45, 45, 48)));
  ASSERT_TRUE(dark.dark);
  for (const QRgb each : {0x0000FFU, 0x000080U, 0xFF0000U, 0x800000U, 0x008000U, 0xFF8000U}) {
    const QColor colour = QColor::fromRgb(each);
    EXPECT_LE(std::abs(std::remainder(dark.OfTrace(colour).hue() - colour.hue(), 360)), 25) << each;
  }
  EXPECT_GT(dark.OfTrace(Qt::black).lightness(), 200);
  EXPECT_GT(dark.OfTrace(QColor(0, 0, 128)).lightness(), dark.OfTrace(Qt::blue).lightness());
  EXPECT_GT(dark.OfTrace(QColor(128, 0, 0)).lightness(), dark.OfTrace(Qt::red).lightness());
}

TEST(View, StaysUntilTheNewestSampleReachesTheRightEdgeAndThenFollows) {
  StripView view(TwoZones());
  const auto endAfter = [&view](double newest) { return view.Advance(newest), view.XEnd(); };
  EXPECT_EQ(endAfter(5), 10);
  EXPECT_EQ(endAfter(12.5), 12.5);
  EXPECT_EQ(view.XSpan(), 100);
  view.PanX(-3);
  EXPECT_TRUE(view.Held());
  EXPECT_EQ(endAfter(20), 9.5);
  view.GoLive();
  EXPECT_EQ(view.XEnd(), 20);
  // More or less of the past, with the newest sample at the edge, is still live.
  view.SetX(20, 600);
  EXPECT_FALSE(view.Held());
  EXPECT_EQ(endAfter(21), 21);
  view.Restart();
  EXPECT_TRUE(view.XEnd() == 10 && view.XSpan() == 600);
}

TEST(View, RejectsRangesInWhichNothingCanBeDrawn) {
  StripView view(TwoZones());
  for (const auto& [min, max] : {std::pair{5.0, 5.0}, {6.0, 5.0}, {0.0, 1e300}, {0.0, std::nan("")}}) {
    view.SetAxis(0, min, max);
  }
  EXPECT_TRUE(view.At(0).min == -10 && view.At(0).max == 110);
  for (const double factor : {0.5, 2.0}) {
    for (int i = 0; i < 500; ++i) view.ZoomX(0, factor);
    EXPECT_TRUE(view.XSpan() > 0 && view.XSpan() <= 2 * TraceHistory::kKept) << factor;
  }
  for (int i = 0; i < 500; ++i) view.PanX(view.XSpan());
  EXPECT_LT(view.XBegin(), 10) << "the window has left the data";
}

TEST(View, MovesTheBorderWithItsGapAndLeavesRoomForBothZones) {
  StripView view(TwoZones());
  EXPECT_TRUE(view.MoveBorder(0, 0.4));
  EXPECT_DOUBLE_EQ(view.At(1).areaTop, 0.4);
  EXPECT_NEAR(view.At(0).areaBottom, 0.37, 1e-12);
  view.MoveBorder(0, 5);
  EXPECT_DOUBLE_EQ(view.At(1).areaTop, 1 - StripView::kLeastZone);
  view.MoveBorder(0, -5);
  EXPECT_NEAR(view.At(0).areaBottom, StripView::kLeastZone, 1e-12);
  EXPECT_FALSE(view.MoveBorder(1, 0.5));
}

StripLayout LaidOut(const StripSetup& setup, StripText& text, QSize size) {
  StripLayout::Columns columns;
  return {StripScene(setup), size, 1, text, columns};
}

TEST(Layout, MakesRoomForThirteenLegendRowsInsideTheChart) {
  StripSetup setup{.traces = std::vector<StripTrace>(13)};
  for (int i = 0; i < 13; ++i) setup.labels.push_back({.slot = i + 1, .text = "1.5V(3GIO)", .trace = i});
  StripText text{QFont()};
  for (const QSize size : {QSize(640, 15 * text.Height()), QSize(1200, 800)}) {
    const StripLayout layout = LaidOut(setup, text, size);
    ASSERT_EQ(layout.legend.size(), 13U);
    int above = -1;
    for (const StripLayout::LegendRow& row : layout.legend) {
      EXPECT_GE(row.rect.height(), text.Height());
      EXPECT_LE(row.rect.right(), size.width());
      EXPECT_GE(row.rect.width(), kLegendSample + text.Width("1.5V(3GIO)"));
      EXPECT_GT(row.rect.top(), std::exchange(above, row.rect.bottom()));
    }
  }
}

TEST(Layout, PutsLegendRowsBesideTheZoneOfTheirTrace) {
  StripSetup setup = TwoZones();
  setup.labels = {{.slot = 1, .text = "a", .trace = 0}, {.slot = 2, .text = "b", .trace = 1}};
  StripText text{QFont()};
  const StripLayout layout = LaidOut(setup, text, QSize(640, 480));
  for (std::size_t i = 0; i < 2; ++i) EXPECT_EQ(layout.legend[i].rect.top(), layout.zones[i].top());
  EXPECT_NEAR(layout.zones[1].top() - layout.plot.top(), 0.62 * layout.plot.height(), 1);
}

}  // namespace
}  // namespace zth::widgets

#include <cmath>
#include <initializer_list>
#include <iterator>
#include <string>
#include <tuple>
#include <vector>

#include <QApplication>
#include <QClipboard>
#include <QFile>
#include <QMenu>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <gmock/gmock.h>

#include "tests/support/Doubles.h"
#include "tests/widgets/controls/UserInput.h"
#include "widgets/Strip.h"

namespace zth::widgets {
namespace {

struct PaintCounter final : QObject {
  bool eventFilter(QObject*, QEvent* event) override { return paints += event->type() == QEvent::Paint, false; }
  int paints = 0;
};

/// Temperatures above, fans below.
StripSetup TwoZones() {
  StripSetup setup{.index = 3, .title = "Temperature (°C)", .axes = {{0, 60, 0, 0.47}, {0, 12000, 0.53, 1}}};
  setup.traces = {{.colour = Qt::blue}, {.colour = Qt::red}, {.colour = QColor(0, 255, 0), .axis = 1}};
  setup.labels = {{.slot = 1, .text = "Local", .trace = 0},
                  {.slot = 2, .text = "Remote1", .trace = 1},
                  {.slot = 5, .text = "Fan Speed (RPM)", .place = StripPlace::Heading, .axis = 1},
                  {.slot = 6, .text = "Tach1", .trace = 2}};
  return setup;
}

class StripTest : public ::testing::Test {
 protected:
  StripTest() { Use(TwoZones()); }

  void Use(const StripSetup& setup) {
    strip.SetUp(setup);
    strip.resize(800, 500);
    strip.show();
    Paint();
  }
  void Feed(int trace, double value, double after = 0.05) {
    now += after;
    strip.PlotValue(trace, value);
  }
  /// Fires the shared frame timer and paints the picture now.
  QImage Painted() { return Paint(), strip.grab().toImage(); }
  static void Paint() {
    auto* frames = QApplication::instance()->findChild<QTimer*>("stripFrames");
    frames->stop();
    QMetaObject::invokeMethod(frames, "timeout");
    QApplication::sendPostedEvents();
    QApplication::processEvents();
  }
  void Drag(QPoint from, QPoint to, Qt::MouseButton button = Qt::LeftButton) {
    QTest::mousePress(&strip, button, {}, from);
    for (const QPoint at : {(from + to) / 2, to}) tests::Mouse(strip, QEvent::MouseMove, at, button);
    QTest::mouseRelease(&strip, button, {}, to);
  }
  /// The width of the time window and the ranges of both axes after a key: "100 s, 0 to 60, 0 to 12000, held".
  std::string After(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    QTest::keyClick(&strip, key, modifiers);
    return Ranges();
  }
  std::string Ranges() {
    QString text = QString("%1 s").arg(strip.XSpan(), 0, 'g', 9);
    for (const int axis : {0, 1}) {
      const auto range = AxisRange(axis);
      text += QString(", %1 to %2").arg(range[0]).arg(range[1]);
    }
    return (text + (strip.Held() ? ", held" : "")).toStdString();
  }
  std::vector<double> AxisRange(int axis) {
    strip.SetAxisIndex(axis);
    return {strip.AxisMin(), strip.AxisMax()};
  }
  /// Pixels of the plot with about half of a colour or more: a line's ends and slopes are anti-aliased.
  int PixelsOf(const QColor& colour, double upperPart = 1) {
    const QImage image = strip.Picture();
    int count = 0;
    for (int y = 0; y < image.height() * upperPart; ++y) {
      for (int x = 0; x < image.width() * 2 / 3; ++x) {
        const QColor pixel = image.pixelColor(x, y);
        if (pixel.saturation() > 110 && std::abs(pixel.hue() - colour.hue()) < 10) ++count;
      }
    }
    return count;
  }

  double now = 1000;
  zth::testing::ScriptedFileDialogs dialogs;
  zth::testing::FailingFiles files;
  zth::testing::MemoryClipboard clipboard;
  Strip strip{[this] { return now; }, nullptr, StripOutlets(dialogs, files, clipboard, "/opt/zth")};
};

TEST_F(StripTest, AnswersToEveryOperationByName) {
  QMetaObject::invokeMethod(&strip, "PlotValue", Q_ARG(int, 0), Q_ARG(double, 25.25));
  QVariantList points;
  QMetaObject::invokeMethod(&strip, "TracePoints", Q_RETURN_ARG(QVariantList, points), Q_ARG(int, 0));
  EXPECT_EQ(points, (QVariantList{QVariantList{0.0, 25.25}}));
  QColor colour;
  QMetaObject::invokeMethod(&strip, "TraceColour", Q_RETURN_ARG(QColor, colour), Q_ARG(int, 2));
  EXPECT_EQ(colour, QColor(0, 255, 0));
  const std::pair<const char*, QVariant> puts[] = {
      {"LabelIndex", 6},    {"Caption", "Tach1=5400"}, {"LabelTop", 0.25F}, {"LabelTrace", 1},
      {"LabelLine", false}, {"AxisIndex", 1},          {"AxisMin", 100.0},  {"AxisMax", 200.0},
      {"XEnd", 5.0},        {"XSpan", 20.0},           {"Left", 150},       {"Top", 960},
      {"Width", 9000},      {"Height", 6000},          {"Visible", false}};
  for (const auto& [name, value] : puts) {
    EXPECT_TRUE(strip.setProperty(name, value)) << name;
    EXPECT_EQ(strip.property(name), value) << name;
  }
  strip.setProperty("LabelIndex", 1);
  EXPECT_EQ(strip.property("Caption").toString(), "Local");
  EXPECT_EQ(strip.property("LabelColour").value<QColor>(), QColor(Qt::blue));
  QMetaObject::invokeMethod(&strip, "ClearData");
  EXPECT_TRUE(strip.TracePoints(0).isEmpty());
}

TEST_F(StripTest, CountsTimeFromTheFirstSampleAndGivesOneFeedOneInstant) {
  for (int k = 0; k < 3; ++k) {
    for (int trace = 0; trace < 3; ++trace) Feed(trace, k, 0.0005);
    now += 0.05;
  }
  ASSERT_EQ(strip.TracePoints(0).size(), 3);
  EXPECT_EQ(strip.TracePoints(0)[0], (QVariantList{0.0, 0.0}));
  for (const int trace : {1, 2}) EXPECT_EQ(strip.TracePoints(trace), strip.TracePoints(0));
  strip.PlotValue(17, 1);
  strip.PlotValue(-1, 1);
  strip.ClearData();
  Feed(0, 1, 30);
  EXPECT_EQ(strip.TracePoints(0), (QVariantList{QVariantList{0.0, 1.0}}));
}

// A scrolling chart draws only the new data; the result must be the same as drawing everything.
TEST_F(StripTest, AScrolledPictureIsTheSameAsARedrawnOne) {
  StripSetup setup = TwoZones();
  setup.xMin = 0;
  setup.traces[0].width = 3;
  setup.traces[1].style = Qt::DotLine;
  const auto pictures = [&](bool afresh) {
    Use(setup);
    now = 5000;
    std::vector<QImage> taken;
    for (int i = 0; i < 700; ++i) {
      Feed(0, 30 + 25 * std::sin(i * 0.37));
      if (i % 3 == 0) Feed(1, i % 60, 0);
      if (i > 40) Feed(2, i % 100 == 50 ? std::nan("") : 6000 + 5000 * std::cos(i * 0.05), 0);
      if (i % 7 != 0) continue;
      if (afresh) {  // a change of size and back
        strip.resize(801, 500);
        Paint();
        strip.resize(800, 500);
      }
      taken.push_back(Painted());
    }
    return taken;
  };
  EXPECT_TRUE(pictures(true) == pictures(false));
}

TEST_F(StripTest, AThousandSamplesInOneTurnGiveOnePictureAndNoneWhileHidden) {
  PaintCounter counter;
  strip.installEventFilter(&counter);
  const auto feed = [this] {
    for (int i = 0; i < 1000; ++i) Feed(0, i % 60);
  };
  feed();
  Paint();
  EXPECT_EQ(counter.paints, 1);
  strip.SetTraceVisible(0, false);
  Paint();
  EXPECT_EQ(counter.paints, 2) << "a trace hidden by code leaves the picture";
  strip.SetTraceVisible(0, true);
  Paint();
  counter.paints = 1;
  strip.hide();
  feed();
  EXPECT_FALSE(QApplication::instance()->findChild<QTimer*>("stripFrames")->isActive());
  Paint();
  EXPECT_EQ(counter.paints, 1);
  EXPECT_EQ(strip.TracePoints(0).size(), 2000);
  strip.show();
  Paint();
  EXPECT_GT(counter.paints, 1);
  EXPECT_GT(PixelsOf(Qt::blue), 100) << "what came in while hidden shows";
}

TEST_F(StripTest, ASpikeOfOneSampleStaysVisibleAtEveryZoomOfADay) {
  constexpr double kSpikes[] = {10, 30000.35, 86350};
  now = 0;
  Use({.axes = {{0, 100}}, .traces = {{.colour = Qt::magenta}}});
  for (std::size_t i = 0, next = 0; i <= 86400 * 20; ++i) {
    const bool spike = next < std::size(kSpikes) && now >= kSpikes[next];
    if (spike) ++next;
    strip.PlotXY(0, now, spike ? 98 : 2);
    now = static_cast<double>(i) / 20;
  }
  const auto spikeIn = [this](double span, double end) {
    strip.SetXSpan(span);
    strip.SetXEnd(end);
    return PixelsOf(Qt::magenta, 0.25) > 0;
  };
  for (const double at : kSpikes) {
    for (double span = 2; span < 2 * 86400; span *= 3) {
      for (const double place : {0.5, 0.7, 0.93}) {
        EXPECT_TRUE(spikeIn(span, at + span * place)) << "spike at " << at << ", " << span << " s wide";
      }
    }
  }
  EXPECT_FALSE(spikeIn(1000, 20000)) << "where there is none";
}

TEST_F(StripTest, FollowsTheNewestSampleUntilHeldAndSaysHowToReturn) {
  QSignalSpy held(&strip, &Strip::HeldChanged);
  for (int i = 0; i < 300; ++i) Feed(0, 20);
  EXPECT_NEAR(strip.XEnd(), 14.95, 1e-9);
  Drag({300, 100}, {500, 100});
  EXPECT_TRUE(strip.Held());
  const double end = strip.XEnd();
  EXPECT_LT(end, 0);
  Feed(0, 20);
  EXPECT_EQ(strip.XEnd(), end);
  EXPECT_EQ(After(Qt::Key_End), "100 s, 0 to 60, 0 to 12000");
  EXPECT_NEAR(strip.XEnd(), 15.0, 1e-9);
  EXPECT_EQ(held.count(), 2);
  Drag({300, 100}, {500, 100});
  QTest::mouseClick(&strip, Qt::LeftButton, {}, {600, 45});  // the sign at the plot's top right
  EXPECT_FALSE(strip.Held());
  Drag({300, 100}, {500, 140});
  EXPECT_NE(AxisRange(0)[0], 0);
  QTest::mouseDClick(&strip, Qt::LeftButton, {}, {300, 100});
  EXPECT_EQ(Ranges(), "100 s, 0 to 60, 0 to 12000");
}

TEST_F(StripTest, ZoomsByWheelAboutThePointer) {
  for (const auto& [modifiers, x, y] : {std::tuple{Qt::NoModifier, 80, 48},
                                        {Qt::ControlModifier, 100, 48},
                                        {Qt::ShiftModifier, 80, 60}}) {  // the rest of the X axis and of the upper axis
    strip.ResetRanges();
    tests::Wheel(strip, 120, modifiers, {300, 120});
    EXPECT_NEAR(strip.XSpan(), x, 1e-9) << modifiers;
    EXPECT_NEAR(AxisRange(0)[1] - AxisRange(0)[0], y, 1e-9) << modifiers;
    EXPECT_EQ(AxisRange(1)[1], 12000) << modifiers;
    tests::Wheel(strip, -120, modifiers, {300, 120});
    EXPECT_NEAR(strip.XSpan(), 100, 1e-6) << modifiers;
    EXPECT_NEAR(strip.XEnd(), 10, 0.3) << modifiers << ": the point under the pointer stays";
    EXPECT_NEAR(AxisRange(0)[1], 60, 0.3) << modifiers;
  }
}

TEST_F(StripTest, ZoomsByHandlesAndBoxAndKeys) {
  Drag({10, 32}, {10, 132});  // the arrow at the upper zone's top
  EXPECT_GT(AxisRange(0)[1], 80);
  EXPECT_EQ(AxisRange(0)[0], 0);
  strip.ResetRanges();
  // Below the plot: the dragged edge moves, the other one stays.
  std::vector<int> arrows;
  for (int x = 0; x < strip.width(); ++x) {
    tests::Mouse(strip, QEvent::MouseMove, QPoint(x, strip.height() - 14), Qt::NoButton);
    if (strip.cursor().shape() == Qt::SizeHorCursor) arrows.push_back(x);
  }
  ASSERT_FALSE(arrows.empty());
  const std::vector<double> start{strip.XEnd() - strip.XSpan(), strip.XEnd()};
  for (const bool high : {false, true}) {
    const QPoint arrow((high ? arrows.back() : arrows.front()), strip.height() - 14);
    Drag(arrow, arrow + QPoint(high ? -100 : 100, 0));
    EXPECT_GT(strip.XSpan(), 110);
    EXPECT_NEAR(high ? strip.XEnd() - strip.XSpan() : strip.XEnd(), start[high ? 0 : 1], 1e-9);
    strip.ResetRanges();
  }
  Drag({200, 60}, {400, 160}, Qt::RightButton);
  EXPECT_LT(strip.XSpan(), 50);
  EXPECT_LT(AxisRange(0)[1] - AxisRange(0)[0], 40);
  EXPECT_EQ(AxisRange(1)[1], 12000);
  EXPECT_EQ(strip.findChild<QMenu*>(), nullptr) << "a box is no click";
  EXPECT_EQ(After(Qt::Key_Home), "100 s, 0 to 60, 0 to 12000");
  EXPECT_EQ(After(Qt::Key_Plus), "75 s, 7.5 to 52.5, 1500 to 10500") << "keys keep a live chart live";
  EXPECT_EQ(After(Qt::Key_Minus, Qt::ControlModifier), "75 s, 0 to 60, 0 to 12000");
  EXPECT_EQ(After(Qt::Key_Up), "75 s, 6 to 66, 1200 to 13200");
  EXPECT_EQ(After(Qt::Key_Left), "75 s, 6 to 66, 1200 to 13200, held");
}

TEST_F(StripTest, MovesTheZonesByTheirBorderAndNotifiesTheWindow) {
  QSignalSpy layout(&strip, &Strip::Strip2_LayoutChanged);
  strip.SetAxisIndex(1);
  EXPECT_DOUBLE_EQ(strip.AxisAreaTop(), 0.53);
  Drag({300, 256}, {300, 200});
  EXPECT_LT(strip.AxisAreaTop(), 0.45);
  ASSERT_GE(layout.count(), 1);
  EXPECT_EQ(layout[0][0].toInt(), 3);
  const double lower = strip.AxisAreaTop();
  strip.SetAxisIndex(0);
  EXPECT_NEAR(lower - strip.AxisAreaBottom(), 0.06, 1e-9);
  const auto before = layout.count();
  strip.resize(700, 400);
  Paint();
  EXPECT_GT(layout.count(), before);
}

TEST_F(StripTest, AClickOnALegendEntryHidesItsTrace) {
  for (int i = 0; i < 2000; ++i) Feed(0, 20 + 10 * std::sin(i * 0.1));
  for (const bool shown : {true, false, true}) {
    EXPECT_EQ(strip.TraceVisible(0), shown);
    EXPECT_EQ(PixelsOf(Qt::blue) == 0, !shown);
    QTest::mouseClick(&strip, Qt::LeftButton, {}, {770, 36});
  }
}

TEST_F(StripTest, ReadsOutUnderTheCursorWhileDataContinues) {
  for (int i = 0; i < 400; ++i) Feed(0, 20);
  const QImage before = strip.grab().toImage();
  tests::Mouse(strip, QEvent::MouseMove, {600, 120}, Qt::NoButton);
  const QImage with = Painted();
  EXPECT_NE(before, with);
  Feed(0, 50, 60);
  EXPECT_NE(Painted(), with) << "the read-out follows the data under the cursor";
  EXPECT_EQ(strip.Picture(), strip.Picture());
  QEvent leave(QEvent::Leave);
  QApplication::sendEvent(&strip, &leave);
  EXPECT_EQ(Painted(), strip.Picture()) << "a saved picture is the chart without the cursor";
}

TEST_F(StripTest, FitsAnAxisToTheVisibleData) {
  for (int i = 0; i < 100; ++i) Feed(0, 20 + i % 11);
  for (const int axis : {0, 1}) strip.FitAxis(axis);
  EXPECT_EQ(Ranges(), "100 s, 19 to 31, 0 to 12000") << "nothing to fit the second one to";
}

TEST_F(StripTest, GivesItsDataAndPicturesToFiles) {
  const QTemporaryDir folder;
  for (const double value : {25.25, 26.25}) Feed(0, value);
  strip.PlotValue(1, 31);
  const QByteArray csv = "Time (s),Local,Remote1\n0.000,25.25,\n0.050,26.25,31\n";
  const auto saved = [&](const char* name) {
    EXPECT_TRUE(strip.SaveTo(folder.filePath(name))) << name;
    QFile file(folder.filePath(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
  };
  EXPECT_EQ(saved("a.csv"), csv);
  EXPECT_EQ(QImage::fromData(saved("a.png")).size(), strip.size());
  EXPECT_TRUE(saved("a.svg").contains("Fan Speed (RPM)"));
  EXPECT_FALSE(strip.SaveTo(folder.filePath("none/a.csv")));
  strip.SetTraceVisible(1, false);
  EXPECT_FALSE(strip.VisibleData().contains("Remote1"));
}

TEST_F(StripTest, DrawsPathsInTheOrderOfAddingWithPensAndDots) {
  StripSetup setup{.mode = StripMode::XY, .xMin = -40, .xMax = 120, .axes = {{0, 110}}};
  setup.traces = {{.colour = Qt::red, .width = 2},
                  {.colour = Qt::red, .width = 8, .dots = true, .shownWith = 0},
                  {.colour = Qt::blue, .style = Qt::DashLine}};
  setup.labels = {{.slot = 1, .text = "Local", .trace = 0}};
  Use(setup);
  const auto plot = [this](int trace, std::initializer_list<QPointF> points) {
    for (const QPointF& point : points) strip.PlotXY(trace, point.x(), point.y());
  };
  plot(0, {{60, 20}, {60, 80}, {0, 80}, {0, 20}});  // a step down to the left: not a function of x
  EXPECT_EQ(strip.TracePoints(0)[2], QVariant(QVariantList{0.0, 80.0}));
  EXPECT_TRUE(strip.XSpan() == 160 && strip.XEnd() == 120);
  const int path = PixelsOf(Qt::red);
  EXPECT_GT(path, 600);
  plot(1, {{30, 50}, {30, 50}});
  const int dot = PixelsOf(Qt::red) - path;
  EXPECT_TRUE(dot > 35 && dot < 100) << dot;
  plot(2, {{-30, 100}, {110, 100}});
  const int dashed = PixelsOf(Qt::blue);
  EXPECT_TRUE(dashed > 100 && dashed < 450) << dashed << ": a dashed line has gaps";
  strip.SetTraceVisible(0, false);
  EXPECT_EQ(PixelsOf(Qt::red), 0) << "the dot goes with its trace";
  strip.SetTraceVisible(0, true);
  strip.SetXEnd(100);
  strip.ClearData();
  EXPECT_EQ(PixelsOf(Qt::red), 0);
  EXPECT_EQ(strip.XEnd(), 100) << "clearing keeps the user's zoom";
  strip.PlotValue(0, 5);
  EXPECT_TRUE(strip.TracePoints(0).isEmpty());
}

}  // namespace
}  // namespace zth::widgets

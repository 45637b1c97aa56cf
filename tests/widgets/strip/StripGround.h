#pragma once

#include <cmath>
#include <initializer_list>
#include <iterator>
#include <map>
#include <set>
#include <string>
#include <tuple>
#include <vector>

#include <QAbstractButton>
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
#include "tests/support/Seen.h"
#include "tests/widgets/controls/UserInput.h"
#include "widgets/Strip.h"

namespace zth::widgets {

struct PaintCounter final : QObject {
  bool eventFilter(QObject*, QEvent* event) override { return paints += event->type() == QEvent::Paint, false; }
  int paints = 0;
};

/// Temperatures above, fans below.
inline StripSetup TwoZones() {
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
  /// Fires the shared frame timer, then grabs the chart.
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
  /// The width of the window and the spans of the two axes after a key press: "100 s, 0 to 60, 0 to 12000, held".
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
  /// The number of plot pixels with at least about half the strength of a colour: the ends and slopes of lines are
  /// softened.
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
  QString source;  ///< of the data
  Strip strip{[this] { return now; }, nullptr,
              StripOutlets(dialogs, files, clipboard, "/opt/zth", [this] { return source; })};
};

}  // namespace zth::widgets

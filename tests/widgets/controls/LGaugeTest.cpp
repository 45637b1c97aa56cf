#include <cmath>
#include <functional>
#include <utility>
#include <vector>

#include <QApplication>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QSignalSpy>
#include <gmock/gmock.h>

#include "tests/widgets/controls/UserInput.h"
#include "widgets/LGauge.h"

namespace zth::widgets {
namespace {

using namespace zth::tests;

// A gauge between two text boxes, as in a window, with its two limits at -20 and 85.
class Gauge : public testing::Test {
 protected:
  Gauge() {
    auto* row = new QHBoxLayout(&window_);
    for (QWidget* widget : std::initializer_list<QWidget*>{&before_, &gauge_, &after_}) row->addWidget(widget);
    gauge_.SetSliders(LGauge::LowAndHighSliders());
    gauge_.setFixedSize(240, 240);
    Put("ScaleMin", -64);
    Put("ScaleMax", 191);
    PutSlider(2, -20);
    PutSlider(3, 85);
    window_.show();
    window_.activateWindow();
    QApplication::setActiveWindow(&window_);
  }

  void Put(const char* name, const QVariant& value) { ASSERT_TRUE(gauge_.setProperty(name, value)) << name; }
  void PutSlider(int number, double value) {
    Put("PointerIndex", number);
    Put("PointerValue", value);
  }
  double Slider(int number) {
    Put("PointerIndex", number);
    return gauge_.property("PointerValue").toDouble();
  }
  QPointF Handle(int number) { return OnRim(Slider(number), number == 2 ? -2 : 2); }
  // On the ring of the handles, so many degrees beside a value.
  QPointF OnRim(double value, double beside = 0) {
    const DialMeasures measures(gauge_.size());
    return OnDial(measures, gauge_.Scale().Angle(value) + beside, measures.scale + measures.handle * 0.7);
  }

  QWidget window_;
  QLineEdit before_;
  LGauge gauge_;
  QLineEdit after_;
  QSignalSpy reports_{&gauge_, &LGauge::SliderChanged};
};

TEST_F(Gauge, KeepsEachNeedleAndSliderUnderItsNumber) {
  Put("NeedleIndex", 0);
  Put("NeedleValue", 191);
  Put("NeedleIndex", 1);
  Put("NeedleValue", 25.25);
  Put("Caption", " 25.25°C");
  EXPECT_EQ(Slider(2), -20);
  EXPECT_EQ(Slider(3), 85);
  const std::pair<const char*, QVariant> kept[] = {
      {"NeedleValue", 25.25}, {"Caption", " 25.25°C"}, {"ScaleMin", -64.0}, {"ScaleMax", 191.0}, {"PointerIndex", 3}};
  for (const auto& [name, value] : kept) EXPECT_EQ(gauge_.property(name), value) << name;
  Put("NeedleIndex", 0);
  EXPECT_EQ(gauge_.property("NeedleValue").toDouble(), 191);
  EXPECT_EQ(reports_.count(), 0) << "code is not a user";
}

TEST_F(Gauge, KeepsWhatItCannotShow) {
  Put("PointerValue", 12000);
  Put("ScaleMax", 100);
  EXPECT_EQ(Slider(3), 12000);
  DragFrom(gauge_, Handle(2), OnRim(0, -2));
  EXPECT_EQ(Slider(3), 12000) << "the other slider is nobody's business";
}

TEST_F(Gauge, ReportsADragOnceAtItsEnd) {
  Put("PointerIndex", 2);
  double atReport = 0;
  QObject::connect(&gauge_, &LGauge::SliderChanged, &gauge_,
                   [&] { atReport = gauge_.property("PointerValue").toDouble(); });
  Press(gauge_, OnRim(-20, -2));
  for (const double value : {-15.0, 0.0, 40.0, 25.5}) Drag(gauge_, OnRim(value, -2));
  EXPECT_EQ(reports_.count(), 0);
  Release(gauge_, OnRim(25.5, -2));
  EXPECT_EQ(reports_.count(), 1);
  EXPECT_NEAR(atReport, 25.5, 0.11);
  EXPECT_EQ(gauge_.property("PointerIndex").toInt(), 2) << "the code's selection stays the code's";
  Drag(gauge_, OnRim(100));
  EXPECT_NEAR(Slider(2), 25.5, 0.11);
}

TEST_F(Gauge, TakesHoldOnlyOfASlider) {
  for (const QPointF& at : {OnRim(30), QPointF(120, 120), OnRim(25.25)}) DragFrom(gauge_, at, OnRim(60));
  DragFrom(gauge_, Handle(3), Handle(3));
  EXPECT_EQ(reports_.count(), 0) << "a click that moved nothing";
  EXPECT_EQ(Slider(2), -20);
  EXPECT_EQ(Slider(3), 85);
}

TEST_F(Gauge, TwoSlidersAtOneValueCanBothBeTaken) {
  PutSlider(2, 85);
  DragFrom(gauge_, OnRim(85, -3), OnRim(60, -3));
  EXPECT_NEAR(Slider(2), 60, 0.6);
  EXPECT_EQ(Slider(3), 85);
}

TEST_F(Gauge, ADragAcrossTheGapStaysAtItsEnd) {
  Press(gauge_, Handle(3));
  for (const double angle : {100.0, 130.0, 150.0, 170.0, -170.0, -150.0, -120.0}) {
    Drag(gauge_, OnDial(DialMeasures(gauge_.size()), angle, 100));
    EXPECT_GE(Slider(3), angle == 100.0 ? 155 : 180) << angle;
  }
  EXPECT_EQ(Slider(3), 191);
  Release(gauge_, OnRim(-64));
  EXPECT_EQ(reports_.count(), 1);
}

TEST_F(Gauge, EscapeAndADisappearingGaugePutTheSliderBackUnreported) {
  const std::vector<std::pair<const char*, std::function<void()>>> ends = {
      {"escape", [&] { KeyDown(gauge_, Qt::Key_Escape); }},
      {"disabled", [&] { gauge_.setEnabled(false); }},
      {"hidden", [&] { gauge_.hide(); }},
  };
  for (const auto& [name, end] : ends) {
    gauge_.setEnabled(true);
    gauge_.show();
    Press(gauge_, Handle(3));
    Drag(gauge_, OnRim(10));
    EXPECT_LT(Slider(3), 20) << name;
    end();
    EXPECT_EQ(Slider(3), 85) << name;
    Release(gauge_, OnRim(10));
    EXPECT_EQ(reports_.count(), 0) << name;
  }
}

TEST_F(Gauge, AWriteDuringADragIsWhatEscapeGoesBackTo) {
  Press(gauge_, Handle(3));
  Drag(gauge_, OnRim(10));
  Put("PointerValue", 70);
  Drag(gauge_, OnRim(20));
  KeyDown(gauge_, Qt::Key_Escape);
  EXPECT_EQ(Slider(3), 70);
}

TEST_F(Gauge, TabReachesEachSliderAndThenLeaves) {
  before_.setFocus();
  Tap(before_, Qt::Key_Tab);
  ASSERT_TRUE(gauge_.hasFocus());
  EXPECT_EQ(gauge_.ActiveSlider(), 0);
  Tap(gauge_, Qt::Key_Tab);
  EXPECT_EQ(gauge_.ActiveSlider(), 1);
  Tap(gauge_, Qt::Key_Tab);
  EXPECT_TRUE(after_.hasFocus());
  Tap(after_, Qt::Key_Backtab);
  ASSERT_TRUE(gauge_.hasFocus());
  EXPECT_EQ(gauge_.ActiveSlider(), 1);
  Tap(gauge_, Qt::Key_Backtab);
  Tap(gauge_, Qt::Key_Backtab);
  EXPECT_TRUE(before_.hasFocus());
}

TEST_F(Gauge, KeysMoveByStepPageAndToTheEnds) {
  gauge_.setFocus(Qt::TabFocusReason);
  const std::vector<std::pair<Qt::Key, double>> steps = {
      {Qt::Key_Right, -19}, {Qt::Key_Up, -18},   {Qt::Key_Left, -19},  {Qt::Key_Down, -20},    {Qt::Key_PageUp, -10},
      {Qt::Key_End, 191},   {Qt::Key_Home, -64}, {Qt::Key_Right, -63}, {Qt::Key_PageDown, -64}};
  int expected = 0;
  for (const auto& [key, value] : steps) {
    Tap(gauge_, key);
    EXPECT_EQ(Slider(2), value) << key;
    EXPECT_EQ(reports_.count(), ++expected) << key;
  }
  Tap(gauge_, Qt::Key_Left);
  EXPECT_EQ(reports_.count(), expected) << "already at the end";
  Put("SliderStep", 2.5);
  Tap(gauge_, Qt::Key_Right);
  EXPECT_EQ(Slider(2), -61.5);
}

TEST_F(Gauge, ARunOfKeysIsReportedOnceWhenItEnds) {
  gauge_.setFocus(Qt::TabFocusReason);
  KeyDown(gauge_, Qt::Key_Right);
  for (int i = 0; i < 5; ++i) {
    KeyUp(gauge_, Qt::Key_Right, true);
    KeyDown(gauge_, Qt::Key_Right, true);
  }
  KeyDown(gauge_, Qt::Key_Up);
  KeyUp(gauge_, Qt::Key_Right);
  EXPECT_EQ(reports_.count(), 0) << "a key is still held";
  KeyUp(gauge_, Qt::Key_Up);
  EXPECT_EQ(reports_.count(), 1);
  EXPECT_EQ(Slider(2), -13);

  KeyDown(gauge_, Qt::Key_Right);
  after_.setFocus();
  EXPECT_EQ(reports_.count(), 2) << "the focus went while the key was down";
  gauge_.setFocus(Qt::TabFocusReason);
  KeyDown(gauge_, Qt::Key_Right);
  KeyDown(gauge_, Qt::Key_Escape);
  KeyUp(gauge_, Qt::Key_Right);
  EXPECT_EQ(reports_.count(), 2);
  EXPECT_EQ(Slider(2), -12);
}

TEST_F(Gauge, ShowsItsSlidersApartWithoutColour) {
  const DialMeasures measures(gauge_.size());
  const auto low = SliderShape(measures, SliderKind::Low, 0);
  const auto high = SliderShape(measures, SliderKind::High, 0);
  EXPECT_TRUE(low.intersected(high).boundingRect().width() < 0.5) << "at one value they stand side by side";
  EXPECT_LE(low.boundingRect().right(), measures.centre.x() + 0.01);
  EXPECT_GE(high.boundingRect().left(), measures.centre.x() - 0.01);
  EXPECT_GT(measures.plate, measures.scale + measures.handle) << "inside the bezel";
}

TEST_F(Gauge, ShowsItsReadingAtAnyRangeAndSize) {
  Put("NeedleIndex", 1);
  for (const auto& [minimum, maximum] : {std::pair{0.0, 2.5}, {10.0, -10.0}, {-1e300, 1e300}, {7.0, 7.0}}) {
    Put("ScaleMin", minimum);
    Put("ScaleMax", maximum);
    for (const QSize& size : {QSize(1, 1), gauge_.minimumSizeHint(), QSize(600, 200)}) {
      gauge_.setFixedSize(size);
      const auto picture = [&](double value) {
        Put("NeedleValue", value);
        return gauge_.grab().toImage();
      };
      const QImage atStart = picture(minimum);
      const bool canMove = minimum != maximum && size.width() > 1;
      EXPECT_EQ(picture(maximum) != atStart, canMove) << minimum << " to " << maximum << " at " << size.width();
      EXPECT_EQ(picture(std::nan("")) != atStart, size.width() > 1) << "no reading is not a reading of the start";
    }
  }
}

TEST_F(Gauge, PaintsAChangedScaleAnew) {
  const QImage before = gauge_.grab().toImage();
  EXPECT_EQ(gauge_.grab().toImage(), before);
  Put("ScaleMax", 300);
  const QImage after = gauge_.grab().toImage();
  EXPECT_NE(after, before);
  Put("ScaleMax", 191);
  EXPECT_EQ(gauge_.grab().toImage(), before);
  QPalette dark = gauge_.palette();
  dark.setColor(QPalette::Base, Qt::black);
  gauge_.setPalette(dark);
  EXPECT_LT(qGray(gauge_.grab().toImage().pixel(120, 80)), 60);
}

}  // namespace
}  // namespace zth::widgets

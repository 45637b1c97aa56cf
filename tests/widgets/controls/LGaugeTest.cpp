#include <algorithm>
#include <cmath>
#include <limits>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include <QApplication>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QSignalSpy>
#include <gmock/gmock.h>

#include "tests/widgets/controls/UserInput.h"
#include "widgets/LGauge.h"
#include "widgets/LGaugeScale.h"

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
    Play(gauge_, "ScaleMin=-64 ScaleMax=191 PointerIndex=2 PointerValue=-20 PointerIndex=3 PointerValue=85");
    window_.show();
    window_.activateWindow();
    QApplication::setActiveWindow(&window_);
  }

  void Put(const char* name, const QVariant& value) { ASSERT_TRUE(gauge_.setProperty(name, value)) << name; }
  double Slider(int number) {
    Put("PointerIndex", number);
    return gauge_.property("PointerValue").toDouble();
  }
  // A place on the ring of the handles: "30" at a value, "L30" and "H30" at the sliders' own handles for it, "a170" at
  // an angle, "mid" in the middle.
  QPointF At(const QString& place) const {
    const DialMeasures measures(gauge_.size());
    if (place == "mid") return measures.centre;
    if (place[0] == 'a') return OnDial(measures, place.mid(1).toDouble(), 100);
    const double beside = place[0] == 'L' ? -2 : place[0] == 'H' ? 2 : 0;
    return OnDial(measures, gauge_.Scale().Angle(place.mid(beside == 0 ? 0 : 1).toDouble()) + beside,
                  measures.scale + measures.handle * 0.7);
  }
  // The positions of the sliders after those steps, and the number of reported changes.
  std::string After(const QString& steps) {
    Play(gauge_, steps, [this](const QString& place) { return At(place); });
    const QVariant selected = gauge_.property("PointerIndex");
    const QString state = QString("%1 %2 %3").arg(qRound(Slider(2))).arg(qRound(Slider(3))).arg(reports_.count());
    Put("PointerIndex", selected);
    return state.toStdString();
  }

  QWidget window_;
  QLineEdit before_;
  LGauge gauge_;
  QLineEdit after_;
  QSignalSpy reports_{&gauge_, &LGauge::SliderChanged};
};

TEST_F(Gauge, KeepsEachNeedleAndSliderUnderItsNumber) {
  Put("Caption", " 25.25°C");
  EXPECT_EQ(After("NeedleIndex=0 NeedleValue=191 NeedleIndex=1 NeedleValue=25.25"), "-20 85 0") << "code is no user";
  const std::pair<const char*, QVariant> kept[] = {
      {"NeedleValue", 25.25}, {"Caption", " 25.25°C"}, {"ScaleMin", -64.0}, {"ScaleMax", 191.0}, {"PointerIndex", 3}};
  for (const auto& [name, value] : kept) EXPECT_EQ(gauge_.property(name), value) << name;
  Put("NeedleIndex", 0);
  EXPECT_EQ(gauge_.property("NeedleValue").toDouble(), 191);
}

TEST_F(Gauge, ReportsADragOnceAtItsEnd) {
  double atReport = 0;
  QObject::connect(&gauge_, &LGauge::SliderChanged, &gauge_,
                   [&] { atReport = gauge_.property("PointerValue").toDouble(); });
  EXPECT_EQ(After("PointerIndex=2 press@L-20 drag@L-15 drag@L0 drag@L40 drag@L25.4"), "25 85 0");
  EXPECT_EQ(After("drop@L25.4"), "25 85 1");
  EXPECT_NEAR(atReport, 25.4, 0.11);
  EXPECT_EQ(gauge_.property("PointerIndex").toInt(), 2) << "the code's selection stays the code's";
  EXPECT_EQ(After("drag@100"), "25 85 1");
}

TEST_F(Gauge, DragsEndWhereTheyShould) {
  const std::pair<const char*, const char*> rows[] = {
      // Only a slider can be dragged; a click that moves nothing is not reported.
      {"pull@30>60 pull@mid>60 pull@25.25>60 pull@H85>H85", "-20 85 0"},
      // A slider dragged across the gap stays at its end.
      {"press@H85 drag@a130 drag@a150", "-20 191 0"},
      {"drag@a170 drag@a-170 drag@a-150 drag@a-120", "-20 191 0"},
      {"drop@-64", "-20 191 1"},
      {"PointerValue=85 press@H85 drag@H10", "-20 10 1"},
      {"+Esc drop@H10", "-20 85 1"},
      {"press@H85 drag@H10 enabled=0 drop@H10 enabled=1", "-20 85 1"},
      {"press@H85 drag@H10 visible=0 drop@H10 visible=1", "-20 85 1"},
      {"press@H85 drag@H10 PointerValue=70 drag@H20 +Esc", "-20 70 1"},  // it goes back to a value written meanwhile
      // Two sliders at the same value can both be dragged.
      {"PointerIndex=2 PointerValue=70 pull@L70>L60", "60 70 2"},
      // It keeps a value that it cannot show; the other slider is not affected.
      {"PointerIndex=3 PointerValue=12000 ScaleMax=100 pull@L60>L0", "0 12000 3"}};
  for (const auto& [steps, state] : rows) EXPECT_EQ(After(steps), state) << steps;
}

TEST_F(Gauge, TabReachesEachSliderAndThenLeaves) {
  before_.setFocus();
  for (const auto& [key, where] :
       {std::pair{"Tab", 0}, {"Tab", 1}, {"Tab", 3}, {"Backtab", 1}, {"Backtab", 0}, {"Backtab", 2}}) {
    Play(*QApplication::focusWidget(), key);
    EXPECT_EQ(before_.hasFocus() ? 2 : after_.hasFocus() ? 3 : gauge_.ActiveSlider(), where);
    EXPECT_EQ(gauge_.hasFocus(), where < 2);
  }
}

TEST_F(Gauge, KeysMoveByStepPageAndToTheEndsAndAHeldKeyIsReportedOnce) {
  gauge_.setFocus(Qt::TabFocusReason);
  const std::pair<const char*, const char*> rows[] = {
      {"Right", "-19 85 1"},
      {"Up", "-18 85 2"},
      {"Left", "-19 85 3"},
      {"Down", "-20 85 4"},
      {"PgUp", "-10 85 5"},
      {"End", "191 85 6"},
      {"Home", "-64 85 7"},
      {"Right", "-63 85 8"},
      {"PgDown", "-64 85 9"},
      {"Left", "-64 85 9"},  // already at the end
      {"PgUp", "-54 85 10"},
      {"+Left *Left *Left +Down -Left", "-58 85 10"},  // a key is still held
      {"+Right *Right -Down", "-56 85 10"},
      {"-Right", "-56 85 11"},
      {"+Right +Esc -Right", "-56 85 11"}};
  for (const auto& [steps, state] : rows) EXPECT_EQ(After(steps), state) << steps;
  EXPECT_EQ(After("+Right"), "-55 85 11");
  after_.setFocus();
  EXPECT_EQ(After(""), "-55 85 12") << "the focus went while the key was down";
}

TEST_F(Gauge, ShowsItsSlidersDistinctWithoutColour) {
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

TEST_F(Gauge, RepaintsAChangedScale) {
  const QImage before = gauge_.grab().toImage();
  EXPECT_EQ(gauge_.grab().toImage(), before);
  Put("ScaleMax", 300);
  EXPECT_NE(gauge_.grab().toImage(), before);
  Put("ScaleMax", 191);
  EXPECT_EQ(gauge_.grab().toImage(), before);
  QPalette dark = gauge_.palette();
  dark.setColor(QPalette::Base, Qt::black);
  gauge_.setPalette(dark);
  EXPECT_LT(qGray(gauge_.grab().toImage().pixel(120, 80)), 60);
}

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

TextSize Measure(const std::string& text, double pixels) {
  return {0.6 * pixels * static_cast<double>(text.size()), 0.75 * pixels};
}

TEST(DialScale, ShowsValuesOutsideAtTheNearerEnd) {
  for (const auto& [value, angle] :
       {std::pair{-64.0, -135.0}, {63.5, 0.0}, {191.0, 135.0}, {-65.0, -135.0}, {1e9, 135.0}, {kNaN, -135.0}}) {
    EXPECT_DOUBLE_EQ(DialScale(-64, 191).Angle(value), angle);
  }
  EXPECT_DOUBLE_EQ(DialScale(5, 5).Angle(7), -135);
  EXPECT_DOUBLE_EQ(DialScale(10, 0).Angle(0), 135);  // runs backwards
}

TEST(DialScale, ReportsWhatItShows) {
  using Row = std::tuple<double, double, double, const char*, double>;
  for (const auto& [minimum, maximum, value, text, settled] :
       {Row{-64, 191, 25.4999, "25.5", 25.5}, Row{-64, 191, 24.53, "24.5", 24.5}, Row{0, 12000, 1004.9, "1000", 1000},
        Row{0, 15.94, 15.938, "15.94", 15.94}, Row{0, 15.94, 99, "", 15.94}, Row{0, 2.5, 1.23456, "1.235", 1.235},
        Row{0, 100, -3, "", 0}, Row{-64, 191, -0.04, "0.0", 0}}) {
    const DialScale scale(minimum, maximum);
    EXPECT_EQ(scale.Settle(value), settled) << value;
    if (value < minimum || value > maximum) continue;
    EXPECT_EQ(scale.Text(scale.Resolution() >= 1 ? scale.Settle(value) : value), text);
    EXPECT_NEAR(scale.ValueAt(scale.Angle(value)), settled, 1e-12);
  }
  EXPECT_EQ(DialScale(0, 10).ValueAt(500), 10);
  EXPECT_EQ(DialScale(0, 10).ValueAt(-136), 0);
}

TEST(DialTicks, AreAtRoundNumbersOfAnyRange) {
  using Row = std::tuple<double, double, const char*>;
  for (const auto& [minimum, maximum, expected] :
       {Row{0, 100, "0 10 20 30 40 50 60 70 80 90 100 "}, Row{0, 2.5, "0.0 0.5 1.0 1.5 2.0 2.5 "},
        Row{-64, 191, "-50 -25 0 25 50 75 100 125 150 175 "}, Row{0, 12000, "0 2000 4000 6000 8000 10000 12000 "},
        Row{0, 15.94, "0 2 4 6 8 10 12 14 "}, Row{5, 5, ""}, Row{0, kInfinity, ""}, Row{kNaN, 1, ""},
        Row{1e15, 1e15 + 1, ""}, Row{-1e308, 1.7e308, ""}}) {
    std::string numbers;
    for (const DialTick& tick : DialTicks(minimum, maximum, 110, 100, [](const auto& t) { return Measure(t, 14); })) {
      if (tick.major) numbers += tick.text + " ";
    }
    EXPECT_EQ(numbers, expected);
  }
}

void ExpectGoodTicks(double minimum, double maximum, double radius) {
  const double pixels = std::clamp(radius * 0.18, 8.0, 26.0);
  const auto size = [pixels](const std::string& text) { return Measure(text, pixels); };
  const auto [low, high] = std::minmax(minimum, maximum);
  const double slack = (high - low) * 1e-8;
  std::vector<DialTick> majors;
  for (const DialTick& tick : DialTicks(minimum, maximum, radius * 1.2, radius, size)) {
    EXPECT_TRUE(tick.value >= low - slack && tick.value <= high + slack) << tick.value;
    if (!tick.major) continue;
    EXPECT_LE(std::hypot(tick.labelX, tick.labelY), radius);
    for (const DialTick& other : majors) {
      const double width = (size(tick.text).width + size(other.text).width) / 2;
      EXPECT_TRUE(std::abs(tick.labelX - other.labelX) > width ||
                  std::abs(tick.labelY - other.labelY) > size(tick.text).height)  // all texts have this height
          << tick.text << " touches " << other.text;
    }
    majors.push_back(tick);
  }
  const bool everyday = high >= 1 && high <= 12000;
  EXPECT_GE(majors.size(), everyday && radius >= 50 ? 4U : 1U);
}

TEST(DialTicks, NumbersNeverTouchAndNeverLeaveTheDial) {
  constexpr double kScales[][2] = {{0, 2.5},  {-64, 191},   {0, 12000},  {0, 100}, {0, 15.94},
                                   {0, 1.66}, {1e-6, 3e-6}, {-1e9, 1e9}, {100, 0}};
  for (const auto& [minimum, maximum] : kScales) {
    for (const double radius : {25.0, 50.0, 80.0, 200.0, 500.0}) {
      SCOPED_TRACE(testing::Message() << minimum << " to " << maximum << " at " << radius);
      ExpectGoodTicks(minimum, maximum, radius);
    }
  }
}

}  // namespace
}  // namespace zth::widgets

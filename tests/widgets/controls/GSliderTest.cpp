#include <algorithm>
#include <cmath>
#include <string>
#include <utility>
#include <vector>

#include <QMetaObject>
#include <QStringList>
#include <gmock/gmock.h>

#include "tests/widgets/controls/UserInput.h"
#include "widgets/GSlider.h"

namespace zth::widgets {
namespace {

using namespace zth::tests;
using testing::ElementsAre;
using testing::IsEmpty;

// Writes down each report as a window would see it: "down 2", "change 2: 50", "up 2".
class Slider : public testing::Test {
 protected:
  Slider() {
    slider_.setProperty("Index", 2);
    slider_.resize(300, 30);
    slider_.show();
    const auto note = [this](auto signal, const char* what, bool withValue) {
      QObject::connect(&slider_, signal, [=, this](int index) {
        const std::string value = withValue ? ": " + QString::number(slider_.Value()).toStdString() : "";
        log_.push_back(what + (" " + std::to_string(index)) + value);
      });
    };
    note(qOverload<int>(&GSlider::MouseDown), "down", false);
    note(qOverload<int>(&GSlider::Change), "change", true);
    note(qOverload<int>(&GSlider::MouseUp), "up", false);
  }

  // Where a click on the groove gives a value: sought with a second slider, so that no measure is copied here.
  QPointF At(double value) const {
    for (int x = 0; x < slider_.width(); ++x) {
      GSlider probe;
      probe.resize(slider_.size());
      probe.SetValue(value < 50 ? 100 : 0);
      Press(probe, QPointF(x, 15));
      if (probe.Value() == value) return {static_cast<double>(x), 15};
    }
    ADD_FAILURE() << value << " is nowhere on the groove";
    return {};
  }
  void PaceEnds() {
    ASSERT_TRUE(slider_.PaceTimer().isActive());
    EXPECT_EQ(slider_.PaceTimer().interval(), 50);
    slider_.PaceTimer().stop();  // a single shot that has fired
    QMetaObject::invokeMethod(&slider_.PaceTimer(), "timeout");
  }
  std::vector<std::string> Taken() { return std::exchange(log_, {}); }

  GSlider slider_;
  std::vector<std::string> log_;
};

TEST_F(Slider, SaysNothingOfWhatCodeSets) {
  for (const double value : {33.3, 0.0, 100.0, 250.0, -4.0}) {
    ASSERT_TRUE(slider_.setProperty("Value", value));
    EXPECT_EQ(slider_.property("Value").toDouble(), std::clamp(value, 0.0, 100.0));
  }
  slider_.setProperty("Value", std::nan(""));
  EXPECT_EQ(slider_.Value(), 0);
  EXPECT_THAT(log_, IsEmpty());
}

TEST_F(Slider, WrapsEachKeyAndWheelChange) {
  slider_.setProperty("Value", 50);
  const std::vector<std::pair<Qt::Key, int>> keys = {{Qt::Key_Right, 51}, {Qt::Key_Up, 52},     {Qt::Key_Left, 51},
                                                     {Qt::Key_Down, 50},  {Qt::Key_PageUp, 60}, {Qt::Key_PageDown, 50},
                                                     {Qt::Key_Home, 0},   {Qt::Key_End, 100}};
  for (const auto& [key, value] : keys) {
    Tap(slider_, key);
    EXPECT_THAT(Taken(), ElementsAre("down 2", "change 2: " + std::to_string(value), "up 2")) << key;
  }
  Tap(slider_, Qt::Key_Right);
  EXPECT_THAT(Taken(), IsEmpty()) << "already at the end";
  Wheel(slider_, -60);
  EXPECT_THAT(Taken(), IsEmpty()) << "half a notch";
  Wheel(slider_, -60);
  EXPECT_THAT(Taken(), ElementsAre("down 2", "change 2: 99", "up 2"));
}

TEST_F(Slider, StepsFromAFractionToAWholePercent) {
  slider_.setProperty("Value", 33.3);
  Tap(slider_, Qt::Key_Right);
  EXPECT_EQ(slider_.Value(), 34);
}

TEST_F(Slider, AClickOnTheGrooveGoesThere) {
  Press(slider_, At(70));
  EXPECT_THAT(Taken(), ElementsAre("down 2", "change 2: 70"));
  Release(slider_, At(70));
  EXPECT_THAT(Taken(), ElementsAre("up 2"));
  DragFrom(slider_, At(70), At(70));
  EXPECT_THAT(Taken(), ElementsAre("down 2", "up 2")) << "a click on the thumb changes nothing";
}

TEST_F(Slider, ADragReportsAtMostOnceEach50MsAndItsLastValueBeforeMouseUp) {
  Press(slider_, At(0));
  for (const int value : {10, 20, 30}) Drag(slider_, At(value));
  EXPECT_THAT(Taken(), ElementsAre("down 2", "change 2: 10"));
  EXPECT_EQ(slider_.Value(), 30) << "the thumb follows at once";
  PaceEnds();
  EXPECT_THAT(Taken(), ElementsAre("change 2: 30"));
  PaceEnds();
  EXPECT_THAT(Taken(), IsEmpty()) << "nothing new";
  Drag(slider_, At(40));
  EXPECT_THAT(Taken(), ElementsAre("change 2: 40"));
  Drag(slider_, At(50));
  Drag(slider_, At(60));
  Release(slider_, At(60));
  EXPECT_THAT(Taken(), ElementsAre("change 2: 60", "up 2"));
  EXPECT_FALSE(slider_.PaceTimer().isActive());
  Drag(slider_, At(90));
  EXPECT_THAT(Taken(), IsEmpty());
}

TEST_F(Slider, BackAtTheReportedValueThereIsNothingToReport) {
  Press(slider_, At(0));
  Drag(slider_, At(10));
  Drag(slider_, At(20));
  Drag(slider_, At(10));
  Release(slider_, At(10));
  EXPECT_THAT(Taken(), ElementsAre("down 2", "change 2: 10", "up 2"));
}

TEST_F(Slider, EscapeTakesTheDragBackOnTheChipToo) {
  Press(slider_, At(0));
  Drag(slider_, At(80));
  Tap(slider_, Qt::Key_Right);
  Wheel(slider_, 120);
  KeyDown(slider_, Qt::Key_Escape);
  EXPECT_THAT(Taken(), ElementsAre("down 2", "change 2: 80", "change 2: 0", "up 2"));
}

TEST_F(Slider, LetsGoWhenTakenOutOfTheHand) {
  for (const char* property : {"Enabled", "visible"}) {
    slider_.setProperty("Value", 0);
    Press(slider_, At(0));
    Drag(slider_, At(10));
    Drag(slider_, At(20));
    slider_.setProperty(property, false);
    EXPECT_THAT(Taken(), ElementsAre("down 2", "change 2: 10", "up 2")) << property;
    EXPECT_FALSE(slider_.PaceTimer().isActive());
    slider_.setProperty(property, true);
  }
  slider_.setProperty("Enabled", false);
  Tap(slider_, Qt::Key_End);
  Press(slider_, At(50));
  Release(slider_, At(50));
  EXPECT_THAT(Taken(), IsEmpty());
}

TEST_F(Slider, LetsGoOnceWhenAHandlerDisablesIt) {
  QObject::connect(&slider_, qOverload<int>(&GSlider::Change), [this] { slider_.setEnabled(false); });
  Tap(slider_, Qt::Key_Right);
  EXPECT_THAT(Taken(), ElementsAre("down 2", "change 2: 1", "up 2"));
  slider_.setEnabled(true);
  Press(slider_, At(50));
  Release(slider_, At(50));
  EXPECT_THAT(Taken(), ElementsAre("down 2", "change 2: 50", "up 2"));
}

TEST_F(Slider, ToolsAndAssistiveTechnologyEndInTheSameReports) {
  slider_.setProperty("Value", 25);
  ASSERT_TRUE(QMetaObject::invokeMethod(&slider_, "Change"));
  ASSERT_TRUE(QMetaObject::invokeMethod(&slider_, "Change", Q_ARG(int, 2)));
  EXPECT_THAT(Taken(), ElementsAre("change 2: 25", "change 2: 25"));
  slider_.StepByUser(30);  // what assistive technology comes to
  EXPECT_THAT(Taken(), ElementsAre("down 2", "change 2: 30", "up 2"));
}

}  // namespace
}  // namespace zth::widgets

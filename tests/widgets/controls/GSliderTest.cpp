#include <algorithm>
#include <cmath>
#include <string>
#include <utility>

#include <QMetaObject>
#include <QStringList>
#include <gtest/gtest.h>

#include "tests/widgets/controls/UserInput.h"
#include "widgets/GSlider.h"

namespace zth::widgets {
namespace {

using namespace zth::tests;
class Slider : public testing::Test {
 protected:
  Slider() {
    slider_.setProperty("Index", 2);
    slider_.resize(300, 30);
    slider_.show();
    const auto note = [this](auto signal, const char* what) {
      QObject::connect(&slider_, signal, [=, this](int index) {
        log_ << (index == 2 ? what : "of another index");
        if (log_.last() == "change") log_.last() += "=" + QString::number(slider_.Value());
      });
    };
    note(qOverload<int>(&GSlider::MouseDown), "down");
    note(qOverload<int>(&GSlider::Change), "change");
    note(qOverload<int>(&GSlider::MouseUp), "up");
  }

  // The place on the groove where a click gives a value, found with a second slider so that no dimensions are copied
  // here.
  QPointF At(double value) const {
    for (int x = 0; x < slider_.width(); ++x) {
      GSlider probe;
      probe.resize(slider_.size());
      probe.SetValue(value < 50 ? 100 : 0);
      Mouse(probe, QEvent::MouseButtonPress, QPointF(x, 15));
      if (probe.Value() == value) return {static_cast<double>(x), 15};
    }
    ADD_FAILURE() << value << " is nowhere on the groove";
    return {};
  }
  // The events that a window gets from those steps: "down change=50 up".
  std::string Reports(const QString& steps) {
    Play(slider_, steps, [this](const QString& place) { return At(place.toDouble()); });
    return std::exchange(log_, {}).join(' ').toStdString();
  }
  std::string ReportsWhenPaceEnds() {
    EXPECT_TRUE(slider_.PaceTimer().isActive());
    EXPECT_EQ(slider_.PaceTimer().interval(), 50);
    slider_.PaceTimer().stop();  // a single-shot timer that has fired
    QMetaObject::invokeMethod(&slider_.PaceTimer(), "timeout");
    return Reports("");
  }

  GSlider slider_;
  QStringList log_;
};

TEST_F(Slider, DoesNotReportWhatCodeSets) {
  for (const double value : {33.3, 0.0, 100.0, 250.0, -4.0}) {
    ASSERT_TRUE(slider_.setProperty("Value", value));
    EXPECT_EQ(slider_.property("Value").toDouble(), std::clamp(value, 0.0, 100.0));
  }
  slider_.setProperty("Value", std::nan(""));
  EXPECT_EQ(slider_.Value(), 0);
  EXPECT_EQ(Reports(""), "");
}

TEST_F(Slider, ReportsWhatTheUserDoes) {
  const std::pair<const char*, const char*> rows[] = {
      {"Value=50 Right", "down change=51 up"},
      {"Up", "down change=52 up"},
      {"Left", "down change=51 up"},
      {"Down", "down change=50 up"},
      {"PgUp", "down change=60 up"},
      {"PgDown", "down change=50 up"},
      {"Home", "down change=0 up"},
      {"End", "down change=100 up"},
      // Nothing happens at the end or at half a notch; a fraction goes to a whole percent.
      {"Right", ""},
      {"wheel=-60", ""},
      {"wheel=-60", "down change=99 up"},
      {"Value=33.3 Right", "down change=34 up"},
      // A click on the groove moves the thumb there, a click on the thumb changes nothing.
      {"press@70", "down change=70"},
      {"drop@70", "up"},
      {"pull@70>70", "down up"},
      {"drag@90", ""},
      {"Value=50 pull@52>62", "down change=60 up"},  // held off its centre
      // Back at the reported value there is nothing to report. Keys and wheel have no effect during a drag, Escape
      // cancels it.
      {"Value=0 press@0 drag@10 drag@20 drag@10 drop@10", "down change=10 up"},
      {"Value=0 press@0 drag@80 Right wheel=120 +Esc", "down change=80 change=0 up"},
      {"press@0 drag@80 wheel=60 +Esc wheel=60", "down change=80 change=0 up"},  // nor does it count after the drag
      // It ends the drag when it can no longer be operated.
      {"Value=0 press@0 drag@10 drag@20 Enabled=0", "down change=10 up"},
      {"End press@50 drop@50", ""},
      {"Enabled=1 Value=0 press@0 drag@10 drag@20 visible=0", "down change=10 up"}};
  for (const auto& [steps, reports] : rows) EXPECT_EQ(Reports(steps), reports) << steps;
  EXPECT_FALSE(slider_.PaceTimer().isActive());
}

TEST_F(Slider, ADragReportsAtMostOnceEach50MsAndItsLastValueBeforeMouseUp) {
  EXPECT_EQ(Reports("press@0 drag@10 drag@20 drag@30"), "down change=10");
  EXPECT_EQ(slider_.Value(), 30) << "the thumb follows at once";
  EXPECT_EQ(ReportsWhenPaceEnds(), "change=30");
  EXPECT_EQ(ReportsWhenPaceEnds(), "") << "nothing new";
  EXPECT_EQ(Reports("drag@40"), "change=40");
  EXPECT_EQ(Reports("drag@50 drag@60 drop@60"), "change=60 up");
  EXPECT_FALSE(slider_.PaceTimer().isActive());
}

TEST_F(Slider, ReleasesOnceWhenAHandlerDisablesIt) {
  QObject::connect(&slider_, qOverload<int>(&GSlider::Change), [this] { slider_.setEnabled(false); });
  EXPECT_EQ(Reports("Right"), "down change=1 up");
  EXPECT_EQ(Reports("enabled=1 press@50 drop@50"), "down change=50 up");
}

TEST_F(Slider, ToolsAndAssistiveTechnologyCauseTheSameReports) {
  slider_.setProperty("Value", 25);
  ASSERT_TRUE(QMetaObject::invokeMethod(&slider_, "Change"));
  ASSERT_TRUE(QMetaObject::invokeMethod(&slider_, "Change", Q_ARG(int, 2)));
  EXPECT_EQ(Reports(""), "change=25 change=25");
  slider_.StepByUser(30);  // what assistive technology calls
  EXPECT_EQ(Reports(""), "down change=30 up");
}

}  // namespace
}  // namespace zth::widgets

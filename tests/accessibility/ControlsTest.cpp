// What assistive technology may read of our own controls and do to them, and what it is told when they change.
#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QMenu>
#include <QTest>

#include "tests/accessibility/AccessGround.h"
#include "widgets/GSlider.h"
#include "widgets/LGauge.h"
#include "widgets/Strip.h"

namespace zth::testing {
namespace {

/// What is told while it lives, by the object and child that it is about.
class Told final {
 public:
  Told() {
    QAccessible::installUpdateHandler([](QAccessibleEvent* event) {
      events.emplace_back(event->object(), event->type(),
                          event->type() == QAccessible::ValueChanged ? event->child() : -1);
    });
  }
  ~Told() { QAccessible::installUpdateHandler(nullptr); }

  /// How often since last asked.
  static long Take(QObject& of, QAccessible::Event type, int child = -1) {
    const long count = std::ranges::count(events, std::tuple{&of, type, child});
    events.clear();
    return count;
  }

  static inline std::vector<std::tuple<QObject*, QAccessible::Event, int>> events;
};

class AccessControls : public Access {
 protected:
  /// A control of a window, by name, as assistive technology has it.
  template <typename Control = QWidget>
  Control& Find(const char* window, const char* name) {
    auto& control = Desk::Get<Control>(desk.Open(window), name);
    Desk::Settle();
    Told::events.clear();
    return control;
  }
  static QAccessibleInterface& Of(QWidget& widget) { return *QAccessible::queryAccessibleInterface(&widget); }
  static QString Name(QAccessibleInterface& access) { return access.text(QAccessible::Name); }
  static QString Value(QAccessibleInterface& access) { return access.text(QAccessible::Value); }
  static std::string Range(QAccessibleInterface& access) {
    QAccessibleValueInterface& value = *access.valueInterface();
    return QString("%1..%2 by %3")
        .arg(value.minimumValue().toDouble())
        .arg(value.maximumValue().toDouble())
        .arg(value.minimumStepSize().toDouble())
        .toStdString();
  }
  static void Do(QAccessibleInterface& access, const QString& action) {
    ASSERT_TRUE(access.actionInterface()->actionNames().contains(action)) << action.toStdString();
    access.actionInterface()->doAction(action);
  }
  const QString up_ = QAccessibleActionInterface::increaseAction();
  const QString down_ = QAccessibleActionInterface::decreaseAction();
  Told told_;
};

TEST_F(AccessControls, AStepperIsItsBoxesSpinBox) {
  auto& box = Find<QLineEdit>("frmFanConfig", "txtMaxPWM");
  auto& pair = Find("frmFanConfig", "UpDown1");
  QAccessibleInterface& access = Of(pair);
  EXPECT_EQ(access.role(), QAccessible::SpinBox);
  EXPECT_EQ(Name(access).toStdString(), "Max PWM 1-4");
  EXPECT_EQ(Range(access), "0..100 by 1");
  access.valueInterface()->setCurrentValue(49.6);
  EXPECT_EQ(box.text(), "50");
  EXPECT_EQ(told_.Take(pair, QAccessible::ValueChanged), 1);
  Do(access, up_);
  EXPECT_EQ(Value(access), "51");
  Do(access, down_);
  Do(access, down_);
  EXPECT_EQ(access.valueInterface()->currentValue().toDouble(), 49);
  access.valueInterface()->setCurrentValue(1000);
  EXPECT_EQ(box.text(), "100");
  box.setEnabled(false);
  Do(access, down_);
  EXPECT_EQ(box.text(), "100");
}

TEST_F(AccessControls, ASliderMovesWithItsThreeReports) {
  auto& slider = Find<widgets::GSlider>("frmHeaters", "sldHeater(0)");
  QAccessibleInterface& access = Of(slider);
  EXPECT_EQ(access.role(), QAccessible::Slider);
  EXPECT_EQ(Range(access), "0..100 by 1");
  desk.board.TakeTraffic();
  access.valueInterface()->setCurrentValue(30);
  EXPECT_EQ(told_.Take(slider, QAccessible::ValueChanged), 1);
  Do(access, up_);
  EXPECT_EQ(Value(access), "31");
  Do(access, down_);
  EXPECT_EQ(desk.board.TakeTraffic().size(), 3U) << "the handlers of mouse and keys";
  Told::events.clear();
  slider.SetValue(50);
  EXPECT_EQ(told_.Take(slider, QAccessible::ValueChanged), 1) << "by code as well";
  slider.setEnabled(false);
  Do(access, up_);
  EXPECT_EQ(slider.Value(), 50);
}

TEST_F(AccessControls, AGaugeIsADialWithItsSliders) {
  auto& gauge = Find<widgets::LGauge>("frmLimits", "ggeTemp");
  QAccessibleInterface& dial = Of(gauge);
  EXPECT_EQ(dial.role(), QAccessible::Dial);
  gauge.SetNeedleIndex(1);
  gauge.SetNeedleValue(25.25);
  gauge.SetCaption(" 25.25°C");
  EXPECT_EQ(told_.Take(gauge, QAccessible::ValueChanged), 1);
  EXPECT_EQ(Value(dial), "25.25°C");
  EXPECT_EQ(dial.valueInterface()->currentValue().toDouble(), 25.25);
  ASSERT_EQ(dial.childCount(), 2);
  EXPECT_EQ(Name(*dial.child(0)), "Low limit");
  QAccessibleInterface& high = *dial.child(1);
  EXPECT_EQ(Name(high), "High limit");
  EXPECT_EQ(high.role(), QAccessible::Slider);
  EXPECT_EQ(Range(high), "-64..191 by 0.1");
  EXPECT_EQ(high.parent(), &dial);
  EXPECT_EQ(dial.indexOfChild(&high), 1);
  EXPECT_EQ(dial.childAt(high.rect().center().x(), high.rect().center().y()), &high);
  desk.board.TakeTraffic();
  high.valueInterface()->setCurrentValue(1000);
  EXPECT_EQ(gauge.SliderValue(1), 191);
  EXPECT_EQ(told_.Take(gauge, QAccessible::ValueChanged, 1), 1);
  EXPECT_EQ(desk.board.TakeTraffic(), Concat(W(0x44, 0x40), W(0x48, 0xFF), R(0x44), R(0x48)));
  Do(high, down_);
  EXPECT_EQ(Value(high), "190.0");
  Do(high, up_);
  EXPECT_EQ(gauge.SliderValue(1), 191);
  Do(high, QAccessibleActionInterface::setFocusAction());
  EXPECT_TRUE(gauge.hasFocus() && high.state().focused);
  gauge.SetSliders(widgets::LGauge::SoleSlider());
  EXPECT_EQ(dial.childCount(), 1);
  EXPECT_FALSE(high.isValid());
}

TEST_F(AccessControls, AChartTellsItsReadingsOnceASecondAndResets) {
  auto& strip = Find<widgets::Strip>("frmGraph", "stpGraph(3)");
  QAccessibleInterface& access = Of(strip);
  EXPECT_EQ(access.role(), QAccessible::Chart);
  desk.Advance(1000);
  told_.Take(strip, QAccessible::ValueChanged);
  desk.Advance(3000);
  EXPECT_EQ(told_.Take(strip, QAccessible::ValueChanged), 3);
  EXPECT_TRUE(Value(access).startsWith(strip.Title() + ": Local ")) << Value(access).toStdString();
  EXPECT_EQ(Name(access), strip.Title());
  strip.SetAxisMax(500);
  strip.SetXEnd(1);
  EXPECT_TRUE(strip.Held());
  Do(access, "Start Ranges");
  EXPECT_NE(strip.AxisMax(), 500);
  strip.SetXEnd(1);
  Do(access, "Back to Live");
  EXPECT_FALSE(strip.Held());
  const double before = strip.AxisMax();
  Do(access, "Fit to Data");
  EXPECT_NE(strip.AxisMax(), before);
  Do(access, QAccessibleActionInterface::showMenuAction());
  EXPECT_TRUE(Desk::Get<QMenu>(strip, "mnuStrip").isVisible());
}

TEST_F(AccessControls, ABitIsACheckBoxThatFlipsInTheChip) {
  QWidget& bit = Find("frmRegMap", "lblBit(2)");
  QAccessibleInterface& access = Of(bit);
  Desk::Type(desk.Open("frmRegMap"), "txtReadAddr", "30");
  EXPECT_TRUE(access.state().checkable);
  EXPECT_FALSE(access.state().checked);
  desk.board.TakeTraffic();
  told_.Take(bit, QAccessible::StateChanged);
  Do(access, QAccessibleActionInterface::toggleAction());
  EXPECT_EQ(desk.board.TakeTraffic(), Concat(W(0x30, 0x04), R(0x30)));
  EXPECT_TRUE(access.state().checked);
  EXPECT_EQ(Name(access), "Bit 2, R1");
  EXPECT_EQ(told_.Take(bit, QAccessible::StateChanged), 1);
}

TEST_F(AccessControls, ALampTellsItsStateAndALinkLeads) {
  QWidget& lamp = Find("frmLimits", "tglTempAlert(0)");
  EXPECT_EQ(Of(lamp).role(), QAccessible::Indicator);
  lamp.setProperty("Value", true);
  EXPECT_EQ(told_.Take(lamp, QAccessible::StateChanged), 1);
  EXPECT_EQ(Value(Of(lamp)), "Bad");
  EXPECT_TRUE(Name(Of(lamp)).endsWith(": Bad")) << "readers that pass over values read the name";
  lamp.setProperty("Value", false);
  EXPECT_EQ(told_.Take(lamp, QAccessible::NameChanged), 1);
  EXPECT_TRUE(Name(Of(lamp)).endsWith(": OK"));
  EXPECT_FALSE(Of(lamp).state().checked);

  QAccessibleInterface& link = Of(Find("frmAbout", "Label6"));
  EXPECT_EQ(link.role(), QAccessible::Link);
  Do(link, QAccessibleActionInterface::pressAction());
  EXPECT_EQ(desk.shell.opened.size(), 1U);
}

TEST_F(AccessControls, AKeyLeadsToTheDevicesFromAnyWindow) {
  auto& list = Desk::Get<QComboBox>(desk.Main(), "cmbDevices");
  Find("frmFanConfig", "txtMaxPWM").setFocus();
  EXPECT_FALSE(list.hasFocus());
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_D, Qt::ControlModifier);
  EXPECT_TRUE(list.hasFocus());
}

}  // namespace
}  // namespace zth::testing

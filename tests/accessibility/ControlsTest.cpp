// What assistive technology can read from our own controls and do to them, and the changes that they report to it.
#include <QApplication>
#include <QMenu>
#include <QTest>

#include "tests/accessibility/AccessGround.h"
#include "widgets/GSlider.h"
#include "widgets/LGauge.h"
#include "widgets/Strip.h"

namespace zth::testing {
namespace {

using Actions = QAccessibleActionInterface;

class AccessControls : public Access {
 public:
  AccessControls() {
    QAccessible::installUpdateHandler([](QAccessibleEvent* event) {
      const int child = event->type() == QAccessible::ValueChanged ? event->child() : -1;
      heard_.emplace_back(event->object(), event->type(), child);
    });
  }
  ~AccessControls() override { QAccessible::installUpdateHandler(nullptr); }

 protected:
  template <typename Control = QWidget>
  Control& Find(const char* window, const char* name) {
    auto& control = Desk::Get<Control>(desk.Open(window), name);
    Desk::Settle();
    desk.board.TakeTraffic();
    heard_.clear();
    return control;
  }
  /// How often a control has reported that since the last call.
  static long Heard(QObject& control, QAccessible::Event type, int child = -1) {
    const long count = std::ranges::count(heard_, std::tuple{&control, type, child});
    heard_.clear();
    return count;
  }
  static QAccessibleInterface& Of(QWidget& widget) { return *QAccessible::queryAccessibleInterface(&widget); }
  static std::string Name(QAccessibleInterface& access) { return access.text(QAccessible::Name).toStdString(); }
  static std::string Value(QAccessibleInterface& access) { return access.text(QAccessible::Value).toStdString(); }
  static std::vector<double> Range(QAccessibleInterface& access) {
    const auto* value = access.valueInterface();
    if (value == nullptr) return {};
    return {value->minimumValue().toDouble(), value->maximumValue().toDouble(), value->minimumStepSize().toDouble()};
  }
  static void Do(QAccessibleInterface& access, const QString& action) {
    ASSERT_TRUE(access.actionInterface()->actionNames().contains(action)) << action.toStdString();
    access.actionInterface()->doAction(action);
  }

 private:
  static inline std::vector<std::tuple<QObject*, QAccessible::Event, int>> heard_;
};

TEST_F(AccessControls, SlidersAndSteppersMoveByValueAndStep) {
  struct Row {
    const char *window, *control, *name;
    QAccessible::Role role;
    std::size_t transfers;  ///< of the handlers, for a step
  };
  for (const Row& row : {Row{"frmFanConfig", "UpDown1", "Max PWM 1-4", QAccessible::SpinBox, 0},
                         Row{"frmHeaters", "sldHeater(0)", "Heater1 PWM", QAccessible::Slider, 1}}) {
    QWidget& control = Find(row.window, row.control);
    QAccessibleInterface& access = Of(control);
    EXPECT_EQ(access.role(), row.role);
    EXPECT_EQ(Name(access), row.name);
    ASSERT_EQ(Range(access), (std::vector<double>{0, 100, 1}));
    access.valueInterface()->setCurrentValue(29.7);
    EXPECT_EQ(Value(access), "30");
    EXPECT_EQ(Heard(control, QAccessible::ValueChanged), 1);
    desk.board.TakeTraffic();
    Do(access, Actions::increaseAction());
    EXPECT_EQ(desk.board.TakeTraffic().size(), row.transfers);
    EXPECT_EQ(Value(access), "31");
    Do(access, Actions::decreaseAction());
    EXPECT_EQ(access.valueInterface()->currentValue().toDouble(), 30);
    access.valueInterface()->setCurrentValue(1000);
    control.setEnabled(false);
    Do(access, Actions::decreaseAction());
    EXPECT_EQ(Value(access), "100");
  }
}

TEST_F(AccessControls, AGaugeIsADialWithItsSliders) {
  auto& gauge = Find<widgets::LGauge>("frmLimits", "ggeTemp");
  QAccessibleInterface& dial = Of(gauge);
  gauge.SetNeedleIndex(1);
  gauge.SetNeedleValue(25.25);
  gauge.SetCaption(" 25.25°C");
  EXPECT_EQ(Heard(gauge, QAccessible::ValueChanged), 1);
  EXPECT_EQ(Value(dial), "25.25°C");
  EXPECT_EQ(dial.valueInterface()->currentValue().toDouble(), 25.25);
  ASSERT_EQ(dial.childCount(), 2);
  QAccessibleInterface& high = *dial.child(1);
  EXPECT_EQ(Name(high), "High limit");
  EXPECT_EQ(Range(high), (std::vector<double>{-64, 191, 0.1}));
  EXPECT_EQ(high.parent(), &dial);
  EXPECT_EQ(dial.indexOfChild(&high), 1);
  EXPECT_EQ(dial.childAt(high.rect().center().x(), high.rect().center().y()), &high);
  high.valueInterface()->setCurrentValue(1000);
  EXPECT_EQ(Heard(gauge, QAccessible::ValueChanged, 1), 1);
  EXPECT_EQ(desk.board.TakeTraffic(), Concat(W(0x44, 0x40), W(0x48, 0xFF), R(0x44), R(0x48)));
  Do(high, Actions::decreaseAction());
  EXPECT_EQ(Value(high), "190.0");
  Do(high, Actions::increaseAction());
  EXPECT_EQ(Value(high), "191.0");
  Do(high, Actions::setFocusAction());
  EXPECT_TRUE(gauge.hasFocus() && high.state().focused);
  gauge.SetSliders(widgets::LGauge::SoleSlider());
  EXPECT_EQ(dial.childCount(), 1);
  EXPECT_FALSE(high.isValid());
}

TEST_F(AccessControls, AChartReportsItsReadingsOnceASecondAndResets) {
  auto& strip = Find<widgets::Strip>("frmGraph", "stpGraph(3)");
  QAccessibleInterface& access = Of(strip);
  desk.Advance(1000);
  Heard(strip, QAccessible::DescriptionChanged);
  desk.Advance(3000);
  EXPECT_EQ(Heard(strip, QAccessible::DescriptionChanged), 3);
  EXPECT_EQ(Value(access).find(Name(access) + ": Local "), 0U) << Value(access);
  EXPECT_TRUE(access.text(QAccessible::Description).endsWith(access.text(QAccessible::Value)));
  for (const char* action : {"Start Ranges", "Back to Live"}) {
    strip.SetXEnd(1);
    EXPECT_TRUE(strip.Held());
    Do(access, action);
    EXPECT_FALSE(strip.Held()) << action;
  }
  const double top = strip.AxisMax();
  Do(access, "Fit to Data");
  EXPECT_NE(strip.AxisMax(), top);
  Do(access, Actions::showMenuAction());
  EXPECT_TRUE(Desk::Get<QMenu>(strip, "mnuStrip").isVisible());
}

TEST_F(AccessControls, BitsFlipLampsReportAndLinksOpen) {
  QWidget& bit = Find("frmRegMap", "lblBit(2)");
  Desk::Type(desk.Open("frmRegMap"), "txtReadAddr", "30");
  EXPECT_TRUE(Of(bit).state().checkable && !Of(bit).state().checked);
  Do(Of(bit), Actions::toggleAction());
  EXPECT_EQ(desk.board.TakeTraffic(), Concat(W(0x30, 0x04), R(0x30)));
  EXPECT_TRUE(Of(bit).state().checked);
  EXPECT_EQ(Name(Of(bit)), "Bit 2, R1");
  EXPECT_EQ(Heard(bit, QAccessible::StateChanged), 1);

  QWidget& lamp = Find("frmLimits", "tglTempAlert(0)");
  EXPECT_EQ(Of(lamp).role(), QAccessible::Graphic);
  for (const bool bad : {true, false}) {
    lamp.setProperty("Value", bad);
    EXPECT_EQ(Of(lamp).state().checked, bad);
    EXPECT_EQ(Value(Of(lamp)), bad ? "alert" : "no alert");
    EXPECT_TRUE(Name(Of(lamp)).ends_with(bad ? ": alert" : ": no alert"))
        << "readers that pass over values read the name";
    EXPECT_EQ(Heard(lamp, bad ? QAccessible::StateChanged : QAccessible::NameChanged), 1);
  }

  // The screen reader speaks this wherever the user is.
  QWidget& newest = Find("frmLimits", "lblNewest");
  desk.board.usbChips[0x58][0xC0] = 0x02;
  desk.Advance(600);
  EXPECT_EQ(Of(newest).role(), QAccessible::Notification);
  EXPECT_TRUE(Name(Of(newest)).ends_with("Local Temp raised")) << Name(Of(newest));
  EXPECT_EQ(Heard(newest, QAccessible::ObjectShow), 1);

  Do(Of(Find("frmAbout", "Label6")), Actions::pressAction());
  EXPECT_EQ(desk.shell.opened.size(), 1U);
}

}  // namespace
}  // namespace zth::testing

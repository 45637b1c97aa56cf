// The wheel over a control scrolls what is behind it and changes nothing. A list that writes its selection at once
// ignores the wheel even with the focus.
#include <QAbstractScrollArea>
#include <QLayout>
#include <QMdiArea>
#include <QScrollBar>
#include <QWheelEvent>
#include <qtestspontaneevent.h>

#include "tests/hand/HandGround.h"
#include "widgets/Strip.h"
#include "windows/Handlers.h"

namespace zth::testing {
namespace {

/// Windows whose lists have no effect outside the window until a button is pressed.
const std::set<std::string> kPatient{"frmEDO",       "frmFanConfig", "frmGenConfig", "frmGraph",
                                     "frmPinConfig", "frmTherm",     "frmVoltConfig"};

class Wheel : public Hand {
 protected:
  Wheel() {
    // So small that the desktop of every window scrolls.
    desk.Main().resize(320, 240);
    away_->setFocusPolicy(Qt::StrongFocus);
    away_->show();
  }

  /// One notch as the window system sends it: Qt sets the focus and passes it on to the parents as it does for a user.
  static void Notch(QWidget& control, const QPoint& by) {
    const QPointF at = control.rect().center();
    QWheelEvent event(at, control.mapToGlobal(at), {}, by, Qt::NoButton, {}, Qt::NoScrollPhase, false);
    QSpontaneKeyEvent::setSpontaneous(&event);
    qApp->notify(&control, &event);
  }

  /// The forbidden effects of a notch over each visible control below `root`.
  std::vector<std::string> Complaints(QWidget& root) {
    std::vector<std::string> complaints;
    for (QWidget* control : Shown(root)) {
      for (const QPoint& by : {QPoint(0, -120), QPoint(0, 120), QPoint(120, 0)}) {
        for (const std::string& fault : Faults(root, *control, by)) complaints.push_back(Told(*control) + fault);
      }
    }
    return complaints;
  }

  QWidget* away_ = new QWidget(&desk.Main());

 private:
  std::vector<std::string> Faults(QWidget& root, QWidget& control, const QPoint& by) {
    std::vector<std::string> faults;
    away_->setFocus();
    QScrollBar& bar = *desk.Main().findChild<QMdiArea*>()->verticalScrollBar();
    bar.setValue(0);
    desk.board.TakeTraffic();
    const std::string before = Holding(root);
    Notch(control, by);
    if (!desk.board.TakeTraffic().empty()) faults.emplace_back(" sends without the focus");
    if (Holding(root) != before) faults.emplace_back(" changes without the focus");
    if (!Scrolls(control)) {
      if (!away_->hasFocus()) faults.emplace_back(" takes the focus");
      if (by.y() < 0 && &root != &desk.Main() && bar.value() == 0) faults.emplace_back(" keeps the wheel");
    }
    if (auto* list = qobject_cast<QComboBox*>(&control); list != nullptr && list->isEnabled()) {
      list->setFocus();
      const int index = list->currentIndex();
      Notch(*list, by);
      const bool moved = list->currentIndex() != index;
      if (!desk.board.TakeTraffic().empty()) faults.emplace_back(" sends with the focus");
      if (moved && !kPatient.contains(root.objectName().toStdString())) faults.emplace_back(" changes with the focus");
      list->setCurrentIndex(index);
    }
    return faults;
  }

  /// Scrolls or zooms under the pointer without the focus.
  static bool Scrolls(QWidget& control) {
    for (QWidget* at = &control; at != nullptr; at = at->parentWidget()) {
      if (qobject_cast<QMdiArea*>(at) != nullptr) return false;
      if (qobject_cast<QAbstractScrollArea*>(at) != nullptr || qobject_cast<widgets::Strip*>(at) != nullptr)
        return true;
    }
    return false;
  }
};

TEST_P(Wheel, PassesOverEveryControlAndScrollsTheDesktop) {
  windows::ChildWindow& window = Open(GetParam());
  ForEachPage(window,
              [&](const std::string& page) { EXPECT_EQ(Complaints(window), std::vector<std::string>{}) << page; });
}

TEST_P(Wheel, SendsNothingFromTheControlThatHasTheFocusWhenTheWindowOpens) {
  windows::ChildWindow& window = Open(GetParam());
  QWidget* first = QApplication::focusWidget();
  if (first == nullptr || !window.isAncestorOf(first)) return;
  for (const int by : {120, -120}) Notch(*first, {0, by});
  EXPECT_EQ(desk.board.TakeTraffic(), Traffic{}) << Told(*first);
}

INSTANTIATE_TEST_SUITE_P(Windows, Wheel, ::testing::ValuesIn(EveryWindow()), WindowOf);

class WheelAnywhere : public Wheel {};

TEST_F(WheelAnywhere, DoesNotChangeTheDevice) {
  desk.Main().resize(1200, 600);
  ASSERT_GT(Desk::Get<QComboBox>(desk.Main(), "cmbDevices").count(), 1);
  EXPECT_EQ(Complaints(desk.Main()), std::vector<std::string>{});
}

TEST_F(WheelAnywhere, TheCheckFindsEveryControlThatIsAddedWithoutALimit) {
  windows::ChildWindow& window = Open("frmGPIO");
  auto* bare = new QComboBox;
  auto* eager = new QComboBox;
  auto* slider = new widgets::GSlider;
  auto* tabs = new QTabBar;
  for (QComboBox* list : {bare, eager}) list->addItems({"a", "b", "c"}), list->setCurrentIndex(1);
  tabs->addTab("a"), tabs->addTab("b");
  windows::OnSelect(
      *eager, [] {}, windows::Wheel::WithFocus);
  for (QWidget* control : std::initializer_list<QWidget*>{bare, eager, slider, tabs}) {
    window.layout()->addWidget(control);
    control->show();
    Desk::Settle();
    EXPECT_FALSE(Complaints(window).empty()) << control->metaObject()->className();
    delete control;
  }
  EXPECT_EQ(Complaints(window), std::vector<std::string>{});
}

TEST_F(WheelAnywhere, MovesASliderAndAListThatWaitsWithTheFocus) {
  windows::ChildWindow& manual = Open("frmManualControl");
  auto& slider = Desk::Get<widgets::GSlider>(manual, "sldManual(0)");
  slider.setFocus();
  Notch(slider, {0, 120});
  EXPECT_EQ(desk.board.TakeTraffic(), T("WAA=03"));
  auto& list = Desk::Get<QComboBox>(Open("frmFanConfig"), "cmbControl(0)");
  list.setFocus();
  const int before = list.currentIndex();
  Notch(list, {0, 120});
  EXPECT_EQ(list.currentIndex(), before - 1);
}

}  // namespace
}  // namespace zth::testing

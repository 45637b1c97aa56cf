#include <map>

#include <QApplication>
#include <QPushButton>
#include <QTabBar>
#include <QTabWidget>
#include <QTest>
#include <gtest/gtest.h>

#include "chip/RegisterRows.h"
#include "tests/windows/config/ConfigModel.h"

namespace zth::testing {
namespace {

class Looks : public ::testing::TestWithParam<const char*> {
 protected:
  void SetUp() override {
    desk_.Start();
    desk_.Main().resize(1366, 768);
    desk_.Main().show();
    window_ = &desk_.Open(GetParam());
    QApplication::setActiveWindow(&desk_.Main());
    QApplication::processEvents();
  }

  QTabWidget* Tabs() const { return window_->findChild<QTabWidget*>("SSTab1"); }
  int Pages() const { return Tabs() == nullptr ? 1 : Tabs()->count(); }
  void ShowPage(int page) const {
    if (Tabs() != nullptr) Tabs()->setCurrentIndex(page);
    QApplication::processEvents();
  }
  bool Marked(const QString& control) const { return Desk::Get<QWidget>(*window_, control).font().bold(); }
  QColor Colour(const QString& control) const {
    return Desk::Get<QWidget>(*window_, control).palette().color(QPalette::Text);
  }

  void Put(const QString& control, const QString& held) const { Do(*window_, control + "=" + held); }

  const WindowModel& model_ = Model(GetParam());
  Desk desk_;
  windows::ChildWindow* window_ = nullptr;
};

TEST_P(Looks, EveryControlTellsItsRegisterAndBits) {
  std::map<int, QString> names;
  for (const chip::RegisterRow& row : chip::kRegisterRows) names.emplace(row.address, row.name);
  for (const Control& control : model_.controls) {
    const QString bits = control.width == 1
                             ? QString("bit %1").arg(control.low)
                             : QString("bits %1:%2").arg(control.low + control.width - 1).arg(control.low);
    EXPECT_EQ(Desk::Get<QWidget>(*window_, control.name).toolTip(),
              QString::asprintf("0x%02X ", control.reg) + bits + ", " + names.at(control.reg));
  }
  for (const auto* button : window_->findChildren<QPushButton*>()) {
    EXPECT_FALSE(button->toolTip().isEmpty()) << button->text().toStdString();
  }
}

TEST_P(Looks, AChangeIsMarkedUntilItIsUndoneOrApplied) {
  const QColor plain = Colour(model_.controls.front().name);
  for (const Control& control : model_.controls) {
    SCOPED_TRACE(control.name.toStdString());
    const QString before = QString::fromStdString(Held(*window_, control.name));
    const QString caption = Desk::Get<QWidget>(*window_, control.name).property("text").toString();
    for (const bool changed : {false, true, false, true}) {
      Put(control.name, !changed ? before : before == "1" ? "0" : "1");
      EXPECT_EQ(Marked(control.name), changed);
      EXPECT_EQ(Colour(control.name) != plain, changed);
      if (control.name.startsWith("chk")) {
        EXPECT_EQ(Desk::Text(*window_, control.name), caption);
      }
    }
  }
  Desk::Press(*window_, "cmdApply");
  for (const Control& control : model_.controls) EXPECT_FALSE(Marked(control.name)) << control.name.toStdString();
  for (int page = 0; Tabs() != nullptr && page < Pages(); ++page) {
    EXPECT_FALSE(Tabs()->tabBar()->tabTextColor(page).isValid());
  }
}

TEST_P(Looks, MarksMoveNothing) {
  for (int page = 0; page < Pages(); ++page) {
    ShowPage(page);
    const QSize size = window_->sizeHint();
    std::map<QString, QRect> places;
    for (const Control& control : model_.controls) {
      places[control.name] = Desk::Get<QWidget>(*window_, control.name).geometry();
    }
    for (const Control& control : model_.controls) {
      Put(control.name, Held(*window_, control.name) == "1" ? "0" : "1");
    }
    QApplication::processEvents();
    EXPECT_EQ(window_->sizeHint(), size);
    for (const Control& control : model_.controls) {
      EXPECT_EQ(Desk::Get<QWidget>(*window_, control.name).geometry(), places[control.name]);
    }
  }
}

TEST_P(Looks, EnterIsOk) {
  desk_.board.TakeTraffic();
  QTest::keyClick(&Desk::Get<QWidget>(*window_, model_.controls.front().name), Qt::Key_Return);
  Desk::Settle();
  EXPECT_EQ(desk_.Main().FindWindow(GetParam()), nullptr);
  EXPECT_NE(desk_.board.TakeTraffic(), Traffic{});
}

INSTANTIATE_TEST_SUITE_P(Windows, Looks,
                         ::testing::Values("frmGenConfig", "frmFanConfig", "frmVoltConfig", "frmTherm", "frmEDO"),
                         [](const auto& row) { return std::string(row.param); });

TEST(ConfigMarks, AnOddEntryTellsWhatWouldGoOut) {
  WindowDesk desk("frmFanConfig");
  auto& box = Desk::Get<QLineEdit>(*desk.window, "txtMaxPWM");
  const QColor plain = box.palette().color(QPalette::Text);
  const std::vector<std::pair<QString, QString>> rows{
      {"50", ""},          {"12.0", ""},  // the number that the chip will show, if in other digits
      {"abc", "0 (0x00)"}, {"", "0 (0x00)"},      {"12ab", "12 (0x1F)"}, {"101", "100 (0xFF)"},
      {"-7", "0 (0x00)"},  {"50.4", "51 (0x81)"},
  };
  for (const auto& [text, out] : rows) {
    box.setText(text);
    EXPECT_EQ(box.toolTip(), "0x2C bits 7:0, PWM 1-4 Max" + (out.isEmpty() ? out : "\nGoes out as " + out));
    // What has gone out keeps its warning, and no longer counts as a change.
    desk.Do("cmdApply");
    EXPECT_FALSE(box.font().bold());
    EXPECT_EQ(box.palette().color(QPalette::Text) != plain, !out.isEmpty()) << text.toStdString();
    EXPECT_EQ(box.text(), text);
  }
}

TEST(ConfigMarks, ATextThatSpillsWarnsAtTheNeighbourToo) {
  WindowDesk desk("frmTherm");
  const auto tip = [&](const char* box) { return Desk::Get<QWidget>(*desk.window, box).toolTip(); };
  desk.Do("txtHyst(0)=18");
  EXPECT_EQ(tip("txtHyst(0)"), "0x54 bits 3:0, Local/Remote 1 Hyst\nGoes out as 2 (0x02)");
  EXPECT_EQ(tip("txtHyst(1)"), "0x54 bits 7:4, Local/Remote 1 Hyst\nGoes out as 5 (0x05)");
  desk.Do("txtHyst(0)=15");
  EXPECT_EQ(tip("txtHyst(1)"), "0x54 bits 7:4, Local/Remote 1 Hyst");
}

TEST(ConfigMarks, FollowAChangeOfThePalette) {
  WindowDesk desk("frmFanConfig");
  desk.Main().show();
  desk.Do("chkFullSpeed; txtMaxPWM=abc");
  const auto light = [&](const char* control) {
    return Desk::Get<QWidget>(*desk.window, control).palette().color(QPalette::Text).lightnessF() > 0.5F;
  };
  const QPalette before = QApplication::palette();
  for (const bool dark : {false, true}) {
    if (dark) QApplication::setPalette(QPalette(QColor(60, 60, 64), QColor(45, 45, 48)));
    QApplication::processEvents();
    for (const char* control : {"chkFullSpeed", "txtMaxPWM", "chkVRD1", "cmbTachPulses"}) {
      EXPECT_EQ(light(control), dark) << control;
    }
  }
  EXPECT_GT(Desk::Get<QTabWidget>(*desk.window, "SSTab1").tabBar()->tabTextColor(0).lightnessF(), 0.5F);
  QApplication::setPalette(before);
}

TEST(ConfigMarks, ATabShowsThatItHoldsChanges) {
  WindowDesk desk("frmFanConfig");
  const QTabBar* bar = Desk::Get<QTabWidget>(*desk.window, "SSTab1").tabBar();
  EXPECT_EQ(bar->currentIndex(), 0);
  desk.Do("cmdEnableAll");
  for (int page = 0; page < 6; ++page) EXPECT_EQ(bar->tabTextColor(page).isValid(), page == 5) << page;
  desk.Do("cmdDisableAll");
  EXPECT_FALSE(bar->tabTextColor(5).isValid());
}

TEST(ConfigMarks, AWheelThatPassesOverAListChangesNothing) {
  WindowDesk desk("frmFanConfig");
  auto& list = Desk::Get<QComboBox>(*desk.window, "cmbTachPulses");
  const int before = list.currentIndex();
  const auto turn = [&] {
    QWheelEvent wheel(QPointF(5, 5), list.mapToGlobal(QPointF(5, 5)), {}, {0, -120}, Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(&list, &wheel);
  };
  turn();
  EXPECT_EQ(list.currentIndex(), before);
  desk.Main().show();
  QApplication::setActiveWindow(&desk.Main());
  list.setFocus();
  turn();
  EXPECT_NE(list.currentIndex(), before) << "with the focus it does";
}

TEST(Therm, SetThermLimitsOpensThatTabAndKeepsWhatIsPending) {
  WindowDesk desk("frmTherm");
  desk.Do("chkThermThreshold=1");
  desk.Do("cmdSetlimits");
  EXPECT_EQ(Held(*desk.Main().FindWindow("frmLimits"), "SSTab1"), "4");
  EXPECT_EQ(desk.Held("chkThermThreshold"), "1");
  EXPECT_EQ(desk.board.Chip()[0x03], 0);
}

}  // namespace
}  // namespace zth::testing

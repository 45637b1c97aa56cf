#include <set>
#include <tuple>

#include <QApplication>
#include <QLabel>
#include <QMenuBar>
#include <QPushButton>
#include <QTabBar>
#include <QTabWidget>
#include <QTest>
#include <gtest/gtest.h>

#include "tests/windows/config/ConfigModel.h"
#include "windows/config/frmTherm.h"

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

  const WindowModel& model_ = Model(GetParam());
  Desk desk_;
  windows::ChildWindow* window_ = nullptr;
};

TEST_P(Looks, EveryControlTellsItsRegisterAndBits) {
  for (const Control& control : model_.controls) {
    const QString bits = control.width == 1
                             ? QString("bit %1").arg(control.low)
                             : QString("bits %1:%2").arg(control.low + control.width - 1).arg(control.low);
    EXPECT_EQ(Desk::Get<QWidget>(*window_, control.name).toolTip(),
              QString::asprintf("0x%02X ", control.reg) + bits + ", " + RegisterName(control.reg));
  }
  for (const auto* button : window_->findChildren<QPushButton*>()) {
    EXPECT_FALSE(button->toolTip().isEmpty()) << button->text().toStdString();
  }
}

TEST_P(Looks, AChangeIsMarkedUntilItIsUndoneOrApplied) {
  const QColor plain = Colour(model_.controls.front().name);
  for (const Control& control : model_.controls) {
    SCOPED_TRACE(control.name.toStdString());
    const auto& widget = Desk::Get<QWidget>(*window_, control.name);
    const QString before = Held(*window_, control.name);
    const QString caption = widget.property("text").toString();
    const QString other = before == "1" ? "0" : "1";
    EXPECT_FALSE(Marked(control.name));
    Put(*window_, control.name, other);
    EXPECT_TRUE(Marked(control.name));
    EXPECT_NE(Colour(control.name), plain);
    Put(*window_, control.name, before);
    EXPECT_FALSE(Marked(control.name));
    EXPECT_EQ(Colour(control.name), plain);
    Put(*window_, control.name, other);
    if (qobject_cast<const QAbstractButton*>(&widget) != nullptr) {
      EXPECT_EQ(widget.property("text"), caption);
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
      Put(*window_, control.name, Held(*window_, control.name) == "1" ? "0" : "1");
    }
    QApplication::processEvents();
    EXPECT_EQ(window_->sizeHint(), size);
    for (const Control& control : model_.controls) {
      EXPECT_EQ(Desk::Get<QWidget>(*window_, control.name).geometry(), places[control.name]);
    }
  }
}

TEST_P(Looks, MnemonicsClashNeitherOnAPageNorWithTheMenuBar) {
  std::multiset<QString> common;
  const auto key = [](const QString& text) { return QKeySequence::mnemonic(text).toString(); };
  for (const QAction* action : desk_.Main().menuBar()->actions()) common.insert(key(action->text()));
  for (int i = 0; Tabs() != nullptr && i < Pages(); ++i) common.insert(key(Tabs()->tabText(i)));
  for (int page = 0; page < Pages(); ++page) {
    ShowPage(page);
    std::multiset<QString> keys = common;
    for (const auto* button : window_->findChildren<QAbstractButton*>()) {
      if (button->isVisible()) keys.insert(key(button->text()));
    }
    for (const auto* label : window_->findChildren<QLabel*>()) {
      if (label->isVisible() && label->buddy() != nullptr) keys.insert(key(label->text()));
    }
    keys.erase(QString());
    for (const QString& each : keys) EXPECT_EQ(keys.count(each), 1U) << each.toStdString() << " on page " << page;
  }
}

TEST_P(Looks, TabReachesEveryControlFromTheTopDown) {
  for (int page = 0; page < Pages(); ++page) {
    ShowPage(page);
    std::set<QWidget*> missing;
    for (const Control& control : model_.controls) {
      auto* widget = &Desk::Get<QWidget>(*window_, control.name);
      if (widget->isVisible()) missing.insert(widget);
    }
    for (auto* button : window_->findChildren<QPushButton*>()) {
      if (button->isVisible()) missing.insert(button);
    }
    Desk::Get<QWidget>(*window_, "cmdApply").setFocus();
    std::tuple<bool, int, int, int> last{false, -1, -1, -1};
    for (std::size_t steps = missing.size() + 3; steps > 0; --steps) {
      QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
      QWidget* now = QApplication::focusWidget();
      ASSERT_NE(now, nullptr);
      if (missing.erase(now) == 0) continue;
      // Frame beside frame, each from its top, and the window's own buttons behind all of them.
      const QPoint at = now->mapTo(window_, now->rect().center());
      const bool own = now->parentWidget() == window_;
      const std::tuple place{own, own ? 0 : now->parentWidget()->x(), own ? 0 : at.y(), at.x()};
      EXPECT_LT(last, place) << now->objectName().toStdString();
      last = place;
    }
    std::string left;
    for (const QWidget* widget : missing) left += widget->objectName().toStdString() + " ";
    EXPECT_EQ(left, "") << "on page " << page;
  }
}

TEST_P(Looks, EnterIsOkAndEscapeIsCancel) {
  desk_.board.TakeTraffic();
  auto* first = &Desk::Get<QWidget>(*window_, model_.controls.front().name);
  QTest::keyClick(first, Qt::Key_Escape);
  Desk::Settle();
  EXPECT_EQ(desk_.Main().FindWindow(GetParam()), nullptr);
  EXPECT_EQ(desk_.board.TakeTraffic(), Traffic{});

  auto& again = desk_.Open(GetParam());
  desk_.board.TakeTraffic();
  QTest::keyClick(&Desk::Get<QWidget>(again, model_.controls.front().name), Qt::Key_Return);
  Desk::Settle();
  EXPECT_EQ(desk_.Main().FindWindow(GetParam()), nullptr);
  EXPECT_NE(desk_.board.TakeTraffic(), Traffic{});
}

INSTANTIATE_TEST_SUITE_P(Windows, Looks,
                         ::testing::Values("frmGenConfig", "frmFanConfig", "frmVoltConfig", "frmTherm", "frmEDO"),
                         [](const auto& row) { return std::string(row.param); });

TEST(ConfigMarks, AnOddEntryTellsWhatWouldGoOut) {
  Desk desk;
  desk.Start();
  auto& fan = desk.Open("frmFanConfig");
  struct Row {
    const char* text;
    const char* tip;
  };
  const std::vector<Row> rows{
      {"50", ""},
      {"12.0", ""},  // the number that the chip will show, if in other digits
      {"abc", "\nGoes out as 0 (0x00)"},
      {"", "\nGoes out as 0 (0x00)"},
      {"12ab", "\nGoes out as 12 (0x1F)"},
      {"101", "\nGoes out as 100 (0xFF)"},
      {"-7", "\nGoes out as 0 (0x00)"},
      {"50.4", "\nGoes out as 51 (0x81)"},
  };
  auto& box = Desk::Get<QLineEdit>(fan, "txtMaxPWM");
  const QColor plain = box.palette().color(QPalette::Text);
  for (const Row& row : rows) {
    box.setText(row.text);
    EXPECT_EQ(box.toolTip(), QString("0x2C bits 7:0, PWM 1-4 Max") + row.tip);
    // What has gone out keeps its warning, and no longer counts as a change.
    Desk::Press(fan, "cmdApply");
    EXPECT_FALSE(box.font().bold());
    EXPECT_EQ(box.palette().color(QPalette::Text) != plain, *row.tip != '\0') << row.text;
    EXPECT_EQ(box.text(), row.text);
  }
}

TEST(ConfigMarks, ATextThatSpillsWarnsAtTheNeighbourToo) {
  Desk desk;
  desk.Start();
  auto& therm = desk.Open("frmTherm");
  Desk::Type(therm, "txtHyst(0)", "18");
  EXPECT_EQ(Desk::Get<QWidget>(therm, "txtHyst(0)").toolTip(),
            "0x54 bits 3:0, Local/Remote 1 Hyst\nGoes out as 2 (0x02)");
  EXPECT_EQ(Desk::Get<QWidget>(therm, "txtHyst(1)").toolTip(),
            "0x54 bits 7:4, Local/Remote 1 Hyst\nGoes out as 5 (0x05)");
  Desk::Type(therm, "txtHyst(0)", "15");
  EXPECT_EQ(Desk::Get<QWidget>(therm, "txtHyst(1)").toolTip(), "0x54 bits 7:4, Local/Remote 1 Hyst");
}

TEST(ConfigMarks, FollowAChangeOfThePalette) {
  Desk desk;
  desk.Start();
  auto& fan = desk.Open("frmFanConfig");
  desk.Main().show();
  Desk::Press(fan, "chkFullSpeed");
  Desk::Type(fan, "txtMaxPWM", "abc");
  const auto lightness = [&](const char* control) {
    return Desk::Get<QWidget>(fan, control).palette().color(QPalette::Text).lightnessF();
  };
  EXPECT_LT(lightness("chkFullSpeed"), 0.5F);
  EXPECT_LT(lightness("txtMaxPWM"), 0.5F);
  const QPalette before = QApplication::palette();
  QApplication::setPalette(QPalette(QColor(60, 60, 64), QColor(45, 45, 48)));
  QApplication::processEvents();
  for (const char* control : {"chkFullSpeed", "txtMaxPWM", "chkVRD1", "cmbTachPulses"}) {
    EXPECT_GT(lightness(control), 0.5F) << control;
  }
  EXPECT_GT(Desk::Get<QTabWidget>(fan, "SSTab1").tabBar()->tabTextColor(0).lightnessF(), 0.5F);
  QApplication::setPalette(before);
}

TEST(ConfigMarks, ATabShowsThatItHoldsChanges) {
  Desk desk;
  desk.Start();
  auto& fan = desk.Open("frmFanConfig");
  const QTabBar* bar = Desk::Get<QTabWidget>(fan, "SSTab1").tabBar();
  EXPECT_EQ(bar->currentIndex(), 0);
  Desk::Press(fan, "cmdEnableAll");
  for (int page = 0; page < 6; ++page) EXPECT_EQ(bar->tabTextColor(page).isValid(), page == 5) << page;
  Desk::Press(fan, "cmdDisableAll");
  EXPECT_FALSE(bar->tabTextColor(5).isValid());
}

TEST(ConfigMarks, AWheelThatPassesOverAListChangesNothing) {
  Desk desk;
  desk.Start();
  auto& fan = desk.Open("frmFanConfig");
  auto& list = Desk::Get<QComboBox>(fan, "cmbTachPulses");
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

/// A Limits window with six empty tabs, on a desktop that has no other.
class LimitsStub final : public windows::ChildWindow {
 public:
  explicit LimitsStub(const windows::Context& context) : ChildWindow("frmLimits", "Limits", context) {
    tabs = new QTabWidget(this);
    tabs->setObjectName("SSTab1");
    for (int i = 0; i < 6; ++i) tabs->addTab(new QWidget, QString::number(i));
  }
  void Form_Load() override {}

  QTabWidget* tabs;
};

class OneWindowDesktop final : public windows::Desktop {
 public:
  windows::ChildWindow* OpenWindow(const QString& name) override {
    opened.push_back(name);
    return window;
  }
  windows::ChildWindow* FindWindow(const QString&) const override { return window; }
  void SetStatus(const QString&) override {}
  void EnableTimer(bool) override {}
  QWidget& Frame() override { return frame; }

  QWidget frame;
  windows::ChildWindow* window = nullptr;
  std::vector<QString> opened;
};

TEST(Therm, SetThermLimitsOpensThatTabAndKeepsWhatIsPending) {
  Desk desk;
  desk.Start();
  OneWindowDesktop desktop;
  const windows::Context context{desk.services, desktop};
  windows::frmTherm therm(context);
  therm.Form_Load();
  desk.board.TakeTraffic();
  Desk::Check(therm, "chkThermThreshold", true);
  Desk::Press(therm, "cmdSetlimits");  // no such window: nothing happens
  LimitsStub limits(context);
  desktop.window = &limits;
  limits.tabs->setCurrentIndex(1);
  Desk::Press(therm, "cmdSetlimits");
  EXPECT_EQ(desktop.opened, (std::vector<QString>{"frmLimits", "frmLimits"}));
  EXPECT_EQ(limits.tabs->currentIndex(), 4);
  EXPECT_TRUE(Desk::Checked(therm, "chkThermThreshold"));
  EXPECT_EQ(desk.board.TakeTraffic(), Traffic{});
}

}  // namespace
}  // namespace zth::testing

#include <map>

#include <QApplication>
#include <QLineEdit>
#include <QTabBar>
#include <QTabWidget>

#include "chip/RegisterRows.h"
#include "tests/windows/config/ConfigModel.h"

namespace zth::testing {
namespace {

class Looks : public ::testing::TestWithParam<const char*> {
 protected:
  Looks() {
    desk_.Main().resize(1366, 768);
    desk_.Main().show();
    QApplication::setActiveWindow(&desk_.Main());
    QApplication::processEvents();
  }

  QTabWidget* Tabs() const { return desk_.window->findChild<QTabWidget*>("SSTab1"); }
  QWidget& At(const Control& control) const { return Desk::Get<QWidget>(*desk_.window, control.name); }
  static QColor Colour(const QWidget& control) { return control.palette().color(QPalette::Text); }

  const std::vector<Control>& controls_ = Model(GetParam()).controls;
  // Fan Configuration's maximum cannot be shown exactly at its default.
  WindowDesk desk_{GetParam(), "2C=FF"};
};

TEST_P(Looks, EveryControlNamesItsRegisterAndBits) {
  std::map<int, QString> names;
  for (const chip::RegisterRow& row : chip::kRegisterRows) names.emplace(row.address, row.name);
  for (const Control& control : controls_) {
    const QString bits = control.width == 1
                             ? QString("bit %1").arg(control.low)
                             : QString("bits %1:%2").arg(control.low + control.width - 1).arg(control.low);
    EXPECT_EQ(At(control).toolTip(), QString::asprintf("0x%02X ", control.reg) + bits + ", " + names.at(control.reg));
  }
}

TEST_P(Looks, AChangeIsMarkedUntilItIsUndoneOrAppliedAndMovesNothing) {
  const QColor plain = Colour(At(controls_.front()));
  for (const Control& control : controls_) {
    SCOPED_TRACE(control.name.toStdString());
    const QWidget& widget = At(control);
    for (int page = 0; Tabs() != nullptr && !widget.isVisible() && page < Tabs()->count(); ++page) {
      Tabs()->setCurrentIndex(page);
    }
    QApplication::processEvents();
    const QString before = QString::fromStdString(desk_.Held(control.name));
    const QString caption = Desk::Text(*desk_.window, control.name);
    const auto place = std::pair{widget.geometry(), desk_.window->sizeHint()};
    for (const bool changed : {false, true, false, true}) {
      desk_.Do(control.name + "=" + (!changed ? before : before == "1" ? "0" : "1"));
      QApplication::processEvents();
      EXPECT_EQ(widget.font().bold(), changed);
      EXPECT_EQ(Colour(widget) != plain, changed);
      EXPECT_EQ(std::pair(widget.geometry(), desk_.window->sizeHint()), place);
      if (control.name.startsWith("chk")) {
        EXPECT_EQ(Desk::Text(*desk_.window, control.name), caption);
      }
    }
  }
  desk_.Do("cmdApply");
  for (const Control& control : controls_) EXPECT_FALSE(At(control).font().bold()) << control.name.toStdString();
  for (int page = 0; Tabs() != nullptr && page < Tabs()->count(); ++page) {
    EXPECT_FALSE(Tabs()->tabBar()->tabTextColor(page).isValid());
  }
}

INSTANTIATE_TEST_SUITE_P(Windows, Looks,
                         ::testing::Values("frmGenConfig", "frmFanConfig", "frmVoltConfig", "frmTherm", "frmEDO"),
                         [](const auto& row) { return std::string(row.param); });

TEST(ConfigMarks, AnOddEntryShowsWhatWouldBeWritten) {
  WindowDesk desk("frmFanConfig", "2C=FF");
  auto& box = Desk::Get<QLineEdit>(*desk.window, "txtMaxPWM");
  const QColor plain = box.palette().color(QPalette::Text);
  const std::vector<std::pair<QString, QString>> rows{
      {"50", ""},          {"12.0", ""},  // the number that the chip will show, only in other digits
      {"abc", "0 (0x00)"}, {"", "0 (0x00)"},      {"12ab", "12 (0x1F)"}, {"101", "100 (0xFF)"},
      {"-7", "0 (0x00)"},  {"50.4", "51 (0x81)"},
  };
  for (const auto& [text, out] : rows) {
    box.setText(text);
    EXPECT_EQ(box.toolTip(), "0x2C bits 7:0, PWM 1-4 Max" + (out.isEmpty() ? out : "\nGoes out as " + out));
    // A written value keeps its warning, and no longer counts as a change.
    desk.Do("cmdApply");
    EXPECT_FALSE(box.font().bold());
    EXPECT_EQ(box.palette().color(QPalette::Text) != plain, !out.isEmpty()) << text.toStdString();
    EXPECT_EQ(box.text(), text);
  }
}

TEST(ConfigMarks, AnUnchangedControlThatWouldWriteAnotherByteShowsBothBytes) {
  struct Row {
    const char *window, *registers, *control, *apply, *tip;
  };
  for (const Row& row : {
           Row{"frmFanConfig", "28=C0", "txtMinPWM(0)", "cmdApply", "Holds 0xC0, goes out as 0xBF"},
           Row{"frmFanConfig", "2C=01", "txtMaxPWM", "cmdApply", "Holds 0x01, goes out as 0x00"},
           Row{"frmTherm", "0D=B7", "cmbWindow(0)", "cmdApply", "Holds 0x05, goes out as 0x07"},
           Row{"frmPinConfig", "12=20", "cmbPin25", "cmdApply", "Holds 0x02, goes out as 0x03"},
           Row{"frmPinConfig", "13=BC", "cmbPin28", "cmdApply", "Holds 0x02, goes out as 0x03"},
           Row{"frmPinConfig", "14=05", "optEasy(0)", "cmdEasyApply", "Holds 0x01, goes out as 0x00"},
           Row{"frmFanConfig", "28=80", "txtMinPWM(0)", "cmdApply", ""},
           Row{"frmPinConfig", "12=30", "cmbPin25", "cmdApply", ""},
       }) {
    SCOPED_TRACE(std::string(row.control) + " " + row.registers);
    WindowDesk desk(row.window, row.registers);
    const auto& control = Desk::Get<QWidget>(*desk.window, row.control);
    const auto second = [&] { return control.toolTip().section('\n', 1).toStdString(); };
    const auto marked = [&] {
      return control.palette().color(QPalette::Text) != desk.window->palette().color(QPalette::Text);
    };
    EXPECT_EQ(second(), row.tip);
    EXPECT_EQ(marked(), *row.tip != 0);
    EXPECT_FALSE(control.font().bold()) << "nobody has changed it";
    desk.window->ReadAgain();
    EXPECT_EQ(second(), row.tip);
    desk.Do(row.apply);
    EXPECT_EQ(second(), "") << "the chip holds what it shows";
    EXPECT_FALSE(marked());
  }
}

TEST(ConfigMarks, ATextThatSpillsWarnsAtTheNeighbourToo) {
  WindowDesk desk("frmTherm");
  const auto tip = [&](int box) { return Desk::Get<QWidget>(*desk.window, QString("txtHyst(%1)").arg(box)).toolTip(); };
  desk.Do("txtHyst(0)=18");
  EXPECT_EQ(tip(0), "0x54 bits 3:0, Local/Remote 1 Hyst\nGoes out as 2 (0x02)");
  EXPECT_EQ(tip(1), "0x54 bits 7:4, Local/Remote 1 Hyst\nGoes out as 5 (0x05)");
  desk.Do("txtHyst(0)=15");
  EXPECT_EQ(tip(1), "0x54 bits 7:4, Local/Remote 1 Hyst");
}

TEST(FanConfig, AllTachButtonsTouchOnlyTheBoxesAndTheirTabShowsThatItHoldsChanges) {
  WindowDesk desk("frmFanConfig");
  const QTabBar* bar = Desk::Get<QTabWidget>(*desk.window, "SSTab1").tabBar();
  EXPECT_EQ(desk.Sent("cmdEnableAll"), Traffic{});
  EXPECT_EQ(desk.Held("SSTab1 chkEnTach(0..7)"), "0|1|1|1|1|1|1|1|1");
  for (int page = 0; page < 6; ++page) EXPECT_EQ(bar->tabTextColor(page).isValid(), page == 5) << page;
  EXPECT_EQ(desk.Sent("cmdDisableAll"), Traffic{});
  EXPECT_EQ(desk.Held("chkEnTach(0..7)"), "0|0|0|0|0|0|0|0");
  EXPECT_FALSE(bar->tabTextColor(5).isValid());
}

TEST(Therm, SetThermLimitsOpensThatTabAndKeepsWhatIsPending) {
  WindowDesk desk("frmTherm");
  desk.Do("chkThermThreshold=1; cmdSetlimits");
  EXPECT_EQ(Held(*desk.Main().FindWindow("frmLimits"), "SSTab1"), "4");
  EXPECT_EQ(desk.Held("chkThermThreshold"), "1");
  EXPECT_EQ(desk.board.Chip()[0x03], 0);
}

}  // namespace
}  // namespace zth::testing

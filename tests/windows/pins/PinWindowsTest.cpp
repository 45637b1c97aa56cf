#include <QAbstractButton>
#include <QComboBox>
#include <QLineEdit>
#include <QTabBar>
#include <QTest>

#include "tests/support/Steps.h"
#include "windows/SharedState.h"

namespace zth::testing {
namespace {

const std::vector<QString> kWindows{"frmPinConfig", "frmGPIO", "frmEasySetup"};

TEST(PinWindows, EveryControlTellsItsRegister) {
  Desk desk;
  desk.Start();
  for (const QString& name : kWindows) {
    auto& window = desk.Open(name);
    for (const auto* list : window.findChildren<QComboBox*>()) {
      EXPECT_EQ(list->toolTip().left(2), "0x") << list->objectName().toStdString();
    }
  }
  EXPECT_EQ(desk.Get<QComboBox>(desk.Open("frmPinConfig"), "cmbPin25").toolTip(), "0x12 bits 5:4, Pin Config 3");
  EXPECT_EQ(desk.Get<QComboBox>(desk.Open("frmGPIO"), "cmbDir(4)").toolTip(), "0x0A bit 1, GPIO2_Bhvr");
  EXPECT_EQ(desk.Get<QWidget>(desk.Open("frmEasySetup"), "chkOption(4)").toolTip(), "Sets 0x2C bits 7:0, PWM 1-4 Max");
}

TEST(PinWindows, WhatIsNotAppliedYetIsMarkedAndItsTextStays) {
  WindowDesk desk("frmPinConfig");
  const QTabBar& tabs = *desk.Get<QTabWidget>(*desk.window, "SSTab1").tabBar();
  const QColor plain = tabs.tabTextColor(1);
  const auto expectMarked = [&](bool pin7, bool option, const char* why) {
    const auto marked = [&](const char* name) { return desk.Get<QWidget>(*desk.window, name).font().bold(); };
    EXPECT_EQ(marked("cmbPin7"), pin7) << why;
    EXPECT_EQ(marked("optEasy(3)"), option) << why;
    EXPECT_FALSE(marked("cmbPin8"));
    EXPECT_EQ(tabs.tabTextColor(1) != plain, pin7) << "the tab behind tells it too";
  };
  desk.Do("cmbPin7=0; optEasy(3)=1");
  EXPECT_EQ(desk.Text(*desk.window, "cmbPin7"), "+12V1");
  expectMarked(true, true, "neither is applied");
  desk.Do("cmdApply");
  expectMarked(false, true, "each Apply settles its own tab");
  desk.Do("cmbPin7=1; cmdEasyApply");
  expectMarked(false, false, "overwritten by what the chip holds");

  auto& gpio = desk.Open("frmGPIO");
  desk.Pick(gpio, "cmbDir(1)", 1);
  EXPECT_FALSE(desk.Get<QWidget>(gpio, "cmbDir(1)").font().bold()) << "written at once";
}

TEST(PinWindows, AnOptionsNumberThatReadsAsAnotherIsMarkedWithWhatGoesOut) {
  WindowDesk desk("frmEasySetup");
  auto& box = desk.Get<QLineEdit>(*desk.window, "txtOption");
  const QColor plain = box.palette().color(QPalette::Text);
  const QString refused = "\nOption value must be in range 1-5";
  const std::vector<std::pair<const char*, QString>> cases{
      {"2", ""}, {"2.5", "\nGoes out as 0x02"}, {"0.5", "\nGoes out as 0x00"}, {"6", refused}, {"two", refused},
      {"5", ""},
  };
  for (const auto& [text, tip] : cases) {
    box.setText(text);
    EXPECT_EQ(box.toolTip(), "0x14 bits 4:0, Easy Config" + tip);
    EXPECT_EQ(box.palette().color(QPalette::Text) == plain, tip.isEmpty()) << text;
  }
}

TEST(PinWindows, TheKeyboardAloneSuffices) {
  Desk desk;
  desk.Start();
  auto& again = desk.Open("frmEasySetup");
  auto& option = desk.Get<QLineEdit>(again, "txtOption");
  option.setFocus();
  QTest::keyClick(&option, Qt::Key_Up);
  QTest::keyClick(&option, Qt::Key_Up);
  QTest::keyClick(&option, Qt::Key_Return);
  EXPECT_EQ(Writes(desk.board.TakeTraffic()).front(), W(0x14, 0x04)) << "two steps up, and Enter is OK";
  EXPECT_EQ(desk.Main().FindWindow("frmEasySetup"), nullptr);

  auto& pins = desk.Open("frmPinConfig");
  auto& tabs = desk.Get<QTabWidget>(pins, "SSTab1");
  tabs.setCurrentIndex(1);
  auto& pin7 = desk.Get<QComboBox>(pins, "cmbPin7");
  pin7.setFocus();
  desk.board.TakeTraffic();
  QTest::keyClick(&pin7, Qt::Key_Up);
  QTest::keyClick(&pin7, Qt::Key_Return);
  EXPECT_TRUE(desk.board.TakeTraffic().empty()) << "a stray Enter re-routes no pins";
  auto& apply = desk.Get<QAbstractButton>(pins, "cmdApply");
  apply.setFocus();
  QTest::keyClick(&apply, Qt::Key_Return);
  EXPECT_EQ(Writes(desk.board.TakeTraffic()).front(), W(0x10, 0x7E));
}

}  // namespace
}  // namespace zth::testing

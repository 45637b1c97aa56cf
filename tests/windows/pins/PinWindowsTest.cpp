#include <QComboBox>
#include <QLineEdit>
#include <QTabBar>
#include <QTest>

#include "tests/support/Steps.h"

namespace zth::testing {
namespace {

TEST(PinWindows, EveryControlTellsItsRegister) {
  Desk desk;
  desk.Start();
  for (const auto& [name, control, tip] : {std::tuple{"frmPinConfig", "cmbPin25", "0x12 bits 5:4, Pin Config 3"},
                                           {"frmGPIO", "cmbDir(4)", "0x0A bit 1, GPIO2_Bhvr"},
                                           {"frmEasySetup", "chkOption(4)", "Sets 0x2C bits 7:0, PWM 1-4 Max"}}) {
    auto& window = desk.Open(name);
    for (const auto* list : window.findChildren<QComboBox*>()) EXPECT_EQ(list->toolTip().left(2), "0x");
    EXPECT_EQ(desk.Get<QWidget>(window, control).toolTip(), tip);
  }
}

TEST(PinWindows, WhatIsNotAppliedYetIsMarkedAndItsTextStays) {
  WindowDesk desk("frmPinConfig");
  const QTabBar& tabs = *desk.Get<QTabWidget>(*desk.window, "SSTab1").tabBar();
  const QColor plain = tabs.tabTextColor(1);
  // Each Apply settles its own tab; an easy one overwrites the pins by what the chip holds.
  for (const auto& [steps, marks] :
       {std::pair{"cmbPin7=0; optEasy(3)=1", "110"}, {"cmdApply", "010"}, {"cmbPin7=1; cmdEasyApply", "000"}}) {
    desk.Do(steps);
    QString marked;
    for (const char* name : {"cmbPin7", "optEasy(3)", "cmbPin8"}) {
      marked += desk.Get<QWidget>(*desk.window, name).font().bold() ? "1" : "0";
    }
    EXPECT_EQ(marked, marks) << steps;
    EXPECT_EQ(tabs.tabTextColor(1) != plain, marks[0] == '1') << "the tab behind tells it too";
  }
  auto& gpio = desk.Open("frmGPIO");
  desk.Pick(gpio, "cmbDir(1)", 1);
  EXPECT_FALSE(desk.Get<QWidget>(gpio, "cmbDir(1)").font().bold()) << "written at once";
}

TEST(PinWindows, AnOptionsNumberThatReadsAsAnotherIsMarkedWithWhatGoesOut) {
  WindowDesk desk("frmEasySetup");
  auto& box = desk.Get<QLineEdit>(*desk.window, "txtOption");
  const QColor plain = box.palette().color(QPalette::Text);
  constexpr const char* kRefused = "\nOption value must be in range 1-5";
  for (const auto& [text, tip] : {std::pair{"2", ""},
                                  {"2.5", "\nGoes out as 0x02"},
                                  {"0.5", "\nGoes out as 0x00"},
                                  {"6", kRefused},
                                  {"two", kRefused},
                                  {"5", ""}}) {
    box.setText(text);
    EXPECT_EQ(box.toolTip(), QString("0x14 bits 4:0, Easy Config") + tip);
    EXPECT_EQ(box.palette().color(QPalette::Text) == plain, *tip == 0) << text;
  }
}

TEST(PinWindows, EnterIsOkButReRoutesNoPins) {
  WindowDesk easy("frmEasySetup");
  auto& option = easy.Get<QWidget>(*easy.window, "txtOption");
  for (const auto key : {Qt::Key_Up, Qt::Key_Up, Qt::Key_Return}) QTest::keyClick(&option, key);
  EXPECT_EQ(Writes(easy.board.TakeTraffic()).front(), W(0x14, 0x04)) << "two steps up";
  EXPECT_FALSE(easy.IsOpen());

  auto& pins = easy.Open("frmPinConfig");
  Do(pins, "SSTab1=1");
  easy.board.TakeTraffic();
  for (const auto& [control, sent] : {std::pair{"cmbPin7", Traffic{}}, {"cmdApply", Traffic{W(0x10, 0x7F)}}}) {
    auto& focus = easy.Get<QWidget>(pins, control);
    focus.setFocus();
    QTest::keyClick(&focus, Qt::Key_Return);
    const Traffic writes = Writes(easy.board.TakeTraffic());
    EXPECT_EQ(Traffic(writes.begin(), writes.empty() ? writes.end() : writes.begin() + 1), sent) << control;
  }
}

}  // namespace
}  // namespace zth::testing

#include <QAbstractButton>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QTabBar>
#include <QTest>

#include "tests/support/Steps.h"
#include "windows/SharedState.h"

namespace zth::testing {
namespace {

const std::vector<QString> kWindows{"frmPinConfig", "frmGPIO", "frmEasySetup"};

/// The letters that Alt presses in a window as it shows.
std::vector<QString> Mnemonics(const QWidget& window) {
  std::vector<QString> all;
  const auto add = [&all](const QString& text) {
    const QKeySequence keys = QKeySequence::mnemonic(text);
    if (!keys.isEmpty()) all.push_back(keys.toString());
  };
  for (const auto* button : window.findChildren<QAbstractButton*>()) {
    if (button->isVisible()) add(button->text());
  }
  for (const auto* label : window.findChildren<QLabel*>()) {
    if (label->isVisible() && label->buddy() != nullptr) add(label->text());
  }
  for (const auto* bar : window.findChildren<QTabBar*>()) {
    for (int i = 0; i < bar->count(); ++i) add(bar->tabText(i));
  }
  return all;
}

TEST(PinWindows, NoMnemonicStandsTwiceOnAPageOrInTheMenuBar) {
  Desk desk;
  desk.Start();
  std::vector<QString> menus;
  for (const QAction* menu : desk.Main().menuBar()->actions()) {
    menus.push_back(QKeySequence::mnemonic(menu->text()).toString());
  }
  for (const QString& name : kWindows) {
    auto& window = desk.Open(name);
    auto* tabs = window.findChild<QTabWidget*>();
    for (int page = 0; page < (tabs == nullptr ? 1 : tabs->count()); ++page) {
      if (tabs != nullptr) tabs->setCurrentIndex(page);
      std::vector<QString> keys = Mnemonics(window);
      EXPECT_GE(keys.size(), 3U);
      keys.insert(keys.end(), menus.begin(), menus.end());
      EXPECT_EQ(std::set<QString>(keys.begin(), keys.end()).size(), keys.size()) << name.toStdString() << " " << page;
    }
  }
}

/// The controls that Tab visits on the page that shows, from the first on.
QString TabWalk(const QWidget& window, const QString& first) {
  auto* start = window.findChild<QWidget*>(first);
  QStringList names;
  QWidget* each = start;
  do {
    const bool visited = (each->focusPolicy() & Qt::TabFocus) != 0 && each->isVisible() && each->isEnabled();
    if (visited && window.isAncestorOf(each) && each->focusProxy() == nullptr) names << each->objectName();
    each = each->nextInFocusChain();
  } while (each != start);
  return names.join(' ');
}

TEST(PinWindows, TabFollowsTheReadingOrder) {
  Desk desk;
  desk.board.usbChips[0x58][0x10] = 0x1F;  // no pin is taken
  desk.board.usbChips[0x58][0x09] = 0x02;  // GPIO 1 is an output
  desk.Start();
  EXPECT_EQ(TabWalk(desk.Open("frmEasySetup"), "chkOption(0)"),
            "chkOption(0) txtOption chkOption(1) chkOption(2) chkOption(3) chkOption(4) chkOption(5) chkOption(6) "
            "chkStartUp cmdApply cmdClose");
  const QString gpio = TabWalk(desk.Open("frmGPIO"), "chkEnGPIO");
  EXPECT_TRUE(gpio.startsWith("chkEnGPIO cmbDir(0) cmbPolarity(0) cmbStatus(0) cmbDir(1) cmbPolarity(1) cmbDir(2)"))
      << gpio.toStdString();
  EXPECT_TRUE(gpio.endsWith("cmbDir(7) cmbPolarity(7) cmdCancel")) << gpio.toStdString();
  auto& pins = desk.Open("frmPinConfig");
  EXPECT_EQ(TabWalk(pins, "optEasy(0)"),
            "optEasy(0) optEasy(1) optEasy(2) optEasy(3) optEasy(4) cmdEasyApply cmdClose(0) qt_tabwidget_tabbar");
  desk.Get<QTabWidget>(pins, "SSTab1").setCurrentIndex(1);
  EXPECT_EQ(TabWalk(pins, "cmbPins1234_31_32"),
            "cmbPins1234_31_32 cmbPin1 cmbPin2 cmbPin3 cmbPin4 cmbPin31 cmbPin32 cmbPins1516 cmbPin15 cmbPins1920 "
            "cmbPin20 cmbPin13 cmbPin27 cmbPin28 cmbPin29 cmbPin7 cmbPin8 cmbPin21 cmbPin22 cmbPin23 cmbPin24 "
            "cmbPin25 cmbPin26 cmdApply cmdClose(1) qt_tabwidget_tabbar");
}

TEST(PinWindows, EveryControlTellsItsRegisterAndItsName) {
  Desk desk;
  desk.Start();
  for (const QString& name : kWindows) {
    auto& window = desk.Open(name);
    for (const auto* list : window.findChildren<QComboBox*>()) {
      EXPECT_EQ(list->toolTip().left(2), "0x") << list->objectName().toStdString();
      bool named = !list->accessibleName().isEmpty();
      for (const auto* label : window.findChildren<QLabel*>()) named = named || label->buddy() == list;
      EXPECT_TRUE(named) << list->objectName().toStdString();
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
  auto& setup = desk.Open("frmEasySetup");
  QTest::keyClick(&setup, Qt::Key_Escape);
  EXPECT_EQ(desk.Main().FindWindow("frmEasySetup"), nullptr);
  EXPECT_TRUE(desk.board.TakeTraffic().empty());
  Desk::Settle();
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
  QTest::keyClick(&pin7, Qt::Key_Escape);
  EXPECT_EQ(desk.Main().FindWindow("frmPinConfig"), nullptr);
}

}  // namespace
}  // namespace zth::testing

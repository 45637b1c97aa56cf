#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QRegularExpression>
#include <QTabBar>
#include <QTest>

#include "chip/ChipState.h"
#include "chip/Measurements.h"
#include "chip/PinModel.h"
#include "tests/support/Steps.h"
#include "windows/SharedState.h"
#include "windows/config/frmGPIO.h"

namespace zth::testing {
namespace {

TEST(PinConfig, ApplyWritesFourRegistersEachWithItsEffectOnThePinsAndTheBoard) {
  for (const auto buses : {Desk::Buses::Usb, Desk::Buses::Smbus}) {
    WindowDesk desk("frmPinConfig", buses);
    // GPIO2 opens a switch of device 48 with the first write, GPIO5 one of device 4A only with the last.
    EXPECT_EQ(desk.Sent("cmbPin2=0; cmbPin31=0; cmdApply"),
              T("W10=77 B10+4 P4A=3F P48=FD W11=CE B10+4 P4A=3F P48=FD W12=42 B10+4 P4A=3F P48=FD W13=F4 B10+4 P4A=2F "
                "P48=FD"));
    EXPECT_EQ(chip::Model.PinFunctions.Pin2 + chip::Model.PinFunctions.Pin31, 0);
    EXPECT_TRUE(desk.IsOpen()) << "Apply leaves the window open";
  }
}

TEST(PinConfig, AGroupDisablesItsPinsButKeepsTheirBits) {
  const std::vector<std::pair<QString, QStringList>> groups{
      {"cmbPins1234_31_32", {"cmbPin1", "cmbPin2", "cmbPin3", "cmbPin31", "cmbPin32", "cmbPin4"}},
      {"cmbPins1516", {"cmbPin15"}},
      {"cmbPins1920", {"cmbPin20"}},
  };
  WindowDesk desk("frmPinConfig", "10=9F");  // VIDs enabled, no diodes: in effect as soon as the window is open
  for (unsigned shown = 0b100;; shown = (shown + 1) % 8) {  // one bit for each group that shows its first item
    QStringList expected;
    for (std::size_t g = 0; g < groups.size(); ++g) {
      const bool first = (shown >> (2 - g) & 1) != 0;
      desk.Do(groups[g].first + (first ? "=0" : "=1"));
      if (first) expected << groups[g].second;
    }
    QStringList taken;
    for (const auto* label : desk.window->findChildren<QLabel*>(QRegularExpression("^lblPin"))) {
      EXPECT_EQ(label->isEnabled(), label->buddy()->isEnabled()) << label->text().toStdString();
      if (!label->isEnabled()) taken << label->buddy()->objectName();
    }
    expected.sort();
    taken.sort();
    EXPECT_EQ(taken, expected) << shown;
    if (shown == 0b011) break;
  }
  desk.Do("cmbPins1234_31_32=0; cmdApply");
  EXPECT_EQ(desk.board.Chip()[0x10], 0xFF) << "greyed lists are sent like any other";
  EXPECT_EQ(desk.board.Chip()[0x13], 0xFC);
}

TEST(PinConfig, OpenWindowsFollowAnApplyAndClosedOnesAreNotTouched) {
  for (const auto& [limitsOpen, gpioOpen] : {std::pair{true, true}, {true, false}, {false, true}, {false, false}}) {
    WindowDesk desk("frmPinConfig", Desk::Buses::Usb);
    auto* limits = limitsOpen ? &desk.Open("frmLimits") : nullptr;
    auto* gpio = gpioOpen ? &desk.Open("frmGPIO") : nullptr;
    const auto reload = [&] {
      if (limits != nullptr) limits->Form_Load();
      return desk.board.TakeTraffic();
    };
    const std::string hook = " B10+4 P4A=3F P48=FE ";
    const Traffic applied = desk.Sent("cmbPin1=0; cmdApply");
    EXPECT_EQ(applied, Concat(T("W10=6F" + hook + "W11=CE" + hook + "W12=42" + hook + "W13=FC" + hook), reload(),
                              T(gpioOpen ? "B09+2 RBF" : "")));
    EXPECT_TRUE(gpio == nullptr || Desk::Checked(*gpio, "chkPinEn(0)")) << "at once, without the timer";
    const Traffic easy = desk.Sent("optEasy(4)=1; cmdEasyApply");
    EXPECT_EQ(easy, Concat(T("W14=10" + hook + "B10+5"), reload()));
  }
}

TEST(PinConfig, AnEasyApplyShowsWhatTheChipHasSet) {
  WindowDesk desk("frmPinConfig");
  desk.Do("cmbPin7=0; optEasy(2)=1");  // not applied: lost when the window is read
  desk.board.Chip()[0x10] = 0x81;
  EXPECT_EQ(desk.Sent("cmdEasyApply"), T("W14=04 B10+4 P4A=3F P48=F0 B10+5"));
  EXPECT_EQ(desk.Held("cmbPins1234_31_32 cmbPin7"), "0|1");
  EXPECT_FALSE(desk.Get<QWidget>(*desk.window, "cmbPin1").isEnabled());
  EXPECT_TRUE(desk.Get<QWidget>(*desk.window, "cmbPin15").isEnabled());
}

TEST(PinConfig, TheHighestEasyOptionOfTheChipIsSelectedAndOnlyItsDetailsAreVisible) {
  const std::vector<std::tuple<std::uint8_t, int, int>> cases{
      {0x00, -1, 0x00}, {0x01, 0, 0x01}, {0x02, 1, 0x02}, {0x05, 2, 0x04},
      {0xE8, 3, 0x08},  {0xFF, 4, 0x10}, {0xE0, 4, 0x10},  // no option's bit: the selection stays
  };
  WindowDesk desk("frmPinConfig", "14=00");
  EXPECT_EQ(desk.Held("SSTab1"), "0");
  for (const auto& [easyConfig, selected, sent] : cases) {
    desk.board.Chip()[0x14] = easyConfig;
    desk.window->Form_Load();
    for (int i = 0; i < 5; ++i) {
      auto& details = desk.Get<QListWidget>(*desk.window, QString("List1(%1)").arg(i));
      EXPECT_EQ(desk.Held(QString("optEasy(%1)").arg(i)), i == selected ? "1" : "0") << int{easyConfig};
      EXPECT_EQ(details.isHidden(), i != selected) << int{easyConfig};
    }
    desk.Do("cmdEasyApply");
    EXPECT_EQ(desk.board.Chip()[0x14], sent);
  }
}

TEST(PinWindows, EveryControlNamesItsRegister) {
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

TEST(PinWindows, WhatIsNotYetAppliedIsMarkedAndKeepsItsText) {
  WindowDesk desk("frmPinConfig");
  const QTabBar& tabs = *desk.Get<QTabWidget>(*desk.window, "SSTab1").tabBar();
  const QColor plain = tabs.tabTextColor(1);
  // Each Apply clears the changes of its own tab; that of the easy tab also overwrites the pins with what the chip
  // holds.
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

TEST(PinWindows, AnOptionNumberThatReadsAsAnotherIsMarkedWithWhatWillBeWritten) {
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

constexpr char kRefresh[] = "B09+2 RBF";

/// The list for a bit of 0x09, 0x0A or 0xBF.
QString ListOf(int reg, int bit) {
  if (reg == 0xBF) return QString("cmbStatus(%1)").arg(bit);
  const int pin = bit / 2 + (reg == 0x0A ? 4 : 0);
  return QString(bit % 2 == 0 ? "cmbPolarity(%1)" : "cmbDir(%1)").arg(pin);
}

/// If one bit differs from all others so does one list, and correcting it by hand sends all three registers whole.
TEST(Gpio, EachBitMovesOneListAndEachListOneBit) {
  for (const auto buses : {Desk::Buses::Usb, Desk::Buses::Smbus}) {
    WindowDesk desk("frmGPIO", buses);
    for (int each = 0; each < 48; ++each) {
      const int reg = std::array{0x09, 0x0A, 0xBF}[static_cast<std::size_t>(each % 3)];
      const int bit = each / 3 % 8;
      const std::string around = each < 24 ? "00" : "FF";
      auto& registers = desk.board.Chip();
      Put(registers, "09=" + around + " 0A=" + around + " BF=" + around);
      registers[static_cast<std::size_t>(reg)] ^= static_cast<std::uint8_t>(1 << bit);
      desk.Advance(550);
      for (int other = 0; other < 24; ++other) {
        const QString list = ListOf(std::array{0x09, 0x0A, 0xBF}[static_cast<std::size_t>(other % 3)], other / 3);
        EXPECT_EQ(desk.Held(list), (each < 24) == (list == ListOf(reg, bit)) ? "1" : "0") << list.toStdString() << each;
      }
      EXPECT_EQ(desk.Sent(ListOf(reg, bit) + (each < 24 ? "=0" : "=1")),
                T("W09=" + around + " W0A=" + around + " WBF=" + around));
    }
  }
}

TEST(Gpio, EnableChangesOnlyItsOwnBit) {
  for (const auto& [before, shown, sent] :
       {std::tuple{"03=00", "0", "R03 W03=01"}, {"03=5A", "0", "R03 W03=5B"}, {"03=FF", "1", "R03 W03=FE"}}) {
    WindowDesk desk("frmGPIO", before);
    EXPECT_EQ(desk.Held("chkEnGPIO"), shown);
    EXPECT_EQ(desk.Sent("chkEnGPIO"), T(sent));
  }
}

TEST(Gpio, AnOutputHasAStatusListAndAnInputATextWhichSwapAtTheNextRefresh) {
  WindowDesk desk("frmGPIO", "09=08 BF=05");  // GPIO 2 is an output
  // By the steps and by the time that passes.
  for (const auto& [direction, wait, outputs] : {std::tuple{"0", 0, 0x02}, {"1", 0, 0x02}, {"1", 550, 0x06}}) {
    desk.Do(QString("cmbDir(2)=") + direction);
    desk.Advance(wait);
    for (int i = 0; i < 8; ++i) {
      const bool output = (outputs >> i & 1) != 0;
      EXPECT_EQ(desk.Get<QWidget>(*desk.window, QString("cmbStatus(%1)").arg(i)).isVisible(), output) << i;
      EXPECT_EQ(desk.Get<QLabel>(*desk.window, QString("lblStatus(%1)").arg(i)).isVisible(), !output) << i;
    }
    EXPECT_EQ(desk.Held("lblStatus(0) lblStatus(3)"), "Inactive|Active");
  }
  desk.board.Chip()[0xBF] = 0x08;
  desk.Advance(550);
  EXPECT_EQ(desk.Held("lblStatus(0) lblStatus(3)"), "Active|Inactive");
}

TEST(Gpio, ThePinsUsedAsGpioAreTickedWhateverVidIs) {
  WindowDesk desk("frmGPIO");
  for (const auto& [registers, ticked] : {std::pair{"10=7F 13=FC", "0|0|0|0|0|0|0|0"},
                                          {"10=6B 13=F4", "1|0|1|0|1|0|0|0"},
                                          {"10=75 13=F8", "0|1|0|1|0|1|0|0"},
                                          {"10=EF 13=3C", "1|0|0|0|0|0|1|0"},
                                          {"10=77 13=CC", "0|1|0|0|0|0|0|1"},
                                          {"10=7F 13=7C", "0|0|0|0|0|0|0|0"},
                                          {"10=7F 13=DC", "0|0|0|0|0|0|0|0"}}) {
    Put(desk.board.Chip(), registers);
    chip::ReadPinConfiguration();
    desk.board.TakeTraffic();
    dynamic_cast<windows::frmGPIO&>(*desk.window).UpdateGPIOStatus();
    EXPECT_EQ(desk.board.TakeTraffic(), T(kRefresh)) << "the ticks cost no transfer";
    EXPECT_EQ(desk.Held("chkPinEn(0..7)"), ticked) << registers;
  }
  for (int i = 0; i < 8; ++i) {
    EXPECT_FALSE(desk.Get<QWidget>(*desk.window, QString("chkPinEn(%1)").arg(i)).isEnabled());
  }
}

}  // namespace
}  // namespace zth::testing

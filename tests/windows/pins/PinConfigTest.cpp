#include <QLabel>
#include <QListWidget>
#include <QRegularExpression>

#include "chip/PinModel.h"
#include "tests/support/Steps.h"

namespace zth::testing {
namespace {

TEST(PinConfig, ApplyWritesFourRegistersEachWithItsEffectOnThePinsAndTheBoard) {
  for (const auto buses : {Desk::Buses::Usb, Desk::Buses::Smbus}) {
    WindowDesk desk("frmPinConfig", buses);
    // GPIO2 opens a switch of device 48 with the first write, GPIO5 one of device 4A only with the last.
    EXPECT_EQ(desk.Sent("cmbPin2=0; cmbPin31=0; cmdApply"),
              T("W10=77 B10+4 P4A=3F P48=FD W11=CE B10+4 P4A=3F P48=FD W12=42 B10+4 P4A=3F P48=FD W13=F4 B10+4 P4A=2F "
                "P48=FD"));
    EXPECT_EQ(chip::PinFunctions.Pin2 + chip::PinFunctions.Pin31, 0);
    EXPECT_TRUE(desk.IsOpen()) << "Apply leaves the window open";
  }
}

TEST(PinConfig, AGroupTakesItsPinsAwayButNotTheirBits) {
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

TEST(PinConfig, OpenWindowsFollowAnApplyAndClosedOnesAreLeftAlone) {
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

TEST(PinConfig, AnEasyApplyShowsWhatTheChipHasMadeOfIt) {
  WindowDesk desk("frmPinConfig");
  desk.Do("cmbPin7=0; optEasy(2)=1");  // not applied: lost with the reading
  desk.board.Chip()[0x10] = 0x81;
  EXPECT_EQ(desk.Sent("cmdEasyApply"), T("W14=04 B10+4 P4A=3F P48=F0 B10+5"));
  EXPECT_EQ(desk.Held("cmbPins1234_31_32 cmbPin7"), "0|1");
  EXPECT_FALSE(desk.Get<QWidget>(*desk.window, "cmbPin1").isEnabled());
  EXPECT_TRUE(desk.Get<QWidget>(*desk.window, "cmbPin15").isEnabled());
}

TEST(PinConfig, TheHighestEasyOptionOfTheChipIsSelectedAndItsDetailsAloneAreSeen) {
  const std::vector<std::tuple<std::uint8_t, int, int, const char*>> cases{
      {0x00, -1, 0x00, ""},
      {0x01, 0, 0x01, "Chassis Intrusion Detection"},
      {0x02, 1, 0x02, "Fan2Max function"},
      {0x05, 2, 0x04, "Chassis Intrusion Detecttion"},
      {0xE8, 3, 0x08, "VR_Hot Input"},
      {0xFF, 4, 0x10, "VR_Hot Input"},
      {0xE0, 4, 0x10, "VR_Hot Input"},  // no option's bit: the selection stays
  };
  WindowDesk desk("frmPinConfig", "14=00");
  EXPECT_EQ(desk.Held("SSTab1"), "0");
  for (const auto& [easyConfig, selected, sent, lastLine] : cases) {
    desk.board.Chip()[0x14] = easyConfig;
    desk.window->Form_Load();
    for (int i = 0; i < 5; ++i) {
      auto& details = desk.Get<QListWidget>(*desk.window, QString("List1(%1)").arg(i));
      EXPECT_EQ(desk.Held(QString("optEasy(%1)").arg(i)), i == selected ? "1" : "0") << int{easyConfig};
      EXPECT_EQ(details.isHidden(), i != selected) << int{easyConfig};
      if (i == selected) {
        EXPECT_EQ(details.item(details.count() - 1)->text(), lastLine);
      }
    }
    desk.Do("cmdEasyApply");
    EXPECT_EQ(desk.board.Chip()[0x14], sent);
  }
}

}  // namespace
}  // namespace zth::testing

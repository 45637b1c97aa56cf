#include <set>

#include <QListWidget>

#include "chip/PinModel.h"
#include "tests/windows/pins/PinsGround.h"
#include "windows/SharedState.h"
#include "windows/config/frmPinConfig.h"

namespace zth::testing {
namespace {

TEST(PinConfig, ApplyWritesFourRegistersEachWithItsEffectOnThePinsAndTheBoard) {
  for (const auto buses : {Desk::Buses::Usb, Desk::Buses::Smbus}) {
    WindowDesk desk("frmPinConfig", buses);
    // GPIO2 opens a switch of device 48 with the first write, GPIO5 one of device 4A only with the last.
    EXPECT_EQ(desk.Sent("cmbPin2=0; cmbPin31=0; cmdApply"),
              T("W10=77 B10+4 P4A=3F P48=FD W11=CE B10+4 P4A=3F P48=FD W12=42 B10+4 P4A=3F P48=FD W13=F4 B10+4 P4A=2F "
                "P48=FD"));
    EXPECT_EQ(chip::PinFunctions.Pin2, 0);
    EXPECT_EQ(chip::PinFunctions.Pin31, 0);
    EXPECT_TRUE(desk.IsOpen()) << "Apply leaves the window open";
  }
}

TEST(PinConfig, AGroupTakesItsPinsAwayButNotTheirBits) {
  struct Group {
    QString list;
    QStringList pins;
    QList<int> labels;
  };
  const std::vector<Group> groups{
      {"cmbPins1234_31_32", {"cmbPin1", "cmbPin2", "cmbPin3", "cmbPin4", "cmbPin31", "cmbPin32"}, {0, 1, 2, 3, 22, 23}},
      {"cmbPins1516", {"cmbPin15"}, {7}},
      {"cmbPins1920", {"cmbPin20"}, {12}},
  };
  WindowDesk desk("frmPinConfig", "10=9F");  // VIDs enabled, no diodes: in effect as soon as the window is open
  const auto taken = [&](const QString& kind) {
    std::set<QString> names;
    for (const QWidget* each : desk.window->findChildren<QWidget*>()) {
      if (!each->isEnabled() && each->objectName().startsWith(kind)) names.insert(each->objectName());
    }
    return names;
  };
  for (unsigned shown = 0b100;; shown = (shown + 1) % 8) {  // one bit for each group that shows its first item
    std::set<QString> lists;
    std::set<QString> labels;
    for (std::size_t g = 0; g < groups.size(); ++g) {
      const bool first = (shown >> (2 - g) & 1) != 0;
      desk.Do(groups[g].list + (first ? "=0" : "=1"));
      if (!first) continue;
      lists.insert(groups[g].pins.begin(), groups[g].pins.end());
      for (const int label : groups[g].labels) labels.insert(QString("lblPin(%1)").arg(label));
    }
    EXPECT_EQ(taken("cmb"), lists) << shown;
    EXPECT_EQ(taken("lblPin"), labels) << shown;
    if (shown == 0b011) break;
  }
  desk.Do("cmbPins1234_31_32=0; cmdApply");
  EXPECT_EQ(desk.board.Chip()[0x10], 0xFF) << "greyed lists are sent like any other";
  EXPECT_EQ(desk.board.Chip()[0x13], 0xFC);
}

TEST(PinConfig, OpenWindowsFollowAnApplyAndClosedOnesAreLeftAlone) {
  WindowDesk desk("frmGPIO", Desk::Buses::Usb);
  ProbeDesktop desktop;
  ProbeWindow limits("frmLimits", {desk.services, desktop});
  limits.onLoad = [&] { desk.board.traffic.emplace_back("limits"); };
  desktop.windows = {{"frmLimits", &limits}, {"frmGPIO", desk.window}};
  windows::frmPinConfig window({desk.services, desktop});
  window.Form_Load();
  const auto sent = [&](const char* steps) {
    desk.board.TakeTraffic();
    Do(window, steps);
    return desk.board.TakeTraffic();
  };
  const std::string hook = " B10+4 P4A=3F P48=FE ";
  const Traffic individual = T("W10=6F" + hook + "W11=CE" + hook + "W12=42" + hook + "W13=FC" + hook);
  const Traffic easy = T("W14=10" + hook + "B10+5");
  const Traffic reload{"limits"};
  EXPECT_EQ(desk.Held("chkPinEn(0)"), "0");
  for (const auto& [limitsOpen, gpioOpen] : {std::pair{true, true}, {true, false}, {false, true}, {false, false}}) {
    windows::LimitsOpen = limitsOpen;
    windows::GpioOpen = gpioOpen;
    const Traffic limitsFollow = limitsOpen ? reload : Traffic{};
    EXPECT_EQ(sent("cmbPin1=0; cmdApply"), Concat(individual, limitsFollow, T(gpioOpen ? "B09+2 RBF" : "")));
    EXPECT_EQ(desk.Held("chkPinEn(0)"), "1") << "at once, without the timer";
    EXPECT_EQ(sent("optEasy(4)=1; cmdEasyApply"), Concat(easy, limitsFollow));
  }
  // The flags alone, with no such window to be found, break nothing.
  windows::LimitsOpen = windows::GpioOpen = true;
  desktop.windows.clear();
  Do(window, "cmdApply; cmdEasyApply");
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
  struct Case {
    int easyConfig, selected, sent;
    const char* lastLine;
  };
  const std::vector<Case> cases{
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
  for (const Case& row : cases) {
    desk.board.Chip()[0x14] = static_cast<std::uint8_t>(row.easyConfig);
    desk.window->Form_Load();
    for (int i = 0; i < 5; ++i) {
      auto& details = desk.Get<QListWidget>(*desk.window, QString("List1(%1)").arg(i));
      EXPECT_EQ(desk.Held(QString("optEasy(%1)").arg(i)), i == row.selected ? "1" : "0") << row.easyConfig;
      EXPECT_EQ(details.isHidden(), i != row.selected) << row.easyConfig;
      if (i == row.selected) {
        EXPECT_EQ(details.item(details.count() - 1)->text(), row.lastLine);
      }
    }
    desk.Do("cmdEasyApply");
    EXPECT_EQ(desk.board.Chip()[0x14], row.sent);
  }
}

TEST(PinConfig, AFailureInTheMiddleOfAnApplyEndsThereAndThen) {
  const auto nothing = [](Desk&, windows::ChildWindow&) {};
  const auto openGpio = [](Desk& desk, windows::ChildWindow&) { desk.Open("frmGPIO"); };
  EXPECT_EQ(SweepFailures("frmPinConfig", openGpio,
                          [](Desk& desk, windows::ChildWindow& window) { desk.Press(window, "cmdApply"); }),
            18);
  EXPECT_EQ(SweepFailures("frmPinConfig", nothing,
                          [](Desk& desk, windows::ChildWindow& window) { desk.Press(window, "cmdEasyApply"); }),
            5);
}

}  // namespace
}  // namespace zth::testing

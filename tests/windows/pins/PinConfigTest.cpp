#include <random>

#include <QComboBox>
#include <QLabel>
#include <QListWidget>
#include <QTabWidget>

#include "chip/PinModel.h"
#include "link/USBStuff.h"
#include "tests/windows/pins/PinsGround.h"
#include "windows/SharedState.h"
#include "windows/config/frmPinConfig.h"

namespace zth::testing {
namespace {

/// A list as the chip's documents tell it, apart from the window's own rows.
struct ListFacts {
  const char* name;
  int label;
  int reg;
  int high;
  int low;
  bool firstIsOne = false;
  bool lastTwoAlike = false;
};

constexpr std::array kLists{
    ListFacts{"cmbPins1234_31_32", 10, 0x10, 7, 7, true},
    ListFacts{"cmbPins1516", 8, 0x10, 6, 6, true},
    ListFacts{"cmbPins1920", 9, 0x10, 5, 5, true},
    ListFacts{"cmbPin1", 0, 0x10, 4, 4},
    ListFacts{"cmbPin2", 1, 0x10, 3, 3},
    ListFacts{"cmbPin3", 2, 0x10, 2, 2},
    ListFacts{"cmbPin4", 3, 0x10, 1, 1},
    ListFacts{"cmbPin7", 4, 0x10, 0, 0},
    ListFacts{"cmbPin8", 5, 0x11, 7, 7},
    ListFacts{"cmbPin13", 6, 0x11, 6, 6},
    ListFacts{"cmbPin15", 7, 0x11, 5, 5},
    ListFacts{"cmbPin20", 12, 0x11, 4, 4},
    ListFacts{"cmbPin21", 13, 0x11, 3, 3},
    ListFacts{"cmbPin22", 14, 0x11, 2, 2},
    ListFacts{"cmbPin23", 15, 0x11, 1, 0},
    ListFacts{"cmbPin24", 16, 0x12, 7, 6},
    ListFacts{"cmbPin25", 17, 0x12, 5, 4, false, true},
    ListFacts{"cmbPin26", 18, 0x12, 3, 2, false, true},
    ListFacts{"cmbPin27", 19, 0x12, 1, 1},
    ListFacts{"cmbPin28", 20, 0x13, 7, 6, false, true},
    ListFacts{"cmbPin29", 21, 0x13, 5, 4, false, true},
    ListFacts{"cmbPin31", 22, 0x13, 3, 3},
    ListFacts{"cmbPin32", 23, 0x13, 2, 2},
};

/// What an Apply with nothing touched makes of the registers.
FakeBoard::Registers AfterUntouchedApply(FakeBoard::Registers registers) {
  const auto settle = [&registers](std::size_t reg, int low) {
    if ((registers[reg] >> low & 3) == 2) registers[reg] = static_cast<std::uint8_t>(registers[reg] | 1 << low);
  };
  settle(0x12, 4);
  settle(0x12, 2);
  settle(0x13, 6);
  settle(0x13, 4);
  registers[0x12] &= 0xFE;
  registers[0x13] &= 0xFC;
  return registers;
}

const std::vector<std::string> kDefaultSwitches{"usb P 4A=3F", "usb P 48=FF"};

TEST(PinConfig, ReadsFiveRegistersInOneBlockAndWritesNothingWhenItOpens) {
  for (const auto buses : {Desk::Buses::Usb, Desk::Buses::Smbus}) {
    Desk desk(buses);
    desk.Start();
    auto& window = desk.Open("frmPinConfig");
    EXPECT_EQ(desk.board.TakeTraffic(), Block(0x10, 5));
    desk.Press(window, "cmdClose(1)");
    EXPECT_TRUE(desk.board.TakeTraffic().empty());
  }
}

TEST(PinConfig, ShowsEachValueOfAFieldAtItsPositionAndSendsItBack) {
  Desk desk;
  desk.Start();
  auto& window = desk.Open("frmPinConfig");
  for (const ListFacts& list : kLists) {
    const auto reg = static_cast<std::size_t>(list.reg);
    const unsigned values = 1U << (list.high - list.low + 1);
    const unsigned mask = (values - 1) << list.low;
    ASSERT_EQ(desk.Get<QComboBox>(window, list.name).count(), static_cast<int>(values)) << list.name;
    for (const unsigned around : {0x00U, 0xFFU}) {
      for (unsigned value = 0; value < values; ++value) {
        const int position = static_cast<int>(list.firstIsOne ? 1 - value : value);
        const unsigned sent = list.lastTwoAlike && value == 2 ? 3 : value;
        auto& registers = desk.board.Chip();
        for (std::size_t other = 0x10; other <= 0x14; ++other) registers[other] = static_cast<std::uint8_t>(around);
        registers[reg] = static_cast<std::uint8_t>((around & ~mask) | value << list.low);
        window.Form_Load();
        EXPECT_EQ(desk.Picked(window, list.name), position) << list.name << " shows " << value;

        // The same bits from the window's side, on top of a list that shows something else.
        registers[reg] = static_cast<std::uint8_t>((around & ~mask) | (~(value << list.low) & mask));
        window.Form_Load();
        desk.Pick(window, list.name, position);
        FakeBoard::Registers expected = AfterUntouchedApply(registers);
        expected[reg] = static_cast<std::uint8_t>((expected[reg] & ~mask) | sent << list.low);
        desk.Press(window, "cmdApply");
        EXPECT_EQ(registers, expected) << list.name << " sends " << value;
      }
    }
  }
}

TEST(PinConfig, AnUntouchedApplyLeavesTenThousandRandomChipsAsTheyMustBe) {
  Desk desk;
  desk.Start();
  auto& window = desk.Open("frmPinConfig");
  std::mt19937 random(4718);
  for (int round = 0; round < 10000; ++round) {
    auto& registers = desk.board.Chip();
    for (auto& value : registers) value = static_cast<std::uint8_t>(random());
    const FakeBoard::Registers expected = AfterUntouchedApply(registers);
    window.Form_Load();
    desk.Press(window, "cmdApply");
    ASSERT_EQ(registers, expected) << "round " << round;
    desk.board.TakeTraffic();
  }
}

TEST(PinConfig, ApplyWritesFourRegistersEachWithItsEffectOnThePinsAndTheBoard) {
  for (const auto buses : {Desk::Buses::Usb, Desk::Buses::Smbus}) {
    Desk desk(buses);
    desk.Start();
    auto& window = desk.Open("frmPinConfig");
    desk.Pick(window, "cmbPin2", 0);
    desk.Pick(window, "cmbPin31", 0);
    desk.board.TakeTraffic();
    desk.Press(window, "cmdApply");
    // GPIO2 opens a switch of device 48 with the first write, GPIO5 one of device 4A only with the last.
    const auto hook = [](const char* device0) { return PinHook({device0, "usb P 48=FD"}); };
    EXPECT_EQ(desk.board.TakeTraffic(), Concat(W(0x10, 0x77), hook("usb P 4A=3F"), W(0x11, 0xCE), hook("usb P 4A=3F"),
                                               W(0x12, 0x42), hook("usb P 4A=3F"), W(0x13, 0xF4), hook("usb P 4A=2F")));
    EXPECT_EQ(chip::PinFunctions.Pin2, 0);
    EXPECT_EQ(chip::PinFunctions.Pin31, 0);
    EXPECT_NE(desk.Main().FindWindow("frmPinConfig"), nullptr) << "Apply leaves the window open";
  }
}

struct GroupFacts {
  const char* group;
  std::vector<std::pair<const char*, int>> pins;  ///< list and label
};

TEST(PinConfig, AGroupTakesItsPinsAwayButNotTheirBits) {
  const std::vector<GroupFacts> groups{
      {"cmbPins1234_31_32",
       {{"cmbPin1", 0}, {"cmbPin2", 1}, {"cmbPin3", 2}, {"cmbPin4", 3}, {"cmbPin31", 22}, {"cmbPin32", 23}}},
      {"cmbPins1516", {{"cmbPin15", 7}}},
      {"cmbPins1920", {{"cmbPin20", 12}}},
  };
  Desk desk;
  desk.board.usbChips[0x58][0x10] = 0x9F;  // VIDs enabled, no diodes: in effect as soon as the window is open
  desk.Start();
  auto& window = desk.Open("frmPinConfig");
  const auto taken = [&] {
    std::set<std::string> names;
    for (const ListFacts& list : kLists) {
      const bool enabled = desk.Get<QComboBox>(window, list.name).isEnabled();
      EXPECT_EQ(desk.Get<QLabel>(window, QString("lblPin(%1)").arg(list.label)).isEnabled(), enabled) << list.name;
      if (!enabled) names.insert(list.name);
    }
    return names;
  };
  for (unsigned shown = 0b100;; shown = (shown + 1) % 8) {  // one bit for each group that shows its first item
    std::set<std::string> expected;
    for (std::size_t g = 0; g < groups.size(); ++g) {
      const bool first = (shown >> (2 - g) & 1) != 0;
      desk.Pick(window, groups[g].group, first ? 0 : 1);
      for (const auto& [list, label] : groups[g].pins) {
        if (first) expected.insert(list);
      }
    }
    EXPECT_EQ(taken(), expected) << shown;
    if (shown == 0b011) break;
  }
  desk.Pick(window, "cmbPins1234_31_32", 0);
  desk.Press(window, "cmdApply");
  EXPECT_EQ(desk.board.Chip()[0x10], 0xFF) << "greyed lists are sent like any other";
  EXPECT_EQ(desk.board.Chip()[0x13], 0xFC);
}

TEST(PinConfig, OpenWindowsFollowAnApplyAndClosedOnesAreLeftAlone) {
  Desk desk(Desk::Buses::Usb);
  desk.Start();
  auto& gpio = desk.Open("frmGPIO");
  ProbeDesktop desktop;
  ProbeWindow limits("frmLimits", {desk.services, desktop});
  limits.onLoad = [&] { desk.board.traffic.emplace_back("limits"); };
  desktop.windows = {{"frmLimits", &limits}, {"frmGPIO", &gpio}};
  windows::frmPinConfig window({desk.services, desktop});
  window.Form_Load();

  const auto hooks = [](int reg, int value, const char* port) {
    return Concat(W(reg, value), PinHook({"usb P 4A=3F", port}));
  };
  const Traffic individual = Concat(hooks(0x10, 0x6F, "usb P 48=FE"), hooks(0x11, 0xCE, "usb P 48=FE"),
                                    hooks(0x12, 0x42, "usb P 48=FE"), hooks(0x13, 0xFC, "usb P 48=FE"));
  const Traffic easy = Concat(hooks(0x14, 0x10, "usb P 48=FE"), Block(0x10, 5));
  struct Case {
    bool limitsOpen, gpioOpen;
    Traffic afterApply, afterEasyApply;
  };
  const Traffic refresh = Concat(Block(0x09, 2), R(0xBF));
  const std::vector<Case> cases{
      {true, true, Concat("limits", refresh), {"limits"}},
      {true, false, {"limits"}, {"limits"}},
      {false, true, refresh, {}},
      {false, false, {}, {}},
  };
  EXPECT_FALSE(desk.Checked(gpio, "chkPinEn(0)"));
  for (const Case& row : cases) {
    windows::LimitsOpen = row.limitsOpen;
    windows::GpioOpen = row.gpioOpen;
    desk.Pick(window, "cmbPin1", 0);
    desk.board.TakeTraffic();
    desk.Press(window, "cmdApply");
    EXPECT_EQ(desk.board.TakeTraffic(), Concat(individual, row.afterApply));
    EXPECT_TRUE(desk.Checked(gpio, "chkPinEn(0)")) << "at once, without the timer";
    desk.Check(window, "optEasy(4)", true);
    desk.Press(window, "cmdEasyApply");
    EXPECT_EQ(desk.board.TakeTraffic(), Concat(easy, row.afterEasyApply));
  }
  // The flags alone, with no such window to be found, break nothing.
  windows::LimitsOpen = windows::GpioOpen = true;
  desktop.windows.clear();
  desk.Press(window, "cmdApply");
  desk.Press(window, "cmdEasyApply");
}

TEST(PinConfig, AnEasyApplyShowsWhatTheChipHasMadeOfIt) {
  for (const auto buses : {Desk::Buses::Usb, Desk::Buses::Smbus}) {
    Desk desk(buses);
    desk.Start();
    auto& window = desk.Open("frmPinConfig");
    desk.Pick(window, "cmbPin7", 0);  // not applied: lost with the reading
    desk.Check(window, "optEasy(2)", true);
    desk.board.Chip()[0x10] = 0x81;
    desk.board.TakeTraffic();
    desk.Press(window, "cmdEasyApply");
    EXPECT_EQ(desk.board.TakeTraffic(), Concat(W(0x14, 0x04), PinHook({"usb P 4A=3F", "usb P 48=F0"}), Block(0x10, 5)));
    EXPECT_EQ(desk.Picked(window, "cmbPins1234_31_32"), 0);
    EXPECT_EQ(desk.Picked(window, "cmbPin7"), 1);
    EXPECT_FALSE(desk.Get<QComboBox>(window, "cmbPin1").isEnabled());
    EXPECT_TRUE(desk.Get<QComboBox>(window, "cmbPin15").isEnabled());
  }
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
  Desk desk;
  desk.board.usbChips[0x58][0x14] = 0x00;
  desk.Start();
  auto& window = desk.Open("frmPinConfig");
  for (const Case& row : cases) {
    desk.board.Chip()[0x14] = static_cast<std::uint8_t>(row.easyConfig);
    window.Form_Load();
    for (int i = 0; i < 5; ++i) {
      auto& details = desk.Get<QListWidget>(window, QString("List1(%1)").arg(i));
      EXPECT_EQ(desk.Checked(window, QString("optEasy(%1)").arg(i)), i == row.selected) << row.easyConfig;
      EXPECT_EQ(details.isHidden(), i != row.selected) << row.easyConfig;
      if (i == row.selected) {
        EXPECT_EQ(details.item(details.count() - 1)->text(), row.lastLine);
      }
    }
    desk.Press(window, "cmdEasyApply");
    EXPECT_EQ(desk.board.Chip()[0x14], row.sent);
  }
  EXPECT_EQ(desk.Get<QTabWidget>(window, "SSTab1").currentIndex(), 0);
}

}  // namespace
}  // namespace zth::testing

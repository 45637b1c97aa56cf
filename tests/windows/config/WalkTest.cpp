#include "tests/windows/config/ConfigModel.h"
#include "windows/Bindings.h"

namespace zth::testing {
namespace {

/// A table of one box, on a register that the chip may not have.
constexpr bool IsSound(int reg, base::BitField bits) {
  using namespace zth::windows;
  return windows::IsSound(std::array{Check("chkBox", "Box", {static_cast<std::uint8_t>(reg), bits})},
                          std::array{Read(reg)}, std::array{Whole(reg)});
}
static_assert(IsSound(0x03, {0, 1}));
static_assert(!IsSound(0x04, {0, 1}) && !IsSound(0xC7, {0, 1}), "the data sheet has no such register");
static_assert(!IsSound(0x03, {0, 2}), "a box of two bits");

/// A window open on a chip whose registers the test sets.
class Walk : public ::testing::TestWithParam<WindowModel> {
 protected:
  FakeBoard::Registers& Chip() { return desk_.board.Chip(); }
  void LoadWith(const FakeBoard::Registers& registers) {
    Desk::Settle();
    desk_.board.TakeTraffic();
    Chip() = registers;
    desk_.window->Form_Load();
  }

  void ExpectShown(const FakeBoard::Registers& registers) const {
    for (const Control& control : model_.controls) {
      EXPECT_EQ(desk_.Held(control.name),
                Shown(control, registers[static_cast<std::size_t>(control.reg)]).toStdString())
          << control.name.toStdString();
    }
  }

  /// All registers after a load of `before` and Apply with nothing touched.
  FakeBoard::Registers AllUntouched(FakeBoard::Registers before) const {
    for (const auto& [reg, kept] : model_.kept) {
      auto& byte = before[static_cast<std::size_t>(reg)];
      byte = Untouched(model_, reg, byte);
    }
    return before;
  }

  const WindowModel& model_ = GetParam();
  WindowDesk desk_{model_.name};
};

FakeBoard::Registers Filled(std::uint8_t byte) {
  FakeBoard::Registers registers{};
  registers.fill(byte);
  return registers;
}

TEST_P(Walk, EachBitOfTheChipShowsInItsOwnControlAndIsWrittenBackCorrectly) {
  for (const std::uint8_t ground : {std::uint8_t{0x00}, std::uint8_t{0xFF}, std::uint8_t{0xA5}}) {
    for (const auto& [reg, kept] : model_.kept) {
      for (int bit = 0; bit < 8; ++bit) {
        FakeBoard::Registers registers = Filled(ground);
        SCOPED_TRACE("bit " + std::to_string(bit) + " of " + std::to_string(reg));
        registers[static_cast<std::size_t>(reg)] ^= static_cast<std::uint8_t>(1U << bit);
        LoadWith(registers);
        ExpectShown(registers);
        desk_.Do("cmdApply");
        EXPECT_EQ(Chip(), AllUntouched(registers));
      }
    }
  }
}

TEST_P(Walk, EachControlMovesItsOwnBitsAndNoOthers) {
  for (const std::uint8_t ground : {std::uint8_t{0x00}, std::uint8_t{0xFF}, std::uint8_t{0x33}}) {
    for (const Control& control : model_.controls) {
      if (control.hidden) continue;
      const int values = control.look == Look::Duty ? 101 : 1 << control.width;
      for (int value = 0; value < values; ++value) {
        LoadWith(Filled(ground));
        desk_.Do(QString("%1=%2; cmdApply").arg(control.name).arg(value));
        FakeBoard::Registers expected = AllUntouched(Filled(ground));
        auto& byte = expected[static_cast<std::size_t>(control.reg)];
        byte = static_cast<std::uint8_t>((byte & ~control.Mask()) |
                                         (Sent(control, QString::number(value)) << control.low));
        ASSERT_EQ(Chip(), expected) << control.name.toStdString() << " at " << value << " over " << int{ground};
      }
    }
  }
}

TEST_P(Walk, ChangesElsewhereBeforeApplyAreKeptInBitsWithoutAControl) {
  const FakeBoard::Registers loaded = Filled(0x5A);
  LoadWith(loaded);
  Chip() = Filled(0xA5);
  desk_.Do("cmdApply");
  FakeBoard::Registers expected = Filled(0xA5);
  for (const auto& [reg, kept] : model_.kept) {
    expected[static_cast<std::size_t>(reg)] =
        static_cast<std::uint8_t>((Untouched(model_, reg, 0x5A) & ~kept) | (0xA5 & kept));
  }
  EXPECT_EQ(Chip(), expected);
}

INSTANTIATE_TEST_SUITE_P(Windows, Walk, ::testing::ValuesIn(AllWindows()),
                         [](const auto& row) { return row.param.name.toStdString(); });

// On a chip with default registers. After writing a PWM's configuration the program reads its behaviour field.
const std::pair<const char*, const char*> kApplies[] = {
    {"frmGenConfig", "R01 W01=01 R02 W02=80 R03 W03=00 R0C W0C=40"},
    {"frmFanConfig",
     "W07=00 W08=0F R01 W01=01 R02 W02=80 W2C=BF R0D W0D=00 W1A=00 W1B=00 W21=11 R21 W22=31 R22 W23=51 R23 W24=71 R24 "
     "W25=90 W26=90 W28=80 W29=80 W2A=80 W2B=80"},
    {"frmVoltConfig", "W18=FE W19=37"},
    {"frmTherm", "R03 W03=00 R0D W0D=00 W0E=1F W0F=1F W54=44 W55=44"},
    {"frmEDO", "R16 W16=00 W37=00 W38=00"},
};

TEST(ConfigTransfers, ApplyWritesInOrderOnBothLinksOkAlsoClosesAndCancelOnlyCloses) {
  for (const auto buses : {Desk::Buses::Usb, Desk::Buses::Smbus}) {
    for (const auto& [window, applies] : kApplies) {
      SCOPED_TRACE(window);
      WindowDesk desk(window, buses);
      EXPECT_EQ(desk.Sent("cmdApply"), T(applies));
      EXPECT_TRUE(desk.IsOpen()) << "Apply leaves the window open";
      EXPECT_EQ(desk.Sent(Model(window).controls.front().name + "=1; cmdCancel"), Traffic{});
      EXPECT_FALSE(desk.IsOpen());
      desk.Reopen();
      EXPECT_EQ(desk.Sent("cmdOK"), T(applies));
      EXPECT_FALSE(desk.IsOpen());
    }
  }
}

TEST(ConfigTexts, AreWrittenAsTheirLeadingNumbersLimitedToAByte) {
  // Over 0x44 in frmTherm: a number too large for its field spills into its neighbour, a fraction of the upper field
  // into the lower one.
  const std::vector<std::tuple<const char*, const char*, std::size_t, int>> rows{
      {"frmFanConfig", "txtMinPWM(3)=12ab", 0x2B, 31}, {"frmFanConfig", "txtMinPWM(0)=", 0x28, 0},
      {"frmFanConfig", "txtMinPWM(1)=ab", 0x29, 0},    {"frmFanConfig", "txtMinPWM(2)=101", 0x2A, 255},
      {"frmFanConfig", "txtMinPWM(2)=-1", 0x2A, 0},    {"frmFanConfig", "txtMaxPWM=1E300", 0x2C, 255},
      {"frmTherm", "txtHyst(1)=5", 0x54, 0x54},        {"frmTherm", "txtHyst(0)=18", 0x54, 0x52},
      {"frmTherm", "txtHyst(1)=16", 0x54, 0xFF},       {"frmTherm", "txtHyst(3)=2.5", 0x55, 0x2C},
      {"frmTherm", "txtHyst(2)=2.5", 0x55, 0x42},      {"frmTherm", "txtHyst(2)=3.5", 0x55, 0x44},
      {"frmTherm", "txtHyst(0)=-3", 0x54, 0x40},       {"frmTherm", "txtHyst(2)=x", 0x55, 0x40},
      {"frmTherm", "txtHyst(0)=300", 0x54, 0xFF}};
  for (const auto& [window, text, reg, sent] : rows) {
    WindowDesk desk(window);
    desk.Do(QString(text) + "; cmdApply");
    EXPECT_EQ(desk.board.Chip()[reg], sent) << text;
  }
}

}  // namespace
}  // namespace zth::testing

#include <gmock/gmock.h>

#include "chip/RegMapStuff.h"
#include "link/Asker.h"
#include "link/Declarations.h"
#include "link/USBStuff.h"
#include "tasks/PutBack.h"
#include "tasks/TasksState.h"
#include "tests/support/Desk.h"

namespace zth::testing {
namespace {

using tasks::Left;
using tasks::Reason;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// The link and the journal of its traffic, on a fake board whose registers keep what is written.
class JournalTest : public ::testing::Test {
 protected:
  JournalTest() {
    desk.Start();
    OnUsb();
  }

  static void OnUsb() { link::Bus.InterfaceMode = link::kModeUsb, link::Bus.DeviceAddress = 0x58; }
  static void OnSmbus() { link::Bus.InterfaceMode = link::kModeSmbus, link::Bus.DeviceAddress = 0x2C; }

  /// An action of a user that reads and writes registers, long after the one before.
  void Do(const std::string& who, const std::vector<std::pair<int, int>>& writes, bool reads = true) {
    desk.clock.WaitMs(2000);
    const link::Asker asker(link::Asker::Kind::Action, [&] { return who; });
    for (const auto& [reg, value] : writes) {
      if (reads) link::ReadRegister(link::Bus.DeviceAddress, reg);
      link::WriteRegisterValue(link::Bus.DeviceAddress, reg, value);
    }
  }

  static tasks::Journal& TheJournal() { return *tasks::Work.journal; }
  static tasks::ChipKey Chip() { return {link::Bus.InterfaceMode, static_cast<std::uint8_t>(link::Bus.DeviceAddress)}; }
  /// Puts back what the session has changed in the chip in use: what was not put back.
  std::vector<Left> PutBack() {
    const auto plan = tasks::PlanPutBack(TheJournal().ChangesOf(Chip()));
    desk.board.traffic.clear();
    const auto left = tasks::RunPutBack(plan);
    written.clear();
    for (const std::string& transfer : desk.board.traffic) {
      if (transfer.find(" W ") != std::string::npos) written.push_back(transfer);
    }
    return left;
  }
  std::uint8_t& At(int reg) { return desk.board.Chip()[static_cast<std::size_t>(reg)]; }

  Desk desk;
  Traffic written;
};

TEST_F(JournalTest, AnActionIsAllWritesOfOneHandlerAndTheTicksBetweenThemArePartOfNone) {
  EXPECT_THAT(TheJournal().Actions(), IsEmpty()) << "the start writes no register";
  Do("frmA cmdApply", {{0x48, 0x90}, {0x49, 0x91}, {0x48, 0x92}});
  desk.clock.Advance(3000);
  Do("frmA cmdApply", {{0x4A, 0x93}});
  ASSERT_EQ(TheJournal().Actions().size(), 2U);
  const tasks::Action& first = TheJournal().Actions()[0];
  EXPECT_EQ(first.who, "frmA cmdApply");
  ASSERT_EQ(first.registers.size(), 2U);
  EXPECT_EQ(first.registers[0].reg, 0x48);
  EXPECT_EQ(first.registers[0].before, 0x95);
  EXPECT_EQ(first.registers[0].after, 0x92);
  EXPECT_EQ(TheJournal().Actions()[1].registers[0].before, 0x95);
  // A slider that is dragged.
  Do("frmB Slider", {{0xAA, 10}});
  for (int value = 11; value < 15; ++value) {
    desk.clock.WaitMs(100);
    const link::Asker asker(link::Asker::Kind::Action, [] { return "frmB Slider"; });
    link::WriteRegisterValue(0x58, 0xAA, value);
  }
  ASSERT_EQ(TheJournal().Actions().size(), 3U);
  EXPECT_EQ(TheJournal().Actions()[2].registers[0].after, 14);
}

TEST_F(JournalTest, EveryRegisterGetsItsFirstValueBackInReverseOrder) {
  Do("a", {{0x48, 1}, {0x30, 2}});
  Do("b", {{0x48, 3}, {0x5C, 4}});
  Do("c", {{0x30, 0x00}});  // as it was found
  EXPECT_THAT(PutBack(), IsEmpty());
  EXPECT_THAT(written, ElementsAre("usb W 58:5C=9A", "usb W 58:48=95"));
  TheJournal().ForgetAll(Chip());
  EXPECT_THAT(TheJournal().ChangesOf(Chip()), IsEmpty());
}

TEST_F(JournalTest, EachChipHasItsOwnChanges) {
  desk.board.AddSmbusChip(0x2C);
  Do("a", {{0x48, 1}});
  OnSmbus();
  Do("a", {{0x48, 2}, {0x49, 2}});
  EXPECT_THAT(PutBack(), IsEmpty());
  EXPECT_THAT(written, ElementsAre("smb W 2C:49=95", "smb W 2C:48=95"));
  EXPECT_EQ(desk.board.usbChips[0x58][0x48], 1);
  TheJournal().ForgetAll(Chip());
  OnUsb();
  EXPECT_EQ(TheJournal().ChangesOf(Chip()).size(), 1U);
}

TEST_F(JournalTest, AFieldThatSomethingElseHasChangedStays) {
  At(0x21) = 0b001'0'0'001;  // behaviour 1, spin-up 1
  Do("a", {{0x21, 0b011'0'1'101}});
  At(0x21) = 0b111'0'1'101;  // the behaviour is somebody else's now
  EXPECT_THAT(PutBack(), ElementsAre(Left{0x21, 0b111'0'0'000, Reason::Changed}));
  EXPECT_EQ(At(0x21), 0b111'0'0'001);
  EXPECT_EQ(tasks::FieldNames(0x21, 0b111'0'1'000), "Bhvr, Slow");
  // A number is one field, even if only one of its bits differs.
  Do("b", {{0x48, 0x94}});
  At(0x48) = 0x9C;
  EXPECT_THAT(PutBack(), ::testing::Contains(Left{0x48, 0xFF, Reason::Changed}));
  EXPECT_EQ(At(0x48), 0x9C);
}

TEST_F(JournalTest, WhatCannotBePutBackIsListedBeforehand) {
  At(0x01) = 0x01;
  Do("a", {{0x01, 0x61}, {0x3E, 7}});
  Do("b", {{0x4B, 7}}, false);
  Do("c", {{0x16, 8}}, false);
  const auto plan = tasks::PlanPutBack(TheJournal().ChangesOf(Chip()));
  EXPECT_THAT(plan.left,
              ElementsAre(Left{0x16, 0xFF, Reason::NeverRead}, Left{0x4B, 0xFF, Reason::NeverRead},
                          Left{0x3E, 0xFF, Reason::NotWrittenBack}, Left{0x01, 0x40, Reason::NotWrittenBack}));
  EXPECT_THAT(PutBack(), IsEmpty());
  EXPECT_THAT(written, ElementsAre("usb W 58:01=41"));
}

TEST_F(JournalTest, WhatTheChipDoesNotTakeIsNamed) {
  Do("a", {{0x48, 1}, {0x49, 2}});
  desk.board.onTransfer = [this] { At(0x48) = 1; };
  EXPECT_THAT(PutBack(), ElementsAre(Left{0x48, 0xFF, Reason::NotTaken}));
  EXPECT_EQ(At(0x49), 0x95);
}

TEST_F(JournalTest, AnEasyOptionComesBackWithItsPins) {
  const std::array<std::uint8_t, 5> found{At(0x10), At(0x11), At(0x12), At(0x13), At(0x14)};
  Do("frmEasySetup cmdApply", {{0x14, 0x04}});
  for (const int reg : {0x10, 0x11, 0x12, 0x13}) At(reg) = 0x55;  // as the chip's option sets them
  const auto changes = TheJournal().ChangesOf(Chip());
  EXPECT_EQ(changes.size(), 5U);
  EXPECT_THAT(PutBack(), IsEmpty());
  EXPECT_THAT(written.front(), "usb W 58:14=01");
  for (std::size_t i = 0; i < found.size(); ++i) EXPECT_EQ(At(0x10 + static_cast<int>(i)), found[i]);
}

TEST_F(JournalTest, WhatTheChipHasMovedComesBackAfterItsControlHasEnded) {
  link::ReadRegisterBlock(0x58, 0x5A, 6);  // as the monitor does
  Do("frmDynamicTmin", {{0x0B, 0x02}});
  At(0x5D) = 0x33;
  EXPECT_THAT(PutBack(), IsEmpty());
  EXPECT_THAT(written, ElementsAre("usb W 58:0B=00", "usb W 58:5D=9A"));
}

TEST_F(JournalTest, PuttingBackIsNoAction) {
  Do("a", {{0x48, 1}});
  {
    const tasks::Journal::Pause pause(TheJournal());
    EXPECT_THAT(PutBack(), IsEmpty());
  }
  TheJournal().Forget(TheJournal().Actions().back());
  EXPECT_THAT(TheJournal().Actions(), IsEmpty());
}

}  // namespace
}  // namespace zth::testing

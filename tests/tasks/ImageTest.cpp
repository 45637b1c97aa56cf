#include <array>
#include <map>
#include <random>
#include <set>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "chip/ReadEffects.h"
#include "chip/RegisterNames.h"
#include "link/Declarations.h"
#include "tasks/ChangeWords.h"
#include "tasks/Comparison.h"
#include "tasks/WriteImage.h"
#include "tests/support/Desk.h"
#include "tests/tasks/RandomImage.h"

namespace zth::testing {
namespace {

using tasks::Left;
using tasks::Lock;
using tasks::Reason;
using tasks::RegisterImage;
using tasks::Wanted;
using tasks::WriteStep;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// The link on a fake board whose registers keep what is written.
class ImageTest : public ::testing::Test {
 protected:
  ImageTest() {
    desk.Start();
    link::Bus.InterfaceMode = link::kModeUsb;
    link::Bus.DeviceAddress = 0x58;
    desk.board.TakeTraffic();
  }

  /// To the chip on the SMBus, whose library counts what fails.
  void OnSmbus() {
    desk.board.missingEntries.clear();
    desk.Start();
    link::Bus.InterfaceMode = link::kModeSmbus;
    link::Bus.DeviceAddress = 0x2C;
    desk.board.TakeTraffic();
    desk.board.smbusFails = [this](const std::string& transfer) {
      if (failing.count(transfer) == 0) return false;
      ++desk.board.smbusFailures[0x2C];
      return true;
    };
  }

  std::uint8_t& At(int reg) { return desk.board.Chip()[static_cast<std::size_t>(reg)]; }
  std::vector<std::string> TakeWrites() {
    std::vector<std::string> writes = desk.board.TakeTraffic();
    std::erase_if(writes, [](const std::string& transfer) { return transfer.find(" W ") == std::string::npos; });
    return writes;
  }

  Desk desk;
  std::set<std::string> failing;
};

RegisterImage ImageOf(const std::map<int, int>& values) {
  RegisterImage image;
  for (const auto& [reg, value] : values) image.Put(static_cast<std::uint8_t>(reg), static_cast<std::uint8_t>(value));
  return image;
}

TEST_F(ImageTest, AReadingTakesEachRegisterOnceAndNoneThatItWouldChange) {
  std::mt19937 random(18);
  for (std::uint8_t& value : desk.board.Chip()) value = static_cast<std::uint8_t>(random());
  std::vector<std::uint8_t> all;
  for (const chip::RegisterRow& row : chip::kRegisterRows) all.push_back(row.address);
  const tasks::ImageReading reading = tasks::ReadImage(all);
  EXPECT_EQ(reading.leftAlone, std::vector<std::uint8_t>(chip::kClearedByRead.begin(), chip::kClearedByRead.end()));
  EXPECT_THAT(reading.failed, IsEmpty());
  EXPECT_EQ(reading.image.origin, "58h on USB");
  for (unsigned reg = 0; reg <= 0xFF; ++reg) {
    const auto address = static_cast<std::uint8_t>(reg);
    const bool isRead = chip::HasRow(address) && !chip::ReadClears(address);
    EXPECT_EQ(reading.image.Holds(address), isRead) << reg;
    EXPECT_EQ(reading.image.bytes[address].value, isRead ? At(address) : 0) << reg;
  }
  desk.board.TakeTraffic();
  const tasks::ImageReading again = tasks::ReadImage(tasks::ReadableRegisters());
  EXPECT_EQ(again.image, reading.image);
  EXPECT_EQ(desk.board.TakeTraffic().size(), tasks::ReadableRegisters().size());
  const auto tmin = tasks::OfGroup(tasks::ComparableRegisters(), "Fan, Tmin");
  EXPECT_THAT(tmin, ElementsAre(0x0B, 0x0C, 0x5C, 0x5D, 0x5E, 0x5F));
  const tasks::ImageReading stopped = tasks::ReadImage(tmin, [](std::size_t done) { return done < 2; });
  EXPECT_THAT(desk.board.TakeTraffic(), ElementsAre("usb R 58:0B", "usb R 58:0C"));
  EXPECT_EQ(tasks::ReadingWords(stopped), "2 registers read. Stopped: 4 registers not read.");
}

TEST_F(ImageTest, AFailedTransferIsNoValue) {
  OnSmbus();
  failing = {"smb R 2C:49"};
  const tasks::ImageReading reading = tasks::ReadImage({0x48, 0x49, 0x4A});
  EXPECT_THAT(reading.failed, ElementsAre(0x49));
  EXPECT_FALSE(reading.image.Holds(0x49));
  EXPECT_EQ(reading.image.bytes[0x4A].value, 0x95);
  EXPECT_EQ(tasks::ReadingWords(reading), "2 registers read. 1 transfer failed: Remote 1 High Limit (49h).");
}

TEST(Comparison, OfRandomMapsIsWhatAPlainCountGives) {
  std::mt19937 random(4718);
  for (int round = 0; round < 50; ++round) {
    std::vector<RegisterImage> images;
    const std::size_t columns = 2 + random() % 3U;
    for (std::size_t i = 0; i < columns; ++i) images.push_back(RandomImage(random, tasks::ReadableRegisters(), 9));
    // Most registers agree, and some in only a bit.
    for (std::size_t i = 1; i < columns; ++i) {
      for (std::size_t reg = 0; reg < 256; ++reg) {
        if (random() % 4U != 0) images[i].bytes[reg] = images[0].bytes[reg];
        if (random() % 8U != 0 || !images[i].Holds(static_cast<std::uint8_t>(reg))) continue;
        const unsigned flipped = images[i].bytes[reg].value ^ (1U << random() % 8U);
        images[i].Put(static_cast<std::uint8_t>(reg), static_cast<std::uint8_t>(flipped));
      }
    }
    std::vector<const RegisterImage*> pointers;
    for (const RegisterImage& image : images) pointers.push_back(&image);
    const std::size_t reference = random() % columns;
    std::map<int, std::vector<int>> expected;  // differing bits by register, column by column
    for (const chip::RegisterRow& row : chip::kRegisterRows) {
      if (row.readOnly) continue;
      std::vector<int> bits;
      bool isHeld = false;
      for (std::size_t i = 0; i < columns; ++i) {
        const auto& one = images[i].bytes[row.address];
        const auto& other = images[reference].bytes[row.address];
        isHeld = isHeld || one.known == 0xFF;
        bits.push_back(one.known == 0 || other.known == 0 ? 0 : one.value ^ other.value);
      }
      if (isHeld) expected[row.address] = bits;
    }
    std::map<int, std::vector<int>> found;
    for (const tasks::ComparedRow& row : tasks::Compare(pointers, reference)) {
      EXPECT_EQ(found.count(row.reg), 0U) << "a register is one row";
      found[row.reg].assign(row.differing.begin(), row.differing.end());
      unsigned fields = 0;
      for (const tasks::ComparedField& field : tasks::FieldsOf(row)) fields |= field.differs ? field.mask : 0U;
      unsigned bits = 0;
      for (const std::uint8_t each : row.differing) bits |= each;
      EXPECT_TRUE(tasks::FieldsOf(row).empty() || (bits & ~fields) == 0) << "every difference is in a field";
      EXPECT_EQ(bits & ~unsigned{tasks::DifferingFields(row)}, 0U);
    }
    EXPECT_EQ(found, expected);
  }
}

TEST(Comparison, ShowsFieldsInWordsAndFiltersRows) {
  RegisterImage one = ImageOf({{0x21, 0b001'0'0'001}, {0x48, 0x90}, {0x45, 0x40}, {0x00, 0x20}});
  RegisterImage other = ImageOf({{0x21, 0b011'0'1'001}, {0x48, 0x91}, {0x45, 0x40}, {0x00, 0x21}});
  other.bytes[0x45] = {0x40, 0xF0};
  const auto rows = tasks::Compare({&one, &other}, 0);
  ASSERT_EQ(rows.size(), 4U);
  std::vector<std::string> words;
  for (const tasks::ComparedRow& row : rows) words.push_back(row.name + ": " + tasks::DifferenceWords(row, 1));
  EXPECT_THAT(words, ElementsAre("Configuration 0: Other bits 32 -> 33", "PWM1 Config: Bhvr 1 -> 3, Slow 0 -> 1",
                                 "Remote 1 Low Limit / Pin 15 Low Limit: ", "Local High Limit: 90h -> 91h"));
  EXPECT_EQ(tasks::HeldWords(rows[2].held[1]), "0100....");
  EXPECT_EQ(tasks::CountDiffering(rows), 3U);
  struct Case {
    tasks::ComparisonFilter filter;
    std::vector<int> shown;
  };
  const std::vector<Case> cases{
      {{}, {0x00, 0x21, 0x45, 0x48}},
      {{.onlyDifferences = true}, {0x00, 0x21, 0x48}},
      {{.group = "Voltage, Voltage Limits"}, {0x45}},
      {{.group = "Temperature, Limits"}, {0x45, 0x48}},
      {{.onlyDifferences = true, .group = "Temperature, Limits"}, {0x48}},
      {{.text = " pin 15"}, {0x45}},
      {{.text = "slow"}, {0x21}},
      {{.text = "0x48"}, {0x48}},
      {{.text = "45H"}, {0x45}},
      {{.text = "nothing"}, {}},
  };
  for (const Case& each : cases) {
    std::vector<int> shown;
    for (const tasks::ComparedRow& row : rows) {
      if (tasks::Shows(each.filter, row)) shown.push_back(row.reg);
    }
    EXPECT_EQ(shown, each.shown) << each.filter.text << each.filter.group;
  }
}

TEST(WritePlan, NamesBeforehandWhatCannotBeWritten) {
  RegisterImage image = tasks::DefaultImage();
  image.Put(0x00, 0xA5);
  image.Put(0x01, 0xE1);
  image.bytes[0x48] = {};
  image.bytes[0x21] = {0x20, 0xE0};
  const std::vector<Wanted> wanted{{0x3E, 0xFF}, {0x00, 0xFF}, {0x01, 0xFF}, {0x48, 0xFF}, {0x21, 0xF0}, {0x05, 0x0F}};
  const auto plan = tasks::PlanWrite(image, wanted);
  EXPECT_THAT(plan.steps, ElementsAre(WriteStep{0x00, 0x25, 0x7F, {}}, WriteStep{0x21, 0x20, 0xE0, {}},
                                      WriteStep{0x01, 0x21, 0x3F, {}}));
  EXPECT_THAT(plan.left, ElementsAre(Left{0x00, 0x80, Reason::NotWritable}, Left{0x01, 0x40, Reason::NotWritable},
                                     Left{0x05, 0x0F, Reason::NotWritable}, Left{0x21, 0x10, Reason::NotHeld},
                                     Left{0x3E, 0xFF, Reason::NotWritable}, Left{0x48, 0xFF, Reason::NotHeld}));
  EXPECT_EQ(tasks::LeftWords(plan.left[1]), "Configuration 1 (01h), LCK: it is not written");
  EXPECT_THAT(tasks::PlanWrite(image, {{0x01, 0xC0}}, Lock::Set).steps, ElementsAre(WriteStep{0x01, 0x40, 0x40, {}}));
  EXPECT_THAT(tasks::PlanWrite(image, {{0x01, 0x80}}).left, ElementsAre(Left{0x01, 0x80, Reason::NotWritable}));
}

TEST(WritePlan, HasAnOrderThatTheChipTakes) {
  RegisterImage image = tasks::DefaultImage();
  image.Put(0x0B, 0x02);
  const auto place = [](const tasks::WritePlan& plan, int reg) {
    const auto step = std::ranges::find(plan.steps, reg, &WriteStep::reg);
    EXPECT_NE(step, plan.steps.end()) << reg;
    return step - plan.steps.begin();
  };
  const auto plan = tasks::PlanWrite(image, tasks::AllOf(image), Lock::Set);
  EXPECT_EQ(plan.steps.size(), tasks::ComparableRegisters().size());
  const std::array order{0x14, 0x10, 0x0C, 0x5D, 0xAA, 0x0B, 0x01};
  for (std::size_t i = 1; i < order.size(); ++i) EXPECT_LT(place(plan, order[i - 1]), place(plan, order[i])) << i;
  EXPECT_EQ(plan.steps.back(), (WriteStep{0x01, 0x01, 0x7F, {}}));
  image.Put(0x0B, 0x00);  // the control ends before what it moves is written
  const auto ending = tasks::PlanWrite(image, tasks::AllOf(image));
  EXPECT_LT(place(ending, 0x0B), place(ending, 0x5D));
}

TEST_F(ImageTest, SelectedFieldsAreWrittenAndNothingElse) {
  At(0x21) = 0b001'0'0'001;
  At(0x48) = 0x90;
  const RegisterImage image = ImageOf({{0x21, 0b111'1'1'110}, {0x48, 0x91}, {0x49, 0x95}, {0x4A, 0x33}});
  const auto plan = tasks::PlanWrite(image, {{0x4A, 0xFF}, {0x21, 0b111'0'0'000}, {0x49, 0xFF}});
  EXPECT_THAT(desk.board.TakeTraffic(), IsEmpty());
  EXPECT_THAT(tasks::RunWrite(plan), IsEmpty());
  EXPECT_THAT(desk.board.TakeTraffic(), ElementsAre("usb R 58:21", "usb W 58:21=E1", "usb R 58:21", "usb R 58:21",
                                                    "usb R 58:49", "usb R 58:4A", "usb W 58:4A=33", "usb R 58:4A"));
  EXPECT_EQ(At(0x48), 0x90);
}

TEST_F(ImageTest, WhatDoesNotTakeIsNamedWithItsReason) {
  OnSmbus();
  At(0x24) = 0x71;
  failing = {"smb W 2C:49=22", "smb R 2C:4A"};
  desk.board.onTransfer = [this] { At(0x48) = 0x95; };
  const RegisterImage image = ImageOf({{0x48, 0x11}, {0x49, 0x22}, {0x4A, 0x33}, {0x4B, 0x44}, {0xAD, 0x55}});
  const auto plan = tasks::PlanWrite(image, tasks::AllOf(image));
  EXPECT_THAT(tasks::RunWrite(plan),
              ElementsAre(Left{0x48, 0xFF, Reason::NotTaken}, Left{0x49, 0xFF, Reason::Failed},
                          Left{0x4A, 0xFF, Reason::Failed}, Left{0xAD, 0xFF, Reason::Automatic}));
  EXPECT_EQ(At(0x4B), 0x44);
  EXPECT_THAT(TakeWrites(), ElementsAre("smb W 2C:48=11", "smb W 2C:49=22", "smb W 2C:4B=44"));
}

TEST_F(ImageTest, ALockIsNamedAndIsOnlySetWhenAskedFor) {
  const RegisterImage locked = ImageOf({{0x01, 0x61}, {0x48, 0x11}});
  EXPECT_THAT(tasks::RunWrite(tasks::PlanWrite(locked, tasks::AllOf(locked))), IsEmpty());
  EXPECT_THAT(TakeWrites(), ElementsAre("usb W 58:48=11", "usb W 58:01=21"));
  EXPECT_THAT(tasks::RunWrite(tasks::PlanWrite(locked, tasks::AllOf(locked), Lock::Set)), IsEmpty());
  EXPECT_THAT(TakeWrites(), ElementsAre("usb W 58:01=61"));
  desk.board.onTransfer = [this] { At(0x48) = 0x11; };  // what a locked chip does
  const RegisterImage other = ImageOf({{0x48, 0x12}});
  EXPECT_THAT(tasks::RunWrite(tasks::PlanWrite(other, tasks::AllOf(other))),
              ElementsAre(Left{0x48, 0xFF, Reason::Locked}));
}

TEST_F(ImageTest, WritingTheDifferencesMakesTheMapsEqual) {
  std::mt19937 random(7);
  const auto& registers = tasks::ComparableRegisters();
  for (int round = 0; round < 10; ++round) {
    RegisterImage wanted = RandomImage(random, registers, 10);
    for (std::uint8_t reg = 0x21; reg <= 0x24; ++reg) wanted.Put(reg, 0xE0, 0xE0);  // duties are written when manual
    for (const std::uint8_t reg : registers) At(reg) = static_cast<std::uint8_t>(random());
    const RegisterImage before = tasks::ReadImage(registers).image;
    desk.board.TakeTraffic();
    const auto left = tasks::RunWrite(tasks::PlanWrite(wanted, tasks::DifferencesOf(wanted, before), Lock::Set));
    EXPECT_THAT(left, IsEmpty());
    for (const std::uint8_t reg : registers) {
      const unsigned kept = reg == 0x00 || reg == 0x01 ? 0x80U : 0U;  // reset, ready
      EXPECT_EQ(At(reg), (before.bytes[reg].value & kept) | (wanted.bytes[reg].value & ~kept)) << int{reg};
    }
    EXPECT_LE(TakeWrites().size(), registers.size());
  }
}

}  // namespace
}  // namespace zth::testing

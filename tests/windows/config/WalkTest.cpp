#include <gtest/gtest.h>

#include "tests/windows/config/ConfigModel.h"

namespace zth::testing {
namespace {

/// A window open on a chip whose registers the test sets.
class Walk : public ::testing::TestWithParam<WindowModel> {
 protected:
  void SetUp() override {
    desk_.Start();
    window_ = &desk_.Open(GetParam().name);
  }

  FakeBoard::Registers& Chip() { return desk_.board.Chip(); }
  void LoadWith(const FakeBoard::Registers& registers) {
    Desk::Settle();
    desk_.board.TakeTraffic();
    Chip() = registers;
    window_->Form_Load();
  }

  void ExpectShown(const FakeBoard::Registers& registers) const {
    for (const Control& control : model_.controls) {
      EXPECT_EQ(Held(*window_, control.name),
                Shown(control, registers[static_cast<std::size_t>(control.reg)]).toStdString())
          << control.name.toStdString();
    }
  }

  /// All that Apply leaves when nothing was touched, after a load of `before`.
  FakeBoard::Registers AllUntouched(FakeBoard::Registers before) const {
    for (const auto& [reg, kept] : model_.kept) {
      auto& byte = before[static_cast<std::size_t>(reg)];
      byte = Untouched(model_, reg, byte);
    }
    return before;
  }

  const WindowModel& model_ = GetParam();
  Desk desk_;
  windows::ChildWindow* window_ = nullptr;
};

FakeBoard::Registers Filled(std::uint8_t byte) {
  FakeBoard::Registers registers{};
  registers.fill(byte);
  return registers;
}

TEST_P(Walk, EachBitOfTheChipShowsInItsOwnControlAndReturnsAsItMust) {
  for (const std::uint8_t ground : {std::uint8_t{0x00}, std::uint8_t{0xFF}, std::uint8_t{0xA5}}) {
    for (const auto& [reg, kept] : model_.kept) {
      for (int bit = 0; bit < 8; ++bit) {
        FakeBoard::Registers registers = Filled(ground);
        SCOPED_TRACE("bit " + std::to_string(bit) + " of " + std::to_string(reg));
        registers[static_cast<std::size_t>(reg)] ^= static_cast<std::uint8_t>(1U << bit);
        LoadWith(registers);
        ExpectShown(registers);
        Desk::Press(*window_, "cmdApply");
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
        Do(*window_, QString("%1=%2").arg(control.name).arg(value));
        Desk::Press(*window_, "cmdApply");
        FakeBoard::Registers expected = AllUntouched(Filled(ground));
        auto& byte = expected[static_cast<std::size_t>(control.reg)];
        byte = static_cast<std::uint8_t>((byte & ~control.Mask()) |
                                         (Sent(control, QString::number(value)) << control.low));
        ASSERT_EQ(Chip(), expected) << control.name.toStdString() << " at " << value << " over " << int{ground};
      }
    }
  }
}

TEST_P(Walk, WhatChangesElsewhereBeforeApplySurvivesWhereTheWindowOwnsNothing) {
  const FakeBoard::Registers loaded = Filled(0x5A);
  LoadWith(loaded);
  Chip() = Filled(0xA5);
  Desk::Press(*window_, "cmdApply");
  FakeBoard::Registers expected = Filled(0xA5);
  for (const auto& [reg, kept] : model_.kept) {
    expected[static_cast<std::size_t>(reg)] =
        static_cast<std::uint8_t>((Untouched(model_, reg, 0x5A) & ~kept) | (0xA5 & kept));
  }
  EXPECT_EQ(Chip(), expected);
}

INSTANTIATE_TEST_SUITE_P(Windows, Walk, ::testing::ValuesIn(AllWindows()),
                         [](const auto& row) { return std::string(row.param.name); });

}  // namespace
}  // namespace zth::testing

#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "chip/RegMapStuff.h"
#include "chip/RegisterNames.h"

namespace zth::chip {
namespace {

using ::testing::ElementsAre;

// What the program's text names is looked up while it is compiled; a wrong name must stop the compiler.
struct Edo {
  static constexpr std::string_view reg = "EDO Mask 1", bits = "Temp";
};
struct UnknownRegister {
  static constexpr std::string_view reg = "EDO Mask 3", bits = "Temp";
};
struct UnknownBits {
  static constexpr std::string_view reg = "EDO Mask 1", bits = "Tem";
};
struct Reserved {
  static constexpr std::string_view reg = "EDO Mask 1", bits = "Res";
};
template <typename T>
concept Compiles = requires {
  typename std::integral_constant<unsigned, Field(T::reg, T::bits).shift>;
};
static_assert(Compiles<Edo> && !Compiles<UnknownRegister> && !Compiles<UnknownBits> && !Compiles<Reserved>);

constexpr bool Is(RegisterField field, int reg, int high, int low) {
  return field.reg == reg && field.bits.shift == low && field.bits.width == high - low + 1;
}
static_assert(Is(At("Pin Config 1", "VID"), 0x10, 7, 7) && Is(At("Pin Config 1", "P7"), 0x10, 0, 0));
static_assert(Is(At("Pin Config 2", "P23"), 0x11, 1, 0) && Is(At("Tmin_Cal2", "CYR2"), 0x0C, 5, 3));
static_assert(Is(At("PWM4 Config", "Bhvr"), 0x24, 7, 5) && Is(At("Local/Remote 1 Hyst", "LH"), 0x54, 3, 0));
static_assert("Pin 19 High Limit"_reg == 0x4B && "Remote 3 High Limit"_reg == 0x4B, "two names of one address");

constexpr int kMainRun = 159;  // rows before those of the second names

struct TheRegisterTable : ::testing::Test {
  TheRegisterTable() { InitRegisterTable(); }
  static const RegisterEntry& Row(int row) { return RegisterTable.at(static_cast<std::size_t>(row)); }
};

TEST_F(TheRegisterTable, NamesEachRowAndItsEightBits) {
  std::set<std::string> names;
  for (const RegisterEntry& entry : RegisterTable) {
    EXPECT_TRUE(names.insert(entry.Name).second) << entry.Name;
    EXPECT_EQ(entry.Caption, entry.Name);
    EXPECT_EQ(&Row(RowOfName(entry.Name)), &entry);
    EXPECT_EQ(std::count(entry.BitNames.begin(), entry.BitNames.end(), ':'), 7) << entry.Name;
    EXPECT_EQ((":" + entry.BitNames + ":").find("::"), std::string::npos) << "a bit without a name: " << entry.Name;
    EXPECT_TRUE(entry.Default >= 0 && entry.Default <= 0xFF) << entry.Name;
  }
  EXPECT_EQ(RowOfName("Remote 1 low limit"), -1);
}

TEST_F(TheRegisterTable, KeepsItsMainRunInTheOrderOfAddresses) {
  for (int row = 1; row < kMainRun; ++row) EXPECT_LT(Row(row - 1).Address, Row(row).Address);
  EXPECT_EQ(Row(0).Address, 0x00);
  EXPECT_EQ(Row(kMainRun - 1).Address, 0xC6);
  for (const int address : {-1, 0x04, 0x06, 0x15, 0x20, 0x2D, 0x43, 0x65, 0x87, 0x97, 0xA0, 0xB7, 0xC2, 0xC7, 0x145}) {
    EXPECT_EQ(RowOfAddress(address), -1) << "left out by the sheet: " << address;
  }
}

TEST_F(TheRegisterTable, MarksTheSeventeenAddressesWithTwoMeaningsAndNoOthers) {
  std::map<int, std::vector<int>> rows;
  for (int row = 0; row < kRegisterCount; ++row) rows[Row(row).Address].push_back(row);
  std::vector<int> shared;
  for (const auto& [address, at] : rows) {
    const RegisterEntry& first = Row(at.front());
    const RegisterEntry& last = Row(at.back());
    EXPECT_EQ(first.Shared, at.size() == 2) << first.Name;
    EXPECT_EQ(RowOfAddress(address), at.front()) << "the main run's row answers for the address";
    if (at.size() == 1) continue;
    shared.push_back(address);
    EXPECT_TRUE(last.Shared && at.size() == 2 && at.front() < kMainRun && at.back() >= kMainRun) << last.Name;
    EXPECT_EQ(first.Default, last.Default) << "one register has one default: " << last.Name;
    EXPECT_EQ(first.ReadOnly, last.ReadOnly) << last.Name;
  }
  EXPECT_THAT(shared, ElementsAre(0x45, 0x47, 0x49, 0x4B, 0x4C, 0x50, 0x78, 0x7C, 0x7D, 0x7E, 0x7F, 0x8B, 0x8F, 0xA3,
                                  0xA5, 0xA7, 0xA9));
  EXPECT_EQ(rows.size(), 159U);
}

}  // namespace
}  // namespace zth::chip

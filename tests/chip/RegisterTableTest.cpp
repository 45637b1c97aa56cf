#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "chip/RegMapStuff.h"

namespace zth::chip {
namespace {

using ::testing::ElementsAre;

constexpr int kMainRun = 159;  // rows before those of the second names

class TheRegisterTable : public ::testing::Test {
 protected:
  void SetUp() override { InitRegisterTable(); }
};

TEST_F(TheRegisterTable, NamesEachRowOnce) {
  std::set<std::string> names;
  for (const RegisterEntry& entry : RegisterTable) {
    EXPECT_TRUE(names.insert(entry.Name).second) << entry.Name;
    EXPECT_EQ(entry.Caption, entry.Name);
    EXPECT_EQ(&RegisterTable.at(static_cast<std::size_t>(RowOfName(entry.Name))), &entry);
  }
}

TEST_F(TheRegisterTable, KeepsItsMainRunInTheOrderOfAddresses) {
  const auto main = RegisterTable.begin() + kMainRun;
  EXPECT_EQ(std::adjacent_find(RegisterTable.begin(), main,
                               [](const auto& a, const auto& b) { return a.Address >= b.Address; }),
            main);
  EXPECT_EQ(RegisterTable.front().Address, 0x00);
  EXPECT_EQ(RegisterTable[kMainRun - 1].Address, 0xC6);
}

TEST_F(TheRegisterTable, MarksTheSeventeenAddressesWithTwoMeaningsAndNoOthers) {
  std::map<int, std::vector<int>> rows;
  for (int row = 0; row < kRegisterCount; ++row) {
    rows[RegisterTable[static_cast<std::size_t>(row)].Address].push_back(row);
  }
  std::vector<int> shared;
  for (const auto& [address, at] : rows) {
    const RegisterEntry& first = RegisterTable[static_cast<std::size_t>(at.front())];
    const RegisterEntry& last = RegisterTable[static_cast<std::size_t>(at.back())];
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

TEST_F(TheRegisterTable, NamesEightBitsInEachRow) {
  for (const RegisterEntry& entry : RegisterTable) {
    EXPECT_EQ(std::count(entry.BitNames.begin(), entry.BitNames.end(), ':'), 7) << entry.Name;
    EXPECT_EQ((":" + entry.BitNames + ":").find("::"), std::string::npos) << "a bit without a name: " << entry.Name;
    EXPECT_TRUE(entry.Default >= 0 && entry.Default <= 0xFF) << entry.Name;
  }
}

TEST_F(TheRegisterTable, HasTheSumsOfTheDataSheet) {
  int addresses = 0;
  int defaults = 0;
  int readOnly = 0;
  for (const RegisterEntry& entry : RegisterTable) {
    addresses += entry.Address;
    defaults += entry.Default;
    readOnly += entry.ReadOnly ? 1 : 0;
  }
  EXPECT_EQ(addresses, 17715);
  EXPECT_EQ(defaults, 18455);
  EXPECT_EQ(readOnly, 56);
}

TEST_F(TheRegisterTable, HasTheseRowsWhereTheyBelong) {
  struct Spot {
    int row;
    int address;
    const char* name;
    int defaultValue;
    bool readOnly;
    const char* bitNames;
  };
  for (const Spot& spot : {
           Spot{0, 0x00, "Configuration 0", 0x20, false, "SWR:6:5:4:3:2:1:0"},
           Spot{16, 0x13, "Pin Config 4", 0xFC, false, "P28:P28:P29:P29:P31:P32:Res:Res"},
           Spot{38, 0x31, "Thermal Mask 2", 0xC0, false, "VRD2:VRD1:T25:T2A:T2%:T1S:T1A:T1%"},
           Spot{46, 0x3D, "Device ID", 0x62, true, "7:6:5:4:3:2:1:0"},
           Spot{92, 0x72, "Pin 23 V Low Limit", 0x20, false, "7:6:5:4:3:2:1:0"},
           Spot{139, 0xAA, "PWM 1 Value", 0x00, false, "7:6:5:4:3:2:1:0"},
           Spot{158, 0xC6, "Digital Status,BMC", 0x00, true, "CI:VID:SCS2:SCS1:F2Max:Res:Res:Res"},
           Spot{175, 0x50, "1.5V1 (3GIO) High Limit", 0xA4, false, "7:6:5:4:3:2:1:0"},
       }) {
    const RegisterEntry& entry = RegisterTable.at(static_cast<std::size_t>(spot.row));
    EXPECT_EQ(entry.Address, spot.address);
    EXPECT_EQ(entry.Name, spot.name);
    EXPECT_EQ(entry.Default, spot.defaultValue);
    EXPECT_EQ(entry.ReadOnly, spot.readOnly);
    EXPECT_EQ(entry.BitNames, spot.bitNames);
  }
}

TEST_F(TheRegisterTable, HasNoRowForAddressesTheSheetLeavesOut) {
  for (const int address : {-1, 0x04, 0x06, 0x15, 0x20, 0x2D, 0x43, 0x65, 0x87, 0x97, 0xA0, 0xB7, 0xC2, 0xC7, 0x145}) {
    EXPECT_EQ(RowOfAddress(address), -1) << address;
  }
  EXPECT_EQ(RowOfName("Remote 1 low limit"), -1);
}

}  // namespace
}  // namespace zth::chip

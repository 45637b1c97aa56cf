#include <map>

#include <gtest/gtest.h>

#include "chip/RegisterRows.h"
#include "simulator/RegisterRules.h"

namespace zth::testing {
namespace {

/// The program's catalogue lists what the chip can be asked, the simulator's how the chip behaves. They were written
/// independently for the same chip; where they differ one of them is wrong.
TEST(RegisterTables, OfTheProgramAndOfTheSimulatorAgree) {
  std::map<int, const chip::RegisterRow*> rows;
  for (const chip::RegisterRow& row : chip::kRegisterRows) rows.emplace(row.address, &row);
  EXPECT_EQ(rows.size(), simulator::RegisterRules().size());
  for (const simulator::RegisterRule& rule : simulator::RegisterRules()) {
    const auto row = rows.find(rule.address);
    ASSERT_NE(row, rows.end()) << "the program does not know register " << int{rule.address};
    EXPECT_EQ(row->second->defaultValue, rule.reset) << row->second->name;
    EXPECT_EQ(row->second->readOnly, rule.ReadOnly()) << row->second->name;
  }
}

}  // namespace
}  // namespace zth::testing

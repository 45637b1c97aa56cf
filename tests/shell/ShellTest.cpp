#include <gtest/gtest.h>

#include "tests/support/Desk.h"

namespace zth::testing {
namespace {
TEST(Start, Runs) {
  Desk desk;
  desk.Start();
  desk.Advance(1000);
  for (const auto& t : desk.board.traffic) std::puts(t.c_str());
  desk.Open("frmAbout");
}
}  // namespace
}  // namespace zth::testing

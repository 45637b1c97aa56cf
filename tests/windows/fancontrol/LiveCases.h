#pragma once

#include "tests/support/Seen.h"
#include "tests/support/Steps.h"

/// One change of a control of a live window, and what it sends: common code for all live windows.
namespace zth::testing {

/// Cases "steps: transfers" separated by ", ", each on a fresh program whose chip holds `before` in every register, on
/// either link: what it sends, in order.
inline void RunLiveCases(const char* name, std::uint8_t before, const QString& cases) {
  for (const QString& row : cases.split(", ")) {
    SCOPED_TRACE(row.toStdString());
    for (const auto buses : {Desk::Buses::Smbus, Desk::Buses::Usb}) {
      WindowDesk desk(name, buses, [&](Desk& each) { each.board.Chip().fill(before); });
      EXPECT_EQ(desk.Sent(row.section(": ", 0, 0)), T(row.section(": ", 1).toStdString()));
    }
  }
}

}  // namespace zth::testing

#pragma once

#include <functional>

#include "platform/Services.h"
#include "tests/support/Desk.h"

/// One change of a control of a live window, and what it sends: the same ground for all of them.
namespace zth::testing {

struct LiveCase {
  const char* name;
  std::function<void(const QWidget& window)> act;
  std::function<Traffic()> sends;  ///< called while the link is chosen
};

/// Each case on a fresh program whose chip holds `before` in every register, on either link: what it sends, in order.
inline void RunLiveCases(const char* name, std::uint8_t before, const std::vector<LiveCase>& cases) {
  for (const LiveCase& row : cases) {
    SCOPED_TRACE(row.name);
    for (const auto buses : {Desk::Buses::Smbus, Desk::Buses::Usb}) {
      Desk desk(buses);
      desk.Start();
      desk.board.Chip().fill(before);
      auto& window = desk.Open(name);
      desk.board.TakeTraffic();
      row.act(window);
      EXPECT_EQ(desk.board.TakeTraffic(), row.sends());
    }
  }
}

}  // namespace zth::testing

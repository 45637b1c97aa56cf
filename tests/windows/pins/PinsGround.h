#pragma once

#include <functional>

#include "tests/support/Steps.h"

namespace zth::testing {

/// Lets each transfer of `act` fail in turn, each time in a fresh program whose window has been opened: one box, the
/// program's end, and nothing sent behind the failure. Returns how many transfers `act` makes.
inline int SweepFailures(const QString& name, const std::function<void(Desk&, windows::ChildWindow&)>& prepare,
                         const std::function<void(Desk&, windows::ChildWindow&)>& act) {
  const auto run = [&](int failing) {
    Desk desk(Desk::Buses::Usb);
    desk.Start();
    windows::ChildWindow& window = desk.Open(name);
    prepare(desk, window);
    desk.board.TakeTraffic();
    if (failing >= 0) {
      desk.board.failOnly = desk.board.usbCalls + failing;
      desk.prompts.script.push_back(platform::BoxAnswer::Ok);
    }
    act(desk, window);
    if (failing >= 0) {
      EXPECT_EQ(desk.process.ends, std::vector<int>{1}) << failing;
      EXPECT_EQ(desk.prompts.shown.size(), 1U) << failing;
      EXPECT_EQ(desk.Main().FindWindow(name), nullptr) << failing;
      EXPECT_EQ(desk.settings.values["OpenEasySetup"], "False") << "a setting was saved behind the failure";
    }
    return desk.board.TakeTraffic();
  };
  const Traffic whole = run(-1);
  for (int failing = 0; failing < static_cast<int>(whole.size()); ++failing) {
    EXPECT_EQ(run(failing), Traffic(whole.begin(), whole.begin() + failing + 1));
  }
  return static_cast<int>(whole.size());
}

}  // namespace zth::testing

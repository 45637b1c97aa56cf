#pragma once

#include <functional>
#include <map>

#include "tests/support/Steps.h"
#include "windows/Desktop.h"

namespace zth::testing {

/// A window that only counts its loads.
class ProbeWindow final : public windows::ChildWindow {
 public:
  ProbeWindow(const QString& name, const windows::Context& context) : ChildWindow(name, name, context) {}
  void Form_Load() override { onLoad(); }

  std::function<void()> onLoad = [] {};
};

/// A desktop that has just the windows it was given.
class ProbeDesktop final : public windows::Desktop {
 public:
  windows::ChildWindow* OpenWindow(const QString& name) override {
    opened.push_back(name);
    return FindWindow(name);
  }
  windows::ChildWindow* FindWindow(const QString& name) const override {
    const auto window = windows.find(name);
    return window == windows.end() ? nullptr : window->second;
  }
  void SetStatus(const QString& /*text*/) override {}
  void EnableTimer(bool /*on*/) override {}
  QWidget& Frame() override { return frame; }

  QWidget frame;
  std::map<QString, windows::ChildWindow*> windows;
  std::vector<QString> opened;
};

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

#pragma once

#include <functional>
#include <map>

#include "link/Declarations.h"
#include "tests/support/Desk.h"
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

/// A block read as the link in use makes it.
inline Traffic Block(int first, int count) {
  return B(first, count);
}

/// What follows a write of a pin configuration register on either link.
inline Traffic PinHook(const std::vector<std::string>& switches) {
  return link::InterfaceMode == link::kModeUsb ? Concat(B(0x10, 4), switches) : B(0x10, 4);
}

/// The transfers among `traffic` that change the chip.
inline Traffic Writes(const Traffic& traffic) {
  Traffic writes;
  for (const std::string& transfer : traffic) {
    if (transfer.find(" W ") != std::string::npos) writes.push_back(transfer);
  }
  return writes;
}

}  // namespace zth::testing

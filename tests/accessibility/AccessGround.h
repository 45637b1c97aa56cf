#pragma once

#include <functional>
#include <string>
#include <vector>

#include <QAccessible>
#include <QApplication>
#include <QWidget>

#include "tests/support/Desk.h"
#include "tests/support/EveryWindow.h"

// Internal parts of Qt, needed to switch accessibility on without a desktop that requests it: there is no public way,
// and while it is off no changes are reported.
class QPlatformAccessibility {
 public:
  void setActive(bool active);
};
class QPlatformIntegration {
 public:
  QPlatformAccessibility* accessibility() const;
};
class QGuiApplicationPrivate {
 public:
  static QPlatformIntegration* platform_integration;
};

namespace zth::testing {

/// Every window and frmMain, one per test case, on a chip that leaves few controls disabled.
class Access : public ::testing::TestWithParam<std::string> {
 protected:
  void SetUp() override {
    QGuiApplicationPrivate::platform_integration->accessibility()->setActive(true);
    auto& chip = desk.board.usbChips[0x58];
    chip[0x10] = 0x1F;  // no pin is taken from a GPIO
    chip[0x09] = 0x02;  // GPIO 1 is an output
    chip[0x21] = 0xE0;  // PWM1 is in manual mode
    desk.board.AddUsbChip(0x5A);
    desk.Start();
    desk.Main().resize(1366, 768);
    desk.Main().show();
    QApplication::setActiveWindow(&desk.Main());
  }

  /// Shows each page of the window and calls `visit` on it. frmMain's page excludes its child windows.
  void EachPage(const std::function<void(QWidget& root, const std::string& page)>& visit) {
    if (GetParam() == "frmMain") {
      visit(desk.Main(), "frmMain");
      return;
    }
    auto& window = desk.Open(GetParam().c_str());
    Desk::Settle();
    ForEachPage(window, [&](const std::string& page) { visit(window, page); });
  }

  Desk desk;
};

/// The names of all windows, frmMain first.
inline std::vector<std::string> AllWindows() {
  std::vector<std::string> names = EveryWindow();
  names.insert(names.begin(), "frmMain");
  return names;
}

}  // namespace zth::testing

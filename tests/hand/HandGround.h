#pragma once

#include <set>

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QTabBar>
#include <QTest>
#include <gtest/gtest.h>

#include "tests/support/EveryWindow.h"
#include "tests/support/Seen.h"
#include "tests/support/Steps.h"
#include "widgets/GSlider.h"
#include "widgets/LGauge.h"

namespace zth::testing {

/// Every window, one per test case, on a chip that leaves few controls disabled.
class Hand : public ::testing::TestWithParam<std::string> {
 protected:
  Hand() {
    auto& chip = desk.board.usbChips[0x58];
    chip[0x10] = 0x1F;  // no pin is taken from a GPIO
    chip[0x09] = 0x02;  // GPIO 1 is an output
    chip[0x21] = 0xE0;  // PWM1 is in manual mode
    desk.Start();
    desk.Main().showNormal();
    QApplication::setActiveWindow(&desk.Main());
  }

  /// The window, opened if necessary, with the traffic cleared.
  windows::ChildWindow& Open(const std::string& name) {
    windows::ChildWindow& window = desk.Open(name.c_str());
    Desk::Settle();
    desk.board.TakeTraffic();
    return window;
  }
  bool IsOpen(const std::string& name) {
    Desk::Settle();
    return desk.Main().FindWindow(name.c_str()) != nullptr;
  }
  /// For one control of each kind on a page: calls `use` with the page shown, the control in focus and its name. If the
  /// last call closed the window, it is opened again.
  template <typename Use>
  void WithEachKindOfControl(const std::string& name, const Use& use) {
    for (int page = 0; page < Pages(Open(name)); ++page) {
      std::set<QByteArray> seen;
      for (bool more = true; more;) {
        windows::ChildWindow& window = Open(name);
        more = false;
        if (ShowPage(window, page).empty()) break;
        for (QWidget* control : Shown(window)) {
          const QByteArray kind = control->metaObject()->className();
          if ((control->focusPolicy() & Qt::TabFocus) == 0 || !control->isEnabled() || seen.contains(kind)) continue;
          seen.insert(kind);
          control->setFocus();
          desk.board.TakeTraffic();
          use(window, *control, name + " " + Told(*control));
          more = true;
          break;
        }
      }
    }
  }

  Desk desk;
};

/// The contents of all controls of a window.
inline std::string Holding(const QWidget& root) {
  QStringList held;
  for (const QWidget* control : root.findChildren<QWidget*>()) {
    if (const auto* list = qobject_cast<const QComboBox*>(control)) held << QString::number(list->currentIndex());
    if (const auto* tabs = qobject_cast<const QTabBar*>(control)) held << QString::number(tabs->currentIndex());
    if (const auto* box = qobject_cast<const QLineEdit*>(control)) held << box->text();
    if (const auto* slider = qobject_cast<const widgets::GSlider*>(control)) held << QString::number(slider->Value());
    if (const auto* button = qobject_cast<const QAbstractButton*>(control)) held << (button->isChecked() ? "1" : "0");
    if (const auto* gauge = qobject_cast<const widgets::LGauge*>(control)) {
      for (int i = 0; i < std::ssize(gauge->Sliders()); ++i) held << QString::number(gauge->SliderValue(i));
    }
  }
  return held.join('|').toStdString();
}

}  // namespace zth::testing

#include "tests/accessibility/AccessGround.h"

#include <QApplication>
#include <QMdiArea>

#include "tests/support/EveryWindow.h"

// Of Qt's own parts, as far as they are needed to switch accessibility on without a desktop that asks for it: there is
// no public way, and while it is off no change is told.
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

void Access::SetUp() {
  QGuiApplicationPrivate::platform_integration->accessibility()->setActive(true);
  auto& chip = desk.board.usbChips[0x58];
  chip[0x10] = 0x1F;  // no pin is taken from a GPIO
  chip[0x09] = 0x02;  // GPIO 1 is an output
  chip[0x21] = 0xE0;  // PWM1 is in manual mode
  desk.Start();
  desk.Main().resize(1366, 768);
  desk.Main().show();
  QApplication::setActiveWindow(&desk.Main());
}

void Access::EachPage(const std::function<void(QWidget&, const std::string&)>& visit) {
  if (GetParam() == "frmMain") {
    visit(desk.Main(), "frmMain");
    return;
  }
  auto& window = desk.Open(QString::fromStdString(GetParam()));
  Desk::Settle();
  ForEachPage(window, [&](const std::string& page) { visit(window, page); });
}

std::vector<std::string> AllWindows() {
  std::vector<std::string> names{"frmMain"};
  for (const QString& name : EveryWindow()) names.push_back(name.toStdString());
  return names;
}

std::string NameOfCase(const ::testing::TestParamInfo<std::string>& row) {
  return row.param;
}

std::vector<QWidget*> Shown(QWidget& root) {
  std::vector<QWidget*> shown;
  for (QWidget* widget : root.findChildren<QWidget*>()) {
    bool child = false;
    for (const QWidget* at = widget; at != &root; at = at->parentWidget()) {
      child = child || at->isWindow() || qobject_cast<const QMdiArea*>(at) != nullptr;
    }
    if (widget->isVisible() && !child) shown.push_back(widget);
  }
  return shown;
}

std::string Told(const QWidget& widget) {
  const QWidget* named = &widget;
  while (named->objectName().isEmpty() && named->parentWidget() != nullptr) named = named->parentWidget();
  return std::string(widget.metaObject()->className()) + " " + named->objectName().toStdString();
}

}  // namespace zth::testing

#include "tests/support/EveryWindow.h"

#include <algorithm>

#include <QComboBox>
#include <QTabWidget>

#include "shell/Commands.h"
#include "tests/support/Desk.h"
#include "windows/SharedState.h"

namespace zth::testing {

std::vector<std::string> EveryWindow() {
  std::vector<std::string> names;
  for (const shell::MenuEntry& entry : shell::kMenuEntries) {
    const std::string name = entry.window;
    if (!name.empty() && std::ranges::count(names, name) == 0) names.push_back(name);
  }
  return names;
}

std::map<std::string, const bool*> OpenFlags() {
  return {{"frmRegMap", &windows::Shared.RegMapOpen},       {"frmLimits", &windows::Shared.LimitsOpen},
          {"frmGPIO", &windows::Shared.GpioOpen},           {"frmGraph", &windows::Shared.GraphOpen},
          {"frmHeaters", &windows::Shared.HeatersOpen},     {"frmManualControl", &windows::Shared.ManualOpen},
          {"frmDynamicTmin", &windows::Shared.DynTminOpen}, {"frmAutoGraph", &windows::Shared.AutoGraphOpen}};
}

int Pages(const windows::ChildWindow& window) {
  const auto* tabs = window.findChild<QTabWidget*>();
  const auto* charts = window.findChild<QComboBox*>("cmbGraph");
  return tabs != nullptr ? tabs->count() : charts != nullptr ? charts->count() : 1;
}

std::string ShowPage(windows::ChildWindow& window, int page) {
  QString name = window.objectName();
  if (auto* tabs = window.findChild<QTabWidget*>()) {
    if (!tabs->isTabEnabled(page)) return {};
    tabs->setCurrentIndex(page);
    name += ", " + tabs->tabText(page);
  } else if (auto* charts = window.findChild<QComboBox*>("cmbGraph")) {
    charts->setCurrentIndex(page);
    name += ", " + charts->itemText(page);
  }
  Desk::Settle();
  return name.toStdString();
}

void ForEachPage(windows::ChildWindow& window, const std::function<void(const std::string& page)>& visit) {
  for (int page = 0; page < Pages(window); ++page) {
    const std::string name = ShowPage(window, page);
    if (!name.empty()) visit(name);
  }
  ShowPage(window, 0);
}

}  // namespace zth::testing

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
  return {{"frmRegMap", &windows::RegMapOpen},       {"frmLimits", &windows::LimitsOpen},
          {"frmGPIO", &windows::GpioOpen},           {"frmGraph", &windows::GraphOpen},
          {"frmHeaters", &windows::HeatersOpen},     {"frmManualControl", &windows::ManualOpen},
          {"frmDynamicTmin", &windows::DynTminOpen}, {"frmAutoGraph", &windows::AutoGraphOpen}};
}

int Pages(const windows::ChildWindow& window) {
  const auto* tabs = window.findChild<QTabWidget*>();
  const auto* charts = window.findChild<QComboBox*>("cmbGraph");
  return tabs != nullptr ? tabs->count() : charts != nullptr ? charts->count() : 1;
}

void ShowPage(windows::ChildWindow& window, int page) {
  auto* tabs = window.findChild<QTabWidget*>();
  auto* charts = window.findChild<QComboBox*>("cmbGraph");
  if (tabs != nullptr && tabs->isTabEnabled(page)) tabs->setCurrentIndex(page);
  if (tabs == nullptr && charts != nullptr) charts->setCurrentIndex(page);
  Desk::Settle();
}

void ForEachPage(windows::ChildWindow& window, const std::function<void(const std::string& page)>& visit) {
  const auto* tabs = window.findChild<QTabWidget*>();
  const auto* charts = window.findChild<QComboBox*>("cmbGraph");
  for (int page = 0; page < Pages(window); ++page) {
    if (tabs != nullptr && !tabs->isTabEnabled(page)) continue;
    ShowPage(window, page);
    QString text;
    if (tabs != nullptr) text = ", " + tabs->tabText(page);
    if (tabs == nullptr && charts != nullptr) text = ", " + charts->itemText(page);
    visit(window.objectName().toStdString() + text.toStdString());
  }
  ShowPage(window, 0);
}

}  // namespace zth::testing

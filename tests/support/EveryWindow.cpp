#include "tests/support/EveryWindow.h"

#include <QComboBox>
#include <QTabWidget>

#include "shell/Commands.h"
#include "tests/support/Desk.h"

namespace zth::testing {

std::vector<QString> EveryWindow() {
  std::vector<QString> names;
  for (const shell::MenuEntry& entry : shell::kMenuEntries) {
    const QString name = entry.window;
    if (!name.isEmpty() && std::find(names.begin(), names.end(), name) == names.end()) names.push_back(name);
  }
  return names;
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

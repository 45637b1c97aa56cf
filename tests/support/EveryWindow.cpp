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

void ForEachPage(windows::ChildWindow& window, const std::function<void(const std::string& page)>& visit) {
  const std::string name = window.objectName().toStdString();
  auto* tabs = window.findChild<QTabWidget*>();
  auto* charts = window.findChild<QComboBox*>("cmbGraph");
  const int pages = tabs != nullptr ? tabs->count() : charts != nullptr ? charts->count() : 1;
  const auto show = [&](int page) {
    if (tabs != nullptr) tabs->setCurrentIndex(page);
    if (tabs == nullptr && charts != nullptr) charts->setCurrentIndex(page);
    Desk::Settle();
  };
  for (int page = 0; page < pages; ++page) {
    if (tabs != nullptr && !tabs->isTabEnabled(page)) continue;
    show(page);
    QString text;
    if (tabs != nullptr) text = ", " + tabs->tabText(page);
    if (tabs == nullptr && charts != nullptr) text = ", " + charts->itemText(page);
    visit(name + text.toStdString());
  }
  show(0);
}

}  // namespace zth::testing

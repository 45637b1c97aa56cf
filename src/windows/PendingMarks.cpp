#include "windows/PendingMarks.h"

#include <algorithm>
#include <map>

#include <QFontMetrics>
#include <QPalette>
#include <QTabBar>
#include <QTabWidget>
#include <QWidget>

#include "widgets/Colours.h"

namespace zth::windows {
namespace {

/// The tab that contains the control, as its widget and index; a null widget if it is not on a tab.
std::pair<QTabWidget*, int> TabOf(QWidget* control) {
  for (QWidget* page = control; page != nullptr; page = page->parentWidget()) {
    QWidget* stack = page->parentWidget();
    auto* tabs = stack != nullptr ? qobject_cast<QTabWidget*>(stack->parentWidget()) : nullptr;
    if (tabs != nullptr && tabs->indexOf(page) >= 0) return {tabs, tabs->indexOf(page)};
  }
  return {nullptr, -1};
}

}  // namespace

QColor MarkColour(const QPalette& palette, bool odd) {
  const bool dark = widgets::IsDark(palette);
  if (odd) return dark ? QColor(0xFF, 0x8A, 0x80) : QColor(0xB0, 0x00, 0x20);
  return dark ? QColor(0xA8, 0xD1, 0xFF) : QColor(0x0B, 0x5C, 0xAD);
}

void MarkControl(QWidget& control, const QWidget& window, bool pending, bool odd) {
  QFont font;
  if (pending) font.setBold(true);
  // Only what is marked is set: family, size and all other colours keep following the window.
  font.setResolveMask(pending ? QFont::WeightResolved : QFont::NoPropertiesResolved);
  control.setFont(font);
  QPalette palette;
  palette.setResolveMask(0);
  if (pending || odd) {
    const QColor colour = MarkColour(window.palette(), odd);
    for (const auto group : {QPalette::Active, QPalette::Inactive}) {
      for (const auto role : {QPalette::WindowText, QPalette::ButtonText, QPalette::Text}) {
        palette.setColor(group, role, colour);
      }
    }
  }
  control.setPalette(palette);
}

void KeepRoomForMark(QWidget& control, const QString& text) {
  if (text.isEmpty()) return;
  const QFontMetrics now(control.font());
  QFont bold = control.font();
  bold.setBold(true);
  const auto width = [&text](const QFontMetrics& metrics) { return metrics.size(Qt::TextShowMnemonic, text).width(); };
  control.setMinimumWidth(control.sizeHint().width() + width(QFontMetrics(bold)) - width(now));
}

void MarkTabs(const QWidget& window, const std::vector<std::pair<QWidget*, bool>>& pending) {
  std::map<std::pair<QTabWidget*, int>, bool> tabs;
  for (const auto& [control, isPending] : pending) {
    const auto tab = TabOf(control);
    if (tab.first != nullptr) tabs[tab] = tabs[tab] || isPending;
  }
  for (const auto& [tab, isPending] : tabs) {
    const auto& [widget, index] = tab;
    QTabBar* bar = widget->tabBar();
    // An invalid colour selects the palette's own.
    const QColor colour = isPending ? MarkColour(window.palette(), false) : QColor();
    if (bar->tabTextColor(index) != colour) bar->setTabTextColor(index, colour);
    const QString tip = isPending ? QStringLiteral("Holds changes that have not been applied") : QString();
    if (bar->tabToolTip(index) != tip) bar->setTabToolTip(index, tip);
  }
}

}  // namespace zth::windows

#include "windows/Hold.h"

#include <QAction>
#include <QLabel>
#include <QProgressBar>
#include <QStatusBar>

namespace zth::windows {
namespace {

bool CanBeUsed(const QWidget& widget) {
  return qobject_cast<const QLabel*>(&widget) == nullptr && qobject_cast<const QProgressBar*>(&widget) == nullptr &&
         qobject_cast<const QStatusBar*>(&widget) == nullptr;
}

}  // namespace

Hold::Hold(QWidget& only) {
  // Visits the control's siblings, then its parent's siblings, and so on up to the main window.
  for (QWidget* path = &only; !path->isWindow() && path->parentWidget() != nullptr; path = path->parentWidget()) {
    for (QWidget* other : path->parentWidget()->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly)) {
      if (other == path || other->isWindow() || !CanBeUsed(*other) || !other->isEnabledTo(other->parentWidget())) {
        continue;
      }
      other->setEnabled(false);
      held_.emplace_back(other);
    }
  }
  // Shortcut keys and assistive tools can trigger an action anywhere.
  for (QAction* action : only.window()->findChildren<QAction*>()) {
    if (!action->isEnabled()) continue;
    action->setEnabled(false);
    actions_.emplace_back(action);
  }
}

Hold::~Hold() {
  for (const QPointer<QWidget>& widget : held_) {
    if (widget) widget->setEnabled(true);
  }
  for (const QPointer<QAction>& action : actions_) {
    if (action) action->setEnabled(true);
  }
}

}  // namespace zth::windows

#pragma once

#include <functional>

#include <QMenu>
#include <QString>

#include "platform/Guard.h"

namespace zth::widgets {

/// A pop-up menu of `owner`, deleted when it closes. Its entries run after it has closed, in their own turn of the
/// event loop: a handler may open a dialog or close the window without destroying a menu that is still on the stack.
inline QMenu& MakePopUpMenu(QWidget& owner, const QString& name) {
  auto* menu = new QMenu(&owner);
  menu->setObjectName(name);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  return *menu;
}

inline QAction& AddEntry(QMenu& menu, QWidget& owner, const QString& name, const QString& text,
                         std::function<void()> handler, bool enabled = true) {
  QAction* action = menu.addAction(text);
  action->setObjectName(name);
  action->setEnabled(enabled);
  QObject::connect(action, &QAction::triggered, &owner, platform::Guarded(std::move(handler)), Qt::QueuedConnection);
  return *action;
}

}  // namespace zth::widgets

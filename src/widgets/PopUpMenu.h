#pragma once

#include <functional>

#include <QMenu>
#include <QString>

#include "platform/Guard.h"

namespace zth::widgets {

/// A pop-up menu of `owner` that goes when it closes. What its entries do comes behind it, in a turn of the event loop
/// of its own: a handler may open a dialog or close the window, and no menu that is on the stack goes away beneath it.
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

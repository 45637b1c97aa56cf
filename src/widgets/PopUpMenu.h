#pragma once

#include <functional>

#include <QAbstractScrollArea>
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

/// Gives a view an action, by its key and in a context menu called `name`. Not by the policy that shows a widget's
/// actions automatically: its menu is on the stack, and the window may be deleted under it.
inline void AddPopUpMenu(QAbstractScrollArea& view, const QString& name, QAction& action) {
  view.addAction(&action);
  view.setContextMenuPolicy(Qt::CustomContextMenu);
  QObject::connect(&view, &QWidget::customContextMenuRequested, &view, [&view, name, &action](const QPoint& at) {
    QMenu& menu = MakePopUpMenu(view, name);
    menu.addAction(&action);
    menu.popup(view.viewport()->mapToGlobal(at));
  });
}

}  // namespace zth::widgets

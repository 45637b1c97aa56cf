#pragma once

#include <functional>
#include <utility>
#include <vector>

#include <QAccessible>
#include <QAccessibleWidget>
#include <QWidget>

namespace zth::widgets {

/// Accessibility interface of a custom control: its role, and its actions besides taking the focus. A disabled control
/// does nothing.
class ActionAccess : public QAccessibleWidget {
 public:
  /// Action names, from QAccessibleActionInterface where one fits, and the function that each one calls.
  using Actions = std::vector<std::pair<QString, std::function<void()>>>;

  ActionAccess(QWidget* widget, QAccessible::Role role, Actions actions)
      : QAccessibleWidget(widget, role), actions_(std::move(actions)) {}

  /// Actions for one step up and one step down.
  static Actions Steps(const std::function<void(int)>& step) {
    return {{increaseAction(), [step] { step(1); }}, {decreaseAction(), [step] { step(-1); }}};
  }

  QStringList actionNames() const override {
    QStringList names;
    for (const auto& [name, run] : actions_) names << name;
    return names + QAccessibleWidget::actionNames();
  }
  void doAction(const QString& wanted) override {
    for (const auto& [name, run] : actions_) {
      if (name == wanted && widget()->isEnabled()) return run();
    }
    QAccessibleWidget::doAction(wanted);
  }

 private:
  Actions actions_;
};

}  // namespace zth::widgets

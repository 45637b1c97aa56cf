#include "windows/Handlers.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QComboBox>
#include <QEvent>
#include <QLineEdit>
#include <QPointer>
#include <QTabBar>
#include <QTabWidget>
#include <QTimer>

#include "link/Asker.h"
#include "link/Waiting.h"
#include "platform/Guard.h"
#include "windows/ChildWindow.h"

namespace zth::windows {
namespace {

/// Distinguishes a pick whose changed index has already run the handler from a pick that changed nothing. A pick emits
/// `activated` in the same turn of the event loop as `currentIndexChanged`, and a list that has just popped up has not
/// changed anything yet.
class SelectionWatch final : public QObject {
 public:
  SelectionWatch(QComboBox& list, Handler handler) : QObject(&list), handler_(ByUser(list, std::move(handler))) {
    turn_.setSingleShot(true);
    turn_.setInterval(0);
    connect(&turn_, &QTimer::timeout, this, [this] { changed_ = false; });
    connect(&list, &QComboBox::currentIndexChanged, this, [this] {
      changed_ = true;
      turn_.start();
      handler_();
    });
    connect(&list, &QComboBox::activated, this, [this] {
      if (!changed_) handler_();
      changed_ = false;
    });
    list.view()->installEventFilter(this);
  }

  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::Show) changed_ = false;
    return QObject::eventFilter(watched, event);
  }

 private:
  Handler handler_;
  QTimer turn_;
  bool changed_ = false;
};

/// Passes wheel events to what is behind a control.
class WheelFilter final : public QObject {
 public:
  WheelFilter(QWidget& control, Wheel wheel) : QObject(&control), wheel_(wheel) { control.installEventFilter(this); }

  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() != QEvent::Wheel) return false;
    if (wheel_ == Wheel::WithFocus && static_cast<QWidget*>(watched)->hasFocus()) return false;
    event->ignore();
    return true;
  }

 private:
  Wheel wheel_;
};

/// The window that contains a control; null for a control outside such windows.
const ChildWindow* WindowAround(const QWidget* control) {
  for (; control != nullptr; control = control->parentWidget()) {
    if (const auto* window = qobject_cast<const ChildWindow*>(control)) return window;
  }
  return nullptr;
}

QString CaptionAround(const QWidget* control) {
  const ChildWindow* window = WindowAround(control);
  return window == nullptr ? QString() : window->Caption();
}

/// "frmAutoGraph cmbControl(0)"
std::string NameOf(const QWidget* control) {
  if (control == nullptr) return {};
  const ChildWindow* window = WindowAround(control);
  const QString around = window == nullptr || window == control ? QString() : window->objectName() + " ";
  return (around + control->objectName()).toStdString();
}

}  // namespace

Handler ByUser(QWidget& control, Handler handler) {
  return platform::Guarded([control = QPointer<QWidget>(&control), handler = std::move(handler)] {
    const link::UserAction action([control] { return CaptionAround(control); });
    const link::Asker asker(link::Asker::Kind::Action, [control] { return NameOf(control); });
    handler();
  });
}

void LimitWheel(QWidget& control, Wheel wheel) {
  if (control.focusPolicy() == Qt::WheelFocus) control.setFocusPolicy(Qt::StrongFocus);
  new WheelFilter(control, wheel);
}

void OnClick(QAbstractButton& button, Handler handler) {
  QObject::connect(&button, &QAbstractButton::clicked, &button, ByUser(button, std::move(handler)));
}

void OnToggle(QAbstractButton& button, Handler handler) {
  QObject::connect(&button, &QAbstractButton::toggled, &button, ByUser(button, std::move(handler)));
}

void OnChange(QLineEdit& box, Handler handler) {
  QObject::connect(&box, &QLineEdit::textChanged, &box, ByUser(box, std::move(handler)));
}

void OnSelect(QComboBox& list, Handler handler, Wheel wheel) {
  LimitWheel(list, wheel);
  new SelectionWatch(list, std::move(handler));
}

void OnTab(QTabWidget& tabs, Handler handler) {
  LimitWheel(*tabs.tabBar(), Wheel::WithFocus);
  if (handler) QObject::connect(&tabs, &QTabWidget::currentChanged, &tabs, ByUser(tabs, std::move(handler)));
}

}  // namespace zth::windows

#include "windows/ChildWindow.h"

#include <QAbstractButton>
#include <QCloseEvent>
#include <QComboBox>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMdiSubWindow>
#include <QPushButton>

#include "platform/Guard.h"
#include "platform/Questions.h"

namespace zth::windows {
namespace {

bool IsEnter(const QKeyEvent& event) {
  return event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
}

/// Some desktops let Enter tick the box or open the list that has the focus, or lose itself in the frame around it.
/// Here it means the same on all of them.
bool MayTakeEnter(const QObject& control) {
  if (qobject_cast<const QAbstractButton*>(&control) != nullptr) {
    return qobject_cast<const QPushButton*>(&control) == nullptr;
  }
  return qobject_cast<const QComboBox*>(&control) != nullptr || qobject_cast<const QGroupBox*>(&control) != nullptr;
}

constexpr float kHintStrength = 0.7F;  // of a text's; desktops' own half of it is too pale to read

}  // namespace

ChildWindow::ChildWindow(const QString& name, const QString& caption, const Context& context) : context_(context) {
  setObjectName(name);
  setWindowTitle(caption);
  DarkenHints();
}

void ChildWindow::DarkenHints() {
  QColor colour = palette().color(QPalette::Text);
  colour.setAlphaF(kHintStrength);
  QPalette hints;
  hints.setColor(QPalette::PlaceholderText, colour);
  setPalette(hints);
}

void ChildWindow::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) DarkenHints();
}

void ChildWindow::Unload() {
  // The frame closes first and asks its contents; a window without a frame closes by itself.
  auto* frame = qobject_cast<QMdiSubWindow*>(parentWidget());
  if (frame != nullptr) {
    frame->close();
  } else {
    close();
  }
}

void ChildWindow::SetDefaultButton(QPushButton& button) {
  defaultButton_ = &button;
  button.setDefault(true);
}

void ChildWindow::SetCancelButton(QPushButton& button) {
  cancelButton_ = &button;
}

void ChildWindow::closeEvent(QCloseEvent* event) {
  event->accept();
  if (unloaded_) return;
  unloaded_ = true;
  platform::Guarded([this] { Form_Unload(); })();
  emit Unloaded(objectName());
  // Dialogs of the window go with it; a handler that waits for one still finds it there.
  platform::CloseQuestions(parentWidget() != nullptr ? *parentWidget() : *this);
}

bool ChildWindow::event(QEvent* event) {
  if (event->type() == QEvent::Polish) WatchForEnter();
  return QWidget::event(event);
}

void ChildWindow::WatchForEnter() {
  if (parentWidget() != nullptr) parentWidget()->installEventFilter(this);
  for (auto* control : findChildren<QWidget*>()) {
    if (MayTakeEnter(*control)) control->installEventFilter(this);
  }
}

bool ChildWindow::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::KeyPress) return QWidget::eventFilter(watched, event);
  auto* key = static_cast<QKeyEvent*>(event);
  if (watched == parentWidget()) {
    // A click beside the controls leaves the focus to the frame, which needs these keys only while they move it.
    if ((!IsEnter(*key) && key->key() != Qt::Key_Escape) || mouseGrabber() != nullptr) return false;
    keyPressEvent(key);
    return true;
  }
  if (!IsEnter(*key) || !MayTakeEnter(*watched)) return QWidget::eventFilter(watched, event);
  key->ignore();  // and so it comes to this window
  return true;
}

void ChildWindow::keyPressEvent(QKeyEvent* event) {
  const bool enter = IsEnter(*event);
  if (!enter && event->key() != Qt::Key_Escape) {
    QWidget::keyPressEvent(event);
    return;
  }
  event->accept();
  // A key that is still down from the window before, or on a button, does nothing twice.
  if (event->isAutoRepeat()) return;
  enter ? PressEnter() : PressEscape();
}

void ChildWindow::PressEnter() {
  // On a button it presses that button, as in any dialog.
  auto* button = qobject_cast<QPushButton*>(focusWidget());
  if (button == nullptr) button = defaultButton_;
  if (button != nullptr) {
    button->click();
  } else if (auto* box = qobject_cast<QLineEdit*>(focusWidget()); box != nullptr && selectsOnEnter_) {
    box->selectAll();
  }
}

void ChildWindow::PressEscape() {
  if (cancelButton_ != nullptr) {
    cancelButton_->click();
  } else {
    Unload();
  }
}

}  // namespace zth::windows

#include "windows/ChildWindow.h"

#include <QCloseEvent>
#include <QKeyEvent>
#include <QMdiSubWindow>
#include <QPushButton>

#include "platform/Guard.h"
#include "platform/Questions.h"

namespace zth::windows {
namespace {

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

void ChildWindow::keyPressEvent(QKeyEvent* event) {
  const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  QPushButton* button = nullptr;
  if (enter) {
    // Enter on a button presses that button, as in any dialog.
    auto* focused = qobject_cast<QPushButton*>(focusWidget());
    button = focused != nullptr ? focused : defaultButton_;
  } else if (event->key() == Qt::Key_Escape) {
    button = cancelButton_;
  }
  if (button == nullptr || !button->isEnabled()) {
    QWidget::keyPressEvent(event);
    return;
  }
  event->accept();
  button->click();
}

}  // namespace zth::windows

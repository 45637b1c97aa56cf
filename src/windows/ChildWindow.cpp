#include "windows/ChildWindow.h"

#include <algorithm>
#include <utility>

#include <QAbstractButton>
#include <QCloseEvent>
#include <QComboBox>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLayout>
#include <QLineEdit>
#include <QMdiSubWindow>
#include <QPointer>
#include <QPushButton>

#include "base/Product.h"
#include "link/Asker.h"
#include "link/Transfers.h"
#include "link/Waiting.h"
#include "platform/Guard.h"
#include "platform/Questions.h"
#include "windows/OriginBar.h"

namespace zth::windows {
namespace {

bool IsEnter(const QKeyEvent& event) {
  return event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
}

/// On some desktops, Enter ticks the focused box or opens the focused list, or is lost in the surrounding frame. Here
/// it does the same on all desktops.
bool MayTakeEnter(const QObject& control) {
  if (qobject_cast<const QAbstractButton*>(&control) != nullptr) {
    return qobject_cast<const QPushButton*>(&control) == nullptr;
  }
  return qobject_cast<const QComboBox*>(&control) != nullptr || qobject_cast<const QGroupBox*>(&control) != nullptr;
}

constexpr char kUnread[] = "A transfer failed while this was read. Part of what it shows may not be the chip's.";

constexpr float kHintStrength = 0.7F;  // relative to a text's strength; a desktop's own 0.5 is too pale to read

}  // namespace

ChildWindow::ChildWindow(const QString& name, const QString& caption, const Context& context, unsigned shows)
    : context_(context), origin_(shows), caption_(caption), bar_(new OriginBar(this)) {
  setObjectName(name);
  setWindowTitle(caption);
  DarkenHints();
  bar_->Recolour();
  // The bar is created before all other controls, so it comes first in Tab order.
  connect(bar_, &OriginBar::ReadAgain, this, [this] { ReadAgain(); });
}

void ChildWindow::Load() {
  const link::FailureWatch watch;
  Form_Load();
  isUnread_ = watch.Failed();
  if (origin_.IsReadAtLoad()) {
    NoteOrigin(isUnread_);
  } else {
    ShowOrigin();
  }
}

void ChildWindow::NoteOrigin(bool isUnread) {
  isUnread_ = isUnread;
  origin_.Note();
  ShowOrigin();
}

void ChildWindow::ReadAgain() {
  if (!IsOfOtherChip() && !origin_.IsReadItself()) return;
  const link::UserAction action([this] { return Caption(); });
  const link::Asker asker(link::Asker::Kind::Action,
                          [name = objectName()] { return name.toStdString() + " read again"; });
  if (HoldsChanges()) {
    const QPointer<ChildWindow> self(this);  // it may be closed while the box is open
    constexpr int kRead = 0;
    constexpr int kKeep = 1;  // also the choice for a stray Enter
    const int answer = Services().prompts.Choose({base::kTitle,
                                                  Caption() + " holds changes that have not been applied.",
                                                  {"&Read again and lose them", "&Keep them"},
                                                  kKeep,
                                                  platform::BoxIcon::Warning,
                                                  this});
    if (answer != kRead || self == nullptr) return;
  }
  // Checked again: the device may have changed while the box was open.
  if (IsOfOtherChip() && origin_.IsReadWithModel() && !chip::ModelIsOfChipInUse()) chip::ReadChipModel();
  Reread();
}

void ChildWindow::ShowOrigin() {
  const link::ChipId inUse = link::ChipInUse();
  const QString title = caption_ + OriginNote();
  if (inUse == shownFor_ && title == windowTitle()) return;
  shownFor_ = inUse;
  const bool other = IsOfOtherChip();
  bar_->SetText(isUnread_ && !other ? kUnread : origin_.Explanation());
  const bool told = other || isUnread_;
  if (told == bar_->isHidden()) ShowBar(told);
  setWindowTitle(title);
  OriginChanged();
}

QMdiSubWindow* ChildWindow::FrameOf() const {
  return qobject_cast<QMdiSubWindow*>(parentWidget());
}

void ChildWindow::ShowBar(bool on) {
  if (layout() != nullptr && layout()->menuBar() == nullptr) layout()->setMenuBar(bar_);
  bar_->setVisible(on);
  QMdiSubWindow* frame = FrameOf();
  if (frame != nullptr) {
    frame->setProperty(kOtherChip, on);
    // A maximised frame has only the desk's height; if that is not enough, it is restored to its own size.
    if (on && frame->isMaximized() && minimumSizeHint().height() > height()) frame->showNormal();
    const bool free = !frame->isMaximized() && !frame->isMinimized();
    if (free && frame->testAttribute(Qt::WA_Resized)) Grow(*frame, on);
    frame->update();
  }
  BarChanged();
}

void ChildWindow::Grow(QMdiSubWindow& frame, bool on) {
  if (!on) {
    frame.resize(frame.size() - std::exchange(grown_, {0, 0}));
    return;
  }
  const QRect before = frame.geometry();
  // The width of the title, plus about five times its height for the icon and the buttons.
  QFont bold = frame.font();
  bold.setBold(true);
  const int title = QFontMetrics(bold).horizontalAdvance(caption_ + OriginNote()) + 8 * frame.fontMetrics().height();
  const int wider = std::max(0, title - before.width());
  updateGeometry();
  const QSize wanted = before.size() + QSize(wider, bar_->heightForWidth(width() + wider));
  frame.resize(wanted.expandedTo(frame.minimumSizeHint()));
  grown_ = frame.size() - before.size();
  const QSize room = frame.parentWidget()->size() - frame.size();
  frame.move(std::max(0, std::min(before.x(), room.width())), std::max(0, std::min(before.y(), room.height())));
}

int ChildWindow::PlaceBar() {
  if (bar_->isHidden()) return 0;
  const int height = bar_->heightForWidth(width());
  bar_->setGeometry(0, 0, width(), height);
  return height;
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
  if (event->type() != QEvent::PaletteChange) return;
  DarkenHints();
  bar_->Recolour();
}

void ChildWindow::Unload() {
  // The frame closes first and asks its contents; a window without a frame closes directly.
  QMdiSubWindow* frame = FrameOf();
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
  // The window's dialogs close with it; a handler that waits for one can still use it.
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
    // A click beside the controls gives the focus to the frame, which needs these keys only while it is being moved.
    if ((!IsEnter(*key) && key->key() != Qt::Key_Escape) || mouseGrabber() != nullptr) return false;
    keyPressEvent(key);
    return true;
  }
  if (!IsEnter(*key) || !MayTakeEnter(*watched)) return QWidget::eventFilter(watched, event);
  key->ignore();  // so it reaches this window
  return true;
}

void ChildWindow::keyPressEvent(QKeyEvent* event) {
  const bool enter = IsEnter(*event);
  if (!enter && event->key() != Qt::Key_Escape) {
    QWidget::keyPressEvent(event);
    return;
  }
  event->accept();
  // A key still held down from the previous window, or on a button, must not act twice.
  if (event->isAutoRepeat()) return;
  enter ? PressEnter() : PressEscape();
}

void ChildWindow::PressEnter() {
  // On a button, Enter presses that button, as in any dialog.
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

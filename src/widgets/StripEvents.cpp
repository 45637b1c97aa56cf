// Events and sizes of a Strip.
#include <algorithm>

#include <QContextMenuEvent>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QPaintEngine>
#include <QPainter>
#include <QToolTip>
#include <QWheelEvent>

#include "widgets/StripMenu.h"
#include "widgets/StripPrivate.h"

namespace zth::widgets {
namespace {

constexpr double kWheelNotch = 120;

}  // namespace

bool Strip::event(QEvent* event) {
  if (event->type() == QEvent::ToolTip) {
    // No tool tip over the plot: it would cover the read-out.
    p_->LayOut();
    const StripPart part = p_->painter.Layout().PartAt(static_cast<QHelpEvent*>(event)->pos(), Held());
    if (part.kind == StripPart::Kind::Plot) {
      QToolTip::hideText();
      return true;
    }
  }
  return QWidget::event(event);
}

void Strip::paintEvent(QPaintEvent*) {
  p_->waiting = false;
  QPainter painter(this);
  if (painter.paintEngine()->type() == QPaintEngine::Raster) {
    p_->painter.Paint(painter, scene_, size(), devicePixelRatioF(), palette());
  } else {
    p_->painter.PaintVector(painter, scene_, size(), palette(), true);
  }
  if (p_->painter.TitleEnd(scene_) != p_->titleEnd)
    QMetaObject::invokeMethod(
        this, [this] { ShowBar(); }, Qt::QueuedConnection);
}

void Strip::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  emit Strip2_LayoutChanged(Index());
}

void Strip::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  p_->painter.ResetColumns();
  PlaceBar();
  emit Strip2_LayoutChanged(Index());
}

void Strip::changeEvent(QEvent* event) {
  if (event->type() == QEvent::FontChange) p_->painter.SetFont(font());
  QWidget::changeEvent(event);
  if (event->type() == QEvent::FontChange) PlaceBar();
  update();
}

void Strip::mousePressEvent(QMouseEvent* event) {
  p_->LayOut();
  p_->input.Press(event->position().toPoint(), event->button());
}

void Strip::mouseMoveEvent(QMouseEvent* event) {
  p_->LayOut();
  p_->input.Move(event->position().toPoint(), event->buttons(), event->modifiers());
}

void Strip::mouseReleaseEvent(QMouseEvent* event) {
  p_->LayOut();
  if (p_->input.Release(event->position().toPoint(), event->button())) OpenMenu(event->globalPosition().toPoint());
}

void Strip::mouseDoubleClickEvent(QMouseEvent* event) {
  p_->LayOut();
  if (event->button() == Qt::LeftButton) p_->input.DoubleClick(event->position().toPoint());
}

void Strip::leaveEvent(QEvent* event) {
  QWidget::leaveEvent(event);
  p_->input.Leave();
}

void Strip::wheelEvent(QWheelEvent* event) {
  // Alt, or Shift on some desktops, makes the wheel scroll horizontally.
  const QPoint turn = event->angleDelta();
  const int delta = turn.y() != 0 ? turn.y() : turn.x();
  p_->LayOut();
  if (delta != 0) p_->input.Wheel(event->position().toPoint(), delta / kWheelNotch, event->modifiers());
  event->accept();
}

void Strip::keyPressEvent(QKeyEvent* event) {
  p_->LayOut();
  if (event->matches(QKeySequence::Copy)) {
    files_.CopyPicture();
  } else if (event->key() == Qt::Key_E && event->modifiers() == Qt::ControlModifier) {
    p_->bar->OpenExport();
  } else if (event->key() == Qt::Key_T && event->modifiers() == Qt::NoModifier && HasTimeOfDay()) {
    SetTimeOfDay(!TimeOfDay());
  } else if (!p_->input.Key(event->key(), event->modifiers())) {
    QWidget::keyPressEvent(event);
  }
}

void Strip::focusInEvent(QFocusEvent* event) {
  scene_.overlay.focus = event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason ||
                         event->reason() == Qt::ShortcutFocusReason;
  update();
}

void Strip::focusOutEvent(QFocusEvent*) {
  scene_.overlay.focus = false;
  update();
}

// With the mouse, the menu opens when a click is released, because a press may start a zoom box.
void Strip::contextMenuEvent(QContextMenuEvent* event) {
  if (event->reason() != QContextMenuEvent::Mouse) OpenMenu(event->globalPos());
  event->accept();
}

void Strip::OpenMenu(QPoint globalAt) {
  MakeStripMenu(*this).popup(globalAt);
}

QSize Strip::sizeHint() const {
  return {fontMetrics().averageCharWidth() * 110, fontMetrics().height() * 28};
}

QSize Strip::minimumSizeHint() const {
  // Room for every row of the legend, the title above it and the labels of the x axis below it; without a legend, a few
  // lines of plot.
  constexpr int kLeastLines = 12;
  const auto rows = std::count_if(scene_.labels.begin(), scene_.labels.end(), [](const StripLabel& label) {
    return label.slot != 0 && label.place == StripPlace::Legend;
  });
  const int lines = std::max(kLeastLines, static_cast<int>(rows) + 4);
  return {fontMetrics().averageCharWidth() * 40, fontMetrics().height() * lines};
}

}  // namespace zth::widgets

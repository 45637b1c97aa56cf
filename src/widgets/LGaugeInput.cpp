// Mouse and keyboard input to a gauge's sliders.
#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

#include <QAccessible>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainterPathStroker>

#include "widgets/LGauge.h"
#include "widgets/StepKeys.h"

namespace zth::widgets {
namespace {

constexpr double kGrabMargin = 5;    // pixels around a slider where it can still be grabbed
constexpr double kDeadCentre = 0.2;  // fraction of the rim; the angle is unreliable nearer to the centre

}  // namespace

void LGauge::Begin(Gesture gesture, int position) {
  End(true);
  Activate(position);
  gesture_ = gesture;
  startValue_ = SliderValue(position);
  update();
}

void LGauge::MoveActive(double value) {
  const int number = sliders_.at(static_cast<std::size_t>(active_)).number;
  if (SliderValue(active_) == value) return;
  pointers_[number] = value;
  update();
  TellValue(active_, value);
}

void LGauge::End(bool keep) {
  if (gesture_ == Gesture::None) return;
  gesture_ = Gesture::None;
  heldKeys_.clear();
  unsetCursor();
  update();
  const bool changed = SliderValue(active_) != startValue_;
  if (!changed) return;
  if (keep) {
    emit SliderChanged();
  } else {
    MoveActive(startValue_);
  }
}

bool LGauge::CanMove(int position) const {
  return isEnabled() && position >= 0 && position < static_cast<int>(sliders_.size());
}

void LGauge::StepByUser(int position, int steps) {
  if (!CanMove(position)) return;
  Begin(Gesture::Keys, position);
  MoveActive(Stepped(position, steps));
  End(true);
}

void LGauge::MoveByUser(int position, double value) {
  if (!CanMove(position)) return;
  Begin(Gesture::Keys, position);
  MoveActive(Scale().Settle(value));
  End(true);
}

void LGauge::Activate(int position) {
  if (position == active_) return;
  active_ = position;
  update();
  if (!hasFocus() || !QAccessible::isActive()) return;
  QAccessibleEvent event(this, QAccessible::Focus);
  event.setChild(position);
  QAccessible::updateAccessibility(&event);
}

void LGauge::Hover(int position) {
  if (position == hovered_) return;
  hovered_ = position;
  if (position >= 0) {
    setCursor(Qt::OpenHandCursor);
  } else {
    unsetCursor();
  }
  update();
}

int LGauge::SliderAt(const QPointF& point) const {
  const DialMeasures measures(size());
  QPainterPathStroker stroker;
  stroker.setWidth(2 * kGrabMargin);
  int near = -1;
  for (int position = 0; position < static_cast<int>(sliders_.size()); ++position) {
    const SliderKind kind = sliders_[static_cast<std::size_t>(position)].kind;
    const QPainterPath shape = SliderShape(measures, kind, Scale().Angle(SliderValue(position)));
    if (shape.contains(point)) return position;
    if (near < 0 && stroker.createStroke(shape).contains(point)) near = position;
  }
  return near;
}

double LGauge::PointerAngle(const QPointF& point) const {
  const QPointF arm = point - DialMeasures(size()).centre;
  return std::atan2(arm.x(), -arm.y()) * 180 / std::numbers::pi;
}

void LGauge::mousePressEvent(QMouseEvent* event) {
  const int position = event->button() == Qt::LeftButton ? SliderAt(event->position()) : -1;
  if (position < 0) {  // only the slider itself can be grabbed: a stray click on the dial must not move a limit
    event->ignore();
    return;
  }
  byKeyboard_ = false;
  Begin(Gesture::Drag, position);
  dragAngle_ = Scale().Angle(SliderValue(position));
  lastAngle_ = PointerAngle(event->position());
  setCursor(Qt::ClosedHandCursor);
}

void LGauge::mouseMoveEvent(QMouseEvent* event) {
  if (gesture_ != Gesture::Drag) {
    Hover(SliderAt(event->position()));
    return;
  }
  if (!(event->buttons() & Qt::LeftButton)) {  // the release went to another widget
    End(true);
    return;
  }
  const DialMeasures measures(size());
  const QPointF arm = event->position() - measures.centre;
  if (std::hypot(arm.x(), arm.y()) < kDeadCentre * measures.rim) return;
  // Accumulate the turn, even beyond the ends, so that a drag across the gap does not jump to the other end.
  const double angle = PointerAngle(event->position());
  dragAngle_ += TurnBetween(lastAngle_, angle);
  lastAngle_ = angle;
  MoveActive(Scale().ValueAt(dragAngle_));
}

void LGauge::mouseReleaseEvent(QMouseEvent* event) {
  if (gesture_ != Gesture::Drag || event->button() != Qt::LeftButton) return;
  End(true);
  hovered_ = -1;
  Hover(SliderAt(event->position()));
}

void LGauge::leaveEvent(QEvent* event) {
  Hover(-1);
  QWidget::leaveEvent(event);
}

void LGauge::hideEvent(QHideEvent* event) {
  End(false);
  hovered_ = -1;
  QWidget::hideEvent(event);
}

double LGauge::Stepped(int position, int steps) const {
  const double value = SliderValue(position);
  const auto found = stops_.find(sliders_.at(static_cast<std::size_t>(position)).number);
  if (found != stops_.end()) {
    const std::vector<double>& stops = found->second;
    const auto here = std::ranges::find(stops, value) - stops.begin();
    const auto last = std::ssize(stops) - 1;
    if (here <= last) return stops[static_cast<std::size_t>(std::clamp<std::ptrdiff_t>(here + steps, 0, last))];
  }
  const double target = Scale().Settle(value + steps * Scale().KeyStep());
  // From beyond the scale, moving back to its end is not a step in that direction.
  return (target > value) == (steps > 0) ? target : value;
}

void LGauge::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape && gesture_ != Gesture::None) {
    End(false);
    return;
  }
  const auto steps = StepsOfKey(*event);
  if (!steps || sliders_.empty()) {
    QWidget::keyPressEvent(event);
    return;
  }
  if (gesture_ == Gesture::Drag) return;  // the mouse is dragging
  byKeyboard_ = true;
  if (gesture_ == Gesture::None) Begin(Gesture::Keys, active_);
  heldKeys_.insert(event->key());
  MoveActive(Stepped(active_, *steps));
}

void LGauge::keyReleaseEvent(QKeyEvent* event) {
  if (gesture_ != Gesture::Keys || !heldKeys_.contains(event->key())) {
    QWidget::keyReleaseEvent(event);
    return;
  }
  if (event->isAutoRepeat()) return;
  heldKeys_.remove(event->key());
  if (heldKeys_.isEmpty()) End(true);
}

void LGauge::focusInEvent(QFocusEvent* event) {
  const int last = static_cast<int>(sliders_.size()) - 1;
  const Qt::FocusReason reason = event->reason();
  if (reason == Qt::MouseFocusReason) byKeyboard_ = false;
  if (reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason || reason == Qt::ShortcutFocusReason) {
    byKeyboard_ = true;
    Activate(reason == Qt::BacktabFocusReason ? std::max(0, last) : 0);
  }
  QWidget::focusInEvent(event);
}

void LGauge::focusOutEvent(QFocusEvent* event) {
  if (gesture_ == Gesture::Keys) End(true);
  QWidget::focusOutEvent(event);
}

bool LGauge::focusNextPrevChild(bool next) {
  const int position = active_ + (next ? 1 : -1);
  if (!hasFocus() || position < 0 || position >= static_cast<int>(sliders_.size())) {
    return QWidget::focusNextPrevChild(next);
  }
  if (gesture_ == Gesture::Keys) End(true);
  byKeyboard_ = true;
  Activate(position);
  return true;
}

}  // namespace zth::widgets

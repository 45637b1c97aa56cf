#include "widgets/GSlider.h"

#include <algorithm>
#include <cmath>

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QWheelEvent>

#include "base/Rounding.h"
#include "widgets/ActionAccess.h"
#include "widgets/Colours.h"
#include "widgets/StepKeys.h"

namespace zth::widgets {
namespace {

constexpr double kStep = 1;
constexpr int kNotch = 120;  // wheel turn in eighths of a degree

class SliderAccess final : public ActionAccess, public QAccessibleValueInterface {
 public:
  explicit SliderAccess(GSlider* slider)
      : ActionAccess(slider, QAccessible::Slider,
                     Steps([slider](int step) { slider->StepByUser(slider->Value() + step * kStep); })) {}

  void* interface_cast(QAccessible::InterfaceType type) override {
    if (type == QAccessible::ValueInterface) return static_cast<QAccessibleValueInterface*>(this);
    return ActionAccess::interface_cast(type);
  }
  QString text(QAccessible::Text kind) const override {
    return kind == QAccessible::Value ? QString::number(Slider().Value()) : ActionAccess::text(kind);
  }
  QVariant currentValue() const override { return Slider().Value(); }
  void setCurrentValue(const QVariant& value) override { Slider().StepByUser(value.toDouble()); }
  QVariant maximumValue() const override { return GSlider::kMaximum; }
  QVariant minimumValue() const override { return GSlider::kMinimum; }
  QVariant minimumStepSize() const override { return kStep; }

 private:
  GSlider& Slider() const { return *qobject_cast<GSlider*>(object()); }
};

QAccessibleInterface* Make(const QString&, QObject* object) {
  auto* slider = qobject_cast<GSlider*>(object);
  return slider ? new SliderAccess(slider) : nullptr;
}

QString ValueText(double value) {
  const double shown = base::RoundHalfEven(value, 1);
  return QString::number(shown, 'f', shown == std::floor(shown) ? 0 : 1) + QLatin1Char('%');
}

}  // namespace

struct GSlider::Layout {
  QRectF groove;
  QRectF thumb;
  QRectF text;
  double first = 0;   ///< x of the thumb's centre at 0
  double travel = 1;  ///< distance from there to 100

  double ValueAt(double x) const {
    return std::clamp(base::RoundHalfEven(kMinimum + (x - first) / travel * (kMaximum - kMinimum)), kMinimum, kMaximum);
  }
};

GSlider::GSlider(QWidget* parent) : QWidget(parent) {
  QAccessible::installFactory(Make);
  setFocusPolicy(Qt::StrongFocus);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  pace_.setSingleShot(true);
  pace_.setTimerType(Qt::PreciseTimer);  // a coarse timer may fire early
  pace_.setInterval(kPaceMs);
  connect(&pace_, &QTimer::timeout, this, &GSlider::ReportDrag);
}

void GSlider::SetValue(double value) {
  if (std::isnan(value)) return;
  const double limited = std::clamp(value, kMinimum, kMaximum);
  if (limited == value_) return;
  value_ = limited;
  update();
  if (!QAccessible::isActive()) return;
  QAccessibleValueChangeEvent event(this, value_);
  QAccessible::updateAccessibility(&event);
}

void GSlider::SetStale(bool stale) {
  if (stale == stale_) return;
  stale_ = stale;
  update();
}

void GSlider::StepByUser(double value) {
  if (!isEnabled() || held_ || std::isnan(value)) return;
  const double target = std::clamp(base::RoundHalfEven(value), kMinimum, kMaximum);
  if (target == value_) return;
  held_ = true;  // as in a drag: handlers that ask see the slider held
  emit MouseDown(index_);
  if (!held_) return;  // a handler disabled or released the slider
  SetValue(target);
  emit Change(index_);
  Release(false);
}

void GSlider::DragTo(double value) {
  SetValue(value);
  if (!pace_.isActive()) ReportDrag();
}

void GSlider::ReportDrag() {
  if (!held_ || value_ == reportedValue_) return;
  reportedValue_ = value_;
  pace_.start();
  emit Change(index_);
}

void GSlider::Release(bool report) {
  if (!held_) return;
  pace_.stop();
  if (report) ReportDrag();
  if (!held_) return;  // released by the handler
  pace_.stop();
  held_ = false;
  update();
  emit MouseUp(index_);
}

void GSlider::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton || held_) {
    event->ignore();
    return;
  }
  const Layout layout = Measure();
  const double x = event->position().x();
  const bool onThumb = layout.thumb.adjusted(-2, -2, 2, 2).contains(event->position());
  if (!onThumb && x > layout.text.left()) {  // the number is not part of the groove
    event->ignore();
    return;
  }
  held_ = true;
  startValue_ = reportedValue_ = value_;
  grabOffset_ = onThumb ? x - layout.thumb.center().x() : 0;
  update();
  emit MouseDown(index_);
  if (!onThumb && held_) DragTo(layout.ValueAt(x));
}

void GSlider::mouseMoveEvent(QMouseEvent* event) {
  if (!held_) return;
  if (!(event->buttons() & Qt::LeftButton)) {  // the release went to another widget
    Release(true);
    return;
  }
  DragTo(Measure().ValueAt(event->position().x() - grabOffset_));
}

void GSlider::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) Release(true);
}

void GSlider::wheelEvent(QWheelEvent* event) {
  event->accept();
  if (held_) return;
  const QPoint delta = event->angleDelta();
  wheelRest_ += delta.y() != 0 ? delta.y() : delta.x();
  const int notches = wheelRest_ / kNotch;
  wheelRest_ -= notches * kNotch;
  if (notches != 0) StepByUser(value_ + notches * kStep);
}

void GSlider::keyPressEvent(QKeyEvent* event) {
  if (held_ && event->key() == Qt::Key_Escape) {  // return to the start of the drag, and tell the link
    SetValue(startValue_);
    Release(true);
    return;
  }
  const auto target = SteppedByKey(*event, value_, kStep, kMinimum, kMaximum);
  if (target) {
    StepByUser(*target);
  } else {
    QWidget::keyPressEvent(event);
  }
}

void GSlider::changeEvent(QEvent* event) {
  // The slider was disabled: drop the pending value, and report that it is no longer held.
  if (event->type() == QEvent::EnabledChange && !isEnabled()) Release(false);
  update();
  QWidget::changeEvent(event);
}

void GSlider::hideEvent(QHideEvent* event) {
  Release(false);
  QWidget::hideEvent(event);
}

void GSlider::enterEvent(QEnterEvent* event) {
  hovered_ = true;
  update();
  QWidget::enterEvent(event);
}

void GSlider::leaveEvent(QEvent* event) {
  hovered_ = false;
  update();
  QWidget::leaveEvent(event);
}

QSize GSlider::sizeHint() const {
  const int line = fontMetrics().height();
  return {line * 13, line * 8 / 5};
}

QSize GSlider::minimumSizeHint() const {
  const int line = fontMetrics().height();
  return {line * 7, line * 8 / 5};
}

GSlider::Layout GSlider::Measure() const {
  const double line = fontMetrics().height();
  const double textWidth = fontMetrics().horizontalAdvance(QStringLiteral("100.0%"));
  const double middle = height() / 2.0;
  Layout layout;
  layout.text = QRectF(width() - textWidth - 2, 0, textWidth, height());
  const double size = std::clamp(line * 1.05, 12.0, std::max(12.0, height() - 4.0));
  const double inset = size / 2 + 2;
  layout.first = inset;
  layout.travel = std::max(1.0, layout.text.left() - line * 0.5 - 2 * inset);
  const double thickness = std::max(4.0, line * 0.28);
  layout.groove = QRectF(layout.first - thickness / 2, middle - thickness / 2, layout.travel + thickness, thickness);
  const double centre = layout.first + (value_ - kMinimum) / (kMaximum - kMinimum) * layout.travel;
  layout.thumb = QRectF(centre - size / 2, middle - size / 2, size, size);
  return layout;
}

void GSlider::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const Layout layout = Measure();
  const QPalette& colours = palette();
  const bool dark = IsDark(colours);
  const QColor ground = colours.color(QPalette::Window);
  const QColor edge = dark ? ground.lighter(220) : ground.darker(165);
  const double round = layout.groove.height() / 2;

  painter.setPen(QPen(edge, 1));
  painter.setBrush(dark ? ground.darker(140) : ground.darker(112));
  painter.drawRoundedRect(layout.groove, round, round);
  QRectF filled = layout.groove;
  filled.setRight(layout.thumb.center().x());
  const QColor accent = isEnabled() && !stale_ ? colours.color(QPalette::Highlight) : edge;
  painter.setPen(Qt::NoPen);
  painter.setBrush(accent);
  painter.drawRoundedRect(filled, round, round);

  if (hasFocus()) {
    painter.setPen(QPen(colours.color(QPalette::Highlight), 2));
    painter.setBrush(Qt::NoBrush);
    painter.drawEllipse(layout.thumb.adjusted(-1, -1, 1, 1));
  }
  const QColor button = colours.color(QPalette::Button);
  QColor face = dark ? button.lighter(260) : QColor(Qt::white);
  if (!isEnabled()) face = dark ? button : ground;
  if (held_) face = face.darker(112);
  if (hovered_ && !held_ && isEnabled()) face = dark ? face.lighter(115) : accent.lighter(185);
  painter.setPen(QPen(isEnabled() ? edge.darker(dark ? 100 : 120) : edge, 1));
  painter.setBrush(face);
  painter.drawEllipse(layout.thumb.adjusted(1.5, 1.5, -1.5, -1.5));

  const QColor ink = colours.color(QPalette::WindowText);
  painter.setPen(stale_ ? Blend(ink, ground, kPale) : ink);
  painter.drawText(layout.text, Qt::AlignRight | Qt::AlignVCenter, ValueText(value_));
}

}  // namespace zth::widgets

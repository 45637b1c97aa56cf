#include "widgets/Toggle.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include <QAccessible>
#include <QAccessibleWidget>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QPen>

namespace zth::widgets {
namespace {

class ToggleAccess final : public QAccessibleWidget {
 public:
  // A picture whose name includes its meaning: Qt's indicator role has no known role on AT-SPI.
  explicit ToggleAccess(Toggle* toggle) : QAccessibleWidget(toggle, QAccessible::Graphic) {}

  QString text(QAccessible::Text kind) const override {
    if (kind == QAccessible::Value) return Lamp().StateText();
    if (kind != QAccessible::Name) return QAccessibleWidget::text(kind);
    const QString name = QAccessibleWidget::text(kind);  // screen readers that skip a picture's value read its name
    return name.isEmpty() ? Lamp().StateText() : name + QStringLiteral(": ") + Lamp().StateText();
  }

  QAccessible::State state() const override {
    QAccessible::State state = QAccessibleWidget::state();
    state.checked = Lamp().Value();
    state.readOnly = true;
    return state;
  }

 private:
  const Toggle& Lamp() const { return *qobject_cast<Toggle*>(object()); }
};

QAccessibleInterface* Make(const QString&, QObject* object) {
  auto* toggle = qobject_cast<Toggle*>(object);
  return toggle ? new ToggleAccess(toggle) : nullptr;
}

QPainterPath Octagon(const QPointF& centre, double radius) {
  QPainterPath path;
  for (int corner = 0; corner < 8; ++corner) {
    const double angle = (corner + 0.5) * std::numbers::pi / 4;
    const QPointF at = centre + QPointF(std::cos(angle), std::sin(angle)) * radius;
    corner == 0 ? path.moveTo(at) : path.lineTo(at);
  }
  path.closeSubpath();
  return path;
}

void DrawSign(QPainter& painter, bool value, const QPointF& c, double r) {
  painter.setPen(QPen(Qt::white, r * 0.27, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter.setBrush(Qt::NoBrush);
  if (value) {
    painter.drawLine(c + QPointF(0, -r * 0.48), c + QPointF(0, r * 0.08));
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::white);
    painter.drawEllipse(c + QPointF(0, r * 0.48), r * 0.16, r * 0.16);
  } else {
    const QPointF check[] = {c + QPointF(-r * 0.42, r * 0.04), c + QPointF(-r * 0.10, r * 0.36),
                             c + QPointF(r * 0.44, -r * 0.32)};
    painter.drawPolyline(check, 3);
  }
}

}  // namespace

Toggle::Toggle(QWidget* parent) : QWidget(parent) {
  QAccessible::installFactory(Make);
  setFocusPolicy(Qt::NoFocus);
  QSizePolicy policy(QSizePolicy::Fixed, QSizePolicy::Fixed);
  policy.setRetainSizeWhenHidden(true);  // rows must not jump when a channel is turned off
  setSizePolicy(policy);
}

void Toggle::SetValue(bool value) {
  if (value == value_) return;
  value_ = value;
  TellState();
}

void Toggle::SetStale(bool stale) {
  if (stale == stale_) return;
  stale_ = stale;
  TellState();
}

void Toggle::TellState() {
  update();
  if (!QAccessible::isActive()) return;
  QAccessible::State changed;
  changed.checked = true;
  QAccessibleStateChangeEvent stateEvent(this, changed);
  QAccessible::updateAccessibility(&stateEvent);
  QAccessibleEvent nameEvent(this, QAccessible::NameChanged);
  QAccessible::updateAccessibility(&nameEvent);
  if (!Visible()) return;
  // Screen readers speak this without having the focus on the lamp.
  QAccessibleEvent alert(this, QAccessible::Alert);
  QAccessible::updateAccessibility(&alert);
}

bool Toggle::Visible() const {
  return !(isHidden() && testAttribute(Qt::WA_WState_ExplicitShowHide));
}

QString Toggle::StateText() const {
  return (value_ ? tr("alert") : tr("no alert")) + (stale_ ? tr(", not read") : QString());
}

QSize Toggle::sizeHint() const {
  const int side = std::max(12, fontMetrics().height());
  return {side, side};
}

void Toggle::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const QPointF centre = QRectF(rect()).center();
  const double radius = std::min(width(), height()) / 2.0 - 1;
  QColor colour = value_ ? QColor(0xcf, 0x22, 0x22) : QColor(0x1f, 0x8f, 0x46);
  if (stale_) colour = QColor(0x75, 0x75, 0x75);
  if (!isEnabled()) colour = QColor::fromHslF(colour.hslHueF(), colour.hslSaturationF() * 0.25F, 0.55F);
  QLinearGradient lamp(centre - QPointF(0, radius), centre + QPointF(0, radius));
  lamp.setColorAt(0, colour.lighter(116));
  lamp.setColorAt(1, colour.darker(106));
  painter.setPen(QPen(colour.darker(150), 1));
  painter.setBrush(lamp);
  if (value_) {
    painter.drawPath(Octagon(centre, radius / std::cos(std::numbers::pi / 8)));
  } else {
    painter.drawEllipse(centre, radius, radius);
  }
  if (stale_) {
    QFont sign = font();
    sign.setBold(true);
    sign.setPixelSize(std::max(1, static_cast<int>(radius * 1.5)));
    painter.setFont(sign);
    painter.setPen(Qt::white);
    painter.drawText(rect(), Qt::AlignCenter, QStringLiteral("?"));
    return;
  }
  DrawSign(painter, value_, centre, radius);
}

}  // namespace zth::widgets

#include "widgets/LGaugeFace.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include <QFontMetricsF>
#include <QLinearGradient>
#include <QPainter>
#include <QPen>
#include <QRadialGradient>
#include <QTransform>

#include "widgets/Colours.h"
#include "widgets/LGaugeScale.h"

namespace zth::widgets {
namespace {

// The plate uses the Base colour, whatever the window's colour.
bool OnDark(const QPalette& palette) {
  return IsDark(palette, QPalette::Base);
}

bool IsDisabled(const QPalette& palette) {
  return palette.currentColorGroup() == QPalette::Disabled;
}

QColor Ink(const QPalette& palette) {
  return palette.color(QPalette::Text);
}

QColor Plate(const QPalette& palette) {
  return palette.color(QPalette::Base);
}

QRectF Circle(const QPointF& centre, double radius) {
  return {centre.x() - radius, centre.y() - radius, 2 * radius, 2 * radius};
}

// An upright slider with its tip at the origin; h is its height.
QPainterPath UprightSlider(SliderKind kind, double h) {
  const double w = h * 0.80;
  QPainterPath path;
  path.moveTo(0, 0);
  switch (kind) {
    case SliderKind::Low:
      path.lineTo(0, -h);
      path.lineTo(-w * 0.45, -h);
      path.cubicTo(-w * 1.12, -h, -w * 1.12, -h * 0.34, -w * 0.45, -h * 0.34);
      break;
    case SliderKind::High:
      path.lineTo(w, -h * 0.38);
      path.lineTo(w, -h);
      path.lineTo(0, -h);
      break;
    case SliderKind::Sole:
      path.lineTo(w * 0.5, -h * 0.45);
      path.lineTo(w * 0.5, -h);
      path.lineTo(-w * 0.5, -h);
      path.lineTo(-w * 0.5, -h * 0.45);
      break;
  }
  path.closeSubpath();
  return path;
}

QPainterPath Turned(const QPainterPath& upright, const DialMeasures& measures, double angle, double radius) {
  QTransform turn;
  turn.translate(measures.centre.x(), measures.centre.y());
  turn.rotate(angle);
  turn.translate(0, -radius);
  return turn.map(upright);
}

}  // namespace

DialMeasures::DialMeasures(const QSizeF& widget) {
  centre = QPointF(widget.width() / 2, widget.height() / 2);
  rim = std::max(10.0, std::min(widget.width(), widget.height()) / 2 - 1);
  plate = rim - std::max(2.5, rim * 0.045);
  handle = std::clamp(rim * 0.17, 12.0, 26.0);
  scale = plate - handle - std::max(1.5, rim * 0.02);
  major = scale - std::max(5.0, rim * 0.085);
  label = major - std::max(1.5, rim * 0.02);
  number = std::clamp(rim * 0.118, 8.0, 26.0);
  caption = std::clamp(rim * 0.16, 10.0, 36.0);
}

QPointF OnDial(const DialMeasures& measures, double angle, double radius) {
  const double radians = angle * std::numbers::pi / 180;
  return measures.centre + QPointF(std::sin(radians), -std::cos(radians)) * radius;
}

QPainterPath SliderShape(const DialMeasures& measures, SliderKind kind, double angle) {
  return Turned(UprightSlider(kind, measures.handle), measures, angle, measures.scale);
}

DialPainter::DialPainter(QPainter& painter, const DialMeasures& measures, const QPalette& palette, const QFont& font)
    : painter_(painter), measures_(measures), palette_(palette), font_(font) {
  painter_.setRenderHint(QPainter::Antialiasing);
  painter_.setRenderHint(QPainter::TextAntialiasing);
}

QColor DialPainter::SliderColour(SliderKind kind, const QPalette& palette) {
  const bool dark = OnDark(palette);
  QColor colour;
  switch (kind) {
    case SliderKind::Low:
      colour = dark ? QColor(0x4d, 0x9d, 0xf0) : QColor(0x1a, 0x62, 0xb8);
      break;
    case SliderKind::High:
      colour = dark ? QColor(0xf5, 0x92, 0x3e) : QColor(0xd2, 0x55, 0x0a);
      break;
    case SliderKind::Sole:
      colour = dark ? QColor(0xb8, 0x8c, 0xf0) : QColor(0x74, 0x3c, 0xb4);
      break;
  }
  return IsDisabled(palette) ? Blend(colour, Plate(palette), 0.6) : colour;
}

std::array<QColor, 3> DialPainter::ShapeColours(const QPalette& palette) {
  const bool dark = OnDark(palette);
  return {dark ? QColor(0x3f, 0xb5, 0x7a) : QColor(0x2a, 0x9a, 0x5c),
          dark ? QColor(0xff, 0x5a, 0x52) : QColor(0xb7, 0x17, 0x1d), Blend(Ink(palette), Plate(palette), 0.48)};
}

QFont DialPainter::FontOf(double pixels, bool bold) const {
  QFont font = font_;
  font.setPixelSize(std::max(1, static_cast<int>(std::lround(pixels))));
  font.setBold(bold);
  return font;
}

void DialPainter::Bezel() {
  const bool dark = OnDark(palette_);
  const double r = measures_.rim;
  const QPointF c = measures_.centre;
  QLinearGradient metal(c - QPointF(r * 0.6, r), c + QPointF(r * 0.6, r));
  metal.setColorAt(0, dark ? QColor(0x6d, 0x72, 0x78) : QColor(0xf4, 0xf5, 0xf6));
  metal.setColorAt(0.5, dark ? QColor(0x4a, 0x4e, 0x53) : QColor(0xb9, 0xbe, 0xc4));
  metal.setColorAt(1, dark ? QColor(0x2c, 0x2f, 0x33) : QColor(0x84, 0x8a, 0x92));
  painter_.setPen(QPen(dark ? QColor(0x16, 0x18, 0x1a) : QColor(0x6b, 0x72, 0x7a), 1));
  painter_.setBrush(metal);
  painter_.drawEllipse(Circle(c, r - 0.5));

  const QColor plate = Plate(palette_);
  QRadialGradient ground(c, measures_.plate);
  ground.setColorAt(0, plate);
  ground.setColorAt(0.88, plate);
  ground.setColorAt(1, Blend(plate, Qt::black, dark ? 0.35 : 0.10));
  painter_.setPen(QPen(dark ? QColor(0x10, 0x11, 0x13) : QColor(0x78, 0x7f, 0x87), 1));
  painter_.setBrush(ground);
  painter_.drawEllipse(Circle(c, measures_.plate));
}

void DialPainter::Face(double scaleMin, double scaleMax) {
  Bezel();
  const QColor ink = Ink(palette_);
  const QFont font = FontOf(measures_.number, false);
  const QFontMetricsF metrics(font, painter_.device());
  const auto measure = [&metrics](const std::string& text) {
    return TextSize{metrics.horizontalAdvance(QString::fromStdString(text)), metrics.capHeight() * 1.1};
  };
  const double fine = std::max(1.0, measures_.rim * 0.009);

  painter_.setBrush(Qt::NoBrush);
  painter_.setPen(QPen(ink, fine, Qt::SolidLine, Qt::FlatCap));
  const double sweep = 2 * kDialHalfSweep;
  painter_.drawArc(Circle(measures_.centre, measures_.scale), static_cast<int>((90 + kDialHalfSweep - sweep) * 16),
                   static_cast<int>(sweep * 16));
  const auto stroke = [&](double angle, double inner, double width) {
    painter_.setPen(QPen(ink, width, Qt::SolidLine, Qt::FlatCap));
    painter_.drawLine(OnDial(measures_, angle, measures_.scale + fine / 2), OnDial(measures_, angle, inner));
  };
  const double minor = measures_.scale - (measures_.scale - measures_.major) * 0.5;
  stroke(-kDialHalfSweep, minor, fine);  // the ends of the scale, which need not be round numbers
  stroke(kDialHalfSweep, minor, fine);

  painter_.setFont(font);
  for (const DialTick& tick : DialTicks(scaleMin, scaleMax, measures_.scale, measures_.label, measure)) {
    // A minor tick close to an end of the scale would look like a double line.
    const double toEnd = (kDialHalfSweep - std::abs(tick.angle)) * std::numbers::pi / 180 * measures_.scale;
    if (!tick.major && toEnd < 3 * fine) continue;
    stroke(tick.angle, tick.major ? measures_.major : minor, tick.major ? fine * 1.9 : fine);
    if (!tick.major) continue;
    const QString text = QString::fromStdString(tick.text);
    const QPointF at(measures_.centre.x() + tick.labelX - metrics.horizontalAdvance(text) / 2,
                     measures_.centre.y() + tick.labelY + metrics.capHeight() / 2);
    painter_.drawText(at, text);
  }
}

void DialPainter::AllowedBand(double low, double high) {
  if (high <= low) return;  // if the limits cross, nothing is allowed
  QColor colour = ShapeColours(palette_)[0];
  if (IsDisabled(palette_)) colour = Blend(colour, Plate(palette_), 0.6);
  const double width = std::max(2.5, measures_.rim * 0.032);
  painter_.setBrush(Qt::NoBrush);
  painter_.setPen(QPen(colour, width, Qt::SolidLine, Qt::FlatCap));
  painter_.drawArc(Circle(measures_.centre, measures_.scale + width * 0.7), static_cast<int>((90 - high) * 16),
                   static_cast<int>((high - low) * 16));
}

void DialPainter::Mark(double angle) {
  // A small pin on the arc, like a meter's stop pin; it cannot be mistaken for a slider's tip or a tick.
  painter_.setPen(QPen(Plate(palette_), std::max(1.0, measures_.rim * 0.012)));
  painter_.setBrush(Ink(palette_));
  painter_.drawEllipse(Circle(OnDial(measures_, angle, measures_.scale), std::max(3.0, measures_.rim * 0.034)));
}

void DialPainter::Hand(double angle, bool live) {
  const double r = measures_.rim;
  const double half = std::max(1.6, r * 0.024);
  const double length = measures_.scale - (measures_.scale - measures_.major) * 0.35;
  QPainterPath hand;
  hand.moveTo(0, -length);
  hand.lineTo(half, -length * 0.12);
  hand.lineTo(half * 1.25, r * 0.15);
  hand.lineTo(-half * 1.25, r * 0.15);
  hand.lineTo(-half, -length * 0.12);
  hand.closeSubpath();

  const bool dark = OnDark(palette_);
  const QColor colour = ShapeColours(palette_)[live && !IsDisabled(palette_) ? 1 : 2];
  const QPainterPath turned = Turned(hand, measures_, angle, 0);
  painter_.setPen(Qt::NoPen);
  painter_.setBrush(QColor(0, 0, 0, dark ? 90 : 40));
  painter_.drawPath(turned.translated(r * 0.012, r * 0.018));
  painter_.setPen(QPen(Plate(palette_), std::max(0.6, r * 0.006)));
  painter_.setBrush(colour);
  painter_.drawPath(turned);

  const double hub = std::max(4.0, r * 0.07);
  QLinearGradient metal(measures_.centre - QPointF(0, hub), measures_.centre + QPointF(0, hub));
  metal.setColorAt(0, dark ? QColor(0x80, 0x86, 0x8d) : QColor(0x6a, 0x70, 0x77));
  metal.setColorAt(1, dark ? QColor(0x3a, 0x3e, 0x43) : QColor(0x2e, 0x32, 0x37));
  painter_.setPen(QPen(dark ? QColor(0x16, 0x18, 0x1a) : QColor(0x22, 0x25, 0x29), 0.8));
  painter_.setBrush(metal);
  painter_.drawEllipse(Circle(measures_.centre, hub));
}

void DialPainter::Slider(SliderKind kind, double angle, bool lifted, bool focused) {
  const QPainterPath shape = SliderShape(measures_, kind, angle);
  const QColor colour = SliderColour(kind, palette_);
  // The line down to the scale marks the exact value.
  painter_.setPen(QPen(colour, std::max(1.4, measures_.rim * 0.014), Qt::SolidLine, Qt::FlatCap));
  painter_.drawLine(OnDial(measures_, angle, measures_.scale + measures_.handle * 0.5),
                    OnDial(measures_, angle, measures_.major));
  if (focused) {
    painter_.setBrush(Qt::NoBrush);
    painter_.setPen(QPen(Ink(palette_), 5, Qt::SolidLine, Qt::SquareCap, Qt::RoundJoin));
    painter_.drawPath(shape);
    painter_.setPen(QPen(Plate(palette_), 2.6, Qt::SolidLine, Qt::SquareCap, Qt::RoundJoin));
    painter_.drawPath(shape);
  }
  painter_.setPen(QPen(Blend(colour, OnDark(palette_) ? Qt::white : Qt::black, 0.35), 1, Qt::SolidLine, Qt::SquareCap,
                       Qt::MiterJoin));
  painter_.setBrush(lifted ? colour.lighter(125) : colour);
  painter_.drawPath(shape);
}

void DialPainter::Caption(const QString& text, bool pale) {
  const QString shown = text.trimmed();
  if (shown.isEmpty()) return;
  // The gap of the scale narrows towards the rim: text that is too wide is made smaller, not cut off.
  const double room = measures_.rim * 0.92;
  QFont font = FontOf(measures_.caption, true);
  const double width = QFontMetricsF(font, painter_.device()).horizontalAdvance(shown);
  if (width > room) font = FontOf(std::max(6.0, std::floor(measures_.caption * room / width)), true);
  const QFontMetricsF metrics(font, painter_.device());
  painter_.setFont(font);
  painter_.setPen(pale ? Blend(Ink(palette_), Plate(palette_), kPale) : Ink(palette_));
  painter_.drawText(measures_.centre + QPointF(-metrics.horizontalAdvance(shown) / 2, measures_.rim * 0.72), shown);
}

void DialPainter::ValueTag(SliderKind kind, const QString& text) {
  const QFont font = FontOf(std::max(measures_.number, 10.0), true);
  const QFontMetricsF metrics(font, painter_.device());
  const QSizeF size(metrics.horizontalAdvance(text) + measures_.number * 1.2,
                    metrics.height() + measures_.number * 0.1);
  QRectF tag(QPointF(0, 0), size);
  tag.moveCenter(measures_.centre - QPointF(0, measures_.rim * 0.25));
  const QColor colour = SliderColour(kind, palette_);
  painter_.setPen(QPen(Plate(palette_), 1.5));
  painter_.setBrush(colour);
  painter_.drawRoundedRect(tag, size.height() * 0.3, size.height() * 0.3);
  painter_.setPen(OnDark(palette_) ? QColor(0x10, 0x11, 0x13) : QColor(Qt::white));
  painter_.setFont(font);
  painter_.drawText(tag, Qt::AlignCenter, text);
}

}  // namespace zth::widgets

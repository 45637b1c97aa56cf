#pragma once

#include <array>

#include <QColor>
#include <QFont>
#include <QPainterPath>
#include <QPalette>
#include <QPointF>
#include <QRectF>
#include <QSizeF>
#include <QString>

class QPainter;

namespace zth::widgets {

class DialScale;

/// What a slider of a gauge stands for; determines colour and shape. A low limit has a round blue flag towards smaller
/// values, a high limit a square orange flag towards greater values, so that two limits at the same value appear side
/// by side. A single limit is a violet house shape above its value.
enum class SliderKind { Low, High, Sole };

/// Measures of a dial in the middle of a rectangle, in logical pixels; radii are from the centre.
struct DialMeasures {
  explicit DialMeasures(const QSizeF& widget);

  QPointF centre;
  double rim = 0;      ///< outer edge of the bezel
  double plate = 0;    ///< edge of the plate inside it
  double scale = 0;    ///< the scale's arc, touched by the sliders' tips
  double major = 0;    ///< inner end of a major tick
  double label = 0;    ///< the circle that encloses the numbers
  double handle = 0;   ///< height of a slider
  double number = 0;   ///< pixel size of the numbers
  double caption = 0;  ///< pixel size of the caption
};

/// A point at `radius` in the direction `angle`, in degrees clockwise from twelve o'clock.
QPointF OnDial(const DialMeasures& measures, double angle, double radius);

/// The outline of a slider at `angle`.
QPainterPath SliderShape(const DialMeasures& measures, SliderKind kind, double angle);

/// Draws a dial piece by piece in the palette's colours, light or dark.
class DialPainter {
 public:
  DialPainter(QPainter& painter, const DialMeasures& measures, const QPalette& palette, const QFont& font);

  /// The fixed parts: bezel, plate, ticks and numbers.
  void Face(double scaleMin, double scaleMax);
  /// The part of the scale that the two limits allow, from angle `low` to angle `high`.
  void AllowedBand(double low, double high);
  void Mark(double angle);
  void Hand(double angle, bool live);
  void Slider(SliderKind kind, double angle, bool lifted, bool focused);
  void Caption(const QString& text, bool pale);
  /// A slider's value as a tag in the upper half of the dial.
  void ValueTag(SliderKind kind, const QString& text);

  static QColor SliderColour(SliderKind kind, const QPalette& palette);
  /// The colours of the band, of a live hand, and of a stale one.
  static std::array<QColor, 3> ShapeColours(const QPalette& palette);

 private:
  void Bezel();
  QFont FontOf(double pixels, bool bold) const;

  QPainter& painter_;
  const DialMeasures& measures_;
  const QPalette& palette_;
  const QFont& font_;
};

}  // namespace zth::widgets

#pragma once

#include <QFont>
#include <QImage>
#include <QPalette>
#include <QString>

class QPainter;

namespace zth::widgets {

/// The line below a chart's picture that names the source of its data. Without a text the picture is the chart alone.
struct StripCaption {
  QString text;
  QFont font;
  QPalette palette;

  /// The height it adds to a picture of that width, in logical pixels; 0 for an empty text.
  int Height(int width) const;
  /// Draws it below a chart of that size.
  void Paint(QPainter& painter, QSize chart) const;
  /// The chart's picture with the caption below.
  QImage Under(const QImage& picture) const;
};

}  // namespace zth::widgets

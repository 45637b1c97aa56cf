#pragma once

#include <QFont>
#include <QImage>
#include <QPalette>
#include <QString>

class QPainter;

namespace zth::widgets {

/// The line beneath a chart's picture: where its data come from. A picture without one is the chart alone.
struct StripCaption {
  QString text;
  QFont font;
  QPalette palette;

  /// What it adds to the height of a picture of that width, in logical pixels; 0 for an empty text.
  int Height(int width) const;
  /// Draws it beneath a chart of that size.
  void Paint(QPainter& painter, QSize chart) const;
  /// The chart's picture with the caption beneath.
  QImage Under(const QImage& picture) const;
};

}  // namespace zth::widgets

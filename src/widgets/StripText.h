#pragma once

#include <QFont>
#include <QFontMetrics>
#include <QHash>
#include <QPainter>
#include <QStaticText>
#include <QString>

namespace zth::widgets {

/// Single lines of text in one font, measured and laid out once: a chart writes the same few dozen texts in frame after
/// frame.
class StripText {
 public:
  explicit StripText(const QFont& font);

  const QFont& Font() const { return font_; }
  const QFontMetrics& Metrics() const { return metrics_; }
  /// Pixels from one line to the next.
  int Height() const { return metrics_.height(); }
  int Width(const QString& text);

  /// Writes in the painter's pen, with `topLeft` as the line's top left corner. A painter of the screen gets the cached
  /// layout, any other one the text itself.
  void Draw(QPainter& painter, QPointF topLeft, const QString& text);

 private:
  struct Line {
    QStaticText laid;
    int width = 0;
  };
  Line& LineOf(const QString& text);

  QFont font_;
  QFontMetrics metrics_;
  QHash<QString, Line> lines_;
};

}  // namespace zth::widgets

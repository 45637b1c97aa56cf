#pragma once

#include <array>
#include <optional>

#include <QFont>
#include <QFontMetrics>
#include <QGlyphRun>
#include <QHash>
#include <QPainter>
#include <QStaticText>
#include <QString>

namespace zth::widgets {

/// Single lines of text in one font, each measured and laid out once: a chart draws the same few dozen texts in every
/// frame. A text that differs from an earlier one only in its digits reuses that layout.
class StripText {
 public:
  explicit StripText(const QFont& font);

  const QFont& Font() const { return font_; }
  const QFontMetrics& Metrics() const { return metrics_; }
  /// Line height in pixels.
  int Height() const { return metrics_.height(); }
  int Width(const QString& text);

  /// Draws with the painter's pen, with `topLeft` as the line's top left corner. Uses the cached layout on a screen,
  /// and the text itself on any other paint device.
  void Draw(QPainter& painter, QPointF topLeft, const QString& text);

 private:
  struct Line {
    std::optional<QGlyphRun> glyphs;
    QStaticText laid;  ///< used when there are no glyphs
    int width = 0;
  };
  Line& LineOf(const QString& text);
  const Line& PatternOf(const QString& pattern);
  static Line WithDigits(const Line& pattern, const QString& text, const std::array<quint32, 10>& digits);

  QFont font_;
  QFontMetrics metrics_;
  std::array<quint32, 10> digits_{};  ///< the glyphs of the ten digits
  bool alike_ = false;                ///< whether all digits have the same width
  QHash<QString, Line> lines_;
  QHash<QString, Line> patterns_;  ///< keyed by texts with every digit replaced by 0
};

}  // namespace zth::widgets

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

/// Single lines of text in one font, measured and laid out once: a chart writes the same few dozen texts in frame after
/// frame. A text that differs from an earlier one in its digits alone takes over the earlier one's layout.
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
    QStaticText laid;  ///< where there are no glyphs
    int width = 0;
  };
  Line& LineOf(const QString& text);
  const Line& PatternOf(const QString& pattern);
  static Line WithDigits(const Line& pattern, const QString& text, const std::array<quint32, 10>& digits);

  QFont font_;
  QFontMetrics metrics_;
  std::array<quint32, 10> digits_{};  ///< their glyphs
  bool alike_ = false;                ///< whether all digits are equally wide
  QHash<QString, Line> lines_;
  QHash<QString, Line> patterns_;  ///< texts with a 0 for every digit
};

}  // namespace zth::widgets

#include "widgets/StripText.h"

#include <algorithm>
#include <cmath>

#include <QPaintEngine>
#include <QRawFont>
#include <QTextLayout>

namespace zth::widgets {
namespace {

constexpr int kMostLines = 1000;

bool IsDigit(QChar letter) {
  return letter >= QLatin1Char('0') && letter <= QLatin1Char('9');
}

}  // namespace

StripText::StripText(const QFont& font) : font_(font), metrics_(font) {
  const QString figures = QStringLiteral("0123456789");
  const QVector<quint32> glyphs = QRawFont::fromFont(font).glyphIndexesForString(figures);
  if (glyphs.size() != figures.size()) return;
  std::copy(glyphs.begin(), glyphs.end(), digits_.begin());
  alike_ = std::all_of(figures.begin(), figures.end(), [this](QChar figure) {
    return metrics_.horizontalAdvance(figure) == metrics_.horizontalAdvance(QLatin1Char('0'));
  });
}

// The glyphs of a text if every letter has one glyph, from one font; otherwise Qt's own layout of the text.
const StripText::Line& StripText::PatternOf(const QString& pattern) {
  const auto found = patterns_.constFind(pattern);
  if (found != patterns_.constEnd()) return *found;
  Line line;
  QTextLayout layout(pattern, font_);
  layout.beginLayout();
  const QTextLine row = layout.createLine();
  layout.endLayout();
  line.width = static_cast<int>(std::ceil(row.naturalTextWidth()));
  const QList<QGlyphRun> runs = layout.glyphRuns();
  if (alike_ && runs.size() == 1 && runs.front().glyphIndexes().size() == pattern.size()) {
    const QVector<quint32> glyphs = runs.front().glyphIndexes();
    bool inOrder = true;
    for (int i = 0; i < pattern.size(); ++i) inOrder &= !IsDigit(pattern[i]) || glyphs[i] == digits_[0];
    if (inOrder) line.glyphs = runs.front();
  }
  return patterns_[pattern] = line;
}

StripText::Line StripText::WithDigits(const Line& pattern, const QString& text, const std::array<quint32, 10>& digits) {
  Line line = pattern;
  QVector<quint32> glyphs = line.glyphs->glyphIndexes();
  for (int i = 0; i < text.size(); ++i) {
    if (IsDigit(text[i])) glyphs[i] = digits[static_cast<std::size_t>(text[i].digitValue())];
  }
  line.glyphs->setGlyphIndexes(glyphs);
  return line;
}

StripText::Line& StripText::LineOf(const QString& text) {
  const auto found = lines_.find(text);
  if (found != lines_.end()) return *found;
  if (lines_.size() >= kMostLines) lines_.clear();
  if (patterns_.size() >= kMostLines) patterns_.clear();
  QString pattern = text;
  for (QChar& letter : pattern) {
    if (IsDigit(letter)) letter = QLatin1Char('0');
  }
  const Line& shape = PatternOf(pattern);
  Line& line = lines_[text];
  if (shape.glyphs) return line = WithDigits(shape, text, digits_);
  line.laid = QStaticText(text);
  line.laid.setTextFormat(Qt::PlainText);
  line.laid.prepare(QTransform(), font_);
  line.width = static_cast<int>(std::ceil(line.laid.size().width()));
  return line;
}

int StripText::Width(const QString& text) {
  return text.isEmpty() ? 0 : LineOf(text).width;
}

void StripText::Draw(QPainter& painter, QPointF topLeft, const QString& text) {
  if (text.isEmpty()) return;
  const QPaintEngine* engine = painter.paintEngine();
  if (engine == nullptr || engine->type() != QPaintEngine::Raster) {
    if (painter.font() != font_) painter.setFont(font_);
    painter.drawText(topLeft + QPointF(0, metrics_.ascent()), text);
    return;
  }
  const Line& line = LineOf(text);
  if (line.glyphs) {
    painter.drawGlyphRun(topLeft, *line.glyphs);
    return;
  }
  if (painter.font() != font_) painter.setFont(font_);
  painter.drawStaticText(topLeft, line.laid);
}

}  // namespace zth::widgets

#include "widgets/StripText.h"

#include <cmath>

#include <QPaintEngine>

namespace zth::widgets {
namespace {

constexpr int kMostLines = 1000;

}  // namespace

StripText::StripText(const QFont& font) : font_(font), metrics_(font) {}

StripText::Line& StripText::LineOf(const QString& text) {
  const auto found = lines_.find(text);
  if (found != lines_.end()) return *found;
  if (lines_.size() >= kMostLines) lines_.clear();
  Line& line = lines_[text];
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
  if (painter.font() != font_) painter.setFont(font_);
  const QPaintEngine* engine = painter.paintEngine();
  if (engine != nullptr && engine->type() == QPaintEngine::Raster) {
    painter.drawStaticText(topLeft, LineOf(text).laid);
  } else {
    painter.drawText(topLeft + QPointF(0, metrics_.ascent()), text);
  }
}

}  // namespace zth::widgets

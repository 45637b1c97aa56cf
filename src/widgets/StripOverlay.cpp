#include "widgets/StripOverlay.h"

#include <algorithm>
#include <array>
#include <cmath>

#include <QPainter>

#include "widgets/StripReadout.h"

namespace zth::widgets {
namespace {

constexpr double kRound = 4;

}  // namespace

StripOverlay::StripOverlay(const StripSheet& sheet)
    : painter_(sheet.painter), scene_(sheet.scene), layout_(sheet.layout), colours_(sheet.colours), text_(sheet.text) {}

void StripOverlay::Paint() {
  const StripScene::Overlay& overlay = scene_.overlay;
  const QRect& plot = layout_.plot;
  if (overlay.mark) {
    const double x = std::floor(layout_.PixelOfX(*overlay.mark)) + 0.5;
    if (x >= plot.left() && x <= plot.right()) {
      painter_.setPen(QPen(colours_.accent, 1, Qt::DashLine));
      painter_.drawLine(QPointF(x, plot.top()), QPointF(x, plot.bottom()));
    }
  }
  if (!overlay.box.isEmpty()) {
    QColor wash = colours_.accent;
    wash.setAlpha(40);
    painter_.setPen(QPen(colours_.accent, 1));
    painter_.setBrush(wash);
    painter_.drawRect(QRectF(overlay.box).adjusted(0.5, 0.5, -0.5, -0.5));
  }
  if (overlay.cursor) Readout();
  Signs();
}

void StripOverlay::Signs() {
  const StripScene::Overlay& overlay = scene_.overlay;
  const QRect& plot = layout_.plot;
  const auto pill = [&](const QRectF& rect, const QColor& ground) {
    painter_.setRenderHint(QPainter::Antialiasing);
    painter_.setPen(Qt::NoPen);
    painter_.setBrush(ground);
    painter_.drawRoundedRect(rect, rect.height() / 2, rect.height() / 2);
    painter_.setRenderHint(QPainter::Antialiasing, false);
    painter_.setPen(Qt::white);
  };
  if (scene_.view.Held()) {
    const QRectF rect(layout_.sign);
    pill(rect, overlay.hovered.kind == StripPart::Kind::Sign ? QColor(176, 80, 0) : QColor(148, 68, 0));
    for (const int x : {12, 17}) {
      painter_.fillRect(QRectF(rect.left() + x, rect.center().y() - 4, 3, 9), Qt::white);
    }
    text_.Draw(painter_, rect.topLeft() + QPointF(26, 4), QStringLiteral("Held: click for live"));
  }
  if (!overlay.notice.isEmpty()) {
    const QSizeF size(std::min(text_.Width(overlay.notice) + 24, plot.width() - 16), text_.Height() + 8);
    const QRectF rect(QPointF(plot.left() + 8, plot.bottom() - 8 - size.height()), size);
    pill(rect, QColor(50, 56, 62));
    painter_.drawText(rect.adjusted(12, 0, -12, 0), Qt::AlignVCenter | Qt::TextSingleLine, overlay.notice);
  }
}

void StripOverlay::Readout() {
  const QRect& plot = layout_.plot;
  const QPointF cursor = *scene_.overlay.cursor;
  const double x = std::floor(cursor.x()) + 0.5;
  painter_.setPen(QPen(colours_.ink, 1, Qt::DotLine));
  painter_.drawLine(QPointF(x, plot.top()), QPointF(x, plot.bottom()));
  const StripReadout readout = ReadUnderCursor(scene_, layout_);
  const int line = text_.Height() + 1;
  std::array<int, 3> widths{text_.Width(readout.heading), 0, text_.Width(readout.headingDifference)};
  for (const StripReadout::Line& entry : readout.lines) {
    widths[1] = std::max(widths[1], text_.Width(entry.value));
    widths[2] = std::max(widths[2], text_.Width(entry.difference));
    widths[0] = std::max(widths[0], 14 + text_.Width(entry.name));
  }
  const int gap = 12;
  const double width = 16 + widths[0] + gap + widths[1] + (widths[2] > 0 ? gap + widths[2] : 0);
  const double height = 10 + line * (1 + static_cast<double>(readout.lines.size()));
  double left = x + 12 + width <= plot.right() ? x + 12 : x - 12 - width;
  left = std::max(left, plot.left() + 2.0);
  const double top =
      std::clamp(cursor.y() + 14, plot.top() + 2.0, std::max(plot.top() + 2.0, plot.bottom() - 2 - height));
  const QRectF box(std::round(left), std::round(top), width, height);
  painter_.setRenderHint(QPainter::Antialiasing);
  painter_.setPen(QPen(colours_.frame, 1));
  painter_.setBrush(QColor(255, 255, 255, 236));
  painter_.drawRoundedRect(box.adjusted(0.5, 0.5, -0.5, -0.5), kRound, kRound);
  painter_.setRenderHint(QPainter::Antialiasing, false);
  painter_.setPen(colours_.ink);
  const double right = box.right() - 8;
  double y = box.top() + 5;
  text_.Draw(painter_, QPointF(box.left() + 8, y), readout.heading);
  text_.Draw(painter_, QPointF(right - text_.Width(readout.headingDifference), y), readout.headingDifference);
  for (const StripReadout::Line& entry : readout.lines) {
    y += line;
    painter_.fillRect(QRectF(box.left() + 8, y + line / 2.0 - 4, 8, 8), scene_.TraceAt(entry.trace).style.colour);
    text_.Draw(painter_, QPointF(box.left() + 22, y), entry.name);
    const double values = right - (widths[2] > 0 ? gap + widths[2] : 0);
    text_.Draw(painter_, QPointF(values - text_.Width(entry.value), y), entry.value);
    text_.Draw(painter_, QPointF(right - text_.Width(entry.difference), y), entry.difference);
  }
}

}  // namespace zth::widgets

#include "widgets/StripOverlay.h"

#include <algorithm>
#include <cmath>

#include <QPainter>

#include "widgets/StripReadout.h"

namespace zth::widgets {
namespace {

constexpr int kTagEdge = 6;

QString TagText(const StripReadout& readout) {
  if (readout.headingDifference.isEmpty()) return readout.heading;
  return readout.heading + QStringLiteral("   ") + readout.headingDifference;
}

}  // namespace

StripOverlay::StripOverlay(const StripSheet& sheet)
    : painter_(sheet.painter),
      scene_(sheet.scene),
      layout_(sheet.layout),
      colours_(sheet.colours),
      text_(sheet.text),
      readout_(sheet.readout),
      tag_(TagOf(sheet)) {}

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
  if (readout_ != nullptr) Cursor();
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

void StripOverlay::Cursor() {
  const QRect& plot = layout_.plot;
  const double x = std::floor(scene_.overlay.cursor->x()) + 0.5;
  painter_.setPen(QPen(colours_.ink, 1, Qt::DotLine));
  painter_.drawLine(QPointF(x, plot.top()), QPointF(x, plot.bottom()));
  // It is drawn in every frame, so its corners are cut, not rounded.
  painter_.fillRect(tag_.adjusted(0, 1, 0, -1), colours_.ink);
  painter_.fillRect(tag_.adjusted(1, 0, -1, 0), colours_.ink);
  painter_.setPen(colours_.paper);
  text_.Draw(painter_, tag_.topLeft() + QPoint(kTagEdge, 0), TagText(*readout_));
}

QRect StripOverlay::TagOf(const StripSheet& sheet) {
  if (sheet.readout == nullptr) return {};
  const QRect& row = sheet.layout.xLabels;
  const int width = sheet.text.Width(TagText(*sheet.readout)) + 2 * kTagEdge;
  const int left = static_cast<int>(sheet.scene.overlay.cursor->x()) - width / 2;
  const int most = std::max(sheet.layout.plot.right() + sheet.layout.xReach - width, 0);
  return {std::clamp(left, 0, most), row.top(), width, row.height()};
}

}  // namespace zth::widgets

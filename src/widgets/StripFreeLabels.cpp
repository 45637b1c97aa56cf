// The chart labels that move over the plot.
#include <algorithm>
#include <cmath>

#include <QPainter>

#include "widgets/StripFurniture.h"

namespace zth::widgets {
namespace {

constexpr int kFreeSample = 18;     // length of a moving label's line sample
constexpr double kFreeNewest = 28;  // space before the newest sample that moving labels leave free

}  // namespace

// Each visible label follows its trace: its middle is at the height of the trace's last value. It keeps clear of the
// newest samples, and the labels to its left move out of its way.
std::vector<QRectF> StripFurniture::FreePlaces() {
  const QRect& plot = layout_.plot;
  std::vector<QRectF> places(scene_.labels.size());
  std::vector<std::size_t> moving;
  for (std::size_t i = 0; i < scene_.labels.size(); ++i) {
    const StripLabel& label = scene_.labels[i];
    if (label.slot == 0 || label.place != StripPlace::Free || label.text.isEmpty()) continue;
    const bool traced = scene_.HasTrace(label.trace) && label.line;
    if (traced && !scene_.Shown(label.trace)) continue;
    const QSizeF size(text_.Width(label.text) + (traced ? kFreeSample : 0) + 8, text_.Height());
    double x = plot.left() + label.left * plot.width() - (label.alignRight ? size.width() : 0);
    x = std::clamp(x, plot.left() + 2.0, std::max(plot.left() + 2.0, plot.right() - 1 - size.width()));
    double y = plot.top() + label.top * plot.height();
    if (traced) {
      // Completely inside the trace's zone, even when it is stopped at the zone's edge.
      const QRect& zone = layout_.zones[scene_.AxisOf(label.trace)];
      y = std::max(std::min(y - size.height() / 2, zone.bottom() + 1 - size.height()), static_cast<double>(zone.top()));
      if (!scene_.IsXY() && scene_.HasData(label.trace)) moving.push_back(i);
    }
    places[i] = QRectF(QPointF(std::round(x), std::round(y)), size);
  }
  std::sort(moving.begin(), moving.end(), [&](auto a, auto b) { return places[a].left() > places[b].left(); });
  double free = 1e9;
  for (const std::size_t i : moving) {
    const double newest = layout_.PixelOfX(scene_.TraceAt(scene_.labels[i].trace).history.Newest().x);
    if (places[i].left() <= newest + 4) free = std::min(free, newest - kFreeNewest);
    if (places[i].right() > free) places[i].moveRight(std::max(std::floor(free), plot.left() + 2 + places[i].width()));
    free = std::min(free, places[i].left() - 4);
  }
  return places;
}

// A moving label is dark text on paper, after a sample of its trace's line: readable for any trace colour, over any
// trace.
void StripFurniture::FreeLabels() {
  const std::vector<QRectF> places = FreePlaces();
  for (std::size_t i = 0; i < places.size(); ++i) {
    const QRectF& rect = places[i];
    if (rect.isEmpty()) continue;
    const StripLabel& label = scene_.labels[i];
    const bool traced = scene_.HasTrace(label.trace) && label.line;
    QColor ground = colours_.paper;
    ground.setAlpha(210);
    painter_.fillRect(rect, ground);
    if (traced) {
      const StripTrace& style = scene_.TraceAt(label.trace).style;
      painter_.setPen(QPen(colours_.OfTrace(style.colour), std::max(3, style.width), style.style, Qt::FlatCap));
      painter_.drawLine(QPointF(rect.left() + 4, rect.center().y()),
                        QPointF(rect.left() + kFreeSample - 1, rect.center().y()));
    }
    painter_.setPen(colours_.ink);
    text_.Draw(painter_, rect.topLeft() + QPointF((traced ? kFreeSample : 0) + 4, 0), label.text);
  }
}

}  // namespace zth::widgets

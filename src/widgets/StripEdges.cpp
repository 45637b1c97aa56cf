#include "widgets/StripEdges.h"

#include <algorithm>
#include <cmath>

#include <QPainter>

namespace zth::widgets {
namespace {

constexpr double kHalf = 4.5;  // half of a mark's width
constexpr double kHeight = 6;  // a mark's height
constexpr int kApart = 48;     // logical pixels between marks of one trace
constexpr int kBetweenTraces = 11;

enum class Edge { Top, Bottom };

void Mark(const StripSheet& sheet, int trace, double x, Edge edge) {
  const QRectF zone(sheet.layout.zones[sheet.scene.AxisOf(trace)]);
  if (x < zone.left() + kHalf || x > zone.right() - kHalf) return;
  const bool top = edge == Edge::Top;
  const double tip = top ? zone.top() + 0.5 : zone.bottom() - 0.5;
  const double base = top ? tip + kHeight : tip - kHeight;
  sheet.painter.setRenderHint(QPainter::Antialiasing);
  sheet.painter.setPen(QPen(sheet.colours.paper, 1));
  sheet.painter.setBrush(sheet.colours.OfTrace(sheet.scene.TraceAt(trace).style.colour));
  sheet.painter.drawPolygon(QPolygonF{QPointF(x, tip), QPointF(x - kHalf, base), QPointF(x + kHalf, base)});
  sheet.painter.setRenderHint(QPainter::Antialiasing, false);
}

}  // namespace

// At most one mark for each stretch of kApart pixels, in the middle of the columns that leave the zone there. The
// stretches are tied to the column numbers, so that no mark jumps while the chart scrolls. Marks of different traces
// are offset.
void MarkCutColumns(const StripSheet& sheet, int trace, std::span<const TraceHistory::Column> columns,
                    std::int64_t first) {
  const StripLayout& layout = sheet.layout;
  const StripView::Axis& axis = sheet.scene.view.At(sheet.scene.AxisOf(trace));
  const double perPixel = static_cast<double>(layout.ColumnCount()) / layout.plot.width();
  const auto stretch = static_cast<std::int64_t>(std::max(1.0, kApart * perPixel));
  const std::int64_t shift = trace * static_cast<std::int64_t>(kBetweenTraces * perPixel);
  for (const Edge edge : {Edge::Top, Edge::Bottom}) {
    const auto leaves = [&](const TraceHistory::Column& column) {
      return edge == Edge::Top ? static_cast<double>(column.hi) > axis.max : static_cast<double>(column.lo) < axis.min;
    };
    if (std::none_of(columns.begin(), columns.end(), leaves)) continue;
    for (std::size_t c = 0; c < columns.size();) {
      const std::int64_t number = first + static_cast<std::int64_t>(c) + shift;
      const std::int64_t rest = stretch - (number % stretch + stretch) % stretch;
      const std::size_t end = std::min(columns.size(), c + static_cast<std::size_t>(rest));
      std::int64_t sum = 0;
      std::int64_t cut = 0;
      for (; c < end; ++c) {
        if (columns[c].Empty() || !leaves(columns[c])) continue;
        sum += first + static_cast<std::int64_t>(c);
        ++cut;
      }
      if (cut == 0) continue;
      const double middle = static_cast<double>(sum) / static_cast<double>(cut) + 0.5;
      Mark(sheet, trace, layout.PixelOfX(middle * layout.ColumnWidth()), edge);
    }
  }
}

void MarkCutPoints(const StripSheet& sheet, int trace) {
  const StripView::Axis& axis = sheet.scene.view.At(sheet.scene.AxisOf(trace));
  for (const QPointF& point : sheet.scene.TraceAt(trace).points) {
    if (point.y() >= axis.min && point.y() <= axis.max) continue;
    Mark(sheet, trace, sheet.layout.PixelOfX(point.x()), point.y() > axis.max ? Edge::Top : Edge::Bottom);
  }
}

}  // namespace zth::widgets

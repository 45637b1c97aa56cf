#include "widgets/StripPaths.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include <QPainter>
#include <QPainterPath>

#include "widgets/StripEdges.h"

namespace zth::widgets {

void DrawPaths(const StripSheet& sheet) {
  QPainter& painter = sheet.painter;
  const StripScene& scene = sheet.scene;
  const StripLayout& layout = sheet.layout;
  painter.save();
  painter.setPen(QPen(sheet.colours.grid, 1));
  for (const Tick& tick : layout.xTicks) {
    const double x = std::floor(layout.PixelOfX(tick.value)) + 0.5;
    if (x > layout.plot.left() && x < layout.plot.right()) {
      painter.drawLine(QPointF(x, layout.plot.top()), QPointF(x, layout.plot.bottom()));
    }
  }
  painter.setRenderHint(QPainter::Antialiasing);
  for (int t = 0; t < static_cast<int>(scene.traces.size()); ++t) {
    const StripScene::Trace& trace = scene.TraceAt(t);
    if (!scene.Shown(t) || trace.points.empty()) continue;
    const std::size_t zone = scene.AxisOf(t);
    const StripView::Axis& axis = scene.view.At(zone);
    painter.setClipRect(layout.zones[zone]);
    const QColor colour = sheet.colours.OfTrace(trace.style.colour);
    QPolygonF path;
    for (const QPointF& point : trace.points) {
      path << QPointF(std::clamp(layout.PixelOfX(point.x()), -1e5, 1e5),
                      std::clamp(layout.PixelOfY(axis, zone, point.y()), -1e5, 1e5));
    }
    const bool onePlace = std::all_of(path.begin(), path.end(), [&](const QPointF& p) { return p == path.front(); });
    if (trace.style.dots || onePlace) {
      painter.setPen(trace.style.hollow ? QPen(colour, 1.5) : QPen(sheet.colours.paper, 1));
      painter.setBrush(trace.style.hollow ? sheet.colours.paper : colour);
      const double radius = std::max(trace.style.width, 2) / 2.0;
      for (const QPointF& place : onePlace ? QPolygonF{path.front()} : path) {
        painter.drawEllipse(place, radius + 0.5, radius + 0.5);
      }
      MarkCutPoints(sheet, t);
      painter.setRenderHint(QPainter::Antialiasing);
      continue;
    }
    QPen pen(colour, trace.style.width, trace.style.style, Qt::FlatCap, Qt::MiterJoin);
    if (trace.style.style == Qt::DashLine) pen.setDashPattern({5, 4});
    painter.setPen(pen);
    painter.setBrush(Qt::NoBrush);
    painter.drawPolyline(path);
    MarkCutPoints(sheet, t);
    painter.setRenderHint(QPainter::Antialiasing);
  }
  painter.restore();
}

void DrawOutlines(const StripSheet& sheet) {
  QPainter& painter = sheet.painter;
  const StripScene& scene = sheet.scene;
  const StripLayout& layout = sheet.layout;
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  std::vector<TraceHistory::Column> columns(static_cast<std::size_t>(layout.ColumnCount()));
  for (int t = 0; t < static_cast<int>(scene.traces.size()); ++t) {
    const StripScene::Trace& trace = scene.TraceAt(t);
    if (!scene.Shown(t) || trace.history.Empty()) continue;
    const std::size_t zone = scene.AxisOf(t);
    const StripView::Axis& axis = scene.view.At(zone);
    trace.history.Columns(layout.FirstColumn(), layout.ColumnWidth(), columns);
    QPainterPath path;
    bool joined = false;
    for (std::size_t c = 0; c < columns.size(); ++c) {
      if (columns[c].Empty()) {
        joined = false;
        continue;
      }
      const double x = layout.plot.left() + static_cast<double>(c) + 0.5;
      const auto y = [&](double value) { return layout.PixelOfY(axis, zone, std::clamp(value, axis.min, axis.max)); };
      const QPointF low(x, y(columns[c].lo));
      const QPointF high(x, y(columns[c].hi));
      // Go to the nearer end of the span first.
      const bool upwards =
          joined && std::abs(path.currentPosition().y() - low.y()) <= std::abs(path.currentPosition().y() - high.y());
      const QPointF near = upwards ? low : high;
      const QPointF far = upwards ? high : low;
      joined ? path.lineTo(near) : path.moveTo(near);
      if (near != far || !joined) path.lineTo(far);
      joined = true;
    }
    painter.setPen(QPen(sheet.colours.OfTrace(trace.style.colour), trace.style.width, trace.style.style, Qt::RoundCap,
                        Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
    painter.drawPath(path);
    MarkCutColumns(sheet, t, columns, layout.FirstColumn());
    painter.setRenderHint(QPainter::Antialiasing);
  }
  painter.restore();
}

}  // namespace zth::widgets

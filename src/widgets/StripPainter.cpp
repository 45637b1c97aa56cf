#include "widgets/StripPainter.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include <QPainter>
#include <QPainterPath>

namespace zth::widgets {
namespace {

constexpr double kLightest = 0.45;  // of lightness: from here on a colour is faint on paper

QFont Bold(QFont font) {
  font.setBold(true);
  return font;
}

QColor Between(const QColor& a, const QColor& b, double share) {
  const auto mix = [share](int x, int y) { return static_cast<int>(std::lround(x + (y - x) * share)); };
  return {mix(a.red(), b.red()), mix(a.green(), b.green()), mix(a.blue(), b.blue())};
}

// How bright a colour looks, 0 to 1.
double Luminance(const QColor& colour) {
  return 0.2126 * std::pow(colour.redF(), 2.2) + 0.7152 * std::pow(colour.greenF(), 2.2) +
         0.0722 * std::pow(colour.blueF(), 2.2);
}

// Lime on paper: a seam in its own darker shade keeps it apart from the ground.
bool NeedsSeam(const QColor& colour) {
  return Luminance(colour) > kLightest;
}

QColor SeamOf(const QColor& colour) {
  return colour.darker(140);
}

}  // namespace

bool StripPainter::HasSample(const StripScene& scene, const StripLabel& label) {
  return scene.HasTrace(label.trace) && label.line && !label.text.isEmpty() &&
         (!scene.IsXY() || scene.HasData(label.trace));
}

StripColours::StripColours(const QPalette& palette) {
  window = palette.color(QPalette::Window);
  text = palette.color(QPalette::WindowText);
  const bool dark = window.lightness() < 128;
  faint = Between(text, window, 0.35);
  paper = dark ? QColor(236, 238, 240) : QColor(255, 255, 255);
  grid = dark ? QColor(208, 212, 216) : QColor(226, 229, 233);
  ink = QColor(32, 36, 40);
  frame = dark ? QColor(150, 156, 162) : QColor(150, 156, 162);
  accent = palette.color(QPalette::Highlight);
}

StripPainter::StripPainter(const QFont& font) : text_(font), bold_(Bold(font)) {}

void StripPainter::SetFont(const QFont& font) {
  text_ = StripText(font);
  bold_ = StripText(Bold(font));
  columns_ = {};
  key_ = {};
}

const StripLayout& StripPainter::LayOut(const StripScene& scene, QSize size, double ratio) {
  layout_ = StripLayout(scene, size, ratio, text_, columns_);
  size_ = size;
  ratio_ = ratio;
  return layout_;
}

StripPainter::StillKey StripPainter::KeyOf(const StripScene& scene, QSize size, double ratio,
                                           const QPalette& palette) const {
  StillKey key{size, ratio, palette.cacheKey(), scene.overlay.hovered, scene.overlay.focus, columns_, {}, {}, {}};
  for (const StripLabel& label : scene.labels) {
    if (label.slot == 0 || label.place == StripPlace::Heading) key.texts << label.text;
  }
  for (const StripLayout::LegendRow& row : layout_.legend) {
    const StripLabel& label = scene.labels[static_cast<std::size_t>(row.label)];
    key.legend.insert(key.legend.end(),
                      {row.rect.top(), label.trace, HasSample(scene, label), scene.Shown(label.trace)});
  }
  key.ranges.reserve(scene.view.AxisCount() * 4);
  for (std::size_t i = 0; i < scene.view.AxisCount(); ++i) {
    const StripView::Axis& axis = scene.view.At(i);
    key.ranges.insert(key.ranges.end(), {axis.min, axis.max, axis.areaTop, axis.areaBottom});
  }
  return key;
}

const StripLayout& StripPainter::Paint(QPainter& painter, const StripScene& scene, QSize size, double ratio,
                                       const QPalette& palette) {
  LayOut(scene, size, ratio);
  const StripColours colours(palette);
  StillKey key = KeyOf(scene, size, ratio, palette);
  const QSize device(static_cast<int>(std::ceil(size.width() * ratio)),
                     static_cast<int>(std::ceil(size.height() * ratio)));
  if (!(key == key_) || still_.size() != device) {
    key_ = std::move(key);
    if (still_.size() != device) {
      still_ = QImage(device, QImage::Format_RGB32);
      canvas_ = QImage(device, QImage::Format_RGB32);
    }
    still_.setDevicePixelRatio(ratio);
    canvas_.setDevicePixelRatio(ratio);
    QPainter still(&still_);
    PaintStill(still, scene, colours, true);
    still.end();
    std::memcpy(canvas_.bits(), still_.constBits(), static_cast<std::size_t>(still_.sizeInBytes()));
  }
  if (scene.IsXY()) {
    std::memcpy(canvas_.bits(), still_.constBits(), static_cast<std::size_t>(still_.sizeInBytes()));
    QPainter canvas(&canvas_);
    PaintPaths(canvas, scene, true, colours);
  } else {
    PaintColumns(scene, colours);
  }
  painter.drawImage(QPointF(0, 0), canvas_);
  PaintXLabels(painter, scene, colours);
  PaintLegend(painter, scene, colours);
  PaintFreeLabels(painter, scene, colours);
  PaintOverlay(painter, scene, colours);
  return layout_;
}

void StripPainter::PaintVector(QPainter& painter, const StripScene& scene, QSize size, const QPalette& palette) {
  LayOut(scene, size, 1);
  const StripColours colours(palette);
  PaintStill(painter, scene, colours, false);
  if (scene.IsXY()) {
    PaintPaths(painter, scene, true, colours);
  } else {
    PaintVectorTraces(painter, scene);
  }
  PaintXLabels(painter, scene, colours);
  PaintLegend(painter, scene, colours);
  PaintFreeLabels(painter, scene, colours);
}

RasterArea StripPainter::ZoneArea(std::size_t zone) {
  const auto device = [this](int logical) { return static_cast<int>(std::lround(logical * ratio_)); };
  const QRect& rect = layout_.zones[zone];
  const int left = device(rect.left());
  const int top = device(rect.top());
  RasterArea area;
  area.stride = canvas_.bytesPerLine() / static_cast<qsizetype>(sizeof(QRgb));
  area.width = std::min(layout_.ColumnCount(), canvas_.width() - left);
  area.height = std::min(device(rect.bottom() + 1) - top, canvas_.height() - top);
  area.bits = reinterpret_cast<QRgb*>(canvas_.bits()) + top * area.stride + left;
  return area;
}

void StripPainter::PaintColumns(const StripScene& scene, const StripColours& colours) {
  scratch_.resize(static_cast<std::size_t>(layout_.ColumnCount()));
  std::vector<RasterArea> areas;
  const int unit = std::max(1, static_cast<int>(std::lround(ratio_)));
  for (std::size_t zone = 0; zone < layout_.zones.size(); ++zone) {
    areas.push_back(ZoneArea(zone));
    const RasterArea& area = areas.back();
    // The ground anew, rather than copied: half the memory to move.
    for (int row = 0; row < area.height; ++row) DrawRow(area, row, colours.paper.rgb());
    for (const Tick& tick : layout_.yTicks[zone]) {
      const double y = layout_.PixelOfY(scene.view.At(zone), zone, tick.value) - layout_.zones[zone].top();
      for (int row = 0; row < unit; ++row) DrawRow(area, static_cast<int>(y) * unit + row, colours.grid.rgb());
    }
    for (const Tick& tick : layout_.xTicks) {
      const double column = tick.value / layout_.ColumnWidth() - static_cast<double>(layout_.FirstColumn());
      DrawColumn(area, static_cast<int>(std::floor(column)), unit, colours.grid.rgb());
    }
  }
  for (int t = 0; t < static_cast<int>(scene.traces.size()); ++t) {
    const StripScene::Trace& trace = scene.TraceAt(t);
    if (!scene.Shown(t) || trace.history.Empty()) continue;
    const std::size_t zone = scene.AxisOf(t);
    const StripView::Axis& axis = scene.view.At(zone);
    trace.history.Columns(layout_.FirstColumn(), layout_.ColumnWidth(), scratch_);
    RasterLine line{SeamOf(trace.style.colour).rgb(),
                    std::max(1, static_cast<int>(std::lround(trace.style.width * ratio_))), trace.style.style,
                    layout_.FirstColumn(), unit};
    if (NeedsSeam(trace.style.colour)) {
      line.width += 2 * unit;
      DrawColumns(areas[zone], scratch_, axis.min, axis.max, line);
      line.width -= 2 * unit;
    }
    line.colour = trace.style.colour.rgb();
    DrawColumns(areas[zone], scratch_, axis.min, axis.max, line);
  }
}

void StripPainter::PaintVectorTraces(QPainter& painter, const StripScene& scene) {
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  scratch_.resize(static_cast<std::size_t>(layout_.ColumnCount()));
  for (int t = 0; t < static_cast<int>(scene.traces.size()); ++t) {
    const StripScene::Trace& trace = scene.TraceAt(t);
    if (!scene.Shown(t) || trace.history.Empty()) continue;
    const std::size_t zone = scene.AxisOf(t);
    const StripView::Axis& axis = scene.view.At(zone);
    trace.history.Columns(layout_.FirstColumn(), layout_.ColumnWidth(), scratch_);
    QPainterPath path;
    bool joined = false;
    for (std::size_t c = 0; c < scratch_.size(); ++c) {
      if (scratch_[c].Empty()) {
        joined = false;
        continue;
      }
      const double x = layout_.plot.left() + static_cast<double>(c) + 0.5;
      const auto y = [&](double value) { return layout_.PixelOfY(axis, zone, std::clamp(value, axis.min, axis.max)); };
      const QPointF low(x, y(scratch_[c].lo));
      const QPointF high(x, y(scratch_[c].hi));
      // On to the nearer end of the span first.
      const bool upwards =
          joined && std::abs(path.currentPosition().y() - low.y()) <= std::abs(path.currentPosition().y() - high.y());
      const QPointF near = upwards ? low : high;
      const QPointF far = upwards ? high : low;
      joined ? path.lineTo(near) : path.moveTo(near);
      if (near != far || !joined) path.lineTo(far);
      joined = true;
    }
    painter.setPen(QPen(trace.style.colour, trace.style.width, trace.style.style, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
    painter.drawPath(path);
  }
  painter.restore();
}

void StripPainter::PaintPaths(QPainter& painter, const StripScene& scene, bool grid, const StripColours& colours) {
  painter.save();
  if (grid) {
    painter.setPen(QPen(colours.grid, 1));
    for (const Tick& tick : layout_.xTicks) {
      const double x = std::floor(layout_.PixelOfX(tick.value)) + 0.5;
      if (x > layout_.plot.left() && x < layout_.plot.right()) {
        painter.drawLine(QPointF(x, layout_.plot.top()), QPointF(x, layout_.plot.bottom()));
      }
    }
  }
  painter.setRenderHint(QPainter::Antialiasing);
  for (int t = 0; t < static_cast<int>(scene.traces.size()); ++t) {
    const StripScene::Trace& trace = scene.TraceAt(t);
    if (!scene.Shown(t) || trace.points.empty()) continue;
    const std::size_t zone = scene.AxisOf(t);
    const StripView::Axis& axis = scene.view.At(zone);
    painter.setClipRect(layout_.zones[zone]);
    QPolygonF path;
    for (const QPointF& point : trace.points) {
      path << QPointF(std::clamp(layout_.PixelOfX(point.x()), -1e5, 1e5),
                      std::clamp(layout_.PixelOfY(axis, zone, point.y()), -1e5, 1e5));
    }
    const bool onePlace = std::all_of(path.begin(), path.end(), [&](const QPointF& p) { return p == path.front(); });
    if (trace.style.dots || onePlace) {
      painter.setPen(QPen(colours.paper, 1));
      painter.setBrush(trace.style.colour);
      const double radius = std::max(trace.style.width, 2) / 2.0;
      for (const QPointF& place : onePlace ? QPolygonF{path.front()} : path) {
        painter.drawEllipse(place, radius + 0.5, radius + 0.5);
      }
      continue;
    }
    QPen pen(trace.style.colour, trace.style.width, trace.style.style, Qt::FlatCap, Qt::MiterJoin);
    if (trace.style.style == Qt::DashLine) pen.setDashPattern({5, 4});
    painter.setPen(pen);
    painter.setBrush(Qt::NoBrush);
    painter.drawPolyline(path);
  }
  painter.restore();
}

}  // namespace zth::widgets

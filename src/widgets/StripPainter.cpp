#include "widgets/StripPainter.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <optional>

#include <QPainter>

#include "widgets/StripColours.h"
#include "widgets/StripEdges.h"
#include "widgets/StripFurniture.h"
#include "widgets/StripOverlay.h"
#include "widgets/StripPaths.h"
#include "widgets/StripReadout.h"

namespace zth::widgets {
namespace {

// Qt copies taller pieces of an image in its threads where other windows cover a part of the chart. Waking them takes
// longer than the copying.
constexpr int kBandRows = 64;

QFont Bold(QFont font) {
  font.setBold(true);
  return font;
}

/// Draws the rows `top` to `bottom`, exclusive, of an image at the painter's origin; in logical pixels.
void DrawInBands(QPainter& painter, const QImage& image, int top, int bottom) {
  const int rows = std::max(1, static_cast<int>(kBandRows / image.devicePixelRatio()));
  const int width = static_cast<int>(std::ceil(image.width() / image.devicePixelRatio()));
  for (int row = top; row < bottom; row += rows) {
    painter.setClipRect(0, row, width, std::min(rows, bottom - row));
    painter.drawImage(QPointF(0, 0), image);
  }
}

/// As an assignment does, but into the memory that `to` has already.
void CopyPixels(QImage& to, const QImage& from) {
  if (to.size() != from.size() || to.format() != from.format()) to = QImage(from.size(), from.format());
  to.setDevicePixelRatio(from.devicePixelRatio());
  std::memcpy(to.bits(), from.constBits(), static_cast<std::size_t>(from.sizeInBytes()));
}

}  // namespace

StripPainter::StripPainter(const QFont& font) : text_(font), bold_(Bold(font)) {}

void StripPainter::SetFont(const QFont& font) {
  text_ = StripText(font);
  bold_ = StripText(Bold(font));
  ResetColumns();
}

void StripPainter::LayOut(const StripScene& scene, QSize size, double ratio) {
  layout_ = StripLayout(scene, size, ratio, text_, columns_);
  size_ = size;
  ratio_ = ratio;
}

int StripPainter::TitleEnd(const StripScene& scene) {
  const StripLabel* title = scene.Label(0);
  return layout_.title.left() + (title != nullptr ? bold_.Width(title->text) : 0);
}

StripPainter::StillKey StripPainter::KeyOf(const StripScene& scene, QSize size, double ratio,
                                           const QPalette& palette) const {
  StillKey key{size, ratio, palette.cacheKey(), scene.overlay.hovered, scene.overlay.focus, columns_, {}, {}, {}};
  for (const StripLabel& label : scene.labels) {
    if (label.slot == 0 || label.place == StripPlace::Heading) key.texts << label.text;
  }
  for (const StripLayout::LegendRow& row : layout_.legend) {
    if (row.label < 0) continue;
    const StripLabel& label = scene.labels[static_cast<std::size_t>(row.label)];
    key.legend.insert(key.legend.end(),
                      {row.rect.top(), label.trace, scene.HasSample(label), scene.Shown(label.trace)});
  }
  for (std::size_t i = 0; i < scene.view.AxisCount(); ++i) {
    key.zones.insert(key.zones.end(), {scene.view.At(i).areaTop, scene.view.At(i).areaBottom});
  }
  return key;
}

StripPainter::Ranges StripPainter::RangesOf(const StripScene& scene) {
  Ranges ranges;
  for (std::size_t i = 0; i < scene.view.AxisCount(); ++i) {
    ranges.emplace_back(scene.view.At(i).min, scene.view.At(i).max);
  }
  return ranges;
}

void StripPainter::Forget() {
  drawn_.valid = false;
  kept_.clear();
}

void StripPainter::PaintStill(const StripScene& scene, QSize size, double ratio, const QPalette& palette,
                              const StripColours& colours) {
  StillKey key = KeyOf(scene, size, ratio, palette);
  Ranges ranges = RangesOf(scene);
  const QSize device(static_cast<int>(std::ceil(size.width() * ratio)),
                     static_cast<int>(std::ceil(size.height() * ratio)));
  const bool resized = canvas_.size() != device;
  if (resized) canvas_ = QImage(device, QImage::Format_RGB32);
  const bool all = resized || !(key == key_);
  if (!all && ranges == ranges_) return;
  canvas_.setDevicePixelRatio(ratio);
  QPainter still(&canvas_);
  StripFurniture furniture(SheetOf(still, scene, colours));
  // A zoom of Y changes only the numbers beside the zones. In an X-Y chart the grid is on the image too.
  all || scene.IsXY() ? furniture.Still(size, true, scene.IsXY()) : furniture.Scales();
  key_ = std::move(key);
  ranges_ = std::move(ranges);
  drawn_.valid = false;
}

void StripPainter::Paint(QPainter& painter, const StripScene& scene, QSize size, double ratio,
                         const QPalette& palette) {
  LayOut(scene, size, ratio);
  const StripColours colours(palette);
  PaintStill(scene, size, ratio, palette, colours);
  if (scene.IsXY()) {
    CopyPixels(paths_, canvas_);
    QPainter canvas(&paths_);
    DrawPaths(SheetOf(canvas, scene, colours));
  } else {
    PaintColumns(scene, colours);
  }
  // The buttons leave a hole in the region to be painted. Without it, in the row of the title, Qt copies pixels and
  // draws glyphs much faster below it, and nothing live is in that row.
  const QImage& image = scene.IsXY() ? paths_ : canvas_;
  const int row = layout_.plot.top() - 1;
  DrawInBands(painter, image, 0, row);
  DrawInBands(painter, image, row, size.height());
  painter.setClipRect(0, row, size.width(), size.height() - row);
  const StripSheet sheet = SheetOf(painter, scene, colours);
  if (!scene.IsXY()) MarkEdges(sheet);
  PaintLive(sheet, true);
}

void StripPainter::PaintVector(QPainter& painter, const StripScene& scene, QSize size, const QPalette& palette,
                               bool overlay) {
  LayOut(scene, size, 1);
  const StripColours colours(palette);
  const StripSheet sheet = SheetOf(painter, scene, colours);
  StripFurniture(sheet).Still(size, false, true);
  scene.IsXY() ? DrawPaths(sheet) : DrawOutlines(sheet);
  PaintLive(sheet, overlay);
}

// Draws what changes with every sample, and the overlay.
void StripPainter::PaintLive(const StripSheet& sheet, bool overlay) {
  std::optional<StripReadout> readout;
  if (overlay && sheet.scene.overlay.cursor) readout = ReadUnderCursor(sheet.scene, sheet.layout);
  StripSheet live = sheet;
  live.readout = readout ? &*readout : nullptr;
  StripFurniture furniture(live);
  furniture.XLabels();
  furniture.Legend();
  furniture.FreeLabels();
  if (overlay) StripOverlay(live).Paint();
}

void StripPainter::MarkEdges(const StripSheet& sheet) const {
  for (int t = 0; t < static_cast<int>(kept_.size()); ++t) {
    const std::span<const TraceHistory::Column> columns = kept_[static_cast<std::size_t>(t)].Last();
    if (!sheet.scene.Shown(t) || !sheet.scene.HasData(t) || columns.empty()) continue;
    const auto before = static_cast<std::int64_t>(columns.size()) - layout_.ColumnCount();
    MarkCutColumns(sheet, t, columns, layout_.FirstColumn() - before);
  }
}

StripSheet StripPainter::SheetOf(QPainter& painter, const StripScene& scene, const StripColours& colours) {
  return {painter, scene, layout_, colours, text_, bold_};
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

StripPainter::Drawn StripPainter::ToDraw(const StripScene& scene) const {
  const std::size_t stretches = scene.ShowsDayTime() ? scene.dayTime.Count() : 0;
  Drawn next{true, layout_.FirstColumn(), layout_.ColumnWidth(), {0, 0}, stretches, {}};
  if (layout_.xTicks.size() > 1) {
    const double step = layout_.xTicks[1].value - layout_.xTicks[0].value;
    next.grid = {step, std::remainder(layout_.xTicks[0].value, step)};
  }
  for (int t = 0; t < static_cast<int>(scene.traces.size()); ++t) {
    const TraceHistory& history = scene.TraceAt(t).history;
    const double newest = history.Empty() ? std::nan("") : history.Newest().x;
    next.traces.push_back({history.Revision(), scene.Shown(t), newest});
  }
  return next;
}

// The first column of the plot that is out of date; 0 if all are. A new sample changes its own column and some before
// it, because of the line's width (`reach`) and the ends of summaries.
int StripPainter::FirstStale(const Drawn& next, int reach) const {
  const double slack = 1e-6 * std::abs(next.grid.first);
  const bool sameGrid = next.grid.first > 0 && std::abs(next.grid.first - drawn_.grid.first) < slack &&
                        std::abs(next.grid.second - drawn_.grid.second) < slack && next.stretches == drawn_.stretches;
  if (!drawn_.valid || !sameGrid || next.width != drawn_.width || next.first < drawn_.first ||
      next.traces.size() != drawn_.traces.size()) {
    return 0;
  }
  const int count = layout_.ColumnCount();
  double stale = static_cast<double>(drawn_.first + count - next.first) - reach;
  for (std::size_t t = 0; t < next.traces.size(); ++t) {
    const Drawn::Trace& before = drawn_.traces[t];
    if (next.traces[t].shown != before.shown) return 0;
    if (!before.shown || next.traces[t].revision == before.revision) continue;
    if (std::isnan(before.newest)) return 0;
    stale = std::min(stale, std::floor(before.newest / next.width) - static_cast<double>(next.first) - reach);
  }
  return static_cast<int>(std::clamp(stale, 0.0, static_cast<double>(count)));
}

void StripPainter::PaintGround(const StripScene& scene, std::size_t zone, const RasterArea& area, int from,
                               const StripColours& colours) {
  if (from >= area.width) return;
  const int unit = std::max(1, static_cast<int>(std::lround(ratio_)));
  row_.assign(static_cast<std::size_t>(area.width), colours.paper.rgb());
  const RasterArea row{row_.data(), area.width, area.width, 1};
  for (const Tick& tick : layout_.xTicks) {
    const double column = tick.value / layout_.ColumnWidth() - static_cast<double>(layout_.FirstColumn());
    DrawColumn(row, static_cast<int>(std::floor(column)), unit, colours.grid.rgb());
  }
  CopyRows(area, 0, area.height, from, row_);
  row_.assign(row_.size(), colours.grid.rgb());
  for (const Tick& tick : layout_.yTicks[zone]) {
    const double y = layout_.PixelOfY(scene.view.At(zone), zone, tick.value) - layout_.zones[zone].top();
    const int top = static_cast<int>(std::lround(std::floor(y) * ratio_));
    CopyRows(area, top, top + unit, from, row_);
  }
}

RasterLine StripPainter::LineOf(const StripTrace& style, int from, int reach) const {
  const int unit = std::max(1, static_cast<int>(std::lround(ratio_)));
  return {.width = std::max(1, static_cast<int>(std::lround(style.width * ratio_))),
          .style = style.style,
          .firstColumn = layout_.FirstColumn(),
          .begin = from - reach,
          .clip = from,
          .unit = unit};
}

void StripPainter::PaintTrace(const StripScene& scene, int trace, const RasterArea& area, int from, int reach,
                              const StripColours& colours) {
  const StripTrace& style = scene.TraceAt(trace).style;
  const StripView::Axis& axis = scene.view.At(scene.AxisOf(trace));
  // Earlier columns may extend into the drawn ones, even from beyond the left edge.
  const std::span<const TraceHistory::Column> columns =
      kept_[static_cast<std::size_t>(trace)]
          .Of(scene.TraceAt(trace).history, layout_.FirstColumn() - reach, layout_.ColumnWidth(),
              static_cast<std::size_t>(layout_.ColumnCount() + reach), reach)
          .subspan(static_cast<std::size_t>(from));
  RasterLine line = LineOf(style, from, reach);
  line.colour = colours.OfTrace(style.colour).rgb();
  if (const QColor darker = colours.SeamOf(colours.OfTrace(style.colour)); darker.isValid()) {
    RasterLine seam = line;
    seam.colour = darker.rgb();
    seam.width += 2 * line.unit;
    DrawColumns(area, columns, axis.min, axis.max, seam);
  }
  DrawColumns(area, columns, axis.min, axis.max, line);
}

// Columns are fixed to the time axis, so a scrolled chart is its last picture, grid and dashes included, moved by whole
// columns. Only new data are drawn.
void StripPainter::PaintColumns(const StripScene& scene, const StripColours& colours) {
  int widest = 1;
  for (const StripScene::Trace& trace : scene.traces) widest = std::max(widest, trace.style.width);
  const int reach = static_cast<int>(std::ceil((widest + 2) * ratio_)) + 2;
  kept_.resize(scene.traces.size());
  Drawn next = ToDraw(scene);
  const int from = FirstStale(next, reach);
  const std::int64_t shift = from > 0 ? next.first - drawn_.first : 0;
  std::vector<RasterArea> areas;
  for (std::size_t zone = 0; zone < layout_.zones.size(); ++zone) {
    areas.push_back(ZoneArea(zone));
    ShiftLeft(areas.back(), static_cast<int>(shift));
    PaintGround(scene, zone, areas.back(), from, colours);
  }
  for (int t = 0; t < static_cast<int>(scene.traces.size()) && from < layout_.ColumnCount(); ++t) {
    if (scene.Shown(t) && scene.HasData(t)) PaintTrace(scene, t, areas[scene.AxisOf(t)], from, reach, colours);
  }
  drawn_ = std::move(next);
}

}  // namespace zth::widgets

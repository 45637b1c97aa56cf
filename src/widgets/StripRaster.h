#pragma once

#include <cstdint>
#include <span>

#include <QRgb>
#include <Qt>
#include <QtGlobal>

#include "widgets/TraceHistory.h"

namespace zth::widgets {

/// A rectangle of an opaque 32-bit image: one zone of a chart, in device pixels.
struct RasterArea {
  QRgb* bits = nullptr;  ///< its top left pixel
  qsizetype stride = 0;  ///< pixels from one row to the next
  int width = 0;
  int height = 0;
};

struct RasterLine {
  QRgb colour = 0;
  int width = 1;                       ///< device pixels
  Qt::PenStyle style = Qt::SolidLine;  ///< SolidLine, DashLine, DotLine
  std::int64_t firstColumn = 0;        ///< number of the leftmost column, so that dashes move with the data
  int begin = 0;                       ///< the area's column of the first span
  int clip = 0;                        ///< columns before this one are not changed
  int unit = 1;                        ///< device pixels per logical pixel
};

/// Draws a trace as one vertical span per column. `low` is the value at the middle of the last row, `high` at the
/// middle of the first; values beyond are drawn at the border. The ends of spans are smoothed; horizontal stretches
/// stay sharp.
void DrawColumns(const RasterArea& area, std::span<const TraceHistory::Column> columns, double low, double high,
                 const RasterLine& line);

/// Copies `row`, which is as wide as the area, into the rows from `top` up to but not including `bottom`, as far as
/// they are in the area, starting at column `from`.
void CopyRows(const RasterArea& area, int top, int bottom, int from, std::span<const QRgb> row);
/// Fills columns over the full height.
void DrawColumn(const RasterArea& area, int column, int thickness, QRgb colour);

/// Moves the area's contents to the left; the columns at the right end are not changed.
void ShiftLeft(const RasterArea& area, int columns);

}  // namespace zth::widgets

#pragma once

#include <cstdint>
#include <span>

#include <QRgb>
#include <Qt>
#include <QtGlobal>

#include "widgets/TraceHistory.h"

namespace zth::widgets {

/// A rectangle of a 32-bit image without transparency: one zone of a chart, in device pixels.
struct RasterArea {
  QRgb* bits = nullptr;  ///< its top left pixel
  qsizetype stride = 0;  ///< pixels from row to row
  int width = 0;
  int height = 0;
};

struct RasterLine {
  QRgb colour = 0;
  int width = 1;                       ///< device pixels
  Qt::PenStyle style = Qt::SolidLine;  ///< SolidLine, DashLine, DotLine
  std::int64_t firstColumn = 0;        ///< what number the leftmost column has, so that dashes travel with the data
  int begin = 0;                       ///< the area's column that the first span belongs to
  int clip = 0;                        ///< columns of the area before this one are left as they are
  int unit = 1;                        ///< device pixels in a logical one
};

/// Draws a trace as one vertical span a column. `low` belongs to the middle of the last row, `high` to that of the
/// first; values beyond lie on the border. Ends of spans are softened, level stretches are kept crisp.
void DrawColumns(const RasterArea& area, std::span<const TraceHistory::Column> columns, double low, double high,
                 const RasterLine& line);

/// Copies `row`, as wide as the area, into the rows from `top` to below `bottom` that the area has, from a column on.
void CopyRows(const RasterArea& area, int top, int bottom, int from, std::span<const QRgb> row);
/// Fills some columns.
void DrawColumn(const RasterArea& area, int column, int thickness, QRgb colour);

/// Moves what the area shows to the left; the columns at its right end keep what they had.
void ShiftLeft(const RasterArea& area, int columns);

}  // namespace zth::widgets

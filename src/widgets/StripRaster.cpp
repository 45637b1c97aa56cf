#include "widgets/StripRaster.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace zth::widgets {
namespace {

// A span lower than this counts as horizontal.
constexpr double kLevel = 1.0 / 32;

QRgb Mixed(QRgb under, QRgb over, unsigned weight) {
  const unsigned rest = 256 - weight;
  // Red and blue together: they cannot overflow into each other.
  const unsigned redBlue = ((under & 0xFF00FF) * rest + (over & 0xFF00FF) * weight) >> 8;
  const unsigned green = ((under & 0x00FF00) * rest + (over & 0x00FF00) * weight) >> 8;
  return 0xFF000000 | (redBlue & 0xFF00FF) | (green & 0x00FF00);
}

bool Pen(const RasterLine& line, std::int64_t column) {
  if (line.style == Qt::SolidLine) return true;
  const std::int64_t period = (line.style == Qt::DotLine ? 4 : 10) * std::int64_t{line.unit};
  const std::int64_t drawn = (line.style == Qt::DotLine ? 2 : 6) * std::int64_t{line.unit};
  const std::int64_t phase = ((line.firstColumn + column) % period + period) % period;
  return phase < drawn;
}

/// Fills one column from `top` to `bottom`, in fractional pixels, clipped to the area.
void Fill(const RasterArea& area, int column, double top, double bottom, QRgb colour) {
  top = std::max(top, 0.0);
  bottom = std::min(bottom, static_cast<double>(area.height));
  if (!(top < bottom)) return;
  const int first = static_cast<int>(top);
  const int whole = static_cast<int>(bottom);
  const int last = bottom > whole ? whole : whole - 1;
  QRgb* pixel = area.bits + first * area.stride + column;
  if (first == last) {
    *pixel = Mixed(*pixel, colour, static_cast<unsigned>((bottom - top) * 256));
    return;
  }
  *pixel = Mixed(*pixel, colour, static_cast<unsigned>((first + 1 - top) * 256));
  for (int row = first + 1; row < last; ++row) *(pixel += area.stride) = colour;
  pixel += area.stride;
  *pixel = Mixed(*pixel, colour, static_cast<unsigned>((bottom - last) * 256));
}

}  // namespace

void DrawColumns(const RasterArea& area, std::span<const TraceHistory::Column> columns, double low, double high,
                 const RasterLine& line) {
  if (!(high > low) || area.height < 1) return;
  const double rows = area.height - 1;
  const double scale = rows / (high - low);
  const double half = line.width / 2.0;
  const int count = std::min(area.width, line.begin + static_cast<int>(columns.size()));
  for (int c = line.begin; c < count; ++c) {
    const TraceHistory::Column& column = columns[static_cast<std::size_t>(c - line.begin)];
    if (column.Empty() || !Pen(line, c)) continue;
    double top = std::clamp((high - column.hi) * scale, 0.0, rows) + 0.5 - half;
    double bottom = std::clamp((high - column.lo) * scale, 0.0, rows) + 0.5 + half;
    if (bottom - top - line.width < kLevel) {
      top = static_cast<double>(std::lround(top));
      bottom = top + line.width;
    }
    // Makes a steep stretch as wide as a horizontal one is high.
    const bool steep = line.width > 1 && bottom - top > 2 * line.width;
    const int begin = steep ? c - (line.width - 1) / 2 : c;
    const int end = steep ? std::min(area.width, begin + line.width) : c + 1;
    for (int x = std::max(begin, line.clip); x < end; ++x) Fill(area, x, top, bottom, line.colour);
  }
}

void CopyRows(const RasterArea& area, int top, int bottom, int from, std::span<const QRgb> row) {
  if (from >= area.width) return;
  const std::size_t bytes = static_cast<std::size_t>(area.width - from) * sizeof(QRgb);
  for (int y = std::max(top, 0); y < std::min(bottom, area.height); ++y) {
    std::memcpy(area.bits + y * area.stride + from, row.data() + from, bytes);
  }
}

void ShiftLeft(const RasterArea& area, int columns) {
  if (columns <= 0 || columns >= area.width) return;
  const std::size_t bytes = static_cast<std::size_t>(area.width - columns) * sizeof(QRgb);
  QRgb* pixels = area.bits;
  for (int row = 0; row < area.height; ++row, pixels += area.stride) std::memmove(pixels, pixels + columns, bytes);
}

void DrawColumn(const RasterArea& area, int column, int thickness, QRgb colour) {
  const int begin = std::max(column, 0);
  const int end = std::min(column + thickness, area.width);
  if (begin >= end) return;
  for (int row = 0; row < area.height; ++row) std::fill_n(area.bits + row * area.stride + begin, end - begin, colour);
}

}  // namespace zth::widgets

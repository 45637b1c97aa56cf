#include "widgets/StripRaster.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace zth::widgets {
namespace {

// A row's height in the unit of spans, which is that of Mixed as well.
constexpr int kFine = 256;
// A span lower than this counts as horizontal.
constexpr int kLevel = kFine / 32;

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

/// Fills one column from `top` to `bottom`, in kFine parts of a row, clipped to the area.
void Fill(const RasterArea& area, int column, int top, int bottom, QRgb colour) {
  top = std::max(top, 0);
  bottom = std::min(bottom, area.height * kFine);
  if (top >= bottom) return;
  const int first = top / kFine;
  const int last = (bottom - 1) / kFine;
  QRgb* pixel = area.bits + first * area.stride + column;
  if (first == last) {
    *pixel = Mixed(*pixel, colour, static_cast<unsigned>(bottom - top));
    return;
  }
  *pixel = Mixed(*pixel, colour, static_cast<unsigned>((first + 1) * kFine - top));
  for (int row = first + 1; row < last; ++row) *(pixel += area.stride) = colour;
  pixel += area.stride;
  *pixel = Mixed(*pixel, colour, static_cast<unsigned>(bottom - last * kFine));
}

}  // namespace

void DrawColumns(const RasterArea& area, std::span<const TraceHistory::Column> columns, double low, double high,
                 const RasterLine& line) {
  if (!(high > low) || area.height < 1) return;
  const double lowest = (area.height - 1) * kFine;
  const double scale = lowest / (high - low);
  const int width = line.width * kFine;
  const int above = (kFine - width) / 2;
  const auto row = [&](float value) {
    return static_cast<int>(std::min(std::max(0.0, (high - static_cast<double>(value)) * scale), lowest));
  };
  const int count = std::min(area.width, line.begin + static_cast<int>(columns.size()));
  for (int c = line.begin; c < count; ++c) {
    const TraceHistory::Column& column = columns[static_cast<std::size_t>(c - line.begin)];
    if (column.Empty() || !Pen(line, c)) continue;
    int top = row(column.hi) + above;
    int bottom = row(column.lo) + above + width;
    if (bottom - top - width < kLevel) {
      // Rounded down, also above the area.
      top = ((top + kFine / 2 + width) / kFine) * kFine - width;
      bottom = top + width;
    }
    // Makes a steep stretch as wide as a horizontal one is high.
    const bool steep = line.width > 1 && bottom - top > 2 * width;
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

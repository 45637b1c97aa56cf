#include "Camera.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <stdexcept>
#include <vector>

#include <QFileInfo>
#include <QHash>
#include <QImage>

namespace zth::gallery {
namespace {

constexpr qsizetype kPaletteSize = 256;
/// So many of the most frequent colours are kept as they are: planes and their shadings, where the eye sees a tint.
constexpr qsizetype kExact = 160;

/// How far two colours are apart, by the eye's weights.
int Distance(QRgb a, QRgb b) {
  const int red = qRed(a) - qRed(b);
  const int green = qGreen(a) - qGreen(b);
  const int blue = qBlue(a) - qBlue(b);
  return 2 * red * red + 4 * green * green + 3 * blue * blue;
}

/// The colours of a picture, the most frequent first.
std::vector<QRgb> ColoursOf(const QImage& picture) {
  QHash<QRgb, int> counts;
  for (int y = 0; y < picture.height(); ++y) {
    const auto* line = reinterpret_cast<const QRgb*>(picture.constScanLine(y));
    for (int x = 0; x < picture.width(); ++x) ++counts[line[x]];
  }
  std::vector<std::pair<int, QRgb>> order;
  for (auto row = counts.cbegin(); row != counts.cend(); ++row) order.emplace_back(-row.value(), row.key());
  std::sort(order.begin(), order.end());
  std::vector<QRgb> colours;
  for (const auto& [count, colour] : order) colours.push_back(colour);
  return colours;
}

/// The most frequent colours, and further ones until one lies within `distance` of each that there is; nothing when
/// they would be too many.
QList<QRgb> Cover(const std::vector<QRgb>& colours, int distance) {
  QList<QRgb> palette;
  for (const QRgb colour : colours) {
    const auto near = [&](QRgb entry) { return Distance(entry, colour) <= distance; };
    if (palette.size() >= kExact && std::any_of(palette.cbegin(), palette.cend(), near)) continue;
    if (palette.size() == kPaletteSize) return {};
    palette << colour;
  }
  return palette;
}

std::uint8_t Nearest(const QList<QRgb>& palette, QRgb colour) {
  const auto nearest = std::min_element(palette.cbegin(), palette.cend(),
                                        [colour](QRgb a, QRgb b) { return Distance(a, colour) < Distance(b, colour); });
  return static_cast<std::uint8_t>(nearest - palette.cbegin());
}

/// A picture of at most 256 colours, which makes a file a third as large. A window has few but for the smoothing of
/// letters and round edges, whose shades share an entry as far as they must.
QImage WithPalette(const QImage& picture) {
  const QImage source = picture.convertToFormat(QImage::Format_RGB32);
  const std::vector<QRgb> colours = ColoursOf(source);
  QList<QRgb> palette;
  for (int distance = 0; palette.isEmpty(); distance = distance * 3 / 2 + 1) palette = Cover(colours, distance);

  QHash<QRgb, std::uint8_t> entries;
  for (const QRgb colour : colours) entries[colour] = Nearest(palette, colour);
  QImage indexed(source.size(), QImage::Format_Indexed8);
  indexed.setColorTable(palette);
  for (int y = 0; y < source.height(); ++y) {
    const auto* from = reinterpret_cast<const QRgb*>(source.constScanLine(y));
    auto* to = indexed.scanLine(y);
    for (int x = 0; x < source.width(); ++x) to[x] = entries.value(from[x]);
  }
  return indexed;
}

}  // namespace

void Camera::Take(QWidget& widget, const QString& name) const {
  const QString file = folder_.filePath(name + ".png");
  QDir().mkpath(QFileInfo(file).path());
  constexpr int kSmallest = 0;
  if (!WithPalette(widget.grab().toImage()).save(file, "PNG", kSmallest)) {
    throw std::runtime_error("cannot write " + file.toStdString());
  }
  std::printf("%s\n", qPrintable(file));
}

}  // namespace zth::gallery

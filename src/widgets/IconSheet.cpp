#include "widgets/IconSheet.h"

#include <algorithm>

#include <QPainter>

namespace zth::widgets {

int SheetSide(int wanted) {
  const auto* const found = std::lower_bound(kSheetSides.begin(), kSheetSides.end(), wanted);
  return found == kSheetSides.end() ? kSheetSides.back() : *found;
}

QImage SheetOf(const QImage& black, const QImage& white) {
  const int side = black.width();
  const QImage dark = black.convertToFormat(QImage::Format_ARGB32_Premultiplied);
  const QImage light = white.convertToFormat(QImage::Format_ARGB32_Premultiplied);
  QImage sheet(2 * side, side, QImage::Format_ARGB32_Premultiplied);
  for (int y = 0; y < side; ++y) {
    const auto* under = reinterpret_cast<const QRgb*>(dark.constScanLine(y));
    const auto* over = reinterpret_cast<const QRgb*>(light.constScanLine(y));
    auto* out = reinterpret_cast<QRgb*>(sheet.scanLine(y));
    for (int x = 0; x < side; ++x) {
      // Where the colour has a share of a pixel, white is that much brighter than black. What is left is of its own
      // colour.
      const int most = qAlpha(under[x]) - std::max({qRed(under[x]), qGreen(under[x]), qBlue(under[x])});
      const int share = std::clamp(qGreen(over[x]) - qGreen(under[x]), 0, most);
      out[x] = qRgba(qRed(under[x]), qGreen(under[x]), qBlue(under[x]), qAlpha(under[x]) - share);
      out[side + x] = qRgba(0, 0, 0, share);
    }
  }
  return sheet;
}

QImage Coloured(const QImage& sheet, const QColor& colour) {
  const int side = sheet.height();
  QImage share = sheet.copy(side, 0, side, side).convertToFormat(QImage::Format_ARGB32_Premultiplied);
  QPainter tint(&share);
  tint.setCompositionMode(QPainter::CompositionMode_SourceIn);
  tint.fillRect(share.rect(), colour);
  tint.end();
  QImage icon = sheet.copy(0, 0, side, side).convertToFormat(QImage::Format_ARGB32_Premultiplied);
  QPainter painter(&icon);
  painter.setCompositionMode(QPainter::CompositionMode_Plus);
  painter.drawImage(0, 0, share);
  painter.end();
  return icon;
}

}  // namespace zth::widgets

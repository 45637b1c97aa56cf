#include "widgets/Drawings.h"

#include <algorithm>
#include <cmath>

#include <QPainter>
#include <QResource>

#include "widgets/IconSheet.h"

namespace zth::widgets {
namespace {

QString FileOf(const QString& icon, int side) {
  return QStringLiteral("%1-%2.png").arg(icon).arg(side);
}

}  // namespace

bool HasDrawing(const QString& icon) {
  return QResource(FileOf(icon, kSheetSides.front())).isValid();
}

void Draw(const QString& icon, const QColor& colour, QPainter& painter, const QRect& rect) {
  const QRectF pixels = painter.deviceTransform().mapRect(QRectF(rect));
  const int side = SheetSide(static_cast<int>(std::lround(std::max(pixels.width(), pixels.height()))));
  const QImage sheet(FileOf(icon, side));
  if (sheet.isNull()) return;
  painter.save();
  painter.setRenderHint(QPainter::SmoothPixmapTransform);
  painter.drawImage(rect, Coloured(sheet, colour));
  painter.restore();
}

bool WritesSvg() {
  return false;
}

QByteArray SvgOf(const SvgPage& /*page*/, const std::function<void(QPainter&)>& /*paint*/) {
  return {};
}

}  // namespace zth::widgets

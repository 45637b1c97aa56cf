#include "tools/windows/SvgSheet.h"

#include <QPainter>
#include <QSvgRenderer>

#include "widgets/IconSheet.h"

namespace zth::tools {

QImage Drawn(QByteArray svg, const QColor& colour, int side) {
  svg.replace("currentColor", colour.name().toLatin1());
  QSvgRenderer renderer(svg);
  QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  QPainter painter(&image);
  renderer.render(&painter, QRectF(0, 0, side, side));
  painter.end();
  return image;
}

QImage SvgSheet(const QByteArray& svg, int side) {
  return widgets::SheetOf(Drawn(svg, Qt::black, side), Drawn(svg, Qt::white, side));
}

}  // namespace zth::tools

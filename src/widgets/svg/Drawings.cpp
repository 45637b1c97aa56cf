#include "widgets/Drawings.h"

#include <QBuffer>
#include <QPainter>
#include <QResource>
#include <QSvgGenerator>
#include <QSvgRenderer>

namespace zth::widgets {
namespace {

QString FileOf(const QString& icon) {
  return icon + QStringLiteral(".svg");
}

}  // namespace

bool HasDrawing(const QString& icon) {
  return QResource(FileOf(icon)).isValid();
}

void Draw(const QString& icon, const QColor& colour, QPainter& painter, const QRect& rect) {
  QByteArray drawing = QResource(FileOf(icon)).uncompressedData();
  drawing.replace("currentColor", colour.name().toLatin1());
  QSvgRenderer renderer(drawing);
  renderer.render(&painter, rect);
}

bool WritesSvg() {
  return true;
}

QByteArray SvgOf(const SvgPage& page, const std::function<void(QPainter&)>& paint) {
  QByteArray svg;
  QBuffer buffer(&svg);
  QSvgGenerator generator;
  generator.setOutputDevice(&buffer);
  generator.setSize(page.size);
  generator.setViewBox(QRect({0, 0}, page.size));
  generator.setTitle(page.title);
  generator.setDescription(page.description);
  QPainter painter(&generator);
  paint(painter);
  painter.end();
  return svg;
}

}  // namespace zth::widgets

#pragma once

#include <functional>

#include <QByteArray>
#include <QColor>
#include <QRect>
#include <QSize>
#include <QString>

class QPainter;

/// What needs Qt's SVG module. svg/ uses it; plain/ is for a build without it, with icons that were drawn when the
/// program was built.
namespace zth::widgets {

/// Whether the resource of an icon, without an ending (":/shell/icons/Save"), is there.
bool HasDrawing(const QString& icon);

/// Draws an icon with its "currentColor" in the given colour.
void Draw(const QString& icon, const QColor& colour, QPainter& painter, const QRect& rect);

/// What an SVG file says of itself.
struct SvgPage {
  QSize size;
  QString title;
  QString description;
};

/// Whether this build writes SVG files.
bool WritesSvg();

/// An SVG file of what `paint` draws; empty if this build writes none.
QByteArray SvgOf(const SvgPage& page, const std::function<void(QPainter&)>& paint);

}  // namespace zth::widgets

#pragma once

#include <QByteArray>
#include <QColor>
#include <QImage>

namespace zth::tools {

/// An SVG drawing in a square of `side` pixels, on transparent ground, with its "currentColor" in the given colour.
QImage Drawn(QByteArray svg, const QColor& colour, int side);

/// The same as a sheet for any colour (widgets/IconSheet.h).
QImage SvgSheet(const QByteArray& svg, int side);

}  // namespace zth::tools

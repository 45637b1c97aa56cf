#pragma once

#include <QByteArray>
#include <QIcon>

namespace zth::widgets {

/// An icon from an SVG. Its "currentColor" becomes the palette's current button text colour, so that one drawing serves
/// light and dark.
QIcon PaletteIcon(const QByteArray& drawing);

}  // namespace zth::widgets

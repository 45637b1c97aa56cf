#pragma once

#include <QByteArray>
#include <QIcon>

namespace zth::widgets {

/// An icon from an SVG whose "currentColor" stands for the palette's present button text, so that one drawing serves
/// light and dark.
QIcon PaletteIcon(const QByteArray& drawing);

}  // namespace zth::widgets

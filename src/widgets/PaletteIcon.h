#pragma once

#include <QIcon>
#include <QString>

namespace zth::widgets {

/// The icon of a resource, named without an ending (":/shell/icons/Save"), or none. The "currentColor" of its drawing
/// becomes the palette's current button text colour, so that one drawing serves light and dark.
QIcon PaletteIcon(const QString& icon);

}  // namespace zth::widgets

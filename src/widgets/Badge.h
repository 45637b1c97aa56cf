#pragma once

#include <QIcon>

namespace zth::widgets {

/// A red mark with a number in it, as large as the area it is drawn into.
QIcon BadgeIcon(int count);

/// An icon with such a mark in its upper right corner.
QIcon WithBadge(const QIcon& icon, int count);

}  // namespace zth::widgets

#pragma once

#include <vector>

#include <QRect>
#include <QSize>

namespace zth::shell {

/// Places windows side by side and one above the other, column by column, in the given order. None gets smaller than
/// its `least`. If an arrangement in columns holds them all, they fill the desk and nothing scrolls. Otherwise the
/// arrangement that exceeds the desk least is used.
std::vector<QRect> TileInto(const QSize& desk, const std::vector<QSize>& least);

}  // namespace zth::shell

#pragma once

#include <vector>

#include <QRect>
#include <QSize>

namespace zth::shell {

/// Places for windows beside and above each other, in the order handed in, column by column. None is smaller than its
/// `least`; where some arrangement in columns holds them all, they fill the desk and nothing scrolls. Where none does,
/// the one that goes beyond the desk by the least.
std::vector<QRect> TileInto(const QSize& desk, const std::vector<QSize>& least);

}  // namespace zth::shell

#pragma once

#include <array>

#include <QColor>
#include <QImage>

/// An icon drawn in advance for a colour that is not yet known. The left half of a sheet holds what has a colour of its
/// own, the right half, as alpha, where the palette's colour is to be added.
namespace zth::widgets {

/// The sides that icons are drawn in, in pixels: those of the usual scales of a screen, so that few have to be scaled.
inline constexpr std::array kSheetSides{16, 18, 20, 24, 28, 30, 32, 36, 40, 48, 56, 60, 64, 72, 80, 96, 128};

/// The least side that is at least `wanted`, or the largest.
int SheetSide(int wanted);

/// A sheet from the same drawing in black and in white on transparent ground; both are square and of one size.
QImage SheetOf(const QImage& black, const QImage& white);

/// The icon of a sheet in a colour.
QImage Coloured(const QImage& sheet, const QColor& colour);

}  // namespace zth::widgets

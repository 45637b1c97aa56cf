#pragma once

/// Window geometry is given in twips, 1440 to the inch; the screen has 96 logical pixels to the inch.
namespace zth::base {

inline constexpr int kTwipsPerPixel = 1440 / 96;

constexpr int PixelsFromTwips(double twips) {
  return static_cast<int>(twips / kTwipsPerPixel + (twips < 0 ? -0.5 : 0.5));
}
constexpr int TwipsFromPixels(int pixels) {
  return pixels * kTwipsPerPixel;
}

}  // namespace zth::base

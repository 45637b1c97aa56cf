#pragma once

#include <cstdint>
#include <random>

#include "tasks/RegisterImage.h"

namespace zth::testing {

/// An image that holds about a share of 1 to `ofTen` tenths of the registers that are listed, with random values.
inline tasks::RegisterImage RandomImage(std::mt19937& random, const std::vector<std::uint8_t>& registers, int ofTen) {
  tasks::RegisterImage image;
  image.origin = "random";
  for (const std::uint8_t reg : registers) {
    if (static_cast<int>(random() % 10U) < ofTen) image.Put(reg, static_cast<std::uint8_t>(random()));
  }
  return image;
}

}  // namespace zth::testing

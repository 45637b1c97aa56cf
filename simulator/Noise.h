#pragma once

#include <cmath>
#include <cstdint>

namespace zth::simulator {

/// A seeded random number generator with the same sequence on every platform and compiler.
class Noise {
 public:
  explicit Noise(std::uint64_t seed) : state_(seed) {}

  /// Uniform over [0, 1).
  double Uniform() { return std::ldexp(static_cast<double>(Next() >> 11U), -53); }

  /// Uniform over [-width, width).
  double Spread(double width) { return width * (2.0 * Uniform() - 1.0); }

  /// Approximately normal with standard deviation 1, never beyond 6: a real converter has no far outliers either.
  double Bell() {
    double sum = -6.0;
    for (int i = 0; i < 12; ++i) sum += Uniform();
    return sum;
  }

 private:
  std::uint64_t Next() {
    state_ += 0x9E3779B97F4A7C15U;
    std::uint64_t z = state_;
    z = (z ^ (z >> 30U)) * 0xBF58476D1CE4E5B9U;
    z = (z ^ (z >> 27U)) * 0x94D049BB133111EBU;
    return z ^ (z >> 31U);
  }

  std::uint64_t state_;
};

}  // namespace zth::simulator

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "link/Tap.h"

/// One entry of the bus traffic. Plain C++ without Qt, because the replay libraries use it too.
namespace zth::tasks {

/// The most bytes in a call: the link's buffer.
inline constexpr std::size_t kMostBytes = 65;

/// A call, or the user's note between two calls.
struct TrafficRecord {
  double time = 0;  ///< monotonic clock, seconds: when the call began
  double took = 0;  ///< seconds
  bool isNote = false;
  link::Form form = link::Form::Read;
  std::int16_t mode = 0;  ///< the link, as in `InterfaceMode`
  std::uint8_t address = 0;
  std::uint8_t reg = 0;
  bool succeeded = true;
  std::optional<std::uint8_t> before;  ///< of a write: the value before it, if the traffic has shown one
  std::uint8_t count = 0;              ///< of the bytes
  std::array<std::uint8_t, kMostBytes> bytes{};
  std::uint32_t text = 0;  ///< who asked, or the note; an index into the texts of its Traffic

  std::span<const std::uint8_t> Bytes() const { return {bytes.data(), count}; }
};

}  // namespace zth::tasks

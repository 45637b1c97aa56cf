#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace zth::base {

/// A number of things, for people: "1 alert", "0 alerts", "3 alerts". `nouns` is the plural in -s, as the manual quotes
/// it; it loses its s after one.
inline std::string Counted(std::int64_t count, std::string_view nouns) {
  if (count == 1) nouns.remove_suffix(1);
  return std::to_string(count) + " " + std::string(nouns);
}

}  // namespace zth::base

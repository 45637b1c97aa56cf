#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace zth::base {

/// A number of things, for people: "1 alert", "0 alerts", "3 alerts". `noun` takes an s in the plural.
inline std::string Counted(std::int64_t count, std::string_view noun) {
  return std::to_string(count) + " " + std::string(noun) + (count == 1 ? "" : "s");
}

}  // namespace zth::base

#include "base/AnsiText.h"

#include <array>

namespace zth::base {
namespace {

// Characters 0x80 to 0x9F of the code page; 0 marks an unassigned code.
constexpr std::array<char32_t, 32> kUpperControls{0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                                  0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0,      0x017D, 0,
                                                  0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                                  0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};

}  // namespace

std::optional<std::uint8_t> AnsiCode(char32_t character) {
  if (character < 0x80 || (character >= 0xA0 && character <= 0xFF)) return static_cast<std::uint8_t>(character);
  for (std::size_t i = 0; i < kUpperControls.size(); ++i) {
    if (kUpperControls[i] != 0 && kUpperControls[i] == character) return static_cast<std::uint8_t>(0x80 + i);
  }
  return std::nullopt;
}

}  // namespace zth::base

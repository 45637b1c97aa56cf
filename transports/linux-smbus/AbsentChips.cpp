#include "linux-smbus/AbsentChips.h"

#include "linux-smbus/Text.h"

namespace zth::smbus {

std::string AbsentChips::Take() {
  std::string text;
  for (std::size_t first = 0; first < absent_.size(); ++first) {
    if (!absent_.test(first)) continue;
    std::size_t last = first;
    while (last + 1 < absent_.size() && absent_.test(last + 1)) ++last;
    if (!text.empty()) text += ", ";
    text += Hex(static_cast<std::uint8_t>(first));
    if (last > first) text += " to " + Hex(static_cast<std::uint8_t>(last));
    first = last;
  }
  absent_.reset();
  return text;
}

}  // namespace zth::smbus

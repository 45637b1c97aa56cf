#include "chip/DutyText.h"

#include "base/NumberText.h"
#include "base/Rounding.h"
#include "chip/Conversions.h"

namespace zth::chip {

std::string DutyPercentText(std::uint8_t raw) {
  return std::to_string(base::RoundToInt(raw * 100 / 255.0));
}

std::int32_t DutyFromText(std::string_view text) {
  return base::RoundToInt(base::LeadingDecimal(text) * 255 / 100);
}

std::uint8_t DutyFromPercent(double percent) {
  return base::RoundToByte(percent * kPercentDivisor);
}

}  // namespace zth::chip

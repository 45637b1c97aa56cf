#include "chip/DegreesText.h"

#include "base/NumberText.h"
#include "chip/Conversions.h"
#include "chip/Limits.h"

namespace zth::chip {

std::string DegreesText(std::uint8_t raw) {
  return std::to_string(DegreesFromByte(raw));
}

std::uint8_t DegreesByte(std::string_view text) {
  return TemperatureLimitFromDegrees(base::LeadingDecimal(text));
}

}  // namespace zth::chip

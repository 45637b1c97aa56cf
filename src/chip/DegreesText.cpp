#include "chip/DegreesText.h"

#include "base/NumberText.h"
#include "base/Rounding.h"
#include "chip/Conversions.h"

namespace zth::chip {

std::string DegreesText(std::uint8_t raw) {
  return std::to_string(DegreesFromByte(raw));
}

std::uint8_t DegreesByte(std::string_view text) {
  return base::RoundToByte(base::LeadingDecimal(text) + kTemperatureOffset);
}

}  // namespace zth::chip

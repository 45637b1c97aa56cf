#include "chip/FieldTexts.h"

#include "base/NumberText.h"
#include "base/Rounding.h"
#include "chip/Conversions.h"

namespace zth::chip {

std::string DutyText(unsigned raw) {
  return std::to_string(PercentFromByte(static_cast<std::int16_t>(raw)));
}

std::uint8_t DutyByte(std::string_view text) {
  return base::RoundToByte(base::LeadingDecimal(text) * 255.0 / 100.0);
}

std::string WholeText(unsigned field) {
  return std::to_string(field);
}

std::uint8_t WholeByte(std::string_view text, int shift) {
  return base::RoundToByte(base::LeadingDecimal(text) * static_cast<double>(1U << shift));
}

}  // namespace zth::chip

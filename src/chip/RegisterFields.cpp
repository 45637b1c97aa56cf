#include "chip/RegisterFields.h"

#include <algorithm>
#include <cstdint>

namespace zth::chip {
namespace {

bool TellsNothing(std::string_view name) {
  return name.empty() || name == "Res" || name == "RES" ||
         std::ranges::all_of(name, [](char c) { return c >= '0' && c <= '9'; });
}

}  // namespace

std::vector<NamedField> FieldsOf(std::string_view bitNames) {
  std::vector<NamedField> fields;
  std::string_view above;
  for (int bit = 7; bit >= 0; --bit) {
    const std::size_t length = std::min(bitNames.find(':'), bitNames.size());
    const std::string_view name = bitNames.substr(0, length);
    bitNames.remove_prefix(std::min(length + 1, bitNames.size()));
    if (!TellsNothing(name)) {
      const auto width = static_cast<std::uint8_t>(name == above ? fields.back().bits.width + 1 : 1);
      if (name == above) fields.pop_back();
      fields.push_back({name, {static_cast<std::uint8_t>(bit), width}});
    }
    above = name;
  }
  return fields;
}

std::string FieldsText(std::string_view bitNames, unsigned value) {
  std::string text;
  for (const NamedField& field : FieldsOf(bitNames)) {
    if (!text.empty()) text += ", ";
    text.append(field.name).append(" = ").append(std::to_string(base::GetField(value, field.bits)));
  }
  return text;
}

}  // namespace zth::chip

#include "chip/RegisterFields.h"

#include <algorithm>
#include <cctype>
#include <string_view>

namespace zth::chip {
namespace {

bool IsNumber(std::string_view name) {
  return std::ranges::all_of(name, [](unsigned char c) { return std::isdigit(c) != 0; });
}

bool IsReserved(std::string_view name) {
  return name == "Res" || name == "RES";
}

/// The names from bit 7 down; those that tell nothing are empty.
std::vector<std::string> TellingNames(std::string_view names) {
  std::vector<std::string> telling;
  while (telling.size() < 8) {
    const std::size_t length = std::min(names.find(':'), names.size());
    const std::string_view name = names.substr(0, length);
    telling.emplace_back(IsNumber(name) || IsReserved(name) ? std::string_view() : name);
    names.remove_prefix(std::min(length + 1, names.size()));
  }
  return telling;
}

}  // namespace

std::vector<NamedField> FieldsOf(const RegisterEntry& entry) {
  std::vector<NamedField> fields;
  unsigned bit = 0x80;
  for (const std::string& name : TellingNames(entry.BitNames)) {
    auto field = std::ranges::find(fields, name, &NamedField::name);
    if (field == fields.end()) field = fields.insert(fields.end(), {name, 0});
    field->mask = static_cast<std::uint8_t>(field->mask | bit);
    bit >>= 1;
  }
  return fields;
}

unsigned ValueOf(const NamedField& field, unsigned byte) {
  unsigned value = 0;
  for (unsigned bit = 0x80; bit != 0; bit >>= 1) {
    if ((field.mask & bit) != 0) value = value << 1 | ((byte & bit) != 0 ? 1U : 0U);
  }
  return value;
}

}  // namespace zth::chip

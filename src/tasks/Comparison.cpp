#include "tasks/Comparison.h"

#include <algorithm>
#include <charconv>
#include <string_view>

#include "base/BitField.h"
#include "chip/RegisterFields.h"
#include "chip/RegisterGroups.h"
#include "chip/RegisterNames.h"
#include "tasks/ChangeWords.h"
#include "tasks/FieldWrites.h"
#include "tasks/TrafficWords.h"

namespace zth::tasks {
namespace {

std::string InLowerCase(std::string_view text) {
  std::string lowered(text);
  std::ranges::transform(lowered, lowered.begin(),
                         [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
  return lowered;
}

/// In lower case, without blanks around it.
std::string SearchedText(std::string_view text) {
  while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
  while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
  return InLowerCase(text);
}

bool IsAddress(std::string_view text, std::uint8_t reg) {
  if (text.starts_with("0x")) {
    text.remove_prefix(2);
  } else if (text.ends_with('h')) {
    text.remove_suffix(1);
  }
  int number = -1;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number, 16);
  return error == std::errc() && end == text.data() + text.size() && number == reg;
}

std::vector<chip::NamedField> NamedFieldsOf(std::uint8_t reg) {
  const chip::RegisterRow* row = chip::RowAt(reg);
  return row == nullptr ? std::vector<chip::NamedField>() : chip::FieldsOf(row->bitNames);
}

bool HasText(const ComparedRow& row, std::string_view text) {
  const std::string wanted = SearchedText(text);
  if (wanted.empty() || IsAddress(wanted, row.reg) || InLowerCase(row.name).find(wanted) != std::string::npos)
    return true;
  return std::ranges::any_of(NamedFieldsOf(row.reg), [&](const chip::NamedField& field) {
    return InLowerCase(field.name).starts_with(wanted);
  });
}

std::uint8_t Differing(const HeldByte& one, const HeldByte& other) {
  return static_cast<std::uint8_t>((one.value ^ other.value) & one.known & other.known);
}

unsigned DifferingBits(const ComparedRow& row) {
  unsigned bits = 0;
  for (const std::uint8_t each : row.differing) bits |= each;
  return bits;
}

ComparedField FieldOf(const ComparedRow& row, std::string_view name, unsigned mask) {
  ComparedField field{std::string(name), static_cast<std::uint8_t>(mask), {}, (DifferingBits(row) & mask) != 0};
  int shift = 0;
  while ((mask >> shift & 1U) == 0) ++shift;
  for (const HeldByte& held : row.held) {
    const bool isKnown = (held.known & mask) == mask;
    field.values.push_back(isKnown ? std::optional((held.value & mask) >> shift) : std::nullopt);
  }
  return field;
}

}  // namespace

bool ComparedRow::Differs() const {
  return DifferingBits(*this) != 0;
}

std::vector<ComparedRow> Compare(const std::vector<const RegisterImage*>& images, std::size_t reference) {
  std::vector<ComparedRow> rows;
  for (const std::uint8_t reg : ComparableRegisters()) {
    ComparedRow row{reg, NameOfRegister(reg), chip::GroupsOf(reg), {}, {}, reference};
    for (const RegisterImage* image : images) {
      row.held.push_back(image->bytes[reg]);
      row.differing.push_back(Differing(image->bytes[reg], images.at(reference)->bytes[reg]));
    }
    const bool isHeld = std::ranges::any_of(row.held, [](const HeldByte& held) { return held.known != 0; });
    if (isHeld) rows.push_back(std::move(row));
  }
  return rows;
}

std::vector<ComparedField> FieldsOf(const ComparedRow& row) {
  std::vector<ComparedField> fields;
  unsigned others = 0xFF;
  for (const chip::NamedField& named : NamedFieldsOf(row.reg)) {
    fields.push_back(FieldOf(row, named.name, base::Mask(named.bits)));
    others &= ~base::Mask(named.bits);
  }
  if (!fields.empty() && (DifferingBits(row) & others) != 0) fields.push_back(FieldOf(row, "Other bits", others));
  return fields;
}

std::uint8_t DifferingFields(const ComparedRow& row) {
  return WholeFields(row.reg, DifferingBits(row));
}

std::string HeldWords(const HeldByte& held) {
  if (held.known == 0) return "-";
  if (held.IsWhole()) return ByteWords(held.value);
  std::string bits;
  for (int bit = 7; bit >= 0; --bit)
    bits += !base::GetBit(held.known, bit) ? '.' : base::GetBit(held.value, bit) ? '1' : '0';
  return bits;
}

std::string DifferenceWords(const ComparedRow& row, std::size_t column) {
  const unsigned bits = row.differing.at(column);
  if (bits == 0) return {};
  std::string words;
  for (const ComparedField& field : FieldsOf(row)) {
    if ((field.mask & bits) == 0) continue;
    const auto number = [&field](std::size_t at) {
      return field.values.at(at) ? std::to_string(*field.values.at(at)) : "?";
    };
    words += (words.empty() ? "" : ", ") + field.name + ' ' + number(row.reference) + " -> " + number(column);
  }
  if (!words.empty()) return words;
  return HeldWords(row.held.at(row.reference)) + " -> " + HeldWords(row.held.at(column));
}

bool Shows(const ComparisonFilter& filter, const ComparedRow& row) {
  if (filter.onlyDifferences && !row.Differs()) return false;
  if (!filter.group.empty() && std::ranges::count(row.groups, filter.group) == 0) return false;
  return HasText(row, filter.text);
}

std::size_t CountDiffering(const std::vector<ComparedRow>& rows) {
  return static_cast<std::size_t>(std::ranges::count_if(rows, &ComparedRow::Differs));
}

}  // namespace zth::tasks

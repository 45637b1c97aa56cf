#include "tasks/ChangeWords.h"

#include <array>
#include <optional>

#include "chip/ChipState.h"
#include "chip/RegisterFields.h"

namespace zth::tasks {
namespace {

constexpr std::array kReasons{
    "its value before was never read", "it is not written back", "something else has changed it since",
    "the chip did not take the value", "a transfer failed",
};

std::string ByteWords(std::optional<unsigned> byte) {
  if (!byte) return "?";
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  return {kDigits[*byte >> 4U & 0xFU], kDigits[*byte & 0xFU], 'h'};
}

const chip::RegisterEntry* EntryAt(std::uint8_t reg) {
  const int row = chip::RowOfAddress(reg);
  return row < 0 ? nullptr : &chip::Model.RegisterTable.at(static_cast<std::size_t>(row));
}

}  // namespace

std::string RegisterWords(std::uint8_t reg) {
  const chip::RegisterEntry* entry = EntryAt(reg);
  return (entry == nullptr ? "" : entry->Name + " ") + "(" + ByteWords(reg) + ")";
}

std::string ChangeWords(const Touched& change) {
  std::string words = ByteWords(change.before) + " -> " + ByteWords(change.after);
  const chip::RegisterEntry* entry = EntryAt(change.reg);
  if (entry == nullptr || !change.before || !change.after) return words;
  for (const chip::NamedField& field : chip::FieldsOf(*entry)) {
    if (field.name.empty() || ((*change.before ^ *change.after) & field.mask) == 0) continue;
    words += ", " + field.name + " " + std::to_string(chip::ValueOf(field, *change.before)) + " -> " +
             std::to_string(chip::ValueOf(field, *change.after));
  }
  return words;
}

std::string LeftWords(const Left& left) {
  const std::string fields = FieldNames(left.reg, left.mask);
  return RegisterWords(left.reg) + (fields.empty() ? "" : ", " + fields) + ": " +
         kReasons.at(static_cast<std::size_t>(left.reason));
}

}  // namespace zth::tasks

#include "tasks/ChangeWords.h"

#include <array>
#include <optional>

#include "base/BitField.h"
#include "chip/RegisterFields.h"
#include "chip/RegisterNames.h"

namespace zth::tasks {
namespace {

/// By Reason.
constexpr std::array kReasons{
    "its value before was never read",
    "it is not written back",
    "something else has changed it since",
    "the chip did not take the value",
    "a transfer failed",
    "the configuration does not hold it",
    "it is not written",
    "the chip sets it itself: the PWM is not in manual mode",
    "the chip is locked until it is reset",
};

}  // namespace

std::string ByteWords(std::optional<unsigned> byte) {
  if (!byte) return "?";
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  return {kDigits[*byte >> 4U & 0xFU], kDigits[*byte & 0xFU], 'h'};
}

std::string RegisterWords(std::uint8_t reg) {
  const chip::RegisterRow* row = chip::RowAt(reg);
  return (row == nullptr ? "" : std::string(row->name) + " ") + "(" + ByteWords(reg) + ")";
}

std::string ChangeWords(const Touched& change) {
  std::string words = ByteWords(change.before) + " -> " + ByteWords(change.after);
  const chip::RegisterRow* row = chip::RowAt(change.reg);
  if (row == nullptr || !change.before || !change.after) return words;
  for (const chip::NamedField& field : chip::FieldsOf(row->bitNames)) {
    const unsigned before = base::GetField(*change.before, field.bits);
    const unsigned after = base::GetField(*change.after, field.bits);
    if (before == after) continue;
    words += ", " + std::string(field.name) + " " + std::to_string(before) + " -> " + std::to_string(after);
  }
  return words;
}

std::string LeftWords(const Left& left) {
  const std::string fields = FieldNames(left.reg, left.mask);
  return RegisterWords(left.reg) + (fields.empty() ? "" : ", " + fields) + ": " +
         kReasons.at(static_cast<std::size_t>(left.reason));
}

std::string BoardWords(BoardPart part, std::uint8_t number) {
  return part == BoardPart::Heater ? "Heater " + std::to_string(number) : "Switches at " + ByteWords(number);
}

std::string BoardChangeWords(const BoardTouched& change) {
  const auto words = [&](std::optional<unsigned> value) {
    if (change.part == BoardPart::Switches || !value) return ByteWords(value);
    return std::to_string(*value) + " %";
  };
  return words(change.before) + " -> " + words(change.after);
}

std::string BoardLeftWords(const BoardLeft& left) {
  return BoardWords(left.part, left.number) + ": " + kReasons.at(static_cast<std::size_t>(left.reason));
}

}  // namespace zth::tasks

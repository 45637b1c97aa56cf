#include "command/Names.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <optional>

#include "chip/RegisterFields.h"
#include "chip/RegisterNames.h"
#include "command/Failure.h"
#include "command/Output.h"
#include "command/Readings.h"

namespace zth::command {
namespace {

using chip::RegisterRow;

constexpr std::size_t kMostProposals = 3;

std::optional<unsigned> NumberIn(std::string_view digits, int base) {
  unsigned number = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number, base);
  if (digits.empty() || error != std::errc() || end != digits.data() + digits.size()) return std::nullopt;
  return number;
}

/// "21h" or "0x21".
std::optional<unsigned> HexIn(std::string_view word) {
  if (word.starts_with("0x") || word.starts_with("0X")) return NumberIn(word.substr(2), 16);
  if (word.ends_with('h') || word.ends_with('H')) return NumberIn(word.substr(0, word.size() - 1), 16);
  return std::nullopt;
}

const RegisterRow* RegisterOf(const std::string& word) {
  if (const auto address = HexIn(word)) return *address <= 0xFF ? chip::RowAt(static_cast<int>(*address)) : nullptr;
  const std::string key = KeyOf(word);
  for (const RegisterRow& row : chip::kRegisterRows) {
    if (!key.empty() && KeyOf(row.name) == key) return &row;
  }
  return nullptr;
}

/// The bits of "Bhvr", or of "7:5" and "3" by their numbers.
std::optional<base::BitField> BitsOf(const RegisterRow& row, const std::string& name) {
  const auto lower = [](std::string_view text) {
    std::string all(text);
    std::ranges::transform(all, all.begin(), [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return all;
  };
  for (const chip::NamedField& field : chip::FieldsOf(row.bitNames)) {
    if (lower(field.name) == lower(name)) return field.bits;
  }
  const std::size_t colon = name.find(':');
  const auto high = NumberIn(name.substr(0, colon), 10);
  const auto low = colon == std::string::npos ? high : NumberIn(name.substr(colon + 1), 10);
  if (!high || !low || *high > 7 || *low > *high) return std::nullopt;
  return base::BitField{static_cast<std::uint8_t>(*low), static_cast<std::uint8_t>(*high - *low + 1)};
}

std::optional<Target> FieldOf(const std::string& word) {
  for (std::size_t point = word.find('.'); point != std::string::npos; point = word.find('.', point + 1)) {
    const RegisterRow* row = RegisterOf(word.substr(0, point));
    const std::string name = word.substr(point + 1);
    if (row == nullptr) continue;
    if (const auto bits = BitsOf(*row, name)) {
      return Target{Kind::Field, std::string(row->name) + "." + name, row->address, *bits, {}};
    }
  }
  return std::nullopt;
}

/// Names that hold what the user has typed, for a start.
std::string Proposals(const std::string& word) {
  const std::string key = KeyOf(word.substr(0, word.find('.')));
  std::vector<std::string> names;
  const auto look = [&](std::string_view name) {
    if (names.size() < kMostProposals && !key.empty() && KeyOf(name).find(key) != std::string::npos) {
      names.emplace_back(name);
    }
  };
  for (const RegisterRow& row : chip::kRegisterRows) look(row.name);
  for (std::size_t row = 0; row < kReadings; ++row) look(NameOfReading(row));
  std::string text;
  for (const std::string& name : names) text += (text.empty() ? "There are " : ", ") + name;
  return text.empty() ? "Give an address as 21h or 0x21, a name of the register map, or one of " + GroupNames() : text;
}

Failure BadValue(const std::string& text) {
  return {kUsage, "'" + text + "' is no value", "Give 17, 11h, 0x11 or 0b10001"};
}

}  // namespace

std::string KeyOf(std::string_view name) {
  std::string key;
  for (const char c : name) {
    const auto letter = static_cast<unsigned char>(c);
    if (std::isalnum(letter) != 0) key += static_cast<char>(std::tolower(letter));
  }
  return key;
}

Target TargetOf(const std::string& word) {
  if (const RegisterRow* row = RegisterOf(word)) return {Kind::Register, row->name, row->address, {0, 8}, {}};
  const std::string key = KeyOf(word);
  if (const auto rows = GroupOfKey(key); !rows.empty()) return {Kind::Group, word, 0, {0, 8}, rows};
  if (const auto row = ReadingOfKey(key)) {
    return {Kind::Reading, std::string(NameOfReading(*row)), 0, {0, 8}, {*row}};
  }
  if (auto field = FieldOf(word)) return *std::move(field);
  throw Failure{kUsage, "'" + word + "' is no register, field, reading or group", Proposals(word)};
}

std::vector<Target> TargetsOf(const std::vector<std::string>& words) {
  std::vector<Target> targets;
  targets.reserve(words.size());
  for (const std::string& word : words) targets.push_back(TargetOf(word));
  return targets;
}

Assignment AssignmentOf(const std::string& word) {
  const std::size_t equals = word.rfind('=');
  if (equals == std::string::npos) {
    throw Failure{kUsage, "'" + word + "' assigns nothing", "Give WHAT=VALUE, such as 21h=0x31 or PWM1_Config.Bhvr=2"};
  }
  Assignment assignment{TargetOf(word.substr(0, equals)), WholeOf(word.substr(equals + 1))};
  const Target& target = assignment.target;
  if (target.kind != Kind::Register && target.kind != Kind::Field) {
    throw Failure{kUsage, "'" + target.name + "' cannot be written", "Only registers and their fields can"};
  }
  if (chip::RowAt(target.reg)->readOnly) {
    throw Failure{kUsage, target.name + " is read-only", "docs/command.md lists what can be written"};
  }
  const unsigned most = (1U << target.bits.width) - 1;
  if (assignment.value > most) {
    throw Failure{kUsage, std::to_string(assignment.value) + " does not fit into " + target.name,
                  "It takes 0 to " + std::to_string(most)};
  }
  return assignment;
}

unsigned WholeOf(const std::string& text) {
  if (const auto hex = HexIn(text)) return *hex;
  const bool binary = text.starts_with("0b") || text.starts_with("0B");
  const auto number = binary ? NumberIn(std::string_view(text).substr(2), 2) : NumberIn(text, 10);
  if (!number) throw BadValue(text);
  return *number;
}

}  // namespace zth::command

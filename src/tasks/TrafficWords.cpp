#include "tasks/TrafficWords.h"

#include <algorithm>
#include <array>
#include <cstdio>

#include "chip/RegisterFields.h"
#include "chip/RegisterRows.h"
#include "link/Declarations.h"

namespace zth::tasks {
namespace {

using link::Form;

constexpr std::string_view kMonitor = "monitor";
constexpr char kArrow[] = " \u2192 ";
constexpr unsigned kBytesOfHeaters = 2;  // of an answer; a third one has no meaning

struct Words {
  std::string name;
  const char* bitNames = "";
};

/// By address. The rows of a shared one have no names of bits to choose between.
const std::array<Words, 256>& Registers() {
  static const std::array<Words, 256> registers = [] {
    std::array<Words, 256> all;
    for (const chip::RegisterRow& row : chip::kRegisterRows) {
      Words& words = all[row.address];
      words.name += (words.name.empty() ? "" : " / ") + std::string(row.name);
      words.bitNames = row.bitNames;
    }
    return all;
  }();
  return registers;
}

std::string Hex(unsigned byte) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  return {kDigits[byte >> 4U & 15U], kDigits[byte & 15U]};
}

bool IsOfRegisters(const TrafficRecord& record) {
  return !record.isNote && (record.form == Form::Read || record.form == Form::ReadBlock || record.form == Form::Write);
}

bool IsOfPort(const TrafficRecord& record) {
  return record.form == Form::ReadPort || record.form == Form::WritePort || record.form == Form::WritePortWithByte;
}

/// A failed read has given nothing; a failed write has still been tried with its byte.
bool HasBytes(const TrafficRecord& record) {
  return !record.isNote && (record.succeeded || link::IsWrite(record.form));
}

std::uint8_t RegisterAt(const TrafficRecord& record, std::size_t i) {
  return static_cast<std::uint8_t>(record.reg + i);
}

std::string HeatersText(const TrafficRecord& record) {
  std::string text;
  for (unsigned heater = 0; heater < std::min<unsigned>(record.count, kBytesOfHeaters); ++heater) {
    // The adapter reports twice the percentage.
    const unsigned twice = record.bytes.at(heater);
    text += (heater == 0 ? "Heater 1 = " : ", Heater 2 = ") + std::to_string(twice / 2) + (twice % 2 != 0 ? ".5" : "") +
            " %";
  }
  return text;
}

}  // namespace

std::string SecondsText(double seconds) {
  std::array<char, 40> text{};
  std::snprintf(text.data(), text.size(), "%.6f", seconds);
  return text.data();
}

std::string BusText(const TrafficRecord& record) {
  return record.isNote ? "" : record.mode == link::kModeUsb ? "USB" : "SMBus";
}

std::string AddressText(const TrafficRecord& record) {
  return IsOfRegisters(record) || (!record.isNote && IsOfPort(record)) ? Hex(record.address) + 'h' : "";
}

std::string CallText(const TrafficRecord& record) {
  if (record.isNote) return "mark";
  const std::string call = [form = record.form] {
    switch (form) {
      case Form::Detect:
        return "detect";
      case Form::Firmware:
        return "firmware";
      case Form::Connect:
        return "connect";
      case Form::Read:
        return "R";
      case Form::ReadBlock:
        return "R block";
      case Form::Write:
        return "W";
      case Form::ReadPort:
        return "R port";
      case Form::WritePort:
      case Form::WritePortWithByte:
        return "W port";
      case Form::SetHeater:
        return "W heater";
      case Form::ReadHeaters:
        return "R heaters";
    }
    return "";
  }();
  return record.succeeded ? call : call + ", failed";
}

std::string RegisterText(const TrafficRecord& record) {
  if (!IsOfRegisters(record)) return {};
  const std::string first = Hex(record.reg) + 'h';
  return record.count > 1 ? first + '-' + Hex(RegisterAt(record, record.count - 1U)) + 'h' : first;
}

std::string NameOfRegister(std::uint8_t reg) {
  return Registers()[reg].name;
}

std::string NameText(const TrafficRecord& record) {
  if (record.isNote) return {};
  if (record.form == Form::SetHeater) return "Heater " + std::to_string(record.address);
  if (record.form == Form::ReadHeaters) return "Heaters";
  if (!IsOfRegisters(record)) return {};
  if (record.count <= 1) return NameOfRegister(record.reg);
  const auto first = [](const std::string& names) { return names.substr(0, names.find(" / ")); };
  return first(NameOfRegister(record.reg)) + " to " + first(NameOfRegister(RegisterAt(record, record.count - 1U)));
}

std::string BytesText(const TrafficRecord& record, std::size_t most) {
  if (!HasBytes(record)) return {};
  std::string text;
  for (std::size_t i = 0; i < std::min<std::size_t>(record.count, most); ++i) {
    if (i != 0) text += ' ';
    text += Hex(record.bytes.at(i));
  }
  return record.count > most ? text + " ..." : text;
}

std::string ChangeText(const TrafficRecord& record, std::size_t most) {
  if (!record.before || !record.succeeded || !HasBytes(record) || record.count == 0) return {};
  const unsigned before = *record.before;
  const unsigned now = record.bytes[0];
  if (before == now) return Hex(now) + ", unchanged";
  std::string text = Hex(before) + kArrow + Hex(now);
  if (record.form != Form::Write) return text;
  std::size_t changed = 0;
  for (const chip::NamedField& field : chip::FieldsOf(Registers()[record.reg].bitNames)) {
    const unsigned from = base::GetField(before, field.bits);
    const unsigned to = base::GetField(now, field.bits);
    if (from == to || ++changed > most) continue;
    text += (changed == 1 ? ": " : ", ") + std::string(field.name) + ' ' + std::to_string(from) + kArrow +
            std::to_string(to);
  }
  return changed > most ? text + ", " + std::to_string(changed - most) + " more" : text;
}

std::string FieldsText(const TrafficRecord& record) {
  if (!HasBytes(record) || record.count == 0) return {};
  if (record.form == Form::SetHeater) return std::to_string(record.bytes[0]) + " %";
  if (record.form == Form::ReadHeaters) return HeatersText(record);
  if (!IsOfRegisters(record)) return {};
  if (record.count == 1) return chip::FieldsText(Registers()[record.reg].bitNames, record.bytes[0]);
  std::string text;
  for (std::size_t i = 0; i < record.count; ++i) {
    const Words& words = Registers()[RegisterAt(record, i)];
    const std::string fields = chip::FieldsText(words.bitNames, record.bytes.at(i));
    if (!fields.empty()) text += (text.empty() ? "" : "; ") + words.name + ": " + fields;
  }
  return text;
}

std::string_view SourceOf(std::string_view asker) {
  if (IsOfMonitor(asker) && asker.size() > kMonitor.size()) asker.remove_prefix(kMonitor.size() + 1);
  return asker.substr(0, asker.find_first_of(" ,"));
}

bool IsOfMonitor(std::string_view asker) {
  return asker.starts_with(kMonitor) && (asker.size() == kMonitor.size() || asker[kMonitor.size()] == ' ');
}

}  // namespace zth::tasks

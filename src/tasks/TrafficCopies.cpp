#include "tasks/TrafficCopies.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <optional>
#include <string_view>
#include <utility>

#include "link/Declarations.h"
#include "tasks/TrafficWords.h"

namespace zth::tasks {
namespace {

using link::Form;

constexpr std::uint8_t kFirst7Bit = 0x08;  // the addresses below and above are reserved; i2c-tools refuse them
constexpr std::uint8_t kLast7Bit = 0x77;

std::string Hex(unsigned byte) {
  std::array<char, 8> text{};
  std::snprintf(text.data(), text.size(), "0x%02x", byte);
  return text.data();
}

std::string UpperHex(unsigned byte) {
  std::array<char, 8> text{};
  std::snprintf(text.data(), text.size(), "0x%02X", byte);
  return text.data();
}

/// The address as i2c-tools take it; nothing for a call without one, or one that they cannot make.
std::optional<std::uint8_t> SevenBits(const TrafficRecord& record) {
  const bool hasRegister = record.form == Form::Read || record.form == Form::ReadBlock || record.form == Form::Write;
  if (record.isNote || !hasRegister) return std::nullopt;
  const auto address = static_cast<std::uint8_t>(record.mode == link::kModeUsb ? record.address / 2 : record.address);
  return address < kFirst7Bit || address > kLast7Bit ? std::nullopt : std::optional(address);
}

/// Everything that a record tells, in one line. A mark stands in quotation marks: a backslash at the end of a comment
/// would take the next line into it.
std::string Told(const TrafficRecord& record, const std::string& text) {
  if (record.isNote) return "mark: \"" + text + '"';
  std::string told = BusText(record);
  for (const std::string& word : {AddressText(record), CallText(record), RegisterText(record), NameText(record),
                                  BytesText(record), record.form == Form::ReadHeaters ? FieldsText(record) : ""}) {
    if (!word.empty()) told += ' ' + word;
  }
  return told;
}

/// The chip that a record is about, if that changes: the lines do not tell it otherwise.
class ChipWatch {
 public:
  bool IsNew(const TrafficRecord& record) {
    const std::pair chip(record.mode, record.address);
    return std::exchange(chip_, chip) != chip;
  }

 private:
  std::optional<std::pair<std::int16_t, std::uint8_t>> chip_;
};

std::string ChipText(const TrafficRecord& record) {
  return AddressText(record) + " on " + BusText(record);
}

}  // namespace

std::string AsText(const Traffic& traffic, const std::vector<std::uint64_t>& numbers) {
  std::string lines;
  for (const std::uint64_t number : numbers) {
    const TrafficRecord& record = traffic.At(number);
    const std::string& text = traffic.TextOf(record);
    lines += SecondsText(record.time - traffic.Began());
    for (const std::string& word : {BusText(record), AddressText(record), CallText(record), RegisterText(record),
                                    record.isNote ? text : NameText(record), BytesText(record), ChangeText(record),
                                    record.isNote ? "" : text, FieldsText(record)}) {
      lines += '\t';
      lines += word;
    }
    lines += '\n';
  }
  return lines;
}

std::string AsI2cTools(const Traffic& traffic, const std::vector<std::uint64_t>& numbers) {
  std::string lines = "BUS=${BUS:-1}  # the number of the I2C adapter, see i2cdetect -l\n";
  ChipWatch watch;
  for (const std::uint64_t number : numbers) {
    const TrafficRecord& record = traffic.At(number);
    const auto address = SevenBits(record);
    if (!address || !record.succeeded) {
      lines += "# " + Told(record, traffic.TextOf(record)) + '\n';
      continue;
    }
    if (watch.IsNew(record)) {
      const bool halved = *address != record.address;
      lines += "# " + ChipText(record) + (halved ? ": " + Hex(*address) + " in 7 bits" : "") + '\n';
    }
    const bool isWrite = record.form == Form::Write;
    for (unsigned i = 0; i < record.count; ++i) {
      const auto reg = static_cast<std::uint8_t>(record.reg + i);
      const std::string name = NameOfRegister(reg);
      const std::string byte = Hex(record.bytes.at(i));
      lines += (isWrite ? "i2cset" : "i2cget") + std::string(" -y $BUS ") + Hex(*address) + ' ' + Hex(reg);
      lines += isWrite ? ' ' + byte + "  # " + name : "  # " + byte + (name.empty() ? "" : ", " + name);
      lines += '\n';
    }
  }
  return lines;
}

std::string AsC(const Traffic& traffic, const std::vector<std::uint64_t>& numbers) {
  std::string lines;
  ChipWatch watch;
  for (const std::uint64_t number : numbers) {
    const TrafficRecord& record = traffic.At(number);
    if (record.isNote || record.form != Form::Write || !record.succeeded) {
      lines += "// " + Told(record, traffic.TextOf(record)) + '\n';
      continue;
    }
    if (watch.IsNew(record)) lines += "// " + ChipText(record) + '\n';
    lines +=
        '{' + UpperHex(record.reg) + ", " + UpperHex(record.bytes[0]) + "}, // " + NameOfRegister(record.reg) + '\n';
  }
  return lines;
}

}  // namespace zth::tasks

#include "tasks/TrafficCopies.h"

#include <optional>
#include <string_view>
#include <utility>

#include "link/Declarations.h"
#include "tasks/TrafficWords.h"
#include "tasks/WriteLines.h"

namespace zth::tasks {
namespace {

using link::Form;

/// The address as i2c-tools take it; nothing for a call without one, or one that they cannot make.
std::optional<std::uint8_t> SevenBits(const TrafficRecord& record) {
  const bool hasRegister = record.form == Form::Read || record.form == Form::ReadBlock || record.form == Form::Write;
  if (record.isNote || !hasRegister) return std::nullopt;
  return I2cAddress(record.mode, record.address);
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
      lines += "# " + ChipText(record) + (halved ? ": " + LowerHex(*address) + " in 7 bits" : "") + '\n';
    }
    const bool isWrite = record.form == Form::Write;
    for (unsigned i = 0; i < record.count; ++i) {
      const auto reg = static_cast<std::uint8_t>(record.reg + i);
      const std::string name = NameOfRegister(reg);
      const std::string chip = LowerHex(*address);
      const std::uint8_t byte = record.bytes.at(i);
      if (isWrite) {
        lines += I2cSetLine("$BUS", chip, reg, byte) + "  # " + name;
      } else {
        lines += I2cGetLine("$BUS", chip, reg) + "  # " + LowerHex(byte) + (name.empty() ? "" : ", " + name);
      }
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
    lines += CRow({record.reg, record.bytes[0]}) + ", // " + NameOfRegister(record.reg) + '\n';
  }
  return lines;
}

}  // namespace zth::tasks

#include "tasks/Exports.h"

#include <algorithm>
#include <cstddef>
#include <vector>

#include <QString>

#include "base/BitField.h"
#include "base/Counted.h"
#include "chip/RegisterFields.h"
#include "chip/RegisterNames.h"
#include "tasks/ChangeWords.h"
#include "tasks/Comparison.h"
#include "tasks/ExportWords.h"
#include "tasks/SavedImage.h"
#include "tasks/TrafficWords.h"
#include "tasks/WriteImage.h"
#include "tasks/WriteLines.h"

namespace zth::tasks {
namespace {

using Lines = std::vector<std::string>;

/// A text of the user's in one line: what could end the line, or show it in another order than it stands, is a blank.
std::string InLine(const std::string& text) {
  std::u32string line = QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())).toStdU32String();
  for (char32_t& character : line) {
    const QChar::Category category = QChar::category(character);
    const bool isPlain = category != QChar::Other_Control && category != QChar::Other_Format &&
                         category != QChar::Separator_Line && category != QChar::Separator_Paragraph;
    if (!isPlain) character = U' ';
  }
  return QString::fromStdU32String(line).trimmed().toStdString();
}

/// A line within a comment of C: nothing in it ends or begins a comment, or is a trigraph.
std::string InCComment(const std::string& line) {
  std::string safe;
  for (const char c : line) {
    const char before = safe.empty() ? ' ' : safe.back();
    if ((before == '*' && c == '/') || (before == '/' && c == '*') || (before == '?' && c == '?')) safe += ' ';
    safe += c;
  }
  return safe;
}

std::vector<Wanted> PortionOf(const ExportSubject& subject) {
  return subject.against ? DifferencesOf(subject.image, *subject.against) : AllOf(subject.image);
}

Lines HeadOf(const ExportSubject& subject, const TextNotes& notes) {
  Lines head{"From: " + InLine(subject.image.origin)};
  if (subject.against) head.push_back("Only the fields that differ from: " + InLine(subject.against->origin));
  if (!notes.date.empty()) head.push_back("Made: " + InLine(notes.date) + " at " + InLine(notes.time));
  if (const std::string comment = InLine(notes.comment); !comment.empty()) head.push_back("Comment: " + comment);
  return head;
}

/// The fields of a byte that are known, "Bhvr = 2, Inv = 1".
std::string FieldsOfByte(std::uint8_t reg, const HeldByte& held) {
  const chip::RegisterRow* row = chip::RowAt(reg);
  std::string text;
  if (row == nullptr) return text;
  for (const chip::NamedField& field : chip::FieldsOf(row->bitNames)) {
    if ((base::Mask(field.bits) & ~unsigned{held.known}) != 0) continue;
    text += (text.empty() ? "" : ", ") + std::string(field.name) + " = " +
            std::to_string(base::GetField(held.value, field.bits));
  }
  return text;
}

/// "PWM1 Config: Bhvr = 2, Inv = 1"
std::string StepWords(const WriteStep& step) {
  const std::string fields = FieldsOfByte(step.reg, {step.to, step.mask});
  return NameOfRegister(step.reg) + (fields.empty() ? "" : ": " + fields);
}

/// What goes before the writes of C and of a script.
Lines WritesHead(const ExportSubject& subject, const TextNotes& notes, const WritePlan& plan) {
  Lines head = HeadOf(subject, notes);
  if (!plan.left.empty()) head.emplace_back("Left out:");
  for (const Left& left : plan.left) head.push_back("  " + LeftWords(left));
  return head;
}

std::string AsCTable(const ExportSubject& subject, const TextNotes& notes) {
  const WritePlan plan = PlanWrite(subject.image, PortionOf(subject), Lock::Set);
  std::string text(kCHead);
  text += "\n *\n";
  for (const std::string& line : WritesHead(subject, notes, plan)) text += " * " + InCComment(line) + '\n';
  text +=
      " *\n"
      " * Write the rows in this order. Where a mask is not 0xFF, read the register\n"
      " * first, and change only the bits of the mask. The row whose mask is 0 is the end.\n"
      " */\n"
      "struct zth4718_write {\n"
      "  unsigned char address;\n"
      "  unsigned char value;\n"
      "  unsigned char mask;\n"
      "};\n\n"
      "extern const struct zth4718_write zth4718_writes[];\n\n";
  text.append(kCTable).append("\n");
  for (const WriteStep& step : plan.steps) {
    text += "  " + CRow({step.reg, step.to, step.mask}) + ", /* " + InCComment(StepWords(step)) + " */\n";
  }
  return text + "  " + CRow({0, 0, 0}) + "  /* the end */\n};\n";
}

std::string AsScript(const ExportSubject& subject, const TextNotes& notes) {
  const WritePlan plan = PlanWrite(subject.image, PortionOf(subject), Lock::Set);
  std::string text(kScriptHead);
  text += "\n#\n";
  for (const std::string& line : WritesHead(subject, notes, plan)) text += "# " + line + '\n';
  text +=
      "#\n"
      "# Arguments: the number of the I2C adapter, see i2cdetect -l; the chip's address in 7 bits.\n";
  text.append(kScriptSet).append("\n").append(kScriptBus).append("1}\n").append(kScriptAddress);
  text.append(LowerHex(notes.i2cAddress)).append("}\n").append(kScriptCheck).append("\n\n");
  for (const WriteStep& step : plan.steps) {
    text += "# " + StepWords(step) + '\n' + I2cSetLine(kBusWord, kAddressWord, step.reg, step.to, step.mask) + '\n';
  }
  return text.append(kScriptEnd).append("\n");
}

std::string CsvField(const std::string& text) {
  if (text.find_first_of(",\"\r\n") == std::string::npos) return text;
  std::string quoted = "\"";
  for (const char c : text) quoted += c == '"' ? "\"\"" : std::string(1, c);
  return quoted + '"';
}

/// Everything that is held, or the differences.
std::vector<Wanted> WholePortionOf(const ExportSubject& subject) {
  if (subject.against) return PortionOf(subject);
  std::vector<Wanted> all;
  for (unsigned reg = 0; reg < subject.image.bytes.size(); ++reg) {
    const HeldByte& held = subject.image.bytes.at(reg);
    if (held.known != 0) all.push_back({static_cast<std::uint8_t>(reg), held.known});
  }
  return all;
}

HeldByte Part(const ExportSubject& subject, const Wanted& part) {
  return {static_cast<std::uint8_t>(subject.image.bytes[part.reg].value & part.mask), part.mask};
}

std::string AsCsv(const ExportSubject& subject) {
  std::string text(kCsvHead);
  text += "\r\n";
  for (const Wanted& part : WholePortionOf(subject)) {
    const HeldByte held = Part(subject, part);
    text += UpperHex(part.reg) + ',' + CsvField(NameOfRegister(part.reg)) + ',' + UpperHex(held.value) + ',' +
            UpperHex(held.known) + ',' + CsvField(FieldsOfByte(part.reg, held)) + "\r\n";
  }
  return text;
}

/// Rows of cells in columns of equal width, two blanks between them.
std::string Aligned(const std::vector<Lines>& rows) {
  std::vector<std::size_t> widths(rows.front().size());
  for (const Lines& row : rows) {
    for (std::size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], row[i].size());
  }
  std::string text;
  for (const Lines& row : rows) {
    std::string line;
    for (std::size_t i = 0; i < row.size(); ++i) line += row[i] + std::string(widths[i] + 2 - row[i].size(), ' ');
    text += line.erase(line.find_last_not_of(' ') + 1) + '\n';
  }
  return text;
}

std::string AsReport(const ExportSubject& subject, const TextNotes& notes) {
  std::string text(kReportHead);
  text += "\n\n";
  for (const std::string& line : HeadOf(subject, notes)) text += line + '\n';
  const std::vector<Wanted> portion = WholePortionOf(subject);
  text += base::Counted(static_cast<std::int64_t>(portion.size()), "registers") + ".\n\n";
  std::vector<Lines> rows;
  if (!subject.against) {
    rows.push_back({"Address", "Register", "Value", "Fields"});
    for (const Wanted& part : portion) {
      const HeldByte held = Part(subject, part);
      rows.push_back({ByteWords(part.reg), NameOfRegister(part.reg), HeldWords(held), FieldsOfByte(part.reg, held)});
    }
    return text + Aligned(rows);
  }
  rows.push_back({"Address", "Register", "Before", "Value", "Change"});
  for (const ComparedRow& row : Compare({&*subject.against, &subject.image}, 0)) {
    const bool isPart = std::ranges::any_of(portion, [&row](const Wanted& part) { return part.reg == row.reg; });
    if (!isPart) continue;
    rows.push_back({ByteWords(row.reg), row.name, HeldWords(row.held[0]), HeldWords(row.held[1]),
                    FieldsOf(row).empty() ? "" : DifferenceWords(row, 1)});
  }
  return text + Aligned(rows);
}

/// The registers that differ, whole: a saved configuration has no fields.
RegisterImage SavedPart(const ExportSubject& subject) {
  if (!subject.against) return subject.image;
  RegisterImage part;
  for (const Wanted& each : PortionOf(subject)) part.bytes[each.reg] = subject.image.bytes[each.reg];
  return part;
}

}  // namespace

const ExportFormWords& WordsOf(ExportForm form) {
  static constexpr std::array<ExportFormWords, kExportForms.size()> kWords{{
      {"Saved configuration", "sav"},
      {"C table", "c"},
      {"Shell script of i2cset", "sh"},
      {"Comma-separated values", "csv"},
      {"Report", "txt"},
  }};
  return kWords.at(static_cast<std::size_t>(form));
}

std::optional<ExportForm> FormOfFileName(std::string_view fileName) {
  const std::size_t point = fileName.rfind('.');
  if (point == std::string_view::npos) return std::nullopt;
  const QString extension =
      QString::fromUtf8(fileName.substr(point + 1).data(), static_cast<qsizetype>(fileName.size() - point - 1));
  for (const ExportForm form : kExportForms) {
    const std::string_view own = WordsOf(form).extension;
    if (extension.compare(QLatin1String(own.data(), static_cast<int>(own.size())), Qt::CaseInsensitive) == 0)
      return form;
  }
  return std::nullopt;
}

std::string ExportText(ExportForm form, const ExportSubject& subject, const TextNotes& notes) {
  switch (form) {
    case ExportForm::Saved:
      return SavedText(SavedPart(subject), notes);
    case ExportForm::C:
      return AsCTable(subject, notes);
    case ExportForm::Script:
      return AsScript(subject, notes);
    case ExportForm::Csv:
      return AsCsv(subject);
    case ExportForm::Report:
      return AsReport(subject, notes);
  }
  return {};
}

}  // namespace zth::tasks

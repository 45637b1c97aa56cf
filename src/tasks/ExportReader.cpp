#include <algorithm>
#include <utility>
#include <vector>

#include "tasks/ExportWords.h"
#include "tasks/Exports.h"
#include "tasks/SavedConfig.h"
#include "tasks/SavedImage.h"

namespace zth::tasks {
namespace {

constexpr std::string_view kMark = "\xEF\xBB\xBF";  // some editors put it before UTF-8

/// The lines of a text, without line ends.
class LineReader {
 public:
  explicit LineReader(std::string_view text) : rest_(text) {
    if (rest_.starts_with(kMark)) rest_.remove_prefix(kMark.size());
  }

  bool Next() {
    if (rest_.empty()) return false;
    ++number_;
    const std::size_t end = rest_.find('\n');
    isWhole_ = end != std::string_view::npos;
    line_ = rest_.substr(0, end);
    rest_.remove_prefix(isWhole_ ? end + 1 : rest_.size());
    if (line_.ends_with('\r')) line_.remove_suffix(1);
    return true;
  }

  std::string_view Line() const { return line_; }
  /// Whether the line had a line end.
  bool IsWhole() const { return isWhole_; }

  ImageOrError Fault(const std::string& what) const { return {{}, "line " + std::to_string(number_) + ": " + what}; }

 private:
  std::string_view rest_;
  std::string_view line_;
  int number_ = 0;
  bool isWhole_ = false;
};

int HexDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  const char lower = static_cast<char>(c | 0x20);
  return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

/// Takes a line apart from its left end.
class Scanner {
 public:
  explicit Scanner(std::string_view text) : text_(text) {}

  void SkipBlanks() {
    while (!text_.empty() && (text_.front() == ' ' || text_.front() == '\t')) text_.remove_prefix(1);
  }
  /// Blanks and then the word.
  bool Take(std::string_view word) {
    SkipBlanks();
    if (!text_.starts_with(word)) return false;
    text_.remove_prefix(word.size());
    return true;
  }
  /// Blanks and then "0x21" or "0x1".
  std::optional<std::uint8_t> TakeByte() {
    if (!Take("0x") && !Take("0X")) return std::nullopt;
    int value = 0;
    std::size_t digits = 0;
    while (digits < text_.size() && HexDigit(text_[digits]) >= 0 && digits < 3)
      value = value * 16 + HexDigit(text_[digits++]);
    text_.remove_prefix(digits);
    return digits == 1 || digits == 2 ? std::optional(static_cast<std::uint8_t>(value)) : std::nullopt;
  }
  bool AtEnd() {
    SkipBlanks();
    return text_.empty();
  }
  std::string_view Rest() const { return text_; }

 private:
  std::string_view text_;
};

/// The first characters of a text, for a message.
std::string Excerpt(std::string_view text) {
  std::string shown(text.substr(0, 24));
  std::ranges::replace_if(
      shown, [](char c) { return c < ' ' || c > '~'; }, '?');
  return '"' + shown + (text.size() > shown.size() ? "..." : "") + '"';
}

struct Row {
  std::uint8_t address;
  std::uint8_t value;
  std::uint8_t mask;
};

/// "{0x21, 0x31, 0xFF}, /* PWM1 Config */"
std::optional<Row> CRowOf(std::string_view line) {
  Scanner scanner(line);
  if (!scanner.Take("{")) return std::nullopt;
  const auto address = scanner.TakeByte();
  const bool first = scanner.Take(",");
  const auto value = scanner.TakeByte();
  const bool second = scanner.Take(",");
  const auto mask = scanner.TakeByte();
  if (!address || !first || !value || !second || !mask || !scanner.Take("}")) return std::nullopt;
  scanner.Take(",");
  const bool isRest = scanner.AtEnd() || scanner.Take("/*") || scanner.Take("//");
  return isRest ? std::optional(Row{*address, *value, *mask}) : std::nullopt;
}

/// "i2cset -y -m 0xe0 "$bus" "$address" 0x21 0x20"
std::optional<Row> CallOf(std::string_view line) {
  Scanner scanner(line);
  if (!scanner.Take("i2cset -y ")) return std::nullopt;
  std::optional<std::uint8_t> mask = std::uint8_t{0xFF};
  if (scanner.Take("-m ")) mask = scanner.TakeByte();
  if (!scanner.Take(kBusWord) || !scanner.Take(kAddressWord)) return std::nullopt;
  const auto address = scanner.TakeByte();
  const auto value = scanner.TakeByte();
  const bool isAll = scanner.AtEnd() || scanner.Rest().starts_with('#');
  return mask && address && value && isAll ? std::optional(Row{*address, *value, *mask}) : std::nullopt;
}

bool IsOfScriptFrame(std::string_view line) {
  return line == kScriptSet || line == kScriptCheck || line.starts_with(kScriptBus) || line.starts_with(kScriptAddress);
}

/// The fields of a line of comma-separated values; nothing if a quotation mark is missing.
std::optional<std::vector<std::string>> CsvFields(std::string_view line) {
  std::vector<std::string> fields(1);
  bool isQuoted = false;
  for (std::size_t i = 0; i < line.size(); ++i) {
    const char c = line[i];
    if (c == '"' && isQuoted && i + 1 < line.size() && line[i + 1] == '"') {
      fields.back() += c;
      ++i;
    } else if (c == '"') {
      isQuoted = !isQuoted;
    } else if (c == ',' && !isQuoted) {
      fields.emplace_back();
    } else {
      fields.back() += c;
    }
  }
  return isQuoted ? std::nullopt : std::optional(std::move(fields));
}

std::optional<std::uint8_t> WholeByte(std::string_view text) {
  Scanner scanner(text);
  const auto byte = scanner.TakeByte();
  return scanner.AtEnd() ? byte : std::nullopt;
}

}  // namespace

ImageOrError ImageOfC(std::string_view text, const std::string& origin) {
  RegisterImage image;
  image.origin = origin;
  LineReader lines(text);
  if (!lines.Next() || lines.Line() != kCHead) return {{}, "line 1: this is no C table of a configuration"};
  while (lines.Next() && lines.Line() != kCTable) continue;
  if (lines.Line() != kCTable) return lines.Fault("the text ends before the table");
  while (lines.Next()) {
    Scanner scanner(lines.Line());
    if (scanner.AtEnd()) continue;
    const auto row = CRowOf(lines.Line());
    if (!row) return lines.Fault(Excerpt(lines.Line()) + " is no row of the table");
    if (row->mask == 0) return {std::move(image), {}};
    image.Put(row->address, row->value, row->mask);
  }
  return lines.Fault("the table breaks off before its last row");
}

ImageOrError ImageOfScript(std::string_view text, const std::string& origin) {
  RegisterImage image;
  image.origin = origin;
  LineReader lines(text);
  const std::string_view second = kScriptHead.substr(kScriptHead.find('\n') + 1);
  if (!lines.Next() || !lines.Next() || lines.Line() != second) {
    return {{}, "line 2: this is no script of a configuration"};
  }
  while (lines.Next()) {
    if (lines.Line() == kScriptEnd) return {std::move(image), {}};
    Scanner scanner(lines.Line());
    if (scanner.AtEnd() || scanner.Take("#") || IsOfScriptFrame(lines.Line())) continue;
    const auto row = CallOf(lines.Line());
    if (!row) return lines.Fault(Excerpt(lines.Line()) + " is no call that a script of a configuration makes");
    image.Put(row->address, row->value, row->mask);
  }
  return lines.Fault("the script breaks off before its last line");
}

ImageOrError ImageOfCsv(std::string_view text, const std::string& origin) {
  RegisterImage image;
  image.origin = origin;
  LineReader lines(text);
  if (!lines.Next() || lines.Line() != kCsvHead) return {{}, "line 1: these are no values of a configuration"};
  while (lines.Next()) {
    if (!lines.IsWhole()) return lines.Fault("the text breaks off within the line");
    if (lines.Line().empty()) continue;
    const auto fields = CsvFields(lines.Line());
    if (!fields || fields->size() != 5) return lines.Fault("the line has no five fields");
    for (const std::size_t byte : {0U, 2U, 3U}) {
      if (!WholeByte((*fields)[byte])) return lines.Fault(Excerpt((*fields)[byte]) + " is no byte");
    }
    image.Put(*WholeByte((*fields)[0]), *WholeByte((*fields)[2]), *WholeByte((*fields)[3]));
  }
  return {std::move(image), {}};
}

ImageOrError ImageOfText(std::string_view text, const std::string& origin) {
  if (WideEncoding(text) != nullptr) return ImageOfSaved(text, origin);
  const std::string_view plain = text.substr(text.starts_with(kMark) ? kMark.size() : 0);
  if (plain.starts_with(kCHead)) return ImageOfC(text, origin);
  if (plain.starts_with("#!/bin/sh")) return ImageOfScript(text, origin);
  if (plain.starts_with(kCsvHead.substr(0, kCsvHead.find(',') + 1))) return ImageOfCsv(text, origin);
  if (plain.starts_with(kReportHead)) return {{}, "line 1: this is a report, which cannot be read again"};
  return ImageOfSaved(text, origin);
}

}  // namespace zth::tasks

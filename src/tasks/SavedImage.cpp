#include "tasks/SavedImage.h"

#include <algorithm>
#include <utility>

#include "chip/RegisterRows.h"
#include "tasks/SavedConfig.h"

namespace zth::tasks {
namespace {

constexpr std::string_view kMaker = "Tarnwell Silicon";
constexpr std::string_view kComment = "Comment : ";

/// Takes the first line off a text, without its line end.
std::string_view TakeLine(std::string_view& text) {
  const std::size_t end = std::min(text.find('\n'), text.size());
  std::string_view line = text.substr(0, end);
  text.remove_prefix(std::min(end + 1, text.size()));
  if (line.ends_with('\r')) line.remove_suffix(1);
  return line;
}

bool SkipByte(std::string_view& line) {
  if (!line.starts_with("0x")) return false;
  line.remove_prefix(2);
  const std::size_t digits = std::min(line.find_first_not_of("0123456789ABCDEFabcdef"), line.size());
  line.remove_prefix(digits);
  return digits == 1 || digits == 2;
}

/// "0x21<tab>0x31", with anything after it.
bool IsRegisterLine(std::string_view line) {
  if (!SkipByte(line)) return false;
  const std::size_t blanks = std::min(line.find_first_not_of(" \t"), line.size());
  line.remove_prefix(blanks);
  return blanks > 0 && SkipByte(line) && (line.empty() || line.front() == ' ' || line.front() == '\t');
}

/// The first line between the braces that is no register's, from 1; 0 if there is none. A recall takes such a line as
/// it can. What was edited by hand keeps its head; a text without one is more likely something else altogether.
int ForeignLine(std::string_view text) {
  if (text.find(kMaker) < text.find('{')) return 0;
  bool within = false;
  for (int number = 1; !text.empty(); ++number) {
    const std::string_view line = TakeLine(text);
    if (within && line.starts_with('}')) return 0;
    if (within && !IsRegisterLine(line)) return number;
    within = within || line.find('{') != std::string_view::npos;
  }
  return 0;
}

int LinesOf(std::string_view text) {
  return static_cast<int>(std::ranges::count(text, '\n')) + (text.ends_with('\n') ? 0 : 1);
}

std::string LineOf(std::uint8_t address, const HeldByte& held, std::uint8_t defaultValue, std::string_view name) {
  const unsigned value = held.value | (defaultValue & ~unsigned{held.known});
  return SavedLine(address, static_cast<std::int32_t>(value), name);
}

}  // namespace

std::string SavedText(const RegisterImage& image, const TextNotes& notes, SavedRows rows) {
  std::string text = SavedHead(notes.date, notes.time, notes.comment);
  RegisterImage nameless = image;
  for (const chip::RegisterRow& row : chip::kRegisterRows) {
    nameless.bytes[row.address] = {};
    if (!image.Holds(row.address) || (row.readOnly && rows == SavedRows::Writable)) continue;
    text += LineOf(row.address, image.bytes[row.address], row.defaultValue, row.name);
  }
  for (unsigned reg = 0; reg < nameless.bytes.size() && rows == SavedRows::All; ++reg) {
    const auto address = static_cast<std::uint8_t>(reg);
    if (nameless.Holds(address)) text += LineOf(address, nameless.bytes[address], 0, "");
  }
  return text.append(kSavedEnd);
}

ImageOrError ImageOfSaved(std::string_view text, const std::string& origin) {
  if (const char* encoding = WideEncoding(text)) {
    return {{}, std::string("the text is in ") + encoding + "; save it as plain text or in UTF-8"};
  }
  SavedReader reader(text);
  if (!reader.FindStart()) return {{}, "no \"{\" that begins the registers was found: this is no saved configuration"};
  RegisterImage image;
  image.origin = origin;
  int address = 0;
  int value = 0;
  auto result = reader.Next(address, value);
  for (; result == SavedReader::Result::Line; result = reader.Next(address, value)) {
    image.Put(static_cast<std::uint8_t>(address), static_cast<std::uint8_t>(value));
  }
  if (const int foreign = ForeignLine(text)) {
    return {{}, "line " + std::to_string(foreign) + ": this is no line of a saved configuration"};
  }
  if (result == SavedReader::Result::Broken) {
    return {{}, "line " + std::to_string(LinesOf(text)) + ": the text breaks off before its \"}\""};
  }
  return {std::move(image), {}};
}

std::string SavedComment(std::string_view text) {
  while (!text.empty()) {
    const std::string_view line = TakeLine(text);
    if (line.starts_with(kComment)) return std::string(line.substr(kComment.size()));
    if (line.starts_with('{')) break;
  }
  return {};
}

std::string WithSavedComment(std::string_view text, std::string_view comment) {
  std::string changed;
  std::string_view rest = text;
  while (!rest.empty()) {
    const std::string_view line = TakeLine(rest);
    if (line.starts_with('{')) break;
    if (!line.starts_with(kComment)) continue;
    changed.append(text.substr(0, static_cast<std::size_t>(line.data() - text.data())))
        .append(kComment)
        .append(comment);
    return changed.append(text.substr(static_cast<std::size_t>(line.data() - text.data()) + line.size()));
  }
  return changed.append(kComment).append(comment).append("\r\n").append(text);
}

}  // namespace zth::tasks

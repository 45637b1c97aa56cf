#include "tasks/TrafficText.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>

#include "tasks/TrafficGrammar.h"

namespace zth::tasks {
namespace {

using link::Form;
using namespace grammar;

constexpr std::string_view kAsker = " ; ";
constexpr std::string_view kNote = "# note ";
/// Room for the rest of a line besides who asked or the note.
constexpr std::size_t kMostCall = 512;

void AddHex(std::string& line, std::uint8_t byte) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  line += ' ';
  line += kDigits[byte >> 4U];
  line += kDigits[byte & 0xFU];
}

void AddNumber(std::string& line, std::int64_t number) {
  char digits[24];
  char* const end = std::to_chars(std::begin(digits), std::end(digits), number).ptr;
  line += ' ';
  line.append(digits, static_cast<std::size_t>(end - digits));
}

void AddTime(std::string& line, double seconds) {
  constexpr std::int64_t kMillion = 1'000'000;
  const auto micros = static_cast<std::int64_t>(std::llround(std::clamp(seconds, 0.0, 1e9) * kMillion));
  char digits[24];
  char* end = std::to_chars(std::begin(digits), std::end(digits), micros / kMillion).ptr;
  line.append(digits, static_cast<std::size_t>(end - digits));
  end = std::to_chars(std::begin(digits), std::end(digits), kMillion + micros % kMillion).ptr;
  digits[0] = '.';
  line.append(digits, static_cast<std::size_t>(end - digits));
}

/// Length of the UTF-8 character at the start of `text`; 0 if it is none, or a character of control.
std::size_t CharacterAt(std::string_view text) {
  const auto at = [text](std::size_t i) { return static_cast<std::uint8_t>(text[i]); };
  const std::uint8_t lead = at(0);
  if (lead < 0x80) return lead >= ' ' && lead != 0x7F ? 1 : 0;
  const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  if (lead < 0xC2 || lead > 0xF4 || text.size() < length) return 0;
  for (std::size_t i = 1; i < length; ++i) {
    if ((at(i) & 0xC0U) != 0x80) return 0;
  }
  // Overlong forms, surrogates, beyond the last character.
  const std::uint8_t second = at(1);
  if ((lead == 0xE0 && second < 0xA0) || (lead == 0xED && second > 0x9F)) return 0;
  if ((lead == 0xF0 && second < 0x90) || (lead == 0xF4 && second > 0x8F)) return 0;
  // Control characters beyond ASCII.
  return lead == 0xC2 && second < 0xA0 ? 0 : length;
}

/// Adds a text without what would end or damage the line.
void AddText(std::string& line, std::string_view text) {
  const std::size_t most = kMostTrafficLine - kMostCall;
  const std::size_t from = line.size();
  while (!text.empty()) {
    const std::size_t length = CharacterAt(text);
    if (line.size() - from + std::max<std::size_t>(length, 1) > most) break;
    if (length == 0) {
      line += ' ';
    } else {
      line += text.substr(0, length);
    }
    text.remove_prefix(std::max<std::size_t>(length, 1));
  }
  // Blanks at the end would not survive reading.
  while (line.size() > from && line.back() == ' ') line.pop_back();
}

void AddArguments(std::string& line, const Grammar& grammar, const TrafficRecord& record) {
  for (const char argument : grammar.arguments) {
    if (argument == kAddress) AddHex(line, record.address);
    if (argument == kRegister) AddHex(line, record.reg);
    if (argument == kByte) AddHex(line, record.bytes[0]);
    if (argument == kCount) AddNumber(line, record.count);
    if (argument == kHeater) AddNumber(line, record.address);
    if (argument == kPercent) AddNumber(line, record.bytes[0]);
  }
}

void AddOutcome(std::string& line, const Grammar& grammar, const TrafficRecord& record) {
  if (!record.succeeded) {
    line += " fail";
    if (grammar.mode == kUsb && record.result != ResultOfFailure(record.form)) AddNumber(line, record.result);
    if (grammar.mode == kSmbus && record.form == Form::Read && record.bytes[0] != kByteOfFailedRead) {
      AddHex(line, record.bytes[0]);
    }
  } else if (grammar.outcome == Outcome::Done) {
    line += " ok";
  } else if (grammar.outcome == Outcome::Result) {
    AddNumber(line, record.result);
  } else {
    for (const std::uint8_t byte : record.Bytes()) AddHex(line, byte);
  }
}

}  // namespace

std::int16_t ResultOfFailure(Form form) {
  return form == Form::Firmware ? 0 : 1;
}

bool IsTrafficText(std::string_view line) {
  while (!line.empty()) {
    const std::size_t length = line.front() == '\t' ? 1 : CharacterAt(line);
    if (length == 0) return false;
    line.remove_prefix(length);
  }
  return true;
}

std::string TrafficHeadText(const TrafficHead& head) {
  std::string text(kTrafficTitle);
  text += "\n# started ";
  AddText(text, head.started);
  if (!head.board.empty()) {
    std::string board;
    AddText(board, head.board);
    std::ranges::replace(board, '"', '\'');
    text += " board \"" + board + '"';
  }
  text += " program ";
  AddText(text, head.program);
  text += '\n';
  if (!head.smbusFailuresKnown) {
    text += kFailuresUnknown;
    text += '\n';
  }
  return text;
}

std::string TrafficLineText(const TrafficRecord& record, std::string_view text, double start) {
  std::string line;
  line.reserve(96);
  if (record.isNote) {
    line += kNote;
    AddText(line, text);
    return line;
  }
  const Grammar* grammar = GrammarOf(record);
  if (grammar == nullptr) return line;
  AddTime(line, record.time - start);
  line += ' ';
  line += grammar->words;
  AddArguments(line, *grammar, record);
  line += ' ';
  line += kArrow;
  AddOutcome(line, *grammar, record);
  if (!text.empty()) {
    line += kAsker;
    AddText(line, text);
  }
  return line;
}

}  // namespace zth::tasks

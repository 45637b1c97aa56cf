#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <limits>
#include <string>

#include "tasks/TrafficGrammar.h"
#include "tasks/TrafficText.h"

namespace zth::tasks {
namespace {

using link::Form;
using namespace grammar;

class Words {
 public:
  explicit Words(std::string_view line) : rest_(line) {}

  /// The next word; empty at the end.
  std::string_view Next() {
    const std::size_t from = rest_.find_first_not_of(" \t");
    if (from == std::string_view::npos) return rest_ = {};
    rest_.remove_prefix(from);
    const std::string_view word = rest_.substr(0, rest_.find_first_of(" \t"));
    rest_.remove_prefix(word.size());
    return word;
  }

 private:
  std::string_view rest_;
};

/// A whole word that is a number within bounds.
template <typename Number>
bool Take(std::string_view word, Number& number, std::int32_t least, std::int32_t most, int base = 10) {
  std::int32_t value = 0;
  const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), value, base);
  if (error != std::errc() || end != word.data() + word.size() || value < least || value > most) return false;
  number = static_cast<Number>(value);
  return true;
}

bool TakeByte(std::string_view word, std::uint8_t& byte) {
  return word.size() == 2 && Take(word, byte, 0, 0xFF, 16);
}

bool TakeTime(std::string_view word, double& seconds) {
  const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
  if (word.empty() || word.size() > 20 || !isDigit(word.front()) || !isDigit(word.back())) return false;
  const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), seconds, std::chars_format::fixed);
  return error == std::errc() && end == word.data() + word.size() && seconds <= 1e9;
}

const Grammar* TakeForm(Words& words) {
  std::string form(words.Next());
  for (int more = 0; more < 2; ++more) {
    form += ' ';
    form += words.Next();
    const auto* found = std::ranges::find(kForms, std::string_view(form), &Grammar::words);
    if (found != std::end(kForms)) return found;
  }
  return nullptr;
}

std::string_view TakeArguments(Words& words, const Grammar& grammar, TrafficRecord& record) {
  for (const char argument : grammar.arguments) {
    const std::string_view word = words.Next();
    if (argument == kAddress && !TakeByte(word, record.address)) return "the address is no byte of two digits";
    if (argument == kRegister && !TakeByte(word, record.reg)) return "the register is no byte of two digits";
    if (argument == kByte && !TakeByte(word, record.bytes[0])) return "the value is no byte of two digits";
    if (argument == kCount && !Take(word, record.count, 1, kMostBytes)) return "the count is not one from 1 to 65";
    if (argument == kHeater && !Take(word, record.address, 0, 0xFF)) return "the heater has no number";
    if (argument == kPercent && !Take(word, record.bytes[0], 0, 100)) return "the percentage is not one from 0 to 100";
    if (argument == kByte || argument == kPercent) record.count = 1;
  }
  return words.Next() == kArrow ? "" : "there is no \"->\" after the call";
}

/// What follows "fail", if anything.
std::string_view TakeFailure(Words& words, const Grammar& grammar, TrafficRecord& record) {
  record.succeeded = false;
  constexpr std::array<std::uint8_t, 2> kContact{0x30, 0x33};
  if (grammar.form == Form::Connect) std::ranges::copy(kContact, record.bytes.begin());
  const bool isSmbusRead = grammar.mode == kSmbus && grammar.form == Form::Read;
  if (isSmbusRead) record.bytes[0] = kByteOfFailedRead;
  if (grammar.mode == kUsb) record.result = ResultOfFailure(grammar.form);
  const std::string_view word = words.Next();
  if (word.empty()) return "";
  if (isSmbusRead) return TakeByte(word, record.bytes[0]) ? "" : "the byte of the failed read is none of two digits";
  using Limits = std::numeric_limits<std::int16_t>;
  if (grammar.mode != kUsb || !Take(word, record.result, Limits::min(), Limits::max())) {
    return "the result of the failure is no number";
  }
  const bool failed = grammar.form == Form::Firmware ? record.result <= 0 : record.result != 0;
  return failed ? "" : "the result of the failure is that of a success";
}

std::string_view TakeOutcome(Words& words, const Grammar& grammar, TrafficRecord& record) {
  if (grammar.outcome == Outcome::Bytes && record.count == 0) record.count = grammar.count;
  std::string_view word = words.Next();
  if (word.empty()) return "there is no result";
  if (word == "fail") return TakeFailure(words, grammar, record);
  if (grammar.outcome == Outcome::Done) return word == "ok" ? "" : "the result is neither \"ok\" nor \"fail\"";
  if (grammar.outcome == Outcome::Result) {
    const bool isResult = Take(word, record.result, 1, std::numeric_limits<std::int16_t>::max());
    return isResult ? "" : "the result is neither a number above 0 nor \"fail\"";
  }
  for (std::size_t i = 0; i < record.count; ++i, word = i < record.count ? words.Next() : word) {
    if (!TakeByte(word, record.bytes[i])) return "there are too few bytes of two digits";
  }
  return "";
}

}  // namespace

std::string_view ParseTrafficCall(std::string_view line, TrafficRecord& record, std::string_view& text) {
  record = {};
  const std::size_t asker = line.find(';');
  text = asker == std::string_view::npos ? std::string_view() : line.substr(asker + 1);
  text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
  Words words(line.substr(0, asker));
  if (!TakeTime(words.Next(), record.time)) return "it does not begin with a time in seconds";
  const Grammar* grammar = TakeForm(words);
  if (grammar == nullptr) return "the form of the call is unknown";
  record.mode = grammar->mode;
  record.form = grammar->form;
  std::string_view fault = TakeArguments(words, *grammar, record);
  if (fault.empty()) fault = TakeOutcome(words, *grammar, record);
  if (fault.empty() && !words.Next().empty()) fault = "there is more than the call";
  return fault;
}

}  // namespace zth::tasks

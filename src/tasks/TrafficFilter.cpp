#include "tasks/TrafficFilter.h"

#include <algorithm>
#include <charconv>
#include <utility>

#include "tasks/TrafficWords.h"

namespace zth::tasks {
namespace {

char Lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

std::string Lowered(std::string_view text) {
  std::string lowered(text);
  std::ranges::transform(lowered, lowered.begin(), Lower);
  return lowered;
}

std::string Trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(" \t");
  if (first == std::string_view::npos) return {};
  return std::string(text.substr(first, text.find_last_not_of(" \t") - first + 1));
}

/// Of "21h"; -1 for any other text.
int NumberOf(std::string_view text) {
  if (!text.ends_with('h')) return -1;
  text.remove_suffix(1);
  int number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number, 16);
  return error == std::errc() && end == text.data() + text.size() && number <= 0xFF ? number : -1;
}

constexpr char kBetween = '\n';  // no filter's text holds it

}  // namespace

TrafficMatcher::TrafficMatcher(const Traffic& traffic, TrafficFilter filter)
    : traffic_(&traffic), filter_(std::move(filter)), fields_(256 * 256, Known::Unknown) {
  names_.fill(Known::Unknown);
  std::string& text = filter_.text;
  text = Lowered(Trimmed(text));
  if (text.starts_with("0x") && text.size() > 2) text = text.substr(2) + (text.ends_with('h') ? "" : "h");
  number_ = NumberOf(text);
}

bool TrafficMatcher::Matches(const TrafficRecord& record) {
  if (!record.isNote) {
    if (filter_.writesOnly && !link::IsWrite(record.form)) return false;
    if (filter_.failuresOnly && record.succeeded) return false;
    if (!AskerOf(record).isWanted) return false;
  }
  return filter_.text.empty() || HasText(record);
}

const TrafficMatcher::Asker& TrafficMatcher::AskerOf(const TrafficRecord& record) {
  if (record.text >= askers_.size()) askers_.resize(record.text + 1U);
  Asker& asker = askers_[record.text];
  if (std::exchange(asker.isKnown, true)) return asker;
  const std::string& name = traffic_->TextOf(record);
  const bool isSource = filter_.source.empty() || SourceOf(name) == filter_.source;
  asker.isWanted = isSource && !(filter_.withoutMonitor && IsOfMonitor(name));
  asker.hasText = Contains(Lowered(name));
  return asker;
}

bool TrafficMatcher::HasText(const TrafficRecord& record) {
  if (AskerOf(record).hasText) return true;
  words_ = BusText(record);
  for (const std::string& word :
       {AddressText(record), CallText(record), RegisterText(record), BytesText(record), ChangeText(record)}) {
    words_ += kBetween;
    words_ += word;
  }
  std::ranges::transform(words_, words_.begin(), Lower);
  if (Contains(words_)) return true;
  if (record.isNote) return false;
  const bool isBlock = record.form == link::Form::ReadBlock;
  if (!isBlock && record.form != link::Form::Read && record.form != link::Form::Write) {
    return Contains(Lowered(NameText(record))) || Contains(Lowered(FieldsText(record)));
  }
  if (isBlock && number_ >= record.reg && number_ < record.reg + record.count) return true;
  for (unsigned i = 0; i < record.count; ++i) {
    const unsigned reg = (record.reg + i) % 256;
    if (HasName(reg)) return true;
    if (record.succeeded && HasField(reg, record.bytes.at(i))) return true;
  }
  return record.count == 0 && HasName(record.reg);
}

bool TrafficMatcher::HasName(unsigned reg) {
  Known& known = names_.at(reg);
  if (known == Known::Unknown) {
    known = Contains(Lowered(NameOfRegister(static_cast<std::uint8_t>(reg)))) ? Known::Yes : Known::No;
  }
  return known == Known::Yes;
}

bool TrafficMatcher::HasField(unsigned reg, std::uint8_t value) {
  Known& known = fields_[reg * 256U + value];
  if (known == Known::Unknown) {
    TrafficRecord record;
    record.reg = static_cast<std::uint8_t>(reg);
    record.count = 1;
    record.bytes[0] = value;
    known = Contains(Lowered(FieldsText(record))) ? Known::Yes : Known::No;
  }
  return known == Known::Yes;
}

bool TrafficMatcher::Contains(std::string_view words) const {
  return words.find(filter_.text) != std::string_view::npos;
}

}  // namespace zth::tasks

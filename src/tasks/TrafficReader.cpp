#include "tasks/TrafficReader.h"

#include <algorithm>
#include <utility>

namespace zth::tasks {
namespace {

constexpr std::string_view kTitleOfAnyVersion = "# ZTH4718 bus traffic ";
constexpr std::string_view kStarted = "# started ";
constexpr std::string_view kNote = "# note";

/// The text up to a separator, which is taken off with it.
std::string_view Cut(std::string_view& rest, std::string_view separator) {
  const std::size_t at = std::min(rest.find(separator), rest.size());
  const std::string_view part = rest.substr(0, at);
  rest.remove_prefix(std::min(at + separator.size(), rest.size()));
  return part;
}

}  // namespace

TrafficReader::TrafficReader(Source source, std::int64_t longest) : source_(std::move(source)), longest_(longest) {}

bool TrafficReader::Next() {
  std::string_view line;
  while (fault_.empty() && NextLine(line)) {
    if (!IsTrafficText(line)) return Fail("it holds bytes that are no text");
    if (line_ == 1 && !line.starts_with(kTitleOfAnyVersion)) return Fail("this is no recording of bus traffic");
    if (line.find_first_not_of(" \t") == std::string_view::npos) continue;
    if (line.front() == '#') {
      if (TakeComment(line)) return true;
      continue;
    }
    const std::string_view wrong = ParseTrafficCall(line, record_, text_);
    return wrong.empty() || Fail(wrong);
  }
  return fault_.empty() && line_ == 0 ? Fail("this is no recording of bus traffic") : false;
}

bool TrafficReader::TakeComment(std::string_view line) {
  if (line.starts_with(kTitleOfAnyVersion)) {
    // Also in the middle: the parts of a recording may have been joined.
    if (line == kTrafficTitle) return false;
    const std::string version(line.substr(kTitleOfAnyVersion.size()));
    return Fail("version \"" + version + "\" of the format is unknown; this program reads version 1");
  }
  if (line.starts_with(kStarted)) TakeStart(line.substr(kStarted.size()));
  if (line == kFailuresUnknown) head_.smbusFailuresKnown = false;
  if (!line.starts_with(kNote)) return false;
  text_ = line.substr(kNote.size());
  if (!text_.empty() && text_.front() != ' ') return false;
  text_.remove_prefix(std::min(text_.find_first_not_of(' '), text_.size()));
  const double time = record_.time;
  record_ = {};
  record_.time = time;
  record_.isNote = true;
  return true;
}

void TrafficReader::TakeStart(std::string_view rest) {
  if (!head_.started.empty()) return;
  head_.started = Cut(rest, " ");
  if (rest.starts_with("board \"")) {
    rest.remove_prefix(7);
    head_.board = Cut(rest, "\"");
    rest.remove_prefix(std::min(rest.find_first_not_of(' '), rest.size()));
  }
  if (rest.starts_with("program ")) head_.program = rest.substr(8);
}

bool TrafficReader::NextLine(std::string_view& line) {
  std::size_t end = piece_.find('\n', at_);
  while (end == std::string::npos && !isAtEnd_ && piece_.size() - at_ <= kMostTrafficLine) {
    piece_.erase(0, std::exchange(at_, 0));
    const std::size_t searched = piece_.size();
    const std::string more = source_();
    isAtEnd_ = more.empty();
    taken_ += static_cast<std::int64_t>(more.size());
    piece_ += more;
    end = piece_.find('\n', searched);
  }
  if (end == std::string::npos && at_ == piece_.size()) return false;
  ++line_;
  const std::size_t length = std::min(end, piece_.size()) - at_;
  if (taken_ > longest_) {
    return Fail("the recording is longer than " + std::to_string(longest_ / (1024 * 1024)) + " MB");
  }
  if (length > kMostTrafficLine) return Fail("it is longer than 2048 bytes");
  line = std::string_view(piece_).substr(at_, length);
  at_ += length + (end == std::string::npos ? 0 : 1);
  if (line.ends_with('\r')) line.remove_suffix(1);
  return true;
}

bool TrafficReader::Fail(std::string_view why) {
  fault_ = "line " + std::to_string(std::max<std::int64_t>(line_, 1)) + ": " + std::string(why);
  return false;
}

}  // namespace zth::tasks

#include "tasks/SavedConfig.h"

#include <algorithm>
#include <array>
#include <iterator>

#include "base/NumberText.h"
#include "base/Product.h"

namespace zth::tasks {
namespace {

constexpr char kLineEnd[] = "\r\n";

std::string_view Trimmed(std::string_view text) {
  while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
  while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
  return text;
}

/// CR LF is one line end; so are Unicode's line separators, and vertical tabs and form feeds.
std::string InOneLine(std::string_view text) {
  static constexpr std::string_view kEnds[]{"\r\n", "\n", "\r", "\v", "\f", "\xC2\x85", "\xE2\x80\xA8", "\xE2\x80\xA9"};
  std::string line;
  while (!text.empty()) {
    const auto* end = std::ranges::find_if(kEnds, [text](std::string_view e) { return text.starts_with(e); });
    line += end == std::end(kEnds) ? text.front() : ' ';
    text.remove_prefix(end == std::end(kEnds) ? 1 : end->size());
  }
  return line;
}

/// -1 if the character is not a hexadecimal digit.
int Digit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  const char lower = static_cast<char>(c | 0x20);
  return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

}  // namespace

std::string SavedHead(std::string_view date, std::string_view time, std::string_view comment) {
  std::string head = "Tarnwell Silicon";
  head.append(kLineEnd).append(base::kTitle).append(kLineEnd).append(kLineEnd);
  head.append("Saved: ").append(date).append(" at ").append(time).append(kLineEnd).append(kLineEnd);
  head.append("Comment : ").append(Trimmed(InOneLine(comment))).append(kLineEnd).append(kLineEnd);
  head.append("Address\tData\tRegister").append(kLineEnd).append("{").append(kLineEnd);
  return head;
}

std::string SavedLine(std::int32_t address, std::int32_t value, std::string_view caption) {
  std::string line = "0x" + base::HexText(address) + "\t0x" + base::HexText(value) + "\t // ";
  return line.append(caption).append(kLineEnd);
}

const char* WideEncoding(std::string_view text) {
  using namespace std::string_view_literals;
  if (text.starts_with("\xFF\xFE\0\0"sv) || text.starts_with("\0\0\xFE\xFF"sv)) return "UTF-32";
  if (text.starts_with("\xFF\xFE") || text.starts_with("\xFE\xFF")) return "UTF-16";
  // Without a byte order mark: most characters are names and digits of registers, whose upper bytes are zero.
  std::array<std::size_t, 4> zeros{};
  const std::size_t characters = std::min<std::size_t>(text.size(), 65536) / 4;
  for (std::size_t i = 0; i < characters * 4; ++i) {
    if (text[i] == '\0') ++zeros.at(i % 4);
  }
  const auto many = [&](std::size_t at) { return zeros.at(at) * 2 > characters; };
  const auto few = [&](std::size_t at) { return zeros.at(at) * 4 < characters; };
  if (characters == 0) return nullptr;
  if (many(1) && many(2) && (few(0) != few(3)) && (many(0) != many(3))) return "UTF-32";
  if ((many(0) && many(2) && few(1) && few(3)) || (many(1) && many(3) && few(0) && few(2))) return "UTF-16";
  return nullptr;
}

bool SavedReader::ReadChar(char& c) {
  if (at_ >= text_.size() || lines_ >= kMostLines) return false;
  c = text_[at_++];
  if (c == lineEnd_) ++lines_;
  return true;
}

bool SavedReader::SkipTo(char wanted) {
  char c = 0;
  while (ReadChar(c)) {
    if (c == wanted) return true;
  }
  return false;
}

bool SavedReader::SkipToLineEnd() {
  return SkipTo(lineEnd_);
}

bool SavedReader::ReadByte(int& byte) {
  byte = 0;
  char high = 0;
  char low = 0;
  // Reads two characters: after a single digit, the second one is the character that ends the number. A line end ends
  // both the number and the line; otherwise the next line's register would be paired with the rest of this line.
  if (!ReadChar(high)) return false;
  atLineEnd_ = high == lineEnd_;
  if (atLineEnd_) return true;
  if (!ReadChar(low)) return false;
  atLineEnd_ = low == lineEnd_;
  if (Digit(high) < 0) return true;
  byte = Digit(high);
  if (Digit(low) >= 0) byte = byte * 16 + Digit(low);
  return true;
}

bool SavedReader::FindStart() {
  return SkipTo('{') && SkipToLineEnd();
}

SavedReader::Result SavedReader::Next(int& address, int& value) {
  char first = 0;
  if (!ReadChar(first)) return Result::Broken;
  if (first == '}') return Result::End;
  int readAddress = 0;
  int readValue = 0;
  if (!SkipTo('x') || !ReadByte(readAddress) || !SkipTo('x') || !ReadByte(readValue) ||
      (!atLineEnd_ && !SkipToLineEnd())) {
    return Result::Broken;
  }
  address = readAddress;
  value = readValue;
  return Result::Line;
}

int SavedReader::Percent() const {
  return text_.empty() ? 100 : static_cast<int>(at_ * 100 / text_.size());
}

}  // namespace zth::tasks

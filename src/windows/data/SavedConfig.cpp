#include "windows/data/SavedConfig.h"

#include "base/NumberText.h"
#include "base/Product.h"

namespace zth::windows {
namespace {

constexpr char kLineEnd[] = "\r\n";

std::string_view Trimmed(std::string_view text) {
  while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
  while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
  return text;
}

/// -1 for a character that is no hexadecimal digit.
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
  head.append("Comment : ").append(Trimmed(comment)).append(kLineEnd).append(kLineEnd);
  head.append("Address\tData\tRegister").append(kLineEnd).append("{").append(kLineEnd);
  return head;
}

std::string SavedLine(std::int32_t address, std::int32_t value, std::string_view caption) {
  std::string line = "0x" + base::HexText(address) + "\t0x" + base::HexText(value) + "\t // ";
  return line.append(caption).append(kLineEnd);
}

bool SavedReader::ReadChar(int count, char& last) {
  for (int i = 0; i < count; ++i) {
    if (at_ >= text_.size() || lines_ >= kMostLines || text_[at_] == '\0') return false;
    last = text_[at_++];
    if (last == '\n') ++lines_;
  }
  return true;
}

bool SavedReader::SkipTo(char wanted) {
  char c = 0;
  while (ReadChar(1, c)) {
    if (c == wanted) return true;
  }
  return false;
}

bool SavedReader::SkipToLineEnd() {
  return SkipTo('\n');
}

bool SavedReader::ReadByte(int& byte) {
  char high = 0;
  char low = 0;
  // Two characters always: behind a single digit the second one is what ends the number.
  if (!ReadChar(1, high) || !ReadChar(1, low)) return false;
  byte = 0;
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
  if (!ReadChar(1, first)) return Result::Broken;
  if (first == '}') return Result::End;
  int readAddress = 0;
  int readValue = 0;
  if (!SkipTo('x') || !ReadByte(readAddress) || !SkipTo('x') || !ReadByte(readValue) || !SkipToLineEnd()) {
    return Result::Broken;
  }
  address = readAddress;
  value = readValue;
  return Result::Line;
}

int SavedReader::Percent() const {
  return text_.empty() ? 100 : static_cast<int>(at_ * 100 / text_.size());
}

}  // namespace zth::windows

// Whatever a file contains, the reader of saved configurations gives the same registers as a simple reference reader.

#include <algorithm>
#include <cstdlib>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "tasks/SavedConfig.h"

namespace {

using Lines = std::vector<std::pair<int, int>>;
using zth::tasks::SavedReader;

/// The reference reader: a stream that throws at its end.
class PlainReading {
 public:
  explicit PlainReading(const std::string& text) : in_(text), end_(text.find('\n') == std::string::npos ? '\r' : '\n') {
    in_.exceptions(std::ios::failbit | std::ios::eofbit);
  }

  /// True when the closing brace was found.
  bool Run(Lines& lines) {
    try {
      while (Next() != '{') continue;
      SkipLine();
      while (Next() != '}') {
        const int address = Number();
        const int value = Number();
        SkipLine();
        lines.emplace_back(address, value);
      }
      return true;
    } catch (const std::ios::failure&) {
      return false;
    }
  }

 private:
  char Next() { return last_ = static_cast<char>(in_.get()); }
  void SkipLine() {
    while (last_ != end_) Next();
  }
  int Number() {
    while (Next() != 'x') continue;
    std::string digits(1, Next());
    if (last_ != end_) digits += Next();
    digits.erase(std::min(digits.find_first_not_of("0123456789abcdefABCDEF"), digits.size()));
    return digits.empty() ? 0 : std::stoi(digits, nullptr, 16);
  }

  std::istringstream in_;
  char end_;  ///< of a line
  char last_ = 0;
};

}  // namespace

// libFuzzer names this function.
extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size);   // NOLINT
extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {  // NOLINT
  const std::string text(reinterpret_cast<const char*>(data), size);
  Lines read;
  SavedReader reader(text);
  auto result = reader.FindStart() ? SavedReader::Result::Line : SavedReader::Result::Broken;
  while (result == SavedReader::Result::Line) {
    int address = -1;
    int value = -1;
    result = reader.Next(address, value);
    if (result == SavedReader::Result::Line) read.emplace_back(address, value);
    if (reader.Percent() < 0 || reader.Percent() > 100) std::abort();
  }
  Lines plain;
  const bool whole = PlainReading(text).Run(plain);
  if (plain != read || whole != (result == SavedReader::Result::End)) std::abort();
  return 0;
}

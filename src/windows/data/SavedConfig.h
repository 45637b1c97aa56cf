#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

/// The text of a saved configuration: a head for people, then one line for each register between braces.
namespace zth::windows {

/// Everything up to the line of the opening brace; all texts in UTF-8. A comment stands in one line: each end of a line
/// in it becomes a blank. Tabs stay.
std::string SavedHead(std::string_view date, std::string_view time, std::string_view comment);

/// The line of one register, with its end.
std::string SavedLine(std::int32_t address, std::int32_t value, std::string_view caption);

/// The closing line.
inline constexpr std::string_view kSavedEnd = "}\r\n";

/// "UTF-16" or "UTF-32" for a text whose characters have two or four bytes each, by its mark or by its zero bytes; null
/// for any other. The reader would find numbers in such a text that nobody has written.
const char* WideEncoding(std::string_view text);

/// Reads a saved configuration, character by character. It asks little of a file: what precedes the first opening brace
/// is passed over, of each line the two numbers that follow an "x" count, and a line that begins with "}" ends it.
/// Lines end with a line feed, in a file without a single one with a carriage return. Bytes that are no text are
/// characters like any other.
class SavedReader {
 public:
  /// `text` outlives the reader.
  explicit SavedReader(std::string_view text)
      : text_(text), lineEnd_(text.find('\n') == std::string_view::npos ? '\r' : '\n') {}

  enum class Result {
    Line,    ///< a register is to be written
    End,     ///< the closing brace
    Broken,  ///< the text ends before it, or has more than kMostLines lines
  };

  /// Goes to the first register line. False when there is none in reach.
  bool FindStart();

  /// The next line; `address` and `value`, 0 to 255, are put only when it gives one.
  Result Next(int& address, int& value);

  /// How much has been read, 0 to 100.
  int Percent() const;

  static constexpr int kMostLines = 100'000;

  /// More of a file need not be looked at: lines longer than any register's by far.
  static constexpr std::int64_t kMostBytes = std::int64_t{kMostLines} * 320;

 private:
  bool ReadChar(char& c);
  bool SkipTo(char wanted);
  bool SkipToLineEnd();
  bool ReadByte(int& byte);

  std::string_view text_;
  char lineEnd_;
  bool atLineEnd_ = false;  ///< the number that was read last has ended its line
  std::size_t at_ = 0;
  int lines_ = 0;
};

}  // namespace zth::windows

#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

/// The text of a saved configuration: a readable head, then one line for each register between braces.
namespace zth::tasks {

/// Everything up to and including the line of the opening brace; all texts in UTF-8. A comment is put on one line: each
/// line end in it becomes a blank. Tabs are kept.
std::string SavedHead(std::string_view date, std::string_view time, std::string_view comment);

/// The line of one register, including its line end.
std::string SavedLine(std::int32_t address, std::int32_t value, std::string_view caption);

/// The closing line.
inline constexpr std::string_view kSavedEnd = "}\r\n";

/// "UTF-16" or "UTF-32" if the text's characters have two or four bytes each, judged by the byte order mark or by zero
/// bytes; otherwise null. The reader would find meaningless numbers in such a text.
const char* WideEncoding(std::string_view text);

/// Reads a saved configuration, character by character. It is tolerant: everything before the first opening brace is
/// skipped, only the two numbers that follow an "x" in a line count, and a line that begins with "}" ends the file.
/// Lines end with a line feed, or with a carriage return if the file contains no line feed. Invalid bytes are treated
/// as ordinary characters.
class SavedReader {
 public:
  /// `text` must outlive the reader.
  explicit SavedReader(std::string_view text)
      : text_(text), lineEnd_(text.find('\n') == std::string_view::npos ? '\r' : '\n') {}

  enum class Result {
    Line,    ///< a register to write
    End,     ///< the closing brace
    Broken,  ///< the text ended before the brace, or has more than kMostLines lines
  };

  /// Moves to the first register line. False if none is found within the limits.
  bool FindStart();

  /// Reads the next line; `address` and `value`, 0 to 255, are set only if it contains a register.
  Result Next(int& address, int& value);

  /// The part read so far, 0 to 100.
  int Percent() const;

  static constexpr int kMostLines = 100'000;

  /// More than this of a file need not be read: the limit allows lines far longer than any register's.
  static constexpr std::int64_t kMostBytes = std::int64_t{kMostLines} * 320;

 private:
  bool ReadChar(char& c);
  bool SkipTo(char wanted);
  bool SkipToLineEnd();
  bool ReadByte(int& byte);

  std::string_view text_;
  char lineEnd_;
  bool atLineEnd_ = false;  ///< the last number read ended its line
  std::size_t at_ = 0;
  int lines_ = 0;
};

}  // namespace zth::tasks

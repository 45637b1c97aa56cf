#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <ostream>
#include <string>

namespace zth::smbus {

/// Where this library says what went wrong: the standard error stream, and a log of its own that stays small. When the
/// log would outgrow its bound it becomes "<name>.1", in place of an older one, and a new one begins.
class Journal {
 public:
  static constexpr std::uintmax_t kMaxBytes = 256 * 1024;

  /// No log is kept when `file` is empty. `stamp` gives the time that stands before each line of the log.
  Journal(std::ostream& errors, std::filesystem::path file, std::function<std::string()> stamp);

  /// To the standard error stream and to the log.
  void Tell(const std::string& text);
  /// To the log alone.
  void Note(const std::string& text);

 private:
  bool Append(const std::string& line);

  std::ostream& errors_;
  std::filesystem::path file_;
  std::function<std::string()> stamp_;
};

/// The date and time in UTC, as "2004-11-30T09:15:00Z".
std::string UtcStamp();

}  // namespace zth::smbus

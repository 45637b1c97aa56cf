#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <ostream>
#include <string>

namespace zth::smbus {

/// Reports this library's problems on standard error and in its own small log. When the log would exceed its size
/// limit, it is renamed to "<name>.1", replacing an older one, and a new log is started.
class Journal {
 public:
  static constexpr std::uintmax_t kMaxBytes = 256 * 1024;

  /// No log is kept if `file` is empty. `stamp` returns the time at the start of each line in the log.
  Journal(std::ostream& errors, std::filesystem::path file, std::function<std::string()> stamp);

  /// Writes to standard error and to the log.
  void Tell(const std::string& text);
  /// Writes only to the log.
  void Note(const std::string& text);

 private:
  bool Append(const std::string& line);

  std::ostream& errors_;
  std::filesystem::path file_;
  std::function<std::string()> stamp_;
};

/// The date and time in UTC, for example "2004-11-30T09:15:00Z".
std::string UtcStamp();

}  // namespace zth::smbus

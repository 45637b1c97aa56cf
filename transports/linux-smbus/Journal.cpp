#include "linux-smbus/Journal.h"

#include <array>
#include <ctime>
#include <fstream>
#include <system_error>
#include <utility>

namespace zth::smbus {

namespace fs = std::filesystem;

Journal::Journal(std::ostream& errors, fs::path file, std::function<std::string()> stamp)
    : errors_(errors), file_(std::move(file)), stamp_(std::move(stamp)) {}

void Journal::Tell(const std::string& text) {
  // One write per line: the stream is shared with the program and, being unbuffered, would otherwise split lines.
  errors_ << "smbus: " + text + "\n" << std::flush;
  Note(text);
}

void Journal::Note(const std::string& text) {
  if (file_.empty() || Append(stamp_() + " " + text + "\n")) return;
  const std::string name = file_.string();
  file_.clear();
  errors_ << "smbus: no log is kept, " + name + " cannot be written.\n" << std::flush;
}

bool Journal::Append(const std::string& line) {
  std::error_code error;
  const std::uintmax_t size = fs::file_size(file_, error);
  if (error) {
    fs::create_directories(file_.parent_path(), error);
  } else if (size + line.size() > kMaxBytes) {
    fs::rename(file_, file_.string() + ".1", error);
    // Keeps the size limit even if the file can be written but not renamed.
    if (error) std::ofstream(file_, std::ios::trunc);
  }
  std::ofstream log(file_, std::ios::app);
  log << line << std::flush;
  return log.good();
}

std::string UtcStamp() {
  const std::time_t now = std::time(nullptr);
  std::tm utc{};
  gmtime_r(&now, &utc);
  std::array<char, 32> text{};
  std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%SZ", &utc);
  return text.data();
}

}  // namespace zth::smbus

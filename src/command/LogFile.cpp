#include "command/LogFile.h"

#include <utility>

#include "command/Failure.h"

namespace zth::command {
namespace {

constexpr char kEnd[] = "\r\n";

}  // namespace

void LogFile::Add(const std::string& head, const std::string& line) {
  if (!std::exchange(hasBegun_, true)) Begin(head);
  Put(line + kEnd);
}

void LogFile::Begin(const std::string& head) {
  const bool isThere = files_.Look(path_).has_value();
  if (isThere && mode_ == Mode::Append) return GoOn(head);
  // Emptied first: an append begins only a file that is new or empty.
  if (isThere && mode_ == Mode::Replace) files_.Replace(path_, {});
  Put(head + kEnd);
}

void LogFile::GoOn(const std::string& head) {
  const auto state = files_.Look(path_);
  if (state->size == 0) return Put(head + kEnd);
  const QByteArray expected = QByteArray::fromStdString(head + kEnd);
  if (files_.ReadAt(path_, 0, expected.size()) != expected) {
    throw Failure{kUsage, "'" + path_.toStdString() + "' has other columns",
                  "Name the same readings as before, or write over it by --force"};
  }
  state_ = state;
  // The last line of a log that was killed may be without its end.
  if (files_.ReadAt(path_, state->size - 1, 1) != QByteArray("\n")) Put(kEnd);
}

void LogFile::Put(const std::string& text) {
  const platform::FileAppend done = files_.Append(path_, state_, QByteArray::fromStdString(text));
  if (!done.opened || done.written < static_cast<std::int64_t>(text.size())) {
    throw Failure{kUsage, "'" + path_.toStdString() + "' cannot be written", "Check the disk and the folder"};
  }
  state_ = done.before;
  state_->size += done.written;
}

}  // namespace zth::command

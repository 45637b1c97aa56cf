#include "windows/data/LogFile.h"

#include <algorithm>
#include <string>

namespace zth::windows {
namespace {

constexpr char kLineEnd[] = "\r\n";

/// It begins with no number, so that nothing takes it for a sample.
QByteArray GapLine(std::int64_t lost) {
  const std::string text = "Gap: " + std::to_string(lost) + (lost == 1 ? " line" : " lines") +
                           " lost while the file was not writable" + kLineEnd;
  return QByteArray::fromStdString(text);
}

}  // namespace

void LogFile::Add(std::string_view line, std::int64_t room) {
  const std::int64_t needed = lost_ > 0 ? 2 : 1;
  if (room < needed) {
    ++lost_;
    return;
  }
  if (lost_ > 0) waiting_ += GapLine(lost_);
  lost_ = 0;
  waiting_.append(line.data(), static_cast<qsizetype>(line.size()));
  waiting_ += kLineEnd;
  lines_ += needed;
}

bool LogFile::CutTornLine(platform::Files& files) {
  if (tornSize_ == wholeSize_) return true;
  if (!files.Cut(path_, tornSize_, wholeSize_)) return false;
  tornSize_ = wholeSize_;
  return true;
}

bool LogFile::Flush(platform::Files& files) {
  if (!CutTornLine(files)) return false;
  if (Empty()) return true;

  const QByteArray gap = lost_ > 0 ? GapLine(lost_) : QByteArray();
  waiting_ += gap;
  const platform::FileAppend done = files.Append(path_, waiting_);
  if (done.opened && done.written == waiting_.size()) {
    waiting_ = {};
    lines_ = 0;
    lost_ = 0;
    return true;
  }
  waiting_.chop(gap.size());

  // What landed of the lines is done with; what landed of a line is cut off, and the line waits on.
  const auto landed = static_cast<qsizetype>(done.written);
  const qsizetype last = std::min(landed, waiting_.size()) - 1;
  const qsizetype whole = last < 0 ? 0 : waiting_.lastIndexOf('\n', last) + 1;
  tornSize_ = done.before + landed;
  wholeSize_ = done.before + whole;
  CutTornLine(files);
  lines_ -= std::count(waiting_.cbegin(), waiting_.cbegin() + whole, '\n');
  waiting_.remove(0, whole);
  return false;
}

}  // namespace zth::windows

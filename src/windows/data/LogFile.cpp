#include "windows/data/LogFile.h"

#include <algorithm>
#include <string>

namespace zth::windows {
namespace {

constexpr char kLineEnd[] = "\r\n";

/// This many bytes at the end of a file identify it.
constexpr qsizetype kTail = 256;

/// Does not start with a number, so that it is never mistaken for a sample.
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

bool LogFile::VolumeIsThere(platform::Files& files, const std::optional<platform::FileState>& seen) const {
  // Checked only if something has changed, because it is expensive. When a volume is unmounted, a folder usually
  // remains at its mount point; anything written there would be hidden once the volume is back.
  if (!left_ || (seen && seen->device == left_->device)) return true;
  return volume_.isEmpty() || files.VolumeOf(volume_) == volume_;
}

const char* LogFile::Accident(platform::Files& files, const std::optional<platform::FileState>& seen) const {
  if (!left_) return nullptr;
  if (!seen) return "it was gone";
  const bool same = seen->SameFile(*left_);
  if (same && seen->size == left_->size) return nullptr;
  if (same && seen->size < left_->size) return "it had been cut short";
  // The file is longer, or a different one. If the last written bytes are still in place, nothing is wrong: somebody
  // has appended to it or replaced it by a copy, or the volume has renumbered its files.
  if (seen->size >= left_->size) {
    const auto there = files.ReadAt(path_, left_->size - tail_.size(), tail_.size());
    if (there ? *there == tail_ : same) return nullptr;
  }
  return same ? "it had been written over" : "another file had taken its place";
}

LogFile::Landed LogFile::Write(platform::Files& files, const std::optional<platform::FileState>& seen,
                               const QByteArray& head, const QByteArray& lines, const QByteArray& gap) {
  const QByteArray bytes = head + lines + gap;
  const platform::FileAppend done = files.Append(path_, seen, bytes);
  if (!done.opened) return {};
  const auto written = static_cast<qsizetype>(done.written);
  qsizetype whole = written;
  if (written < bytes.size()) {
    // Complete lines are done. A partial line or head is cut off and keeps waiting. So is the gap line, to be written
    // again.
    const qsizetype last = std::min(written, head.size() + lines.size()) - 1;
    whole = last < 0 ? 0 : bytes.lastIndexOf('\n', last) + 1;
    if (whole < head.size()) whole = 0;
  }
  platform::FileState after = done.before;
  after.size += whole;
  torn_.reset();
  if (whole < written) {
    torn_ = done.before;
    torn_->size += written;
    wholeSize_ = after.size;
    if (files.Cut(path_, *torn_, wholeSize_)) torn_.reset();
  }
  if (whole > 0) {
    const bool inOnePiece = left_ && left_->SameFile(done.before) && left_->size == done.before.size;
    tail_ = ((inOnePiece ? tail_ : QByteArray()) + bytes.left(whole)).right(kTail);
    left_ = after;
  }
  return {whole - std::min(whole, head.size()), whole >= head.size(), written == bytes.size()};
}

bool LogFile::Begin(platform::Files& files) {
  if (!Write(files, files.Look(path_), head_, {}, {}).all) return false;
  volume_ = files.VolumeOf(path_);
  return true;
}

bool LogFile::Flush(platform::Files& files) {
  if (Empty() && !torn_) return true;
  auto seen = files.Look(path_);
  if (!VolumeIsThere(files, seen)) return false;
  if (torn_ && seen && seen->SameFile(*torn_) && seen->size == torn_->size) {
    if (!files.Cut(path_, *seen, wholeSize_)) return false;
    seen->size = wholeSize_;
    torn_.reset();
  }
  if (Empty()) return true;

  const char* found = Accident(files, seen);
  // Keep the first accident: a head that did not fit leaves a new file itself.
  if (found == nullptr || pending_ == nullptr) pending_ = found;
  const Landed landed =
      Write(files, seen, found != nullptr ? head_ : QByteArray(), waiting_, lost_ > 0 ? GapLine(lost_) : QByteArray());
  if (landed.head && pending_ != nullptr) {
    accident_ = std::exchange(pending_, nullptr);
    volume_ = files.VolumeOf(path_);
  }
  if (landed.all) lost_ = 0;
  const qsizetype done = std::min(landed.lines, waiting_.size());
  lines_ -= std::count(waiting_.cbegin(), waiting_.cbegin() + done, '\n');
  waiting_.remove(0, done);
  return landed.all;
}

}  // namespace zth::windows

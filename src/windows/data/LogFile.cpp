#include "windows/data/LogFile.h"

#include <algorithm>
#include <string>

namespace zth::windows {
namespace {

constexpr char kLineEnd[] = "\r\n";

/// So much of a file's end tells that it is the same one.
constexpr qsizetype kTail = 256;

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

bool LogFile::VolumeIsThere(platform::Files& files, const std::optional<platform::FileState>& seen) const {
  // Asked for only when something has changed: it is no cheap question. Under the place of a volume that has gone there
  // is a folder as a rule; what would be written there is out of sight as soon as the volume is back.
  if (!left_ || (seen && seen->device == left_->device)) return true;
  return volume_.isEmpty() || files.VolumeOf(volume_) == volume_;
}

const char* LogFile::Accident(platform::Files& files, const std::optional<platform::FileState>& seen) const {
  if (!left_) return nullptr;
  if (!seen) return "it was gone";
  const bool same = seen->SameFile(*left_);
  if (same && seen->size == left_->size) return nullptr;
  if (same && seen->size < left_->size) return "it had been cut short";
  // It is longer, or another one. Where what was written last still stands in its place, somebody has added to it, or
  // has put a copy in its place, or its volume numbers its files anew.
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
    // What landed of the lines is done with; what landed of a line or of the head is cut off, and waits on. A gap is
    // told of anew.
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
  // What was found first is what had happened: a head that did not fit leaves a file of its own.
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

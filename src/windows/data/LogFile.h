#pragma once

#include <cstdint>
#include <string_view>

#include <QByteArray>
#include <QString>

#include "platform/Services.h"

namespace zth::windows {

/// The way of lines into one log file. Each line goes out whole or not at all; what cannot be written waits here, in
/// order, and goes out first as soon as writing works again. Lines end in CR LF.
class LogFile {
 public:
  explicit LogFile(QString path) : path_(std::move(path)) {}

  const QString& Path() const { return path_; }

  /// Adds a line, given without its end, to those that wait. With no `room` for it (in lines) it is lost, and counted;
  /// a line that tells of the gap follows the waiting ones, in its place.
  void Add(std::string_view line, std::int64_t room);

  /// Writes all that waits. True when nothing does any more.
  bool Flush(platform::Files& files);

  std::int64_t Waiting() const { return lines_; }
  std::int64_t Lost() const { return lost_; }
  bool Empty() const { return lines_ == 0 && lost_ == 0; }

 private:
  bool CutTornLine(platform::Files& files);

  QString path_;
  QByteArray waiting_;
  std::int64_t lines_ = 0;  ///< in waiting_
  std::int64_t lost_ = 0;   ///< behind waiting_, not yet told of in it
  // A write that was cut short and whose rest of a line still stands in the file: its size, and the size without it.
  std::int64_t tornSize_ = 0;
  std::int64_t wholeSize_ = 0;
};

}  // namespace zth::windows

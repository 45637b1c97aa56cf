#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <utility>

#include <QByteArray>
#include <QString>

#include "platform/Services.h"

namespace zth::windows {

/// The way of lines into one log file. Each line goes out whole or not at all; what cannot be written waits here, in
/// order, and goes out first as soon as writing works again. Lines end in CR LF.
///
/// Nothing stays open between two writes, so each one looks whether the file is still the one that the last was left
/// in: in another one, a new or an emptied one the head comes first.
class LogFile {
 public:
  /// `head`: all of the log's head, with the ends of its lines.
  LogFile(QString path, QByteArray head) : path_(std::move(path)), head_(std::move(head)) {}

  const QString& Path() const { return path_; }

  /// Writes the head. False when that could not be done; nothing of it is in the file then.
  bool Begin(platform::Files& files);

  /// Adds a line, given without its end, to those that wait. With no `room` for it (in lines) it is lost, and counted;
  /// a line that tells of the gap follows the waiting ones, in its place.
  void Add(std::string_view line, std::int64_t room);

  /// Writes all that waits. True when nothing does any more.
  bool Flush(platform::Files& files);

  std::int64_t Waiting() const { return lines_; }
  std::int64_t Lost() const { return lost_; }
  bool Empty() const { return lines_ == 0 && lost_ == 0; }

  /// What had become of the file when its head had to be written again: "it was gone". Told once for each time.
  QString TakeAccident() { return std::exchange(accident_, {}); }

 private:
  /// What a write has left in the file.
  struct Landed {
    qsizetype lines = 0;  ///< bytes of whole lines
    bool head = false;    ///< all of the head
    bool all = false;
  };
  Landed Write(platform::Files& files, const std::optional<platform::FileState>& seen, const QByteArray& head,
               const QByteArray& lines, const QByteArray& gap);
  bool VolumeIsThere(platform::Files& files, const std::optional<platform::FileState>& seen) const;
  /// What has become of the file that the last write left; null when it is still that one.
  const char* Accident(platform::Files& files, const std::optional<platform::FileState>& seen) const;

  QString path_;
  QByteArray head_;
  QByteArray waiting_;
  std::int64_t lines_ = 0;  ///< in waiting_
  std::int64_t lost_ = 0;   ///< behind waiting_, not yet told of in it

  std::optional<platform::FileState> left_;  ///< the file as the last write left it; none before the first
  QByteArray tail_;                          ///< the end of what stands in it
  QString volume_;                           ///< the root of the volume that it lies on
  const char* pending_ = nullptr;            ///< an accident behind which the head has not been written yet
  QString accident_;
  // A write was cut short and the rest of a line or head still stands in the file: the file with it, and its size
  // without.
  std::optional<platform::FileState> torn_;
  std::int64_t wholeSize_ = 0;
};

}  // namespace zth::windows

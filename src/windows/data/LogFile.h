#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <utility>

#include <QByteArray>
#include <QString>

#include "platform/Services.h"

namespace zth::windows {

/// Writes lines to one log file. Each line is written whole or not at all. Lines that cannot be written wait here, in
/// order, and are written first once writing works again. Lines end in CR LF.
///
/// The file is not kept open between writes, so each write checks that it is still the file as the last write left it.
/// A different, new or emptied file gets the head first.
class LogFile {
 public:
  /// `head` is the complete head, including line ends.
  LogFile(QString path, QByteArray head) : path_(std::move(path)), head_(std::move(head)) {}

  const QString& Path() const { return path_; }

  /// Writes the head. False on failure; then the file contains none of it.
  bool Begin(platform::Files& files);

  /// Queues a line, given without its end. If there is no `room` (in lines), the line is lost and counted, and a line
  /// that reports the gap follows the queued ones.
  void Add(std::string_view line, std::int64_t room);

  /// Writes all queued lines. True if none are left.
  bool Flush(platform::Files& files);

  std::int64_t Waiting() const { return lines_; }
  std::int64_t Lost() const { return lost_; }
  bool Empty() const { return lines_ == 0 && lost_ == 0; }

  /// What had happened to the file when its head had to be written again, for example "it was gone". Reported once each
  /// time.
  QString TakeAccident() { return std::exchange(accident_, {}); }

 private:
  /// How much of a write the file contains.
  struct Landed {
    qsizetype lines = 0;  ///< number of bytes in whole lines
    bool head = false;    ///< the whole head was written
    bool all = false;
  };
  Landed Write(platform::Files& files, const std::optional<platform::FileState>& seen, const QByteArray& head,
               const QByteArray& lines, const QByteArray& gap);
  bool VolumeIsThere(platform::Files& files, const std::optional<platform::FileState>& seen) const;
  /// What has happened to the file since the last write; null if it is still the same.
  const char* Accident(platform::Files& files, const std::optional<platform::FileState>& seen) const;

  QString path_;
  QByteArray head_;
  QByteArray waiting_;
  std::int64_t lines_ = 0;  ///< number of lines in waiting_
  std::int64_t lost_ = 0;   ///< lines lost after waiting_, not yet reported in it

  std::optional<platform::FileState> left_;  ///< the file after the last write; none before the first
  QByteArray tail_;                          ///< the last bytes in it
  QString volume_;                           ///< root of the volume it is on
  const char* pending_ = nullptr;            ///< an accident after which the head has not been written yet
  QString accident_;
  // A write was cut short, and part of a line or head is still in the file: the file including that part, and its size
  // without it.
  std::optional<platform::FileState> torn_;
  std::int64_t wholeSize_ = 0;
};

}  // namespace zth::windows

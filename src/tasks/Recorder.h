#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>

#include <QByteArray>
#include <QString>

#include "platform/Services.h"
#include "tasks/Traffic.h"
#include "tasks/TrafficText.h"

namespace zth::tasks {

/// Writes the traffic to a file, a line for each call as it ends, from the first call on.
///
/// A line is handed to the system as soon as it is there, whole or not at all, and is not forced onto the disk: it
/// outlives the program however that ends, but perhaps not a loss of power. The first write that fails ends the
/// recording, so that what the file holds has no gap.
///
/// The file never exceeds its bound. Beyond it the recording goes on in a second file with ".2" added to the name. When
/// that is full too, it begins anew. So the first file keeps the start, which a replay needs, and the second the
/// latest.
class Recorder {
 public:
  /// `most`: bytes in each of the two files.
  Recorder(Traffic& traffic, platform::Services& services, QString path, std::int64_t most);
  Recorder(const Recorder&) = delete;
  Recorder& operator=(const Recorder&) = delete;

  /// Why the recording has ended before the program, or was not bounded as asked; for people, empty if nothing is
  /// wrong.
  const QString& Trouble() const { return trouble_; }
  void SetTrouble(const QString& trouble) { trouble_ = trouble; }

 private:
  void Saw(const TrafficRecord& record, std::string_view text);
  /// The lines that go before the first call of the file, and of each link.
  QByteArray FirstLines(const TrafficRecord& record);
  bool Begin(const QByteArray& head);
  bool GoOn(const QByteArray& lines);
  bool EndWith(const QString& why);
  QByteArray Head() const;

  platform::Services& services_;
  QString path_;  ///< of the file that is being written
  std::int64_t most_;
  bool runs_ = true;
  int part_ = 0;            ///< 0 before the first call
  std::int64_t calls_ = 0;  ///< and notes, written so far
  double start_ = 0;        ///< of the first call, monotonic seconds
  TrafficHead head_;
  bool hasLink_[3] = {};                     ///< by mode: whether a call has been seen
  std::optional<platform::FileState> file_;  ///< as the last write left it
  QString trouble_;
  std::shared_ptr<void> listening_;
};

/// Records into the file that the environment variable ZTH4718_RECORD names, if it is set. ZTH4718_RECORD_MB bounds
/// each of the two files; unset, the longest recording that can be read does.
void StartRecording(platform::Services& services);

/// What the user has to be told about the recording; empty if nothing is wrong.
QString RecordingTrouble();

}  // namespace zth::tasks

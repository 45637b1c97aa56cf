#pragma once

#include <deque>
#include <optional>
#include <vector>

#include "windows/data/LogFile.h"

namespace zth::windows {

/// State that the log job keeps between lines (`LogJob.h`).
struct LogFiles {
  /// The running log is last; before it are the files of earlier logs that still have lines to write.
  std::vector<LogFile> files;

  /// The file that WriteLogHead has begun, for the log that StartLog starts.
  std::optional<LogFile> begun;

  /// The last file that had to be started again since the log was started.
  QString accident;

  /// Clock times of the latest lines.
  std::deque<double> stamps;

  /// The status bar is reporting trouble.
  bool troubleShows = false;
};

}  // namespace zth::windows

#pragma once

#include <deque>
#include <optional>
#include <vector>

#include "windows/data/LogFile.h"

namespace zth::windows {

/// What the log job keeps from line to line (`LogJob.h`).
struct LogFiles {
  /// The running log comes last; before it stand the files of earlier ones that still owe lines.
  std::vector<LogFile> files;

  /// A head that WriteLogHead has written, for the log that StartLog starts.
  std::optional<LogFile> begun;

  /// The last file that had to be begun anew, since the log was started.
  QString accident;

  /// When the last lines came, by the clock.
  std::deque<double> stamps;

  /// The status bar tells of trouble.
  bool troubleShows = false;
};

}  // namespace zth::windows

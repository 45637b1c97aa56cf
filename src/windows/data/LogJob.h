#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include <QStringList>

#include "windows/Desktop.h"

/// The log: one line per period, appended to `LogFileName`, whether its window is open or not.
namespace zth::windows {

/// The limit of lines waiting for files that cannot be written, over all files. The oldest are kept; later ones are
/// lost and counted.
inline constexpr std::int64_t kMostWaitingLines = 100'000;

/// The next data line, without its line end, made only from `LogChannelTable`, `LogSampleCount` and `LogPeriodMs`. The
/// field of a stale value is empty.
std::string BuildLogLine();

/// Writes the head of a log to `LogFileName`: an empty line, the title, an empty line and `header`. False on failure;
/// then the file contains none of it. Does not switch logging on.
bool WriteLogHead(platform::Files& files, const std::string& header);

/// Switches logging on with the given period, and writes the first line at time 0.
void StartLog(std::int32_t periodMs, Desktop& desktop);

/// Switches logging off. Waiting lines are tried again at once, and then once a second while the program runs.
void StopLog(const Context& context);

/// For the master timer: whether the job has work, and how often it runs.
bool LogHasWork();
double LogPeriodSeconds();

/// Adds the next line while logging is on, and writes waiting lines. The status bar reports a file that cannot be
/// written until it can.
void RunLogJob(const Context& context);

/// Tries once more to write the waiting lines. Called at the end of the program.
void FinishLog(platform::Files& files);

/// The number of waiting lines, over all files.
std::int64_t LogLinesWaiting();

/// The files with waiting lines, the running log's last; `LogFileName` may have changed since, or be empty.
QStringList LogFilesWaiting();

/// The files' problems as text for the user: waiting lines, or a file that had to be started again since the log was
/// started. Normally empty.
QString LogTrouble();

/// Seconds between lines, measured over the last kPaceLines lines of the running log; nothing before there are enough.
std::optional<double> LogPace();
inline constexpr int kPaceLines = 20;

}  // namespace zth::windows

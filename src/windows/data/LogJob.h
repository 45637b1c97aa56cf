#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include <QStringList>

#include "windows/Desktop.h"

/// The log: one line a period, appended to `LogFileName`, whether its window is open or not.
namespace zth::windows {

/// Lines that wait for a file that cannot be written, over all files. The oldest are kept, later ones are lost and
/// counted.
inline constexpr std::int64_t kMostWaitingLines = 100'000;

/// The next data line, without its end, from `LogChannelTable`, `LogSampleCount` and `LogPeriodMs` alone. The field of
/// a stale value is empty.
std::string BuildLogLine();

/// Writes the head of a log to `LogFileName`: an empty line, the title, an empty line and `header`. False when it could
/// not be written; nothing of it is in the file then. Does not switch logging on.
bool WriteLogHead(platform::Files& files, const std::string& header);

/// Switches logging on, with the period and its first line at time 0.
void StartLog(std::int32_t periodMs, Desktop& desktop);

/// Switches logging off. Lines that wait are tried once more, and then once a second for as long as the program runs.
void StopLog(const Context& context);

/// The row of the master timer: when it has something to do, and how often.
bool LogHasWork();
double LogPeriodSeconds();

/// Adds the next line while logging is on, and writes what waits. A file that cannot be written shows in the status
/// bar until it can.
void RunLogJob(const Context& context);

/// Tries once more to write the lines that wait: for the end of the program.
void FinishLog(platform::Files& files);

/// Lines that wait for a file that cannot be written, over all files.
std::int64_t LogLinesWaiting();

/// Those files, that of the running log last; `LogFileName` may be another one by now, or none.
QStringList LogFilesWaiting();

/// What has gone wrong with the files, for people: lines that wait, a file that had to be begun anew since the log was
/// started. Empty as a rule.
QString LogTrouble();

/// Seconds from line to line by the clock, over the last kPaceLines of the running log; nothing before there are some.
std::optional<double> LogPace();
inline constexpr int kPaceLines = 20;

}  // namespace zth::windows

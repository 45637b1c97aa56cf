#include "windows/data/LogJob.h"

#include <algorithm>
#include <vector>

#include "base/NumberText.h"
#include "base/Rounding.h"
#include "chip/Measurements.h"
#include "windows/SharedState.h"
#include "windows/data/LogFile.h"

namespace zth::windows {
namespace {

constexpr double kRetrySeconds = 1.0;

/// The running log comes last; before it stand the files of earlier ones that still owe lines.
std::vector<LogFile> logs;

/// The status bar tells of lines that wait.
bool trouble = false;

std::int64_t Lost() {
  std::int64_t lines = 0;
  for (const LogFile& log : logs) lines += log.Lost();
  return lines;
}

void FlushAll(platform::Files& files) {
  for (LogFile& log : logs) log.Flush(files);
}

/// Lets go of the files that owe nothing, but for that of the running log.
void DropDone() {
  const auto done = [](const LogFile& log) { return log.Empty() && !(LogActive && &log == &logs.back()); };
  if (std::none_of(logs.begin(), logs.end(), done)) return;
  std::vector<LogFile> kept;
  for (LogFile& log : logs) {
    if (!done(log)) kept.push_back(std::move(log));
  }
  logs = std::move(kept);
}

void ShowState(Desktop& desktop) {
  QString text = LogActive ? "Logging Enabled" : "Ready";
  const bool waits = LogLinesWaiting() > 0 || Lost() > 0;
  if (waits) text += QString(" - file not writable, %1 lines waiting").arg(LogLinesWaiting());
  if (Lost() > 0) text += QString(", %1 lost").arg(Lost());
  if (waits || trouble) desktop.SetStatus(text);
  trouble = waits;
}

}  // namespace

std::int64_t LogLinesWaiting() {
  std::int64_t lines = 0;
  for (const LogFile& log : logs) lines += log.Waiting();
  return lines;
}

std::string BuildLogLine() {
  // In 64 bits: a log of months passes what 32 bits hold of milliseconds.
  const std::int64_t milliseconds = LogSampleCount * LogPeriodMs;
  std::string line = base::GeneralText(base::RoundHalfEven(static_cast<double>(milliseconds) / 1000.0, 3)) + ",";
  for (const chip::LogChannel& channel : chip::LogChannelTable) {
    if (channel.Selected == 1.0F) line += base::GeneralText(channel.Value) + " ,";
  }
  return line;
}

bool WriteLogHead(platform::Files& files, const std::string& header) {
  // Lines that an earlier log still owes to this file come before the new head.
  for (LogFile& log : logs) {
    if (log.Path() == LogFileName && !log.Flush(files)) return false;
  }
  const QByteArray head = "\r\nZTH4718 Log File\r\n\r\n" + QByteArray::fromStdString(header) + "\r\n";
  const platform::FileAppend done = files.Append(LogFileName, head);
  if (done.opened && done.written == head.size()) return true;
  if (done.written > 0) files.Cut(LogFileName, done.before + done.written, done.before);
  return false;
}

void StartLog(std::int32_t periodMs, Desktop& desktop) {
  DropDone();
  logs.emplace_back(LogFileName);
  LogPeriodMs = periodMs;
  LogActive = true;
  LogSampleCount = 0;
  desktop.SetStatus("Logging Enabled");
  ShowState(desktop);
}

void StopLog(const Context& context) {
  LogActive = false;
  FlushAll(context.services.files);
  DropDone();
  context.desktop.SetStatus("Ready");
  ShowState(context.desktop);
}

bool LogHasWork() {
  return LogActive || !logs.empty();
}

double LogPeriodSeconds() {
  return LogActive ? LogPeriodMs / 1000.0 : kRetrySeconds;
}

void RunLogJob(const Context& context) {
  platform::Files& files = context.services.files;
  if (LogActive) {
    if (logs.empty()) logs.emplace_back(LogFileName);
    const std::string line = BuildLogLine();
    // A full store is emptied first, if it can be, so that no line is lost that the file would have taken.
    if (LogLinesWaiting() >= kMostWaitingLines) FlushAll(files);
    logs.back().Add(line, kMostWaitingLines - LogLinesWaiting());
    ++LogSampleCount;
  }
  FlushAll(files);
  DropDone();
  ShowState(context.desktop);
}

void FinishLog(platform::Files& files) {
  FlushAll(files);
}

void ResetLog() {
  logs.clear();
  trouble = false;
}

}  // namespace zth::windows

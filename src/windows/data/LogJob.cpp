#include "windows/data/LogJob.h"

#include <algorithm>
#include <deque>
#include <vector>

#include <QFileInfo>

#include "base/NumberText.h"
#include "base/Rounding.h"
#include "chip/Measurements.h"
#include "windows/SharedState.h"
#include "windows/data/LogFile.h"
#include "windows/data/frmLogging.h"

namespace zth::windows {
namespace {

constexpr double kRetrySeconds = 1.0;

/// The running log comes last; before it stand the files of earlier ones that still owe lines.
std::vector<LogFile> logs;

/// A head that WriteLogHead has written, for the log that StartLog starts.
std::optional<LogFile> begun;

/// The last file that had to be begun anew, since the log was started.
QString accident;

/// When the last lines came, by the clock.
std::deque<double> stamps;

/// The status bar tells of trouble.
bool troubleShows = false;

std::int64_t Lost() {
  std::int64_t lines = 0;
  for (const LogFile& log : logs) lines += log.Lost();
  return lines;
}

void FlushAll(const platform::Services& services) {
  for (LogFile& log : logs) {
    log.Flush(services.files);
    const QString what = log.TakeAccident();
    if (what.isEmpty()) continue;
    accident = QFileInfo(log.Path()).fileName() + " begun anew at " + services.clock.WallTime().toString("HH:mm:ss") +
               ": " + what;
  }
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

QString WaitingText() {
  const std::int64_t waiting = LogLinesWaiting();
  if (waiting == 0 && Lost() == 0) return {};
  const QString text = QString("file not writable, %1 %2 waiting").arg(waiting).arg(waiting == 1 ? "line" : "lines");
  return Lost() == 0 ? text : text + QString(", %1 lost").arg(Lost());
}

void ShowState(Desktop& desktop) {
  // Without a log the bar tells of what is still to come; what has been is told in the window until the next start.
  const QString trouble = LogActive ? LogTrouble() : WaitingText();
  if (!trouble.isEmpty()) {
    desktop.SetStatus((LogActive ? "Logging Enabled - " : "Ready - ") + trouble);
  } else if (troubleShows) {
    desktop.SetStatus(LogActive ? "Logging Enabled" : "Ready");
  }
  troubleShows = !trouble.isEmpty();
  if (auto* window = qobject_cast<frmLogging*>(desktop.FindWindow("frmLogging"))) window->ShowState();
}

}  // namespace

std::string BuildLogLine() {
  // In 64 bits: a log of months passes what 32 bits hold of milliseconds.
  const std::int64_t milliseconds = LogSampleCount * LogPeriodMs;
  std::string line = base::GeneralText(base::RoundHalfEven(static_cast<double>(milliseconds) / 1000.0, 3)) + ",";
  for (const chip::LogChannel& channel : chip::LogChannelTable) {
    if (channel.Selected == 1.0F) line += base::GeneralText(channel.Value) + " ,";
  }
  return line;
}

std::int64_t LogLinesWaiting() {
  std::int64_t lines = 0;
  for (const LogFile& log : logs) lines += log.Waiting();
  return lines;
}

QStringList LogFilesWaiting() {
  QStringList files;
  for (const LogFile& log : logs) {
    if (log.Waiting() > 0 && !files.contains(log.Path())) files << log.Path();
  }
  return files;
}

QString LogTrouble() {
  const QString waiting = WaitingText();
  return waiting + (waiting.isEmpty() || accident.isEmpty() ? "" : " - ") + accident;
}

std::optional<double> LogPace() {
  constexpr std::size_t kFewest = 4;
  if (!LogActive || stamps.size() < kFewest) return std::nullopt;
  const double span = stamps.back() - stamps.front();
  if (span <= 0) return std::nullopt;
  return span / static_cast<double>(stamps.size() - 1);
}

bool WriteLogHead(platform::Files& files, const std::string& header) {
  // Lines that an earlier log still owes to this file come before the new head.
  for (LogFile& log : logs) {
    if (log.Path() == LogFileName && !log.Flush(files)) return false;
  }
  begun.emplace(LogFileName, "\r\nZTH4718 Log File\r\n\r\n" + QByteArray::fromStdString(header) + "\r\n");
  if (begun->Begin(files)) return true;
  begun.reset();
  return false;
}

void StartLog(std::int32_t periodMs, Desktop& desktop) {
  DropDone();
  if (begun && begun->Path() == LogFileName) {
    logs.push_back(std::move(*begun));
  } else {
    logs.emplace_back(LogFileName, QByteArray());
  }
  begun.reset();
  accident.clear();
  stamps.clear();
  LogPeriodMs = periodMs;
  LogActive = true;
  LogSampleCount = 0;
  desktop.SetStatus("Logging Enabled");
  ShowState(desktop);
}

void StopLog(const Context& context) {
  LogActive = false;
  FlushAll(context.services);
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
  if (LogActive) {
    if (logs.empty()) logs.emplace_back(LogFileName, QByteArray());
    const std::string line = BuildLogLine();
    // A full store is emptied first, if it can be, so that no line is lost that the file would have taken.
    if (LogLinesWaiting() >= kMostWaitingLines) FlushAll(context.services);
    logs.back().Add(line, kMostWaitingLines - LogLinesWaiting());
    ++LogSampleCount;
    stamps.push_back(context.services.clock.Now());
    if (stamps.size() > kPaceLines) stamps.pop_front();
  }
  FlushAll(context.services);
  DropDone();
  ShowState(context.desktop);
}

void FinishLog(platform::Files& files) {
  for (LogFile& log : logs) log.Flush(files);
}

void ResetLog() {
  logs.clear();
  begun.reset();
  accident.clear();
  stamps.clear();
  troubleShows = false;
}

}  // namespace zth::windows

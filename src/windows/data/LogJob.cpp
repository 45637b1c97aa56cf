#include "windows/data/LogJob.h"

#include <algorithm>
#include <deque>
#include <vector>

#include <QFileInfo>

#include "base/Counted.h"
#include "base/NumberText.h"
#include "base/Rounding.h"
#include "chip/ChipState.h"
#include "chip/Measurements.h"
#include "windows/SharedState.h"
#include "windows/data/LogFile.h"
#include "windows/data/frmLogging.h"

namespace zth::windows {
namespace {

constexpr double kRetrySeconds = 1.0;

std::int64_t Lost() {
  std::int64_t lines = 0;
  for (const LogFile& log : Shared.log.files) lines += log.Lost();
  return lines;
}

void FlushAll(const platform::Services& services) {
  for (LogFile& log : Shared.log.files) {
    log.Flush(services.files);
    const QString what = log.TakeAccident();
    if (what.isEmpty()) continue;
    Shared.log.accident = QFileInfo(log.Path()).fileName() + " Shared.log.begun anew at " +
                          services.clock.WallTime().toString("HH:mm:ss") + ": " + what;
  }
}

/// Drops the files without waiting lines, except the running log's.
void DropDone() {
  const auto done = [](const LogFile& log) {
    return log.Empty() && !(Shared.LogActive && &log == &Shared.log.files.back());
  };
  if (std::none_of(Shared.log.files.begin(), Shared.log.files.end(), done)) return;
  std::vector<LogFile> kept;
  for (LogFile& log : Shared.log.files) {
    if (!done(log)) kept.push_back(std::move(log));
  }
  Shared.log.files = std::move(kept);
}

QString WaitingText() {
  const std::int64_t waiting = LogLinesWaiting();
  if (waiting == 0 && Lost() == 0) return {};
  const QString text =
      QString("file not writable, %1 waiting").arg(QString::fromStdString(base::Counted(waiting, "lines")));
  return Lost() == 0 ? text : text + QString(", %1 lost").arg(Lost());
}

void ShowState(Desktop& desktop) {
  // Without a log, the bar shows only what is still waiting; past trouble is shown in the window until the next start.
  const QString trouble = Shared.LogActive ? LogTrouble() : WaitingText();
  if (!trouble.isEmpty()) {
    desktop.SetStatus((Shared.LogActive ? "Logging Enabled - " : "Ready - ") + trouble);
  } else if (Shared.log.troubleShows) {
    desktop.SetStatus(Shared.LogActive ? "Logging Enabled" : "Ready");
  }
  Shared.log.troubleShows = !trouble.isEmpty();
  if (auto* window = qobject_cast<frmLogging*>(desktop.FindWindow("frmLogging"))) window->ShowState();
}

}  // namespace

std::string BuildLogLine() {
  // 64 bits: a log of several months exceeds 32 bits of milliseconds.
  const std::int64_t milliseconds = Shared.LogSampleCount * Shared.LogPeriodMs;
  std::string line = base::GeneralText(base::RoundHalfEven(static_cast<double>(milliseconds) / 1000.0, 3)) + ",";
  for (std::size_t row = 0; row < chip::Model.LogChannelTable.size(); ++row) {
    const chip::LogChannel& channel = chip::Model.LogChannelTable[row];
    if (channel.Selected != 1.0F) continue;
    // A value that could not be read gives an empty field: the log never repeats a measurement.
    line += chip::IsStale(chip::GroupOfLogRow(row)) ? "," : base::GeneralText(channel.Value) + " ,";
  }
  return line;
}

std::int64_t LogLinesWaiting() {
  std::int64_t lines = 0;
  for (const LogFile& log : Shared.log.files) lines += log.Waiting();
  return lines;
}

QStringList LogFilesWaiting() {
  QStringList files;
  for (const LogFile& log : Shared.log.files) {
    if (log.Waiting() > 0 && !files.contains(log.Path())) files << log.Path();
  }
  return files;
}

QString LogTrouble() {
  const QString waiting = WaitingText();
  return waiting + (waiting.isEmpty() || Shared.log.accident.isEmpty() ? "" : " - ") + Shared.log.accident;
}

std::optional<double> LogPace() {
  constexpr std::size_t kFewest = 4;
  if (!Shared.LogActive || Shared.log.stamps.size() < kFewest) return std::nullopt;
  const double span = Shared.log.stamps.back() - Shared.log.stamps.front();
  if (span <= 0) return std::nullopt;
  return span / static_cast<double>(Shared.log.stamps.size() - 1);
}

bool WriteLogHead(platform::Files& files, const std::string& header) {
  // Lines that an earlier log still has for this file are written before the new head.
  for (LogFile& log : Shared.log.files) {
    if (log.Path() == Shared.LogFileName && !log.Flush(files)) return false;
  }
  Shared.log.begun.emplace(Shared.LogFileName,
                           "\r\nZTH4718 Log File\r\n\r\n" + QByteArray::fromStdString(header) + "\r\n");
  if (Shared.log.begun->Begin(files)) return true;
  Shared.log.begun.reset();
  return false;
}

void StartLog(std::int32_t periodMs, Desktop& desktop) {
  DropDone();
  if (Shared.log.begun && Shared.log.begun->Path() == Shared.LogFileName) {
    Shared.log.files.push_back(std::move(*Shared.log.begun));
  } else {
    Shared.log.files.emplace_back(Shared.LogFileName, QByteArray());
  }
  Shared.log.begun.reset();
  Shared.log.accident.clear();
  Shared.log.stamps.clear();
  Shared.LogPeriodMs = periodMs;
  Shared.LogActive = true;
  Shared.LogSampleCount = 0;
  desktop.SetStatus("Logging Enabled");
  ShowState(desktop);
}

void StopLog(const Context& context) {
  Shared.LogActive = false;
  FlushAll(context.services);
  DropDone();
  context.desktop.SetStatus("Ready");
  ShowState(context.desktop);
}

bool LogHasWork() {
  return Shared.LogActive || !Shared.log.files.empty();
}

double LogPeriodSeconds() {
  return Shared.LogActive ? Shared.LogPeriodMs / 1000.0 : kRetrySeconds;
}

void RunLogJob(const Context& context) {
  if (Shared.LogActive) {
    if (Shared.log.files.empty()) Shared.log.files.emplace_back(Shared.LogFileName, QByteArray());
    const std::string line = BuildLogLine();
    // If the queue is full, try to write it first, so that no line is lost that the file would accept.
    if (LogLinesWaiting() >= kMostWaitingLines) FlushAll(context.services);
    Shared.log.files.back().Add(line, kMostWaitingLines - LogLinesWaiting());
    ++Shared.LogSampleCount;
    Shared.log.stamps.push_back(context.services.clock.Now());
    if (Shared.log.stamps.size() > kPaceLines) Shared.log.stamps.pop_front();
  }
  FlushAll(context.services);
  DropDone();
  ShowState(context.desktop);
}

void FinishLog(platform::Files& files) {
  for (LogFile& log : Shared.log.files) log.Flush(files);
}

}  // namespace zth::windows

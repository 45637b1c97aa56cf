#include <limits>

#include "command/Commands.h"
#include "command/LogFile.h"
#include "command/Readings.h"

namespace zth::command {
namespace {

const std::vector<std::string> kWatchedByDefault{"temperatures", "fans", "duties"};

std::string TimeOf(const platform::Services& services) {
  return services.clock.WallTime().toUTC().toString("yyyy-MM-ddTHH:mm:ss.zzz'Z'").toStdString();
}

std::string LabelOf(const Sample& sample) {
  return sample.row ? std::string(NameOfReading(*sample.row)) : sample.target->name;
}

/// Calls `take` at once and then at each interval, counted from the start so that no delay adds up. A signal ends it in
/// order.
void Repeat(Session& session, const Request& request, const std::function<void()>& take) {
  const double began = session.Now();
  const double end = began + request.duration.value_or(std::numeric_limits<double>::infinity());
  try {
    double due = began;
    while (due <= end) {
      if (due > session.Now()) session.Wait(due - session.Now());
      take();
      due += request.interval;
    }
  } catch (const Failure& failure) {
    if (failure.status != kEnded) throw;
  }
}

void ShowSamples(Session& session, const std::vector<Target>& targets) {
  const std::string time = TimeOf(session.Services());
  std::string line = time;
  Row row{{"time", time}};
  for (const Sample& sample : session.Take(targets, true)) {
    if (sample.isStale) continue;
    const std::string unit(sample.row ? UnitOfReading(*sample.row) : "");
    line += "  " + LabelOf(sample) + " " + NumberText(sample.value) + (unit.empty() ? "" : " " + unit);
    row.emplace_back(LabelOf(sample) + (unit.empty() ? "" : " " + unit), sample.value);
  }
  session.Out().Result(line, row);
}

void LogTo(LogFile& file, Session& session, const std::vector<Target>& targets, double began) {
  const std::string time = TimeOf(session.Services());
  const double seconds = session.Now() - began;
  std::string head = "UTC,Seconds";
  std::string line = time + "," + QString::number(seconds, 'f', 3).toStdString();
  for (const Sample& sample : session.Take(targets, true)) {
    head += "," + LabelOf(sample);
    line += "," + (sample.isStale ? std::string() : NumberText(sample.value));
  }
  file.Add(head, line);
}

}  // namespace

Job PrepareWatch(const Request& request, const Setting& /*setting*/) {
  return [request, targets = TargetsOf(request.words.empty() ? kWatchedByDefault : request.words)](Session& session) {
    Repeat(session, request, [&] { ShowSamples(session, targets); });
  };
}

Job PrepareLog(const Request& request, const Setting& setting) {
  const QString path = QString::fromStdString(request.words.front());
  const auto mode = request.append  ? LogFile::Mode::Append
                    : request.force ? LogFile::Mode::Replace
                                    : LogFile::Mode::New;
  if (mode == LogFile::Mode::New && setting.services.files.Look(path)) {
    throw Failure{kUsage, "'" + request.words.front() + "' is there already",
                  "Name a new file, go on with this one by --append, or write over it by --force"};
  }
  const std::vector<std::string> words(request.words.begin() + 1, request.words.end());
  return [request, path, mode, targets = TargetsOf(words.empty() ? kWatchedByDefault : words)](Session& session) {
    LogFile file(session.Services().files, path, mode);
    const double began = session.Now();
    Repeat(session, request, [&] { LogTo(file, session, targets, began); });
  };
}

}  // namespace zth::command

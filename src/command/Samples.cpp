#include <limits>
#include <utility>

#include "command/Commands.h"
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

/// A new file that grows by whole lines.
class GrowingFile {
 public:
  GrowingFile(platform::Files& files, QString path) : files_(files), path_(std::move(path)) {}

  void Add(const std::string& line) {
    const platform::FileAppend done = files_.Append(path_, state_, QByteArray::fromStdString(line + "\r\n"));
    const auto size = static_cast<std::int64_t>(line.size() + 2);
    if (!done.opened || done.written < size) {
      throw Failure{kUsage, "'" + path_.toStdString() + "' cannot be written", "Check the disk and the folder"};
    }
    state_ = done.before;
    state_->size += done.written;
  }

 private:
  platform::Files& files_;
  QString path_;
  std::optional<platform::FileState> state_;
};

void LogTo(GrowingFile& file, Session& session, const std::vector<Target>& targets, double began, bool& hasHead) {
  const std::string time = TimeOf(session.Services());
  const double seconds = session.Now() - began;
  std::string head = "UTC,Seconds";
  std::string line = time + "," + QString::number(seconds, 'f', 3).toStdString();
  for (const Sample& sample : session.Take(targets, true)) {
    head += "," + LabelOf(sample);
    line += "," + (sample.isStale ? std::string() : NumberText(sample.value));
  }
  if (!std::exchange(hasHead, true)) file.Add(head);
  file.Add(line);
}

}  // namespace

Job PrepareWatch(const Request& request, const Setting& /*setting*/) {
  return [request, targets = TargetsOf(request.words.empty() ? kWatchedByDefault : request.words)](Session& session) {
    Repeat(session, request, [&] { ShowSamples(session, targets); });
  };
}

Job PrepareLog(const Request& request, const Setting& setting) {
  const QString path = QString::fromStdString(request.words.front());
  if (setting.services.files.Look(path)) {
    throw Failure{kUsage, "'" + request.words.front() + "' is there already", "Name a new file"};
  }
  const std::vector<std::string> words(request.words.begin() + 1, request.words.end());
  return [request, path, targets = TargetsOf(words.empty() ? kWatchedByDefault : words)](Session& session) {
    GrowingFile file(session.Services().files, path);
    bool hasHead = false;
    const double began = session.Now();
    Repeat(session, request, [&] { LogTo(file, session, targets, began, hasHead); });
  };
}

}  // namespace zth::command

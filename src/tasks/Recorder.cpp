#include "tasks/Recorder.h"

#include <algorithm>
#include <string>
#include <utility>

#include <QFileInfo>

#include "base/Product.h"
#include "link/BoardName.h"
#include "link/Declarations.h"
#include "link/Transfers.h"
#include "tasks/TrafficReader.h"
#include "tasks/TrafficText.h"

namespace zth::tasks {
namespace {

constexpr std::int64_t kMegabyte = 1024 * 1024;

}  // namespace

Recorder::Recorder(Traffic& traffic, platform::Services& services, QString path, std::int64_t most)
    : services_(services),
      path_(std::move(path)),
      most_(most),
      listening_(traffic.Listen([this](const TrafficRecord& record, const std::string& text) { Saw(record, text); })) {}

void Recorder::Saw(const TrafficRecord& record, std::string_view text) {
  if (!runs_) return;
  QByteArray lines = FirstLines(record);
  lines += QByteArray::fromStdString(TrafficLineText(record, text, start_) + "\n");
  if (part_ == 0) {
    part_ = 1;
    if (!Begin(Head() + lines)) return;
  } else if (file_->size + lines.size() > most_) {
    if (part_++ == 1) path_ += ".2";
    const std::string gap = "# part " + std::to_string(part_) + ", after " + std::to_string(calls_) + " lines\n";
    if (!Begin(Head() + QByteArray::fromStdString(gap) + lines)) return;
  } else if (!GoOn(lines)) {
    return;
  }
  ++calls_;
}

QByteArray Recorder::FirstLines(const TrafficRecord& record) {
  const bool isFirst = part_ == 0;
  if (isFirst) {
    start_ = record.time;
    head_.started = services_.clock.WallTime().toUTC().toString("yyyy-MM-ddTHH:mm:ss.zzz'Z'").toStdString();
    head_.program = base::kVersionText;
  }
  if (record.isNote || std::exchange(hasLink_[record.mode == link::kModeSmbus ? 2 : 1], true)) return {};
  const std::string board = link::BoardNameOf(record.mode).toStdString();
  QByteArray lines;
  if (isFirst) {
    head_.board = board;
  } else if (!board.empty() && board != head_.board) {
    lines = QByteArray::fromStdString("# board \"" + board + "\"\n");
  }
  if (record.mode == link::kModeSmbus && !link::SmbusFailuresOf(record.address)) {
    head_.smbusFailuresKnown = false;
    if (!isFirst) lines.append(kFailuresUnknown.data()).append('\n');
  }
  return lines;
}

QByteArray Recorder::Head() const {
  return QByteArray::fromStdString(TrafficHeadText(head_));
}

bool Recorder::Begin(const QByteArray& head) {
  constexpr auto kTitleSize = static_cast<std::int64_t>(kTrafficTitle.size());
  const auto before = services_.files.Look(path_);
  // A recording may be written over, but nothing else that a slip of the user names.
  if (before && before->size > 0) {
    const auto begins = services_.files.Read(path_, kTitleSize);
    if (!begins || std::string_view(begins->constData(), static_cast<std::size_t>(begins->size())) != kTrafficTitle) {
      return EndWith("the file is there and is no recording");
    }
  }
  if (!services_.files.Replace(path_, head)) return EndWith("the file cannot be written");
  file_ = services_.files.Look(path_);
  return file_ || EndWith("the file is gone");
}

bool Recorder::GoOn(const QByteArray& lines) {
  const platform::FileAppend done = services_.files.Append(path_, file_, lines);
  if (!done.opened) return EndWith("the file is gone or cannot be written");
  file_ = done.before;
  file_->size += done.written;
  if (done.written == lines.size()) return true;
  // Whole lines only.
  if (done.written > 0) services_.files.Cut(path_, *file_, done.before.size);
  return EndWith("the disk is full");
}

bool Recorder::EndWith(const QString& why) {
  runs_ = false;
  const QString after = calls_ == 0 ? QString() : QString(" after %1 lines").arg(calls_);
  trouble_ = "The recording to " + QFileInfo(path_).fileName() + " has ended" + after + ": " + why;
  return false;
}

void StartRecording(platform::Services& services) {
  const QString path = services.process.Variable("ZTH4718_RECORD");
  if (path.isEmpty()) return;
  const QString bound = services.process.Variable("ZTH4718_RECORD_MB");
  const qlonglong megabytes = bound.toLongLong();
  const bool isBound = megabytes > 0 && megabytes <= kMostTrafficBytes / kMegabyte;
  Work.recorder =
      std::make_unique<Recorder>(*Work.traffic, services, path, isBound ? megabytes * kMegabyte : kMostTrafficBytes);
  if (bound.isEmpty() || isBound) return;
  Work.recorder->SetTrouble(
      QString("ZTH4718_RECORD_MB is no number from 1 to %1: it bounds nothing").arg(kMostTrafficBytes / kMegabyte));
}

QString RecordingTrouble() {
  return Work.recorder == nullptr ? QString() : Work.recorder->Trouble();
}

}  // namespace zth::tasks

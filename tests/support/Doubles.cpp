#include "tests/support/Doubles.h"

#include <algorithm>
#include <utility>

#include <QEvent>

namespace zth::testing {

double VirtualClock::Now() const {
  return static_cast<double>(std::exchange(nowUs_, nowUs_ + lookUs)) / 1e6;
}

QDateTime VirtualClock::WallTime() const {
  return QDateTime(QDate(2026, 3, 1), QTime(8, 0)).addMSecs(nowUs_ / 1000 - 1'000'000 + wallOffsetMs_);
}

void VirtualClock::WaitMs(float milliseconds) {
  waitedMs += static_cast<double>(milliseconds);
  nowUs_ += static_cast<std::int64_t>(static_cast<double>(milliseconds) * 1000);
}

namespace {

class RealTimeFilter final : public QObject {
 public:
  using QObject::QObject;
  bool eventFilter(QObject* /*watched*/, QEvent* event) override { return event->type() == QEvent::Timer; }
};

}  // namespace

void VirtualClock::Adopt(QTimer& timer) {
  timer.installEventFilter(new RealTimeFilter(&timer));
  timers_.push_back({&timer});
}

void VirtualClock::Refresh() {
  std::erase_if(timers_, [](const Adopted& row) { return row.timer.isNull(); });
  for (Adopted& row : timers_) {
    if (!row.timer->isActive()) {
      row.nextUs = -1;
    } else if (row.nextUs < 0) {
      row.nextUs = nowUs_ + std::int64_t{row.timer->interval()} * 1000;
    }
  }
}

void VirtualClock::Advance(int milliseconds) {
  const std::int64_t until = nowUs_ + std::int64_t{milliseconds} * 1000;
  for (;;) {
    Refresh();
    auto next = timers_.end();
    for (auto row = timers_.begin(); row != timers_.end(); ++row) {
      if (row->nextUs >= 0 && (next == timers_.end() || row->nextUs < next->nextUs)) next = row;
    }
    if (next == timers_.end() || next->nextUs > until) break;
    nowUs_ = std::max(nowUs_, next->nextUs);
    next->nextUs += std::int64_t{next->timer->interval()} * 1000;
    const QPointer<QTimer> timer = next->timer;
    if (timer->isSingleShot()) timer->stop();
    QMetaObject::invokeMethod(timer, "timeout", Qt::DirectConnection);
  }
  nowUs_ = std::max(nowUs_, until);
}

std::optional<platform::FileState> FailingFiles::Look(const QString& path) {
  auto state = real_.Look(path);
  if (state) state->device += devices;
  return state;
}

platform::FileAppend FailingFiles::Append(const QString& path, const std::optional<platform::FileState>& seen,
                                          const QByteArray& bytes) {
  ++appends;
  if (beforeWrite) std::exchange(beforeWrite, nullptr)();
  if (locked) return {};
  const auto room = space.value_or(bytes.size());
  auto there = seen;
  if (there) there->device -= devices;
  platform::FileAppend done = real_.Append(path, there, bytes.left(std::min<std::int64_t>(room, bytes.size())));
  done.before.device += devices;
  if (space) *space -= done.written;
  return done;
}

bool FailingFiles::Cut(const QString& path, const platform::FileState& seen, std::int64_t size) {
  auto there = seen;
  there.device -= devices;
  if (locked || cutFails || !real_.Cut(path, there, size)) return false;
  if (space) *space += seen.size - size;
  return true;
}

bool FailingFiles::Replace(const QString& path, const QByteArray& bytes) {
  return !locked && (!space || *space >= bytes.size()) && real_.Replace(path, bytes);
}

}  // namespace zth::testing

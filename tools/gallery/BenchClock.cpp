#include "BenchClock.h"

#include <algorithm>
#include <cmath>

#include <QDateTime>
#include <QEvent>

namespace zth::gallery {
namespace {

class RealTimeFilter final : public QObject {
 public:
  using QObject::QObject;
  bool eventFilter(QObject* /*watched*/, QEvent* event) override { return event->type() == QEvent::Timer; }
};

}  // namespace

QDateTime BenchClock::WallTime() const {
  return QDateTime(QDate(2026, 11, 23), QTime(9, 0)).addMSecs(nowMs_ - 1'000'000);
}

void BenchClock::WaitMs(float milliseconds) {
  nowMs_ += std::llround(milliseconds);
}

void BenchClock::Adopt(QTimer& timer) {
  timer.installEventFilter(new RealTimeFilter(&timer));
  timers_.push_back({&timer});
}

BenchClock::Row* BenchClock::NextDue() {
  std::erase_if(timers_, [](const Row& row) { return row.timer.isNull(); });
  Row* next = nullptr;
  for (Row& row : timers_) {
    if (!row.timer->isActive()) {
      row.nextMs = -1;
      continue;
    }
    if (row.nextMs < 0) row.nextMs = nowMs_ + row.timer->interval();
    if (next == nullptr || row.nextMs < next->nextMs) next = &row;
  }
  return next;
}

void BenchClock::Advance(int milliseconds) {
  const std::int64_t until = nowMs_ + milliseconds;
  for (Row* row = NextDue(); row != nullptr && row->nextMs <= until; row = NextDue()) {
    nowMs_ = std::max(nowMs_, row->nextMs);
    row->nextMs += row->timer->interval();
    const QPointer<QTimer> timer = row->timer;
    if (timer->isSingleShot()) timer->stop();
    QMetaObject::invokeMethod(timer, "timeout", Qt::DirectConnection);
  }
  nowMs_ = std::max(nowMs_, until);
}

}  // namespace zth::gallery

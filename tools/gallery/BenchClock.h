#pragma once

#include <cstdint>
#include <vector>

#include <QPointer>
#include <QTimer>

#include "platform/Services.h"

namespace zth::gallery {

/// Time that moves only when told to, so that the same scene gives the same picture on any machine. Adopted timers fire
/// as it passes, in the order of their times; the event loop's own firing of them is swallowed.
class BenchClock final : public platform::Clock {
 public:
  double Now() const override { return static_cast<double>(nowMs_) / 1000.0; }
  QDateTime WallTime() const override;
  void WaitMs(float milliseconds) override;
  void Adopt(QTimer& timer) override;

  /// Lets so much time pass, with the timers firing.
  void Advance(int milliseconds);

 private:
  struct Row {
    QPointer<QTimer> timer;
    std::int64_t nextMs = -1;
  };
  /// The running timer that is due first; null when none runs.
  Row* NextDue();

  std::int64_t nowMs_ = 1'000'000;
  std::vector<Row> timers_;
};

}  // namespace zth::gallery

#pragma once

#include <memory>

#include <QObject>

#include "platform/Services.h"

class QSocketNotifier;

namespace zth::platform {

/// Waits for the signals that end a program and for the end of the user's session, and runs the orders. There is one at
/// a time, made behind the QApplication. On Windows there are no such signals; the session's end comes there as well.
class EndWatch final : public QObject {
 public:
  explicit EndWatch(EndOrders orders);
  ~EndWatch() override;

 protected:
  /// Sees the application's Quit before it closes any window, which would ask the user.
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void WatchSignals();

  EndOrders orders_;
  std::unique_ptr<QSocketNotifier> notifier_;
};

}  // namespace zth::platform

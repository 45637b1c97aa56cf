#pragma once

#include <QObject>

#include "platform/Services.h"
#include "platform/SignalWatch.h"

namespace zth::platform {

/// Waits for termination signals and for the end of the user's session, and runs the orders. Only one exists at a time;
/// create it after the QApplication.
class EndWatch final : public QObject {
 public:
  explicit EndWatch(EndOrders orders);
  ~EndWatch() override;

 protected:
  /// Intercepts the application's Quit before it closes any window, because a closing window would ask the user.
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  EndOrders orders_;
  SignalWatch signals_;
};

}  // namespace zth::platform

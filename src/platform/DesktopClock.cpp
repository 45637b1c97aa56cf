#include <chrono>

#include <QThread>

#include "platform/DesktopParts.h"

namespace zth::platform {

double DesktopClock::Now() const {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

QDateTime DesktopClock::WallTime() const {
  return QDateTime::currentDateTime();
}

void DesktopClock::WaitMs(float milliseconds) {
  if (milliseconds > 0) QThread::usleep(static_cast<unsigned long>(static_cast<double>(milliseconds) * 1000.0));
}

void DesktopClock::Adopt(QTimer& /*timer*/) {}  // the event loop drives it

}  // namespace zth::platform

#include <cstdio>
#include <cstdlib>

#include <QCoreApplication>
#include <QDir>
#include <QStandardPaths>

#include "base/Product.h"
#include "platform/DesktopParts.h"
#include "platform/SignalWatch.h"
#include "platform/Surroundings.h"

namespace zth::platform {

void DesktopEvents::Pump() {
  QCoreApplication::processEvents();
}

void DesktopEvents::PumpPaint() {
  QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

PlainProcess::PlainProcess() = default;
PlainProcess::~PlainProcess() = default;

void PlainProcess::OnEndOrders(EndOrders orders) {
  signals_.reset();
  signals_ = std::make_unique<SignalWatch>(std::move(orders.end));
}

void PlainProcess::End(int status) {
  std::fflush(nullptr);
  // exit, not _Exit: the closed libraries release their adapter in their exit handlers.
  std::exit(status);
}

QString PlainProcess::Folder() const {
  return QCoreApplication::applicationDirPath();
}

QString PlainProcess::StateFolder() const {
  const QString folder = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + '/' + base::kTitle;
  return QDir().mkpath(folder) ? folder : QString();
}

QString PlainProcess::Variable(const char* name) const {
  return VariableOf(name);
}

void PlainProcess::SetVariable(const char* name, const QString& text) {
  PutVariable(name, text);
}

}  // namespace zth::platform

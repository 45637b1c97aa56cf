#include "platform/DesktopServices.h"

#include <cstdio>
#include <cstdlib>

#include <QApplication>
#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <QUrl>

#include "base/Product.h"
#include "platform/DesktopParts.h"
#include "platform/EndWatch.h"

namespace zth::platform {

bool DesktopShell::Open(const QString& address) {
  return QDesktopServices::openUrl(QUrl(address));
}

void DesktopShell::Beep() {
  QApplication::beep();
}

void DesktopEvents::Pump() {
  QCoreApplication::processEvents();
}

void DesktopEvents::PumpPaint() {
  QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

DesktopProcess::DesktopProcess() = default;
DesktopProcess::~DesktopProcess() = default;

void DesktopProcess::OnEndOrders(EndOrders orders) {
  watch_.reset();
  watch_ = std::make_unique<EndWatch>(std::move(orders));
}

void DesktopProcess::End(int status) {
  std::fflush(nullptr);
  // exit, not _Exit: the closed libraries release their adapter in their exit handlers.
  std::exit(status);
}

QString DesktopProcess::Folder() const {
  return QCoreApplication::applicationDirPath();
}

QString DesktopProcess::StateFolder() const {
  const QString folder = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + '/' + base::kTitle;
  return QDir().mkpath(folder) ? folder : QString();
}

QString DesktopProcess::Variable(const char* name) const {
  return QFile::decodeName(qgetenv(name));
}

struct DesktopServices::Parts {
  DesktopPrompts prompts;
  IniSettings settings{IniSettings::UserFile()};
  DesktopFileDialogs fileDialogs{settings};
  DesktopShell shell;
  DesktopClock clock;
  DesktopEvents events;
  DesktopLibraries libraries{QCoreApplication::applicationDirPath()};
  DesktopFiles files;
  DesktopClipboard clipboard;
  DesktopProcess process;
};

DesktopServices::DesktopServices()
    : parts_(std::make_unique<Parts>()), all_{parts_->prompts,   parts_->fileDialogs, parts_->settings,  parts_->shell,
                                              parts_->clock,     parts_->events,      parts_->libraries, parts_->files,
                                              parts_->clipboard, parts_->process} {}

DesktopServices::~DesktopServices() = default;

}  // namespace zth::platform

#include "platform/DesktopServices.h"

#include <QApplication>
#include <QDesktopServices>
#include <QUrl>

#include "platform/DesktopParts.h"
#include "platform/EndWatch.h"

namespace zth::platform {

bool DesktopShell::Open(const QString& address) {
  return QDesktopServices::openUrl(QUrl(address));
}

void DesktopShell::Beep() {
  QApplication::beep();
}

DesktopProcess::DesktopProcess() = default;
DesktopProcess::~DesktopProcess() = default;

void DesktopProcess::OnEndOrders(EndOrders orders) {
  watch_.reset();
  watch_ = std::make_unique<EndWatch>(std::move(orders));
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

#include "platform/ConsoleServices.h"

#include <QCoreApplication>

#include "platform/DesktopParts.h"
#include "platform/HttpServer.h"
#include "platform/Machine.h"

namespace zth::platform {

class NoPrompts final : public Prompts {
 public:
  BoxAnswer Ask(const BoxQuestion& question) override {
    return question.buttons == BoxButtons::YesNo ? BoxAnswer::No : BoxAnswer::Ok;
  }
  int Choose(const ChoiceQuestion& question) override { return question.escape; }
};

class NoFileDialogs final : public FileDialogs {
 public:
  QString Ask(const FileQuestion& /*question*/, QWidget* /*parent*/) override { return {}; }
};

class NoShell final : public Shell {
 public:
  bool Open(const QString& /*address*/) override { return false; }
  void Beep() override {}
};

class NoClipboard final : public Clipboard {
 public:
  void PutText(const QString& /*text*/) override {}
  void PutPicture(const QImage& /*picture*/) override {}
};

struct ConsoleServices::Parts {
  NoPrompts prompts;
  NoFileDialogs fileDialogs;
  IniSettings settings{IniSettings::UserFile()};
  NoShell shell;
  DesktopClock clock;
  DesktopEvents events;
  DesktopLibraries libraries{QCoreApplication::applicationDirPath()};
  DesktopFiles files;
  NoClipboard clipboard;
  PlainProcess process;
  LocalMachine machine;
  HttpHost pageHost;
};

ConsoleServices::ConsoleServices()
    : parts_(std::make_unique<Parts>()), all_{parts_->prompts,   parts_->fileDialogs, parts_->settings,
                                              parts_->shell,     parts_->clock,       parts_->events,
                                              parts_->libraries, parts_->files,       parts_->clipboard,
                                              parts_->process,   &parts_->machine,    &parts_->pageHost} {}

ConsoleServices::~ConsoleServices() = default;

}  // namespace zth::platform

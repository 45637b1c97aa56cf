// log-victim <file>: logs into the file without a pause, and writes a byte to its standard output behind each line. It
// runs until it is killed.

#include <cstdlib>
#include <unistd.h>

#include "chip/Measurements.h"
#include "platform/DesktopParts.h"
#include "windows/SharedState.h"
#include "windows/data/LogJob.h"

namespace {

class NoDesktop final : public zth::windows::Desktop {
 public:
  zth::windows::ChildWindow* OpenWindow(const QString& /*name*/) override { return nullptr; }
  zth::windows::ChildWindow* FindWindow(const QString& /*name*/) const override { return nullptr; }
  void SetStatus(const QString& /*text*/) override {}
  void Tell(const QString& /*text*/) override {}
  void EnableTimer(bool /*on*/) override {}
  QWidget& Frame() override { std::abort(); }
};

}  // namespace

int main(int argc, char** argv) {
  using namespace zth;
  if (argc < 2) return 2;
  platform::DesktopPrompts prompts;
  platform::IniSettings settings{QString()};
  platform::DesktopFileDialogs dialogs{settings};
  platform::DesktopShell shell;
  platform::DesktopClock clock;
  platform::DesktopEvents events;
  platform::DesktopLibraries libraries{QString()};
  platform::DesktopFiles files;
  platform::DesktopClipboard clipboard;
  platform::DesktopProcess process;
  platform::Services services{prompts, dialogs, settings, shell, clock, events, libraries, files, clipboard, process};
  NoDesktop desktop;

  for (chip::LogChannel& channel : chip::LogChannelTable) channel = {1.0F / 3, 1, 1};
  windows::LogFileName = QString::fromLocal8Bit(argv[1]);
  if (!windows::WriteLogHead(files, "Time ,")) return 1;
  windows::StartLog(10, desktop);
  for (;;) {
    windows::RunLogJob({services, desktop});
    if (write(STDOUT_FILENO, ".", 1) != 1) return 1;
  }
}

#include "shell/Leaving.h"

#include <utility>

#include <QDir>
#include <QStringList>

#include "base/NumberText.h"
#include "base/Product.h"
#include "link/Declarations.h"
#include "link/USBStuff.h"
#include "windows/SharedState.h"
#include "windows/data/LogJob.h"

namespace zth::shell {
namespace {

constexpr char kRecall[] = "A recall is running. The chip will hold only a part of the configuration.";
constexpr char kHeatsOn[] = "A heater heats on when the program has ended.";
constexpr char kHeatersOff[] = "&Heaters off and exit";
constexpr char kExit[] = "E&xit";
constexpr char kCancel[] = "&Cancel";

bool IsOn(std::size_t heater) {
  return link::Bus.HeaterPercent[heater].value_or(0) > 0;
}

QString HeaterText() {
  QStringList on;
  for (const std::size_t heater : {1U, 2U}) {
    if (!IsOn(heater)) continue;
    const QString percent = QString::fromStdString(base::GeneralText(*link::Bus.HeaterPercent[heater]));
    on << QString("Heater%1 is on at %2 %.").arg(heater).arg(percent);
  }
  return on.join('\n');
}

QString LogText() {
  QStringList lines;
  if (windows::Shared.LogActive) {
    lines << "A log is running and ends with the program:\n" + QDir::toNativeSeparators(windows::Shared.LogFileName);
  }
  const std::int64_t waiting = windows::LogLinesWaiting();
  if (waiting == 0) return lines.join('\n');
  // Earlier logs may still have lines for their own files.
  const QStringList files = windows::LogFilesWaiting();
  lines << QString("%1 %2 %3 that cannot be written, and will be lost:")
               .arg(waiting)
               .arg(waiting == 1 ? "line waits for" : "lines wait for", files.size() == 1 ? "a file" : "files");
  for (const QString& file : files) lines << QDir::toNativeSeparators(file);
  return lines.join('\n');
}

/// The heaters are on the adapter, which is present whichever chip the windows use. False if one could not be switched
/// off and the user stays.
bool SwitchHeatersOff() {
  const std::int16_t mode = std::exchange(link::Bus.InterfaceMode, link::kModeUsb);
  bool done = true;
  for (const std::size_t heater : {1U, 2U}) {
    std::int32_t off = 0;
    if (done && IsOn(heater)) done = link::SetHeater(static_cast<std::int32_t>(heater), off) == 0;
  }
  link::Bus.InterfaceMode = mode;
  return done;
}

}  // namespace

bool MayLeave(platform::Services& services) {
  const QString heaters = HeaterText();
  const QString log = LogText();
  const QString recall = windows::Shared.RecallRunning ? kRecall : "";
  if (heaters.isEmpty() && log.isEmpty() && recall.isEmpty()) return true;

  QStringList texts{recall, heaters, heaters.isEmpty() ? "" : kHeatsOn, log};
  texts.removeAll(QString());
  QStringList choices{kExit, kCancel};
  if (!heaters.isEmpty()) choices.prepend(kHeatersOff);
  // Enter cancels, too: a stray one must not end a measurement.
  const int taken = services.prompts.Choose(
      {base::kTitle, texts.join("\n\n"), choices, static_cast<int>(choices.size()) - 1, platform::BoxIcon::Warning});
  if (choices[taken] == kCancel) return false;
  return choices[taken] != kHeatersOff || SwitchHeatersOff();
}

}  // namespace zth::shell

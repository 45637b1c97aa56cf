#include "tests/support/EveryBox.h"

#include <algorithm>
#include <functional>
#include <utility>

#include <QDirIterator>
#include <QFile>

#include "link/LinkErrors.h"
#include "link/USBStuff.h"
#include "tests/support/Desk.h"
#include "tests/support/Seen.h"
#include "windows/SharedState.h"
#include "windows/data/LogJob.h"

namespace zth::testing {
namespace {

using platform::BoxAnswer;

using Bring = std::function<void(Desk&)>;

BoxSource Asked(const std::string& file, const Bring& bring, Desk::Buses buses = Desk::Buses::Both) {
  Desk desk(buses);
  desk.prompts.script = {BoxAnswer::Ok};
  try {
    bring(desk);
  } catch (const platform::ProcessEnded&) {  // many of them end it
  }
  desk.prompts.script.clear();
  std::vector<platform::BoxQuestion>& boxes = desk.prompts.shown;
  std::vector<platform::ChoiceQuestion>& choices = desk.prompts.choicesShown;
  for (platform::BoxQuestion& box : boxes) box.asker = nullptr;  // it goes with its desk
  for (platform::ChoiceQuestion& box : choices) box.asker = nullptr;
  return {file, boxes, choices};
}

BoxSource Failures() {
  BoxSource all{"link/LinkErrors.cpp", {}, {}};
  for (int code = link::kFirmwareFailed; code <= link::kHeaterError; ++code) {
    const BoxSource one = Asked(all.file, [code](Desk& desk) {
      desk.Start();
      link::ReportLinkError(code);
    });
    all.boxes.insert(all.boxes.end(), one.boxes.begin(), one.boxes.end());
  }
  return all;
}

/// The longest that it can be: with both heaters on and lines of a log, far down in folders, that wait.
void LeaveWork(Desk& desk) {
  desk.Start();
  for (const std::int32_t heater : {1, 2}) {
    std::int32_t percent = 50;
    link::SetHeater(heater, percent);
  }
  windows::LogFileName = "/home/user" + QString("/measurements of the week").repeated(4) + "/log.csv";
  desk.files.locked = true;
  windows::StartLog(1000, desk.Main());
  for (int i = 0; i < 2; ++i) windows::RunLogJob({desk.services, desk.Main()});
  desk.prompts.picks.push_back("&Cancel");
  desk.Main().close();
}

void ReadChangesAgain(Desk& desk) {
  desk.Start();
  auto& window = desk.Open("frmTherm");
  ChangeEach(window);
  desk.prompts.picks.push_back("&Keep them");
  window.ReadAgain();
}

void RefuseOption(Desk& desk) {
  desk.Start();
  auto& window = desk.Open("frmEasySetup");
  Desk::Check(window, "chkStartUp", true);
  Desk::Type(window, "txtOption", "9");
  Desk::Press(window, "cmdApply");
}

void LogNothing(Desk& desk) {
  desk.Start();
  desk.fileDialogs.script.push_back("none.csv");
  Desk::Press(desk.Open("frmLogging"), "cmdLogData");
}

}  // namespace

std::vector<BoxSource> EveryBox() {
  const auto noLibrary = [](Desk& desk) {
    desk.board.loadErrors["smbus"] = "File not found";
    desk.RunMain();
  };
  const auto noChip = [](Desk& desk) {
    desk.board.smbusChips.clear();
    desk.RunMain();
  };
  return {Failures(),
          Asked("shell/Leaving.cpp", LeaveWork),
          Asked("shell/Main.cpp", noLibrary, Desk::Buses::Smbus),
          Asked("shell/frmMain.cpp", noChip, Desk::Buses::Smbus),
          Asked("windows/ChildWindow.cpp", ReadChangesAgain),
          Asked("windows/config/frmEasySetup.cpp", RefuseOption),
          Asked("windows/data/frmLogging.cpp", LogNothing)};
}

std::vector<std::string> EveryPlaceThatAsksABox() {
  std::vector<std::string> places;
  const QString root = ZTH_SOURCES;
  for (QDirIterator at(root, {"*.cpp", "*.h"}, QDir::Files, QDirIterator::Subdirectories); at.hasNext();) {
    QFile file(at.next());
    if (!file.open(QIODevice::ReadOnly)) continue;
    const QByteArray text = file.readAll();
    const auto count = text.count("prompts.Ask(") + text.count("prompts.Choose(");
    places.insert(places.end(), static_cast<std::size_t>(count), file.fileName().mid(root.size() + 1).toStdString());
  }
  std::ranges::sort(places);
  return places;
}

}  // namespace zth::testing

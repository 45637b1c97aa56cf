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

/// Questions outlive the windows that ask them, so these name no window.
template <typename Question>
std::vector<Question> Free(std::vector<Question> questions) {
  for (Question& question : questions) question.asker = nullptr;
  return questions;
}

std::vector<platform::BoxQuestion> Asked(const std::function<void(Desk&)>& bring, bool start = true,
                                         Desk::Buses buses = Desk::Buses::Both) {
  Desk desk(buses);
  desk.prompts.script = {BoxAnswer::Ok};
  try {
    if (start) desk.Start();
    bring(desk);
  } catch (const platform::ProcessEnded&) {  // most of the boxes end the program
  }
  return Free(std::exchange(desk.prompts.shown, {}));
}

/// The longest version of the question: both heaters on, and waiting lines of a log deep down in folders.
std::vector<platform::ChoiceQuestion> AskedAtTheEnd() {
  Desk desk;
  desk.Start();
  for (const std::int16_t heater : {std::int16_t{1}, std::int16_t{2}}) {
    std::int32_t percent = 50;
    link::SetHeater(heater, percent);
  }
  windows::Shared.LogFileName = "/home/user" + QString("/measurements of the week").repeated(4) + "/log.csv";
  desk.files.locked = true;
  windows::StartLog(1000, desk.Main());
  for (int i = 0; i < 2; ++i) windows::RunLogJob({desk.services, desk.Main()});
  desk.prompts.picks.push_back("&Cancel");
  desk.Main().close();
  return Free(std::exchange(desk.prompts.choicesShown, {}));
}

std::vector<platform::ChoiceQuestion> AskedBeforeReadingAgain() {
  Desk desk;
  desk.Start();
  auto& window = desk.Open("frmTherm");
  ChangeEach(window);
  desk.prompts.picks.push_back("&Keep them");
  window.ReadAgain();
  return Free(std::exchange(desk.prompts.choicesShown, {}));
}

}  // namespace

std::vector<BoxSource> EveryBox() {
  std::vector<platform::BoxQuestion> failures;
  for (int code = link::kFirmwareFailed; code <= link::kHeaterError; ++code) {
    for (const auto& box : Asked([code](Desk&) { link::ReportLinkError(code); })) failures.push_back(box);
  }
  return {
      {"link/LinkErrors.cpp", failures},
      {"shell/Leaving.cpp", {}, AskedAtTheEnd()},
      {"shell/Main.cpp", Asked(
                             [](Desk& desk) {
                               desk.board.loadErrors["smbus"] = "File not found";
                               desk.RunMain();
                             },
                             false, Desk::Buses::Smbus)},
      {"shell/frmMain.cpp", Asked(
                                [](Desk& desk) {
                                  desk.board.smbusChips.clear();
                                  desk.RunMain();
                                },
                                false, Desk::Buses::Smbus)},
      {"windows/ChildWindow.cpp", {}, AskedBeforeReadingAgain()},
      {"windows/config/frmEasySetup.cpp", Asked([](Desk& desk) {
         auto& window = desk.Open("frmEasySetup");
         Desk::Check(window, "chkStartUp", true);
         Desk::Type(window, "txtOption", "9");
         Desk::Press(window, "cmdApply");
       })},
      {"windows/data/frmLogging.cpp", Asked([](Desk& desk) {
         desk.fileDialogs.script.push_back("none.csv");
         auto& window = desk.Open("frmLogging");
         Desk::Press(window, "cmdDeselectAll");
         Desk::Press(window, "cmdLogData");
       })},
  };
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

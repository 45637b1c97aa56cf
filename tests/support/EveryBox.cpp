#include "tests/support/EveryBox.h"

#include <algorithm>
#include <functional>
#include <utility>

#include <QDirIterator>
#include <QFile>
#include <QTableView>
#include <QTemporaryDir>

#include "link/Asker.h"
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

/// The boxes that `bring` makes the program on `desk` show.
std::vector<platform::BoxQuestion> AskedOn(Desk& desk, const std::function<void(Desk&)>& bring) {
  desk.prompts.script = {BoxAnswer::Ok};
  try {
    bring(desk);
  } catch (const platform::ProcessEnded&) {  // most of the boxes end the program
  }
  return Free(std::exchange(desk.prompts.shown, {}));
}

std::vector<platform::BoxQuestion> Asked(const std::function<void(Desk&)>& bring) {
  Desk desk;
  desk.Start();
  return AskedOn(desk, bring);
}

/// Once with no library, where the loader has a long text, and once with boards that have no chip.
std::vector<platform::BoxQuestion> AskedAtTheStart() {
  std::vector<platform::BoxQuestion> all;
  for (const auto buses : {Desk::Buses::Smbus, Desk::Buses::Both}) {
    Desk desk(buses);
    desk.board.smbusChips.clear(), desk.board.usbChips.clear();
    if (buses == Desk::Buses::Smbus) {
      desk.board.loadErrors["smbus"] = "File not found (/home/user" + QString("/a folder far down").repeated(12) + ")";
    }
    desk.libraries.boards = QStringList{"simulated"};
    for (const auto& box : AskedOn(desk, [](Desk& of) { of.RunMain(); })) all.push_back(box);
  }
  return all;
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

std::vector<platform::ChoiceQuestion> AskedAfterAKill() {
  const QTemporaryDir folder;
  {
    Desk desk;
    desk.process.stateFolder = folder.path();
    desk.Start();
    auto& window = desk.Open("frmTherm");
    ChangeEach(window);
    Desk::Press(window, "cmdApply");
    desk.Advance(1000);
  }
  Desk next;
  next.process.stateFolder = folder.path();
  next.prompts.picks.push_back("&Show them");
  next.Start();
  return Free(std::exchange(next.prompts.choicesShown, {}));
}

/// Everything that can stand in the question before a write.
std::vector<platform::ChoiceQuestion> AskedBeforeWriting() {
  Desk desk;
  desk.board.usbChips.begin()->second.fill(0xFF);
  desk.Start();
  auto& window = desk.Open("frmCompare");
  Desk::Pick(window, "cmbColumn(0)", 1);
  Desk::Pick(window, "cmbColumn(1)", 0);
  Desk::Press(window, "cmdRead");
  Desk::Get<QTableView>(window, "tblCompare").selectAll();
  desk.prompts.picks.push_back("&Cancel");
  Desk::Press(window, "cmdWrite");
  return Free(std::exchange(desk.prompts.choicesShown, {}));
}

std::vector<platform::ChoiceQuestion> AskedBeforeADeletion() {
  const QTemporaryDir folder;
  Desk desk;
  desk.process.stateFolder = folder.path();
  desk.Start();
  auto& window = desk.Open("frmCompare");
  Desk::Type(window, "txtName", "the snapshot with a name as long as somebody may want it, before the fans");
  Desk::Press(window, "cmdTake");
  desk.prompts.picks.push_back("&Keep it");
  Desk::Press(window, "cmdDelete");
  return Free(std::exchange(desk.prompts.choicesShown, {}));
}

std::vector<platform::ChoiceQuestion> AskedBeforeHeatersAreSetBack() {
  Desk desk;
  desk.board.heaterState = {60, 60, 0};
  desk.Start();
  auto& heaters = desk.Open("frmHeaters");
  for (const int heater : {0, 1}) {
    const link::Asker asker(link::Asker::Kind::Action, [] { return "frmHeaters"; });
    std::int32_t percent = 100;
    link::SetHeater(heater + 1, percent);
  }
  heaters.Unload();
  desk.prompts.picks.push_back("&Cancel");
  Desk::Press(desk.Open("frmChanges"), "cmdPutBack");
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
      {"shell/ChangesFile.cpp", {}, AskedAfterAKill()},
      {"shell/FirstContact.cpp", AskedAtTheStart()},
      {"shell/Leaving.cpp", {}, AskedAtTheEnd()},
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
      {"windows/tools/CompareWrite.cpp", {}, AskedBeforeWriting()},
      {"windows/tools/SnapshotPage.cpp", {}, AskedBeforeADeletion()},
      {"windows/tools/Undoing.cpp", {}, AskedBeforeHeatersAreSetBack()},
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

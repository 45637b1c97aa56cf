// Selecting another chip in the device list with windows open: what they show, what they send, and how they are read
// again.
#include <QApplication>
#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QTest>
#include <QTreeWidget>

#include "chip/ChipState.h"
#include "chip/Measurements.h"
#include "tests/support/EveryWindow.h"
#include "tests/support/Steps.h"

namespace zth::testing {
namespace {

/// The same transfers to the chip at 5Ah.
Traffic AtOther(Traffic traffic) {
  for (std::string& transfer : traffic) {
    const auto at = transfer.find("58:");
    if (at != std::string::npos) transfer.replace(at, 2, "5A");
  }
  return traffic;
}

/// A list that is refilled and selects again reads twice; a list that does so only when it opens does not matter here.
Traffic Once(Traffic traffic) {
  traffic.erase(std::unique(traffic.begin(), traffic.end()), traffic.end());
  return traffic;
}

/// A chip at 58h on USB, which is in use, one at 5Ah on USB, and one at 2Ch on SMBus; a window open on the first.
class ChipChange : public ::testing::TestWithParam<std::string> {
 protected:
  enum Device { kFirst, kOther, kOnHost };

  ChipChange() {
    // No mask is set, so opening frmLimits writes none back.
    Put(desk.board.AddUsbChip(0x5A), "21=E0 3F=04 30..36=00");
    Put(desk.board.usbChips[0x58], "30..36=00");
    desk.Start();
    chip::Model.PollEnabled = false;
    desk.Main().show();
    QApplication::setActiveWindow(&desk.Main());
    Open(GetParam().c_str());
  }

  void Open(const char* name) {
    window = &desk.Open(name);
    load = Once(desk.board.TakeTraffic());
    if (GetParam() == "frmRegMap") load = Sent("txtReadAddr=45; cmdRead");
    title = window->windowTitle().toStdString();
  }
  Traffic Sent(const QString& steps) { return Do(*window, steps), Once(desk.board.TakeTraffic()); }
  void Use(Device device) {
    Do(desk.Main(), QString("cmbDevices=%1").arg(device));
    EXPECT_EQ(desk.board.TakeTraffic(), Traffic{}) << "a change of the device reads nothing and writes nothing";
  }
  Traffic PressF5() {
    QTest::keyClick(&desk.Main(), Qt::Key_F5);
    return Once(desk.board.TakeTraffic());
  }
  /// The text after the caption. The bar says the same.
  std::string Note() const {
    const std::string note = window->windowTitle().toStdString().substr(title.size());
    EXPECT_EQ(Desk::Get<QWidget>(*window, "fraOrigin").isHidden(), note.empty());
    EXPECT_EQ(window->parentWidget()->windowTitle(), window->windowTitle());
    EXPECT_EQ(window->parentWidget()->property("otherChip").toBool(), !note.empty());
    return note;
  }
  bool ReadsChip() const { return !load.empty() && !ReadsBoard(); }
  bool ReadsBoard() const { return GetParam() == "frmHeaters" || GetParam() == "frmSwitches"; }
  bool ShowsModelOnly() const {
    return GetParam() == "frmGraph" || GetParam() == "frmLogging" || GetParam() == "frmManualControl";
  }
  /// The transfers before the window's own reads when the program's model belongs to another chip.
  static Traffic Model() { return GetParam() == "frmRegMap" ? Traffic{} : T("R21 R22 R23 R24 R3F B10+4"); }
  std::string NoteFrom(const std::string& chip) const {
    return ReadsChip() ? " (read from " + chip + ")" : ShowsModelOnly() ? " (in part read from " + chip + ")" : "";
  }

  Desk desk;
  windows::ChildWindow* window = nullptr;
  Traffic load;
  std::string title;
};

TEST_P(ChipChange, IsShownInTitleAndBarUntilTheChipIsSelectedAgainOrRead) {
  EXPECT_EQ(Note(), "");
  const QSize before = window->size();
  Use(kOther);
  EXPECT_EQ(Note(), NoteFrom("58h on USB"));
  Use(kOnHost);
  EXPECT_EQ(Note(), ReadsBoard() ? " (read from 58h on USB)" : NoteFrom("58h on USB"));
  EXPECT_EQ(Desk::Text(*window, "lblOrigin").endsWith("The board is not reached through 2Ch on SMBus."), ReadsBoard());
  Use(kFirst);
  EXPECT_EQ(Note(), "");
  EXPECT_EQ(window->size(), before);

  Use(kOther);
  if (Note().empty()) return;
  auto& button = Desk::Get<QPushButton>(*window, "cmdReadAgain");
  Desk::Settle();
  QWidget* first = window->nextInFocusChain();
  while (!first->isVisible() || (first->focusPolicy() & Qt::TabFocus) == 0) first = first->nextInFocusChain();
  EXPECT_EQ(first, &button) << "Tab comes to it before all else";
  EXPECT_EQ(Sent("cmdReadAgain"), Concat(Model(), AtOther(load)));
  EXPECT_EQ(Note(), "");
  EXPECT_EQ(window->size(), before);
  Use(kFirst);
  EXPECT_EQ(PressF5(), Concat(Model(), load)) << "a key does the same";
  EXPECT_EQ(Note(), "");
}

TEST_P(ChipChange, F5ReadsTheWindowAsWhenItOpensAndWritesNothing) {
  Put(desk.board.Chip(), "01..0F=A5 16..7F=A5");
  desk.board.heaterState = {40, 60, 0};
  const Traffic expected = ReadsChip() || ReadsBoard() ? load : Traffic{};
  const auto before = desk.board.Chip();
  EXPECT_EQ(PressF5(), expected);
  EXPECT_EQ(desk.board.Chip(), before);
  EXPECT_EQ(Note(), "");
  // As the windows show when they open.
  const auto held = [&] {
    std::string all;
    for (auto* box : window->findChildren<QAbstractButton*>()) all += box->isChecked() ? '1' : '0';
    for (auto* box : window->findChildren<QLineEdit*>()) all += "|" + box->text().toStdString();
    return all;
  };
  const std::string again = held();
  window->Unload();
  Desk::Settle();
  Open(GetParam().c_str());
  EXPECT_EQ(again, held());
}

TEST_P(ChipChange, AWindowOpenedOnAnotherChipSaysWhatIsKnownOnlyOfTheFirst) {
  window->Unload();
  Desk::Settle();
  Use(kOther);
  Open(GetParam().c_str());
  static const std::set<std::string> kOnModel{"frmLimits",      "frmGPIO",  "frmManualControl", "frmAutoGraph",
                                              "frmDynamicTmin", "frmGraph", "frmLogging"};
  const std::string note = " (in part read from 58h on USB)";
  const std::string shown = window->windowTitle().toStdString();
  EXPECT_EQ(shown.ends_with(note), kOnModel.contains(GetParam())) << shown;
  title = shown.ends_with(note) ? shown.substr(0, shown.size() - note.size()) : shown;
  if (kOnModel.contains(GetParam())) {
    EXPECT_EQ(Sent("cmdReadAgain"), Concat(Model(), load));
  }
  EXPECT_EQ(Note(), "");
}

INSTANTIATE_TEST_SUITE_P(Windows, ChipChange, ::testing::ValuesIn(EveryWindow()), WindowOf);

class TwoChips : public ChipChange {};

INSTANTIATE_TEST_SUITE_P(Config, TwoChips, ::testing::Values("frmGenConfig", "frmPinConfig", "frmSwitches"), WindowOf);

TEST_P(TwoChips, AskAboutChangesThatWaitForApply) {
  const char* change = GetParam() == "frmGenConfig"   ? "chkShutDown"
                       : GetParam() == "frmPinConfig" ? "cmbPin25"
                                                      : "chkSwitch(3)";
  const std::string before = Held(*window, change);
  const std::string changed = before == "1" ? "0" : "1";
  const QString step = QString("%1=%2").arg(change, changed.c_str());
  for (const bool other : {false, true}) {
    if (other && GetParam() == "frmSwitches") continue;
    if (other) Use(kOther);
    Do(*window, step);
    desk.prompts.picks = {"&Keep them", "&Read again and lose them"};
    EXPECT_EQ(PressF5(), Traffic{});
    EXPECT_EQ(Held(*window, change), changed) << "kept";
    EXPECT_NE(PressF5(), Traffic{});
    EXPECT_EQ(Held(*window, change), before);
    EXPECT_EQ(desk.prompts.choicesShown.back().escape, 1) << "a stray Enter or Escape keeps them";
    EXPECT_EQ(PressF5(), load = other ? AtOther(load) : load) << "nothing waits any more, and nobody is asked";
  }
  Do(*window, step);
  desk.prompts.picks = {"&Read again and lose them"};
  desk.prompts.whileShown = [&] {
    window->Unload();
    Desk::Settle();
  };
  EXPECT_EQ(PressF5(), Traffic{}) << "the window has gone while the box stood";
}

struct Chips : ::testing::Test {
  Chips() {
    desk.board.AddUsbChip(0x5A);
    desk.Start();
    chip::Model.PollEnabled = false;
    desk.Main().show();
    QApplication::setActiveWindow(&desk.Main());
  }
  Traffic PressF5() {
    desk.board.TakeTraffic();
    QTest::keyClick(&desk.Main(), Qt::Key_F5);
    return desk.board.TakeTraffic();
  }
  std::string TitleOf(const char* name) { return desk.Main().FindWindow(name)->windowTitle().toStdString(); }

  Desk desk;
};

TEST_F(Chips, LiveWindowsKeepTheirTabsAndListsWhenReadAgain) {
  auto& curve = desk.Open("frmAutoGraph");
  Do(curve, "tbPWM=2; tbTemp=3");
  PressF5();
  EXPECT_EQ(Held(curve, "tbPWM tbTemp"), "2|3");

  auto& limits = desk.Open("frmLimits");
  Do(limits, "SSTab1=1; cmbTemp=2; cmbFan=1");
  Put(desk.board.Chip(), "30..36=FF 46=5A 4A=6A");
  const Traffic sent = PressF5();
  EXPECT_EQ(Writes(sent), Traffic{}) << "not even a mask that has changed";
  EXPECT_EQ((Traffic{sent.begin(), sent.begin() + 2}), T("R46 R4A"));
  EXPECT_EQ(Held(limits, "SSTab1 cmbTemp cmbFan chkTempMask(0)"), "1|2|1|1");

  auto& graph = desk.Open("frmGraph");
  auto& log = desk.Open("frmLogging");
  Do(graph, "cmbGraph=5; txtUpdate=70");
  Do(log, "chkLog(2)=1; txtLogInt=450");
  Do(desk.Main(), "cmbDevices=1");
  for (windows::ChildWindow* window : {&graph, &log}) Do(*window, "cmdReadAgain");
  EXPECT_EQ(Held(graph, "cmbGraph txtUpdate"), "5|70");
  EXPECT_EQ(Held(log, "chkLog(2) txtLogInt"), "1|450");
}

TEST_F(Chips, AreNeitherChangedNorReadAgainDuringADrag) {
  auto& gauge = Desk::Get<QWidget>(desk.Open("frmLimits"), "ggeTemp");
  auto& devices = Desk::Get<QWidget>(desk.Main(), "cmbDevices");
  QTest::mousePress(&gauge, Qt::LeftButton);
  EXPECT_EQ(PressF5(), Traffic{});
  QTest::keyClick(&desk.Main(), Qt::Key_F2);
  EXPECT_FALSE(devices.hasFocus());
  QTest::mouseRelease(&gauge, Qt::LeftButton);
  EXPECT_NE(PressF5(), Traffic{});
  QTest::keyClick(&desk.Main(), Qt::Key_F2);
  EXPECT_TRUE(devices.hasFocus());
}

TEST_F(Chips, WhatAWriteUpdatesInTheModelBelongsToTheNewChip) {
  desk.Open("frmGPIO");
  desk.Open("frmLimits");
  auto& pins = desk.Open("frmPinConfig");
  Do(desk.Main(), "cmbDevices=1");
  desk.Open("frmManualControl");
  Do(pins, "cmdApply");
  EXPECT_EQ(TitleOf("frmLimits"), "Limits / Interrupts") << "read anew by the Apply";
  EXPECT_EQ(TitleOf("frmPinConfig"), "Pin Configuration (read from 58h on USB)") << "written, not read";
  desk.Main().FindWindow("frmGPIO")->ReadAgain();
  EXPECT_EQ(TitleOf("frmGPIO"), "GPIO Configuration");
  Do(desk.Main(), "cmbDevices=0");
  EXPECT_EQ(TitleOf("frmManualControl"), "Manual Fan Control (in part read from 5Ah on USB)")
      << "it follows the model, which the reading of another window has renewed";
}

TEST_F(Chips, TheRegisterMapKeepsNoMarksOfAnotherChip) {
  auto& map = desk.Open("frmRegMap");
  Do(desk.Main(), "cmbDevices=1");
  EXPECT_EQ(TitleOf("frmRegMap"), "Register Map") << "nothing has been shown yet";
  EXPECT_EQ(PressF5(), Traffic{});
  Do(desk.Main(), "cmbDevices=0");
  Put(desk.board.Chip(), "4C=11");
  Do(map, "txtReadAddr=4C; cmdRead");
  auto& tree = Desk::Get<QTreeWidget>(map, "TreeView1");
  const auto marked = [&] {
    int count = 0;
    for (QTreeWidgetItemIterator at(&tree); *at != nullptr; ++at) {
      count += (*at)->font(0).bold() || !(*at)->toolTip(0).isEmpty() || (*at)->data(0, Qt::UserRole + 1).isValid();
    }
    return count;
  };
  EXPECT_EQ(marked(), 2);
  Do(desk.Main(), "cmbDevices=1");
  EXPECT_EQ(marked(), 0);
  EXPECT_EQ(Desk::Get<QWidget>(map, "Frame3").property("title"), "Register Details (read from 58h on USB)");
  EXPECT_EQ(Held(map, "lblHexVal"), "11");
  Do(map, "txtReadAddr=30");
  desk.board.TakeTraffic();
  Do(map, "cmdReadAgain");
  EXPECT_EQ(desk.board.TakeTraffic(), T("R4C")) << "the register shown, not the one typed";
  EXPECT_EQ(marked(), 2);
  EXPECT_EQ(Desk::Get<QWidget>(map, "Frame3").property("title"), "Register Details");
}

}  // namespace
}  // namespace zth::testing

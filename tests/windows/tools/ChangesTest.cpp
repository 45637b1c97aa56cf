#include <QAction>
#include <QTreeWidget>
#include <gmock/gmock.h>

#include "link/Asker.h"
#include "link/USBStuff.h"
#include "tests/support/Steps.h"
#include "windows/SharedState.h"

namespace zth::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// The program with the window of changes, and EDO Settings to change something with.
class ChangesTest : public ::testing::Test {
 protected:
  ChangesTest() {
    desk.Start();
    Put(Chip(), "16=A4 37=00 38=00");
    edo = &desk.Open("frmEDO");
    changes = &desk.Open("frmChanges");
    desk.Advance(2000);
    desk.board.TakeTraffic();
  }

  FakeBoard::Registers& Chip() { return desk.board.usbChips[0x58]; }

  void Apply(const QString& steps) {
    Do(*edo, steps + "; cmdApply");
    if (edo = desk.Main().FindWindow("frmEDO"); edo == nullptr) edo = &desk.Open("frmEDO");
    desk.Advance(2000);
    desk.board.TakeTraffic();
  }

  /// The lines of the actions; those below an action are indented.
  std::vector<std::string> Actions() const {
    std::vector<std::string> lines;
    const auto& tree = Desk::Get<QTreeWidget>(*changes, "trvActions");
    for (int i = 0; i < tree.topLevelItemCount(); ++i) {
      const QTreeWidgetItem& action = *tree.topLevelItem(i);
      lines.push_back((action.text(0) + ": " + action.text(1)).toStdString());
      for (int j = 0; j < action.childCount(); ++j) {
        lines.push_back(("  " + action.child(j)->text(0) + ": " + action.child(j)->text(1)).toStdString());
      }
    }
    return lines;
  }
  std::vector<std::string> Left() const {
    std::vector<std::string> lines;
    const auto& list = Desk::Get<QTreeWidget>(*changes, "lstLeft");
    for (int i = 0; i < list.topLevelItemCount(); ++i) lines.push_back(list.topLevelItem(i)->text(0).toStdString());
    return lines;
  }

  Desk desk;
  windows::ChildWindow* edo = nullptr;
  windows::ChildWindow* changes = nullptr;
};

TEST_F(ChangesTest, ShowsEachActionWithWhatItHasChangedAndSendsNothing) {
  EXPECT_THAT(Actions(), IsEmpty());
  EXPECT_FALSE(Desk::Get<QWidget>(*changes, "cmdUndo").isEnabled());
  Apply("chkEDOEnable(0)=1; chkEDO2Mask(7)=1");
  EXPECT_THAT(Actions(), ElementsAre("frmEDO cmdApply: 2 registers", "  EDO Enable (16h): A4h -> A5h, EDO1 0 -> 1",
                                     "  EDO Mask 2 (38h): 00h -> 80h, Volt 0 -> 1"));
  Apply("chkEDOEnable(0)=0");
  EXPECT_THAT(Actions().front(), "frmEDO cmdApply: 1 register") << "the last on top";
  desk.board.TakeTraffic();
  changes->Unload();
  changes = &desk.Open("frmChanges");
  EXPECT_THAT(desk.board.TakeTraffic(), IsEmpty());
  EXPECT_EQ(Actions().size(), 5U);
  Desk::Pick(desk.Main(), "cmbDevices", 1);
  EXPECT_THAT(Actions(), IsEmpty()) << "another chip";
}

TEST_F(ChangesTest, UndoTakesTheLastActionBackAndLeavesWhatSomethingElseHasChanged) {
  Apply("chkEDOEnable(0)=1");
  Apply("chkEDO1Mask(7)=1; chkEDO2Mask(7)=1");
  Chip()[0x38] = 0x81;
  Desk::Press(*changes, "cmdUndo");
  EXPECT_EQ(Writes(desk.board.TakeTraffic()), T("W38=01 W37=00"));
  EXPECT_THAT(Left(), IsEmpty());
  EXPECT_EQ(Desk::Text(*changes, "lblState"), "Undone: frmEDO cmdApply. 2 registers as before.");
  EXPECT_EQ(Actions().size(), 2U);
  Chip()[0x16] = 0xA4;  // somebody has been faster
  desk.Main().findChild<QAction*>("mnuUndo")->trigger();
  EXPECT_THAT(Writes(desk.board.TakeTraffic()), IsEmpty());
  desk.Main().findChild<QAction*>("mnuUndo")->trigger();
  EXPECT_EQ(Desk::Text(desk.Main(), "sbStatusBar(1)"), "Status");
  EXPECT_THAT(desk.board.TakeTraffic(), IsEmpty()) << "nothing is left to undo";
}

TEST_F(ChangesTest, PutBackNamesWhatItLeavesBeforehandAndAfterwards) {
  auto& map = desk.Open("frmRegMap");
  Do(map, "txtReadAddr=4B; txtHex=07; cmdWrite");
  desk.Advance(1000);
  const std::string unread = "Remote 3 High Limit (4Bh): its value before was never read";
  EXPECT_THAT(Left(), ElementsAre(unread));
  Apply("chkEDOEnable(0)=1; chkEDO1Mask(7)=1");
  desk.board.onTransfer = [this] { Chip()[0x37] = 0x80; };
  Desk::Press(*changes, "cmdPutBack");
  EXPECT_EQ(Chip()[0x16], 0xA4);
  EXPECT_THAT(Left(), ElementsAre("EDO Mask 1 (37h), Volt: the chip did not take the value", unread));
  EXPECT_THAT(Actions(), IsEmpty());
  EXPECT_FALSE(Desk::Get<QWidget>(*changes, "cmdPutBack").isEnabled());
}

/// Heater 1 at 30 percent, switches as they are with the default pins.
class BoardChangesTest : public ChangesTest {
 protected:
  BoardChangesTest() {
    desk.board.heaterState = {60, 0, 0};
    desk.board.ports[0x4A] = 0x03;
    heaters = &desk.Open("frmHeaters");
    switches = &desk.Open("frmSwitches");
    Do(*heaters, "sldHeater(0)=80");
    desk.Advance(2000);
    desk.board.heaterState = {160, 0, 0};
    Do(*switches, "chkSwitch(0)=0; cmbApply");
    desk.Advance(2000);
    desk.board.TakeTraffic();
  }

  windows::ChildWindow* heaters = nullptr;
  windows::ChildWindow* switches = nullptr;
};

TEST_F(BoardChangesTest, HeatersAndSwitchesAreListedAndSetBackOnlyAfterAQuestion) {
  EXPECT_THAT(Actions(), ElementsAre("frmSwitches cmbApply: the board", "  Switches at 4Ah: 03h -> 02h",
                                     "frmHeaters sldHeater(0): the board", "  Heater 1: 30 % -> 80 %"));
  QAction& undo = Desk::Get<QAction>(desk.Main(), "mnuUndo");
  desk.prompts.picks = {"&Cancel", "&Set them back", "&Leave them"};
  undo.trigger();
  EXPECT_THAT(desk.board.TakeTraffic(), IsEmpty());
  EXPECT_EQ(Actions().size(), 4U) << "a cancelled question";
  undo.trigger();
  EXPECT_EQ(desk.board.TakeTraffic(), T("P4A P4A=03 P4A"));
  undo.trigger();
  EXPECT_THAT(desk.board.TakeTraffic(), IsEmpty()) << "the heater stays";
  desk.Advance(1000);
  EXPECT_THAT(Actions(), IsEmpty());
  EXPECT_EQ(desk.prompts.choicesShown.back().text.toStdString(),
            "The last action has set heaters or switches of the board:\n\nHeater 1: 30 % -> 80 %\n\nSet them back as "
            "well?");
}

TEST_F(BoardChangesTest, PutBackAsFoundAsksOnceAndLeavesWhatSomethingElseHasSet) {
  Apply("chkEDOEnable(0)=1");
  desk.prompts.picks = {"&Leave them", "&Set them back"};
  Do(*changes, "cmdPutBack");
  EXPECT_EQ(Writes(desk.board.TakeTraffic()), T("W16=A4"));
  EXPECT_EQ(Actions().size(), 4U) << "what was left can still be set back";
  desk.board.heaterState = {20, 0, 0};
  Do(*changes, "cmdPutBack");
  EXPECT_EQ(desk.board.TakeTraffic(), T("P4A P4A=03 P4A H"));
  EXPECT_THAT(Left(), ElementsAre("Heater 1: something else has changed it since"));
  EXPECT_THAT(Actions(), IsEmpty());
}

TEST_F(ChangesTest, AHeaterThatWasNeverReadIsNamedAndTheSwitchesThatFollowThePinsAreNot) {
  auto& map = desk.Open("frmRegMap");
  Do(map, "txtReadAddr=10; txtHex=01; cmdWrite");
  std::int32_t percent = 50;
  {
    const link::Asker asker(link::Asker::Kind::Action, [] { return "somebody"; });
    link::SetHeater(2, percent);
  }
  desk.Advance(1000);
  EXPECT_EQ(Actions().front(), "somebody: the board");
  EXPECT_EQ(Actions()[1], "  Heater 2: ? -> 50 %");
  EXPECT_THAT(Left(), ::testing::Contains("Heater 2: its value before was never read"));
  for (const std::string& line : Actions()) EXPECT_EQ(line.find("Switches"), std::string::npos) << line;
}

TEST_F(ChangesTest, NothingIsPutBackWhileARecallRuns) {
  Apply("chkEDOEnable(0)=1");
  windows::Shared.RecallRunning = true;
  Desk::Press(*changes, "cmdUndo");
  Desk::Press(*changes, "cmdPutBack");
  desk.Main().findChild<QAction*>("mnuUndo")->trigger();
  EXPECT_THAT(desk.board.TakeTraffic(), IsEmpty());
  windows::Shared.RecallRunning = false;
}

}  // namespace
}  // namespace zth::testing

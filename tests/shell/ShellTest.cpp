#include <QAction>
#include <QKeyEvent>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QSet>
#include <QTest>
#include <QTimer>
#include <QToolBar>
#include <gtest/gtest.h>

#include "link/LinkErrors.h"
#include "link/USBStuff.h"
#include "shell/Commands.h"
#include "shell/Jobs.h"
#include "shell/Placement.h"
#include "tests/support/Desk.h"
#include "windows/SharedState.h"

namespace zth::testing {
namespace {

TEST(Jobs, ADueJobRunsInOrderAndItsPeriodCountsFromItsEnd) {
  VirtualClock clock;
  shell::JobList jobs(clock);
  std::string ran;
  jobs.Add({"a", [] { return true; }, [] { return 0.1; }, [&] { ran += 'a'; }});
  jobs.Add({"slow", [] { return true; }, [] { return 0.2; },
            [&] {
              ran += 's';
              clock.WaitMs(500);
            }});
  bool open = false;
  jobs.Add({"gated", [&] { return open; }, [] { return 1.0; }, [&] { ran += 'g'; }});
  jobs.Tick();
  EXPECT_EQ(ran, "as") << "stamps start at 0, so that each job runs at its first test";
  jobs.Tick();
  EXPECT_EQ(ran, "asa") << "half a second has passed for the first, none for the slow one, and nothing catches up";
  open = true;
  jobs.Tick();
  EXPECT_EQ(ran, "asag");
  clock.Advance(150);
  jobs.Tick();
  EXPECT_EQ(ran, "asaga");
}

TEST(Polling, OneGroupEachHundredAndFiftyMilliseconds) {
  Desk desk(Desk::Buses::Usb);
  desk.Start();
  desk.Advance(50);
  EXPECT_EQ(desk.board.TakeTraffic(), Traffic{"usb B 58:88+8"});
  desk.Advance(100);
  EXPECT_TRUE(desk.board.TakeTraffic().empty());
  desk.Advance(50);
  EXPECT_EQ(desk.board.TakeTraffic(), (Traffic{"usb B 58:98+8", "usb B 58:A2+8"}));
  desk.Advance(600);
  EXPECT_EQ(desk.board.TakeTraffic().back(), "usb B 58:45+2");
  desk.Advance(150);
  EXPECT_EQ(desk.board.TakeTraffic(), Traffic{"usb B 58:88+8"});
}

TEST(Polling, StandsStillWhileTheTimerIsOff) {
  Desk desk(Desk::Buses::Usb);
  desk.Start();
  desk.Main().EnableTimer(false);
  desk.Advance(1000);
  EXPECT_TRUE(desk.board.traffic.empty());
  desk.Main().EnableTimer(true);
  desk.Advance(50);
  EXPECT_EQ(desk.board.traffic.size(), 1U);
  EXPECT_EQ(Desk::Get<QLabel>(desk.Main(), "sbStatusBar(1)").text(), "Status");
}

TEST(Polling, GoesOnAfterAHeaterQuestionAnsweredWithNo) {
  Desk desk(Desk::Buses::Usb);
  desk.Start();
  desk.board.failMatching = "usb H";
  desk.prompts.script = {platform::BoxAnswer::No};
  desk.prompts.whileShown = [&] { desk.clock.Advance(1000); };
  std::int32_t percent = 30;
  link::SetHeater(1, percent);
  EXPECT_EQ(desk.board.TakeTraffic(), Traffic{"usb H 1=30"}) << "no tick while the box stood";
  desk.Advance(50);
  EXPECT_EQ(desk.board.TakeTraffic(), Traffic{"usb B 58:88+8"});
}

TEST(MainWindow, EveryCommandHasItsNameItsTextAndAShortcutOfItsOwn) {
  Desk desk;
  desk.Start();
  EXPECT_EQ(desk.Main().windowTitle(), "ZTH4718 Evaluation Software");
  EXPECT_TRUE(desk.Main().isMaximized());
  QSet<QString> shortcuts;
  for (const shell::MenuEntry& row : shell::kMenuEntries) {
    const auto* action = desk.Main().findChild<QAction*>(row.name);
    ASSERT_NE(action, nullptr) << row.name;
    EXPECT_FALSE(shortcuts.contains(action->shortcut().toString())) << row.name;
    shortcuts.insert(action->shortcut().toString());
  }
  const auto text = [&](const char* name) { return desk.Main().findChild<QAction*>(name)->text().remove('&'); };
  EXPECT_EQ(text("mnuSave"), "Save/Recall Configuration");
  EXPECT_EQ(text("mnuTHERM"), "THERM Configuration");
  EXPECT_EQ(text("mnuAbout"), "About...");
  QStringList tips;
  for (const QAction* action : desk.Main().findChild<QToolBar*>("tbToolBar")->actions()) {
    if (action->objectName().isEmpty()) continue;
    tips << action->toolTip();
    EXPECT_FALSE(action->icon().pixmap(24, 24).isNull());
  }
  EXPECT_EQ(tips.join('|'),
            "Save/Recall Configuration|Fan Configuration|Graphs|Register Map|On-board Switches|General "
            "Configuration|GPIO|Heaters|Automatic Fan Control|Limits/Interrupts");
}

TEST(MainWindow, AnEntryOpensItsWindowOnceAndBringsItBack) {
  Desk desk;
  desk.Start();
  desk.Main().findChild<QAction*>("mnuAbout")->trigger();
  auto* area = desk.Main().findChild<QMdiArea*>();
  ASSERT_EQ(area->subWindowList().size(), 1);
  area->subWindowList().constFirst()->showMinimized();
  desk.Main().findChild<QAction*>("mnuAbout")->trigger();
  EXPECT_EQ(area->subWindowList().size(), 1);
  EXPECT_FALSE(area->subWindowList().constFirst()->isMinimized());
  Desk::Press(*desk.Main().FindWindow("frmAbout"), "cmdOK");
  Desk::Settle();
  EXPECT_EQ(desk.Main().FindWindow("frmAbout"), nullptr);
  EXPECT_TRUE(area->subWindowList().isEmpty());
}

TEST(MainWindow, TheWindowMenuListsWhatIsOpen) {
  Desk desk;
  desk.Start();
  auto* menu = desk.Main().findChild<QMenu*>("mnuWindow");
  emit menu->aboutToShow();
  EXPECT_FALSE(menu->actions().constFirst()->isEnabled());
  desk.Open("frmAbout");
  emit menu->aboutToShow();
  EXPECT_EQ(menu->actions().constFirst()->text(), "&1 About the  ZTH4718 Software");
  EXPECT_TRUE(menu->actions().constFirst()->isChecked());
  menu->actions().constFirst()->trigger();
  EXPECT_EQ(menu->actions().constLast()->text(), "&Cascade");
}

TEST(MainWindow, ClosingItStoresThePlacementAndExitDoesNot) {
  {
    Desk desk;
    desk.Start();
    desk.Main().showNormal();
    desk.Main().move(100, 50);
    desk.Main().resize(640, 480);
    desk.Main().close();
    EXPECT_EQ(desk.settings.values["MainLeft"], "1500");
    EXPECT_EQ(desk.settings.values["MainTop"], "750");
    EXPECT_EQ(desk.settings.values["MainWidth"], "9600");
    EXPECT_EQ(desk.settings.values["MainHeight"], "7200");
    EXPECT_TRUE(desk.process.ends.empty()) << "the event loop is left in order";
  }
  {
    Desk desk;
    desk.Start();
    desk.Main().showMinimized();
    desk.Main().close();
    EXPECT_EQ(desk.settings.values.count("MainLeft"), 0U);
  }
  {
    Desk desk;
    desk.Start();
    desk.Main().findChild<QAction*>("mnuExit")->trigger();
    EXPECT_EQ(desk.process.ends, std::vector<int>{0});
    EXPECT_EQ(desk.settings.values.count("MainLeft"), 0U);
  }
}

TEST(MainWindow, APlacementComesBackOntoAScreen) {
  const QList<QRect> screens{QRect(0, 0, 1366, 768), QRect(1366, 0, 1920, 1080)};
  EXPECT_EQ(shell::OntoScreens({67, 67, 433, 433}, screens), QRect(67, 67, 433, 433));
  EXPECT_EQ(shell::OntoScreens({2000, 300, 800, 600}, screens), QRect(2000, 300, 800, 600));
  EXPECT_EQ(shell::OntoScreens({5000, 300, 800, 600}, screens), QRect(566, 168, 800, 600));
  EXPECT_EQ(shell::OntoScreens({-3000, -3000, 5000, 5000}, screens), QRect(0, 0, 1366, 768));
  EXPECT_EQ(shell::OntoScreens({100, -400, 800, 600}, screens), QRect(100, 0, 800, 600)) << "no title to hold it by";
  EXPECT_EQ(shell::OntoScreens({-100, -4, 800, 600}, screens), QRect(-100, -4, 800, 600));
}

TEST(MainWindow, ASpoiltPlacementCountsAsItsDefault) {
  Desk desk;
  desk.settings.values["MainLeft"] = "left";
  desk.settings.values["MainTop"] = "750";
  desk.settings.values["MainWidth"] = "";
  desk.settings.values["MainHeight"] = "1e99";
  desk.Start();
  desk.Main().showNormal();
  EXPECT_EQ(desk.Main().pos(), QPoint(67, 50));
  EXPECT_EQ(desk.Main().size().height(), std::max(433, desk.Main().minimumSizeHint().height()));
}

TEST(About, TellsTheVersionAndOpensTheMakersSite) {
  Desk desk;
  desk.Start();
  auto& about = desk.Open("frmAbout");
  EXPECT_EQ(about.windowTitle(), "About the  ZTH4718 Software");
  EXPECT_EQ(Desk::Text(about, "Label1"), "ZTH4718 Evaluation Software Version 1.0.7");
  auto& link = Desk::Get<QLabel>(about, "Label6");
  QTest::mouseClick(&link, Qt::LeftButton);
  QTest::keyClick(&link, Qt::Key_Return);
  EXPECT_EQ(desk.shell.opened, (std::vector<QString>(2, "https://www.tarnwell.example/")));
  EXPECT_EQ(link.palette().color(QPalette::WindowText), QColor(0x80, 0, 0x80));
}

}  // namespace
}  // namespace zth::testing

#include <tuple>

#include <QAction>
#include <QApplication>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QScrollBar>
#include <QTest>
#include <QToolBar>

#include "link/USBStuff.h"
#include "shell/Commands.h"
#include "shell/Jobs.h"
#include "shell/Placement.h"
#include "tests/support/EveryWindow.h"
#include "tests/support/Steps.h"

namespace zth::testing {
namespace {

TEST(Jobs, ADueJobRunsInOrderAndItsPeriodCountsFromItsEnd) {
  VirtualClock clock;
  shell::JobList jobs(clock);
  std::string ran;
  jobs.Add({"a", [] { return true; }, [] { return 0.1; }, [&] { ran += 'a'; }});
  jobs.Add({"slow", [] { return true; }, [] { return 0.2; }, [&] { ran += 's', clock.WaitMs(500); }});
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

TEST(Polling, ReadsTheGroupsInOrder) {
  Desk desk(Desk::Buses::Usb);
  desk.Start();
  desk.Advance(1000);
  EXPECT_EQ(desk.board.traffic, T("B88+8 B98+8 BA2+8 BAA+4 B8B+1 B8F+8 BA3+7 BAE+2 B5A+2 B5C+4 B49+2 B45+2 B88+8"));
}

struct MainWindow : ::testing::Test {
  MainWindow() { desk.Start(); }
  Desk desk;
};

TEST_F(MainWindow, EveryCommandHasItsOwnIconOrShortcut) {
  EXPECT_TRUE(desk.Main().isMaximized());
  std::set<QString> shortcuts;
  for (const shell::MenuEntry& row : shell::kMenuEntries) {
    const auto* action = desk.Main().findChild<QAction*>(row.name);
    ASSERT_NE(action, nullptr) << row.name;
    EXPECT_TRUE(shortcuts.insert(action->shortcut().toString()).second) << row.name;
  }
  for (const QAction* action : desk.Main().findChild<QToolBar*>("tbToolBar")->actions()) {
    if (action->objectName().isEmpty()) continue;
    EXPECT_FALSE(action->icon().pixmap(24, 24).isNull());
  }
}

TEST_F(MainWindow, AnEntryOpensItsWindowOnceAndBringsItBack) {
  auto& entry = *desk.Main().findChild<QAction*>("mnuAbout");
  const auto& area = *desk.Main().findChild<QMdiArea*>();
  entry.trigger();
  ASSERT_EQ(area.subWindowList().size(), 1);
  area.subWindowList().constFirst()->showMinimized();
  entry.trigger();
  ASSERT_EQ(area.subWindowList().size(), 1);
  EXPECT_FALSE(area.subWindowList().constFirst()->isMinimized());
  Do(*desk.Main().FindWindow("frmAbout"), "cmdOK");
  Desk::Settle();
  EXPECT_TRUE(area.subWindowList().isEmpty());
}

TEST_F(MainWindow, TheDeviceListIsVisibleAtEveryWidthAndF2GoesToIt) {
  auto& main = desk.Main();
  auto& devices = Desk::Get<QWidget>(main, "cmbDevices");
  main.showNormal();
  QApplication::setActiveWindow(&main);
  for (const int width : {1200, 433, 1}) {
    main.resize(width, 400);
    Desk::Settle();
    QApplication::processEvents();
    ASSERT_TRUE(devices.isVisible()) << width;
    EXPECT_TRUE(main.rect().contains({devices.mapTo(&main, QPoint(0, 0)), devices.size()})) << width;
    EXPECT_GE(devices.width(), devices.sizeHint().width());
    Desk::Get<QWidget>(desk.Open("frmFanConfig"), "txtMaxPWM").setFocus();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_F2);
    EXPECT_TRUE(devices.hasFocus()) << width;
  }
}

/// A desktop of child windows in a main window of a given size.
struct MdiWindows : MainWindow {
  MdiWindows() {
    desk.Main().showNormal();
    desk.Main().resize(1000, 700);
    QApplication::setActiveWindow(&desk.Main());
    QApplication::processEvents();
  }
  QMdiSubWindow& Frame(const char* name) {
    auto& window = desk.Open(name);
    QApplication::processEvents();
    return *qobject_cast<QMdiSubWindow*>(window.parentWidget());
  }
  QMdiArea& area = *desk.Main().findChild<QMdiArea*>();
};

TEST_F(MdiWindows, AWindowOpensInViewAndNeverMaximisedWithAnother) {
  const QRect room = area.viewport()->rect();
  auto& first = Frame("frmGenConfig");
  EXPECT_TRUE(room.contains(first.geometry()));
  first.showMaximized();
  for (const char* name : {"frmTherm", "frmHeaters", "frmEDO", "frmVoltConfig", "frmAbout"}) {
    auto& frame = Frame(name);
    EXPECT_FALSE(frame.isMaximized()) << name;
    EXPECT_TRUE(room.contains(frame.geometry())) << name;
  }
  EXPECT_TRUE(first.isMaximized());
  desk.Main().resize(desk.Main().minimumWidth(), 200);
  QApplication::processEvents();
  EXPECT_EQ(Frame("frmFanConfig").pos(), QPoint(0, 0)) << "larger than the desk";
}

TEST_F(MdiWindows, OpeningScrollsNothingOutOfViewAndAnEmptyDesktopHasNoBars) {
  desk.Main().showNormal();
  desk.Main().resize(440, 430);
  for (const char* name : {"frmLimits", "frmAutoGraph", "frmGPIO"}) {
    desk.Open(name);
    Desk::Settle();
    EXPECT_EQ(area.horizontalScrollBar()->value(), 0) << name;
  }
  for (const char* name : {"frmLimits", "frmAutoGraph", "frmGPIO"}) desk.Main().FindWindow(name)->Unload();
  Desk::Settle();
  EXPECT_EQ(area.horizontalScrollBar()->maximum(), 0);
}

TEST_F(MdiWindows, ClosingAWindowRaisesTheOneUsedBefore) {
  for (const char* name : {"frmGenConfig", "frmTherm", "frmEDO", "frmHeaters", "frmGenConfig", "frmEDO"}) Frame(name);
  for (const char* next : {"frmGenConfig", "frmHeaters", "frmTherm"}) {
    qobject_cast<windows::ChildWindow*>(area.activeSubWindow()->widget())->Unload();
    Desk::Settle();
    EXPECT_EQ(area.activeSubWindow()->widget()->objectName(), next);
  }
}

TEST_F(MainWindow, TheWindowMenuListsWhatIsOpen) {
  auto* menu = desk.Main().findChild<QMenu*>("mnuWindow");
  emit menu->aboutToShow();
  EXPECT_FALSE(menu->actions().constFirst()->isEnabled());
  desk.Open("frmAbout");
  emit menu->aboutToShow();
  EXPECT_EQ(menu->actions().constFirst()->text(), "&1 About the  ZTH4718 Software");
  EXPECT_TRUE(menu->actions().constFirst()->isChecked());
  EXPECT_EQ(menu->actions().constLast()->text(), "&Cascade");
  const auto& area = *desk.Main().findChild<QMdiArea*>();
  desk.Open("frmSwitches");
  for (const int picked : {0, 1, 0}) {
    area.subWindowList().at(picked)->showMinimized();
    emit menu->aboutToShow();
    menu->actions().at(picked)->trigger();
    EXPECT_FALSE(area.activeSubWindow()->isMinimized());
    EXPECT_EQ(area.activeSubWindow()->widget()->objectName(), picked == 0 ? "frmAbout" : "frmSwitches");
    EXPECT_EQ(area.subWindowList(QMdiArea::StackingOrder).constLast(), area.activeSubWindow()) << "on top";
  }
}

TEST(Placement, ClosingItStoresThePlacementAndExitDoesNot) {
  using Case = std::tuple<void (*)(shell::frmMain&), const char*, std::vector<int>>;
  for (const auto& [leave, placement, ends] :
       {Case{[](shell::frmMain& window) {
               window.showNormal();
               window.move(100, 50);
               window.resize(640, 480);
               window.close();
             },
             "1500 750 9600 7200",
             {}},  // the event loop exits in an orderly way
        Case{[](shell::frmMain& window) { window.showMinimized(), window.close(); }, "   ", {}},
        Case{[](shell::frmMain& window) { window.findChild<QAction*>("mnuExit")->trigger(); }, "   ", {0}}}) {
    Desk desk;
    desk.Start();
    leave(desk.Main());
    QStringList stored;
    for (const char* key : {"MainLeft", "MainTop", "MainWidth", "MainHeight"}) stored << desk.settings.Get(key, "");
    EXPECT_EQ(stored.join(' '), placement);
    EXPECT_EQ(desk.process.ends, ends);
  }
}

TEST(Placement, AMaximisedWindowGoesBackToWhatItWasBefore) {
  std::map<QString, QString> stored;
  {
    Desk desk;
    desk.Start();
    QApplication::processEvents();
    desk.Main().showNormal();
    QApplication::processEvents();
    desk.Main().setGeometry(120, 90, 640, 480);
    QApplication::processEvents();
    desk.Main().showMaximized();
    QApplication::processEvents();
    const QSize full = desk.Main().size();
    desk.Main().close();
    stored = desk.settings.values;
    EXPECT_EQ(stored["MainWidth"].toDouble(), full.width() * 15) << "as it stood";
  }
  for (const bool spoilt : {false, true}) {
    Desk desk;
    desk.settings.values = stored;
    if (spoilt) desk.settings.values["MainNormal"] = "1800 1350 wide";
    desk.Start();
    EXPECT_TRUE(desk.Main().isMaximized());
    desk.Main().showNormal();
    const QRect back = desk.Main().geometry();
    EXPECT_EQ(back == QRect(120, 90, 640, 480), !spoilt) << stored["MainNormal"].toStdString();
    desk.Main().close();
    EXPECT_EQ(desk.settings.values["MainNormal"], "") << "the four tell it all";
  }
}

TEST(Placement, APlacementIsMovedBackOntoAScreen) {
  const QList<QRect> screens{QRect(0, 0, 1366, 768), QRect(1366, 0, 1920, 1080)};
  for (const auto& [stored, shown] : {std::pair{QRect(67, 67, 433, 433), QRect(67, 67, 433, 433)},
                                      {QRect(2000, 300, 800, 600), QRect(2000, 300, 800, 600)},
                                      {QRect(5000, 300, 800, 600), QRect(566, 168, 800, 600)},
                                      {QRect(-3000, -3000, 5000, 5000), QRect(0, 0, 1366, 768)},
                                      {QRect(100, -20, 800, 600), QRect(100, 0, 800, 600)},  // title bar off screen
                                      {QRect(-100, -4, 800, 600), QRect(-100, -4, 800, 600)}}) {
    EXPECT_EQ(shell::OntoScreens(stored, screens), shown) << stored.x();
  }
}

TEST(Placement, AnInvalidPlacementCountsAsTheDefault) {
  Desk desk;
  desk.settings.values = {
      {"OpenEasySetup", "False"}, {"MainLeft", "left"}, {"MainTop", "750"}, {"MainWidth", ""}, {"MainHeight", "1e99"}};
  desk.Start();
  desk.Main().showNormal();
  EXPECT_EQ(desk.Main().pos(), QPoint(67, 50));
  EXPECT_EQ(desk.Main().size().height(), std::max(433, desk.Main().minimumSizeHint().height()));
}

TEST(About, OpensTheMakersSite) {
  WindowDesk desk("frmAbout");
  auto& about = *desk.window;
  auto& link = Desk::Get<QLabel>(about, "Label6");
  QTest::mouseClick(&link, Qt::LeftButton);
  QTest::keyClick(&link, Qt::Key_Return);
  EXPECT_EQ(desk.shell.opened, (std::vector<QString>(2, "https://www.tarnwell.example/")));
  EXPECT_EQ(link.palette().color(QPalette::WindowText), QColor(0x80, 0, 0x80));
}

}  // namespace
}  // namespace zth::testing

// How the limits window shows red lamps: its marks, its list of events, its sound.
#include <QApplication>
#include <QCheckBox>
#include <QPushButton>
#include <QStatusBar>
#include <QTabWidget>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>
#include <QTreeView>

#include "link/Declarations.h"
#include "tests/windows/limits/LimitsDesk.h"
#include "widgets/Badge.h"
#include "windows/limits/AlertLog.h"

namespace zth::testing {
namespace {

using Log = windows::AlertLog;

struct Alerts : Limits {
  explicit Alerts(Desk::Buses buses = Desk::Buses::Usb) : Limits(buses) { desk.clock.lookUs = 0; }

  QTreeView& List() const { return Desk::Get<QTreeView>(*window, "lstEvents"); }
  /// Lets the window poll these registers once, and returns the given columns of the events that it adds.
  std::string Poll(const std::string& registers, const std::vector<int>& columns = {Log::kChannel, Log::kEvent}) const {
    Put(const_cast<Desk&>(desk).board.Chip(), registers);
    const int before = List().model()->rowCount();
    const_cast<Desk&>(desk).Advance(550);
    return Rows(before, columns);
  }
  std::string Rows(int from, const std::vector<int>& columns) const {
    QStringList rows;
    for (int row = from; row < List().model()->rowCount(); ++row) {
      QStringList fields;
      for (const int column : columns) fields << List().model()->index(row, column).data().toString();
      rows << fields.join(' ');
    }
    return rows.join("; ").toStdString();
  }
  /// The tabs' marks, "0 2 0 0 0 0", read from both their pictures and their texts.
  std::string Marks() const {
    auto& tabs = Desk::Get<QTabWidget>(*window, "SSTab1");
    QStringList marks;
    for (int tab = 0; tab < tabs.count(); ++tab) {
      int count = 0;
      while (count < 49 && !SameMark(tabs.tabIcon(tab), count)) ++count;
      marks << QString::number(count);
      const QString words = count == 0 ? "No alert" : QString("%1 alert").arg(count);
      EXPECT_TRUE(tabs.tabToolTip(tab).startsWith(words)) << tabs.tabToolTip(tab).toStdString();
    }
    return marks.join(' ').toStdString();
  }
  static bool SameMark(const QIcon& icon, int count) {
    const QIcon mark = count == 0 ? QIcon() : widgets::BadgeIcon(count);
    return icon.pixmap(24).toImage() == mark.pixmap(24).toImage();
  }
  const QAction& Button() { return Desk::Get<QAction>(desk.Main(), "tbToolBar(Alerts)"); }
};

TEST_F(Alerts, EveryLampThatTurnsIsEnteredAndCountedWhicheverTabShows) {
  desk.clock.SetWallTime(QDateTime({2026, 3, 1}, {12, 0}));
  chip::Model.Measurements.Temperature = {25.25F, 31, 0, 0};
  chip::Model.Measurements.TachRpm = {0, 4321};
  Put(desk.board.Chip(), "C5=02 07=FF 44=50 48=54 C0..C4=00 C6=00 BA=00");
  Load();
  desk.Advance(600);
  EXPECT_EQ(Rows(0, {Log::kChannel, Log::kValue, Log::kLimit, Log::kEvent}), "Fan2 4321rpm  raised")
      << "a lamp that is red at first has been raised; the limits of Fan2 were not read";
  EXPECT_EQ(List().model()->index(0, Log::kTime).data().toString().left(9), "12:00:00.");
  EXPECT_EQ(Marks(), "0 1 0 0 0 0");

  EXPECT_EQ(Poll("C0=06 C1=40", {Log::kChannel, Log::kValue, Log::kLimit, Log::kEvent}),
            "Local Temp 25.25\u00B0C 16.0 to 20.0\u00B0C raised; Remote 1 Temp 31\u00B0C  raised; VRD1   raised");
  EXPECT_EQ(Marks(), "2 1 0 0 0 1");
  EXPECT_EQ(Desk::Get<QTabWidget>(*window, "SSTab1").tabToolTip(0), "2 alerts: Local Temp, Remote 1 Temp");
  EXPECT_EQ(Button().toolTip(), "Limits/Interrupts: 4 alerts");
  EXPECT_EQ(Poll("C0=06"), "") << "what stays red is no event";
  // An alert that the chip has latched and one read clears.
  EXPECT_EQ(Poll("C0=04 C3=80"), "Local Temp cleared; 1.8V (pin23) raised");
  EXPECT_EQ(Poll("C0=00 C1=00 C3=00 C5=00"), "Remote 1 Temp cleared; VRD1 cleared; 1.8V (pin23) cleared; Fan2 cleared");
  EXPECT_EQ(Marks(), "0 0 0 0 0 0");
  EXPECT_EQ(Button().toolTip(), "Limits/Interrupts");
}

TEST_F(Alerts, WhatAnotherWindowReadsFirstIsEnteredTooAndCostsNoTransfer) {
  Load();
  Poll("C0..C6=00 BA=00");
  auto& map = desk.Open("frmRegMap");
  const auto readBy = [&](const std::string& registers, const QString& steps) {
    Put(desk.board.Chip(), registers);
    desk.board.TakeTraffic();
    const int before = List().model()->rowCount();
    testing::Do(map, steps);
    return Concat(desk.board.TakeTraffic(), Rows(before, {Log::kChannel, Log::kEvent}));
  };
  // By its address, and alone on the page of all registers. The chip has cleared the bit by the next poll.
  EXPECT_EQ(readBy("C0=02", "txtReadAddr=C0; cmdRead"), Concat(R(0xC0), std::string("Local Temp raised")));
  EXPECT_EQ(Marks(), "1 0 0 0 0 0");
  EXPECT_EQ(Poll("C0=00"), "Local Temp cleared");
  auto& table = Desk::Get<QTableView>(map, "tblRegisters");
  testing::Do(map, "tabPages=1; txtSearch=Digital Status,BMC");
  table.selectRow(0);
  EXPECT_EQ(readBy("C6=80", "cmdReadSelected"), Concat(R(0xC6), std::string("Chassis Intrusion raised")));
  EXPECT_EQ(Poll("C6=00"), "Chassis Intrusion cleared");
  EXPECT_EQ(readBy("B8=FF", "tabPages=0; txtReadAddr=B8; cmdRead"), Concat(R(0xB8), std::string()))
      << "the host's copy is not the lamps'";
  window->Unload();
  EXPECT_EQ(readBy("C0=02", "txtReadAddr=C0; cmdRead").front(), R(0xC0)) << "with nobody to tell";
}

TEST_F(Alerts, ALampThatDoesNotShowIsNeitherEnteredNorCounted) {
  Load([](chip::PinFunctionFlags& pins) { pins.D1 = false; });
  EXPECT_EQ(Poll("C0=24"), "");
  EXPECT_EQ(Marks(), "0 0 0 0 0 0");
  Load([](chip::PinFunctionFlags& pins) { pins.D1 = true; });
  EXPECT_EQ(Poll("C0=24"), "Remote 1 Temp raised; Diode1 Error raised");
}

TEST_F(Alerts, TheToolBarsMarkStandsWhileTheWindowDoes) {
  const QImage plain = Button().icon().pixmap(24).toImage();
  Load();
  Poll("BA=81");
  EXPECT_NE(Button().icon().pixmap(24).toImage(), plain);
  window->Unload();
  EXPECT_EQ(Button().icon().pixmap(24).toImage(), plain);
  EXPECT_EQ(Button().toolTip(), "Limits/Interrupts");
}

struct AlertsOfTwo : Alerts {
  AlertsOfTwo() : Alerts(Desk::Buses::Both) {}
};

TEST_F(AlertsOfTwo, AnotherChipsLampsBeginAnew) {
  Load();
  EXPECT_EQ(Poll("C6=80 BA=00", {Log::kChip, Log::kChannel, Log::kEvent}), "58h on USB Chassis Intrusion raised");
  EXPECT_TRUE(List().isColumnHidden(Log::kChip));
  testing::Do(desk.Main(), "cmbDevices=1");
  EXPECT_EQ(Poll("C6=00 BA=01", {Log::kChip, Log::kChannel, Log::kEvent}), "2Ch on SMBus Local THERM1 raised")
      << "the first chip's lamp has not been cleared";
  EXPECT_FALSE(List().isColumnHidden(Log::kChip));
}

TEST_F(Alerts, SoundOnlyWhenAskedForOnceAPollAndForRedOnes) {
  Load();
  Poll("C0=06");
  EXPECT_EQ(desk.shell.beeps, 0) << "off at first";
  Desk::Check(*window, "chkSound", true);
  EXPECT_EQ(desk.settings.values["AlertSound"], "True");
  Poll("C0=00");
  EXPECT_EQ(desk.shell.beeps, 0);
  Poll("C0=06");
  EXPECT_EQ(desk.shell.beeps, 1);
}

TEST_F(Alerts, EventsAreCopiedSavedAndCleared) {
  Load();
  Poll("C6=08 BA=00");
  Poll("C6=10");
  const QTemporaryDir folder;
  const QString file = folder.filePath("a.csv");
  List().selectionModel()->select(List().model()->index(2, 0), QItemSelectionModel::Select | QItemSelectionModel::Rows);
  List().setFocus();
  QTest::keyClick(&List(), Qt::Key_C, Qt::ControlModifier);
  EXPECT_TRUE(desk.clipboard.text.endsWith("58h on USB\tSCSI Term1\t\t\traised")) << desk.clipboard.text.toStdString();
  EXPECT_EQ(desk.clipboard.text.count('\n'), 0);
  List().clearSelection();
  Desk::Press(*window, "cmdCopyEvents");
  EXPECT_EQ(desk.clipboard.text.count("Fan2Max"), 2) << "all without a selection";
  EXPECT_EQ(desk.clipboard.text.count("SCSI Term1"), 1);

  for (const bool locked : {true, false}) {
    desk.files.locked = locked;
    desk.fileDialogs.script = {file};
    Desk::Press(*window, "cmdSaveEvents");
    EXPECT_EQ(desk.Main().statusBar()->currentMessage(),
              locked ? "Not saved: a.csv could not be written" : "Events saved as a.csv");
  }
  const QString saved = desk.files.Read(file, 10'000).value_or(QByteArray());
  EXPECT_TRUE(saved.startsWith("Time,Chip,Channel,Value,Limit,Event\n")) << saved.toStdString();
  EXPECT_EQ(saved.count(",raised\n"), 2);
  Desk::Press(*window, "cmdClearEvents");
  EXPECT_EQ(List().model()->rowCount(), 0);
  EXPECT_EQ(Poll("C6=30"), "SCSI Term2 raised") << "what is red stays known";
}

TEST_F(Alerts, AFoldedListTellsItsNewestAndStaysFolded) {
  Load();
  Desk::Press(*window, "cmdEvents");
  EXPECT_FALSE(List().isVisibleTo(window));
  Poll("C6=08 BA=00");
  EXPECT_TRUE(Desk::Text(*window, "lblNewest").endsWith(" Fan2Max raised"));
  window->Unload();
  Desk::Settle();
  window = &desk.Open("frmLimits");
  EXPECT_FALSE(List().isVisibleTo(window));
}

TEST(AlertLogs, KeepTheNewestThousandAndQuoteWhatASpreadsheetWouldTakeApart) {
  Log log;
  const QDateTime time({2026, 3, 1}, {1, 2, 3, 4});
  for (int i = 0; i <= Log::kKept; ++i) log.Add({time, "58h", QString::number(i), "", "", true});
  EXPECT_EQ(log.rowCount(), 1000);
  EXPECT_EQ(log.Lines({0, 999}).toStdString(), "01:02:03.004\t58h\t1\t\t\traised\n01:02:03.004\t58h\t1000\t\t\traised");
  log.Clear();
  log.Add({time, "58h on USB", "a, \"b\"", "1\u00B0C", "0 to\n2", false});
  EXPECT_EQ(log.Csv().toStdString(),
            "Time,Chip,Channel,Value,Limit,Event\n"
            "2026-03-01 01:02:03.004,58h on USB,\"a, \"\"b\"\"\",1\u00B0C,\"0 to\n2\",cleared\n");
}

}  // namespace
}  // namespace zth::testing

// The window of the bus traffic, driven as a user does, on the fake board.
#include <fstream>

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDropEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMimeData>
#include <QPushButton>
#include <QScrollBar>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>

#include "chip/ChipState.h"
#include "link/Declarations.h"
#include "tasks/TasksState.h"
#include "tests/support/Steps.h"

namespace zth::testing {
namespace {

using Lines = std::vector<std::string>;

class TrafficWindow : public ::testing::Test {
 protected:
  enum Column { kTime, kBus, kAddress, kCall, kRegister, kName, kBytes, kChange, kAsker, kFields };

  explicit TrafficWindow(std::size_t most = tasks::Traffic::kMostRecords)
      : desk("frmTraffic", Desk::Buses::Usb, [most](Desk&) {
          tasks::Work.traffic = std::make_unique<tasks::Traffic>(most);
          link::Bus.observer = tasks::Work.traffic.get();
        }) {
    chip::Model.PollEnabled = false;
    desk.Main().resize(1300, 800);
    desk.Main().show();
    QApplication::setActiveWindow(&desk.Main());
    Do("cmdClear");
  }

  /// Steps in the window, and the refresh after them.
  void Do(const QString& steps) {
    desk.Do(steps);
    desk.Advance(1100);
  }
  /// Writes a register in the register map, which then reads it.
  void Write(const char* reg, const char* value) {
    testing::Do(desk.Open("frmRegMap"), QString("txtReadAddr=%1; txtHex=%2; cmdWrite").arg(reg, value));
    desk.Advance(1100);
  }
  void ReadMany(int count) {
    for (int i = 0; i < count; ++i) testing::Do(desk.Open("frmRegMap"), "cmdRead");
    desk.Advance(1100);
  }
  std::string Cell(int row, Column column, int role = Qt::DisplayRole) const {
    return table.model()->index(row, column).data(role).toString().toStdString();
  }
  /// All rows, their cells but the time and the fields.
  Lines Rows() const {
    Lines rows;
    for (int row = 0; row < table.model()->rowCount(); ++row) {
      std::string text = Cell(row, kCall);
      for (const Column column : {kRegister, kName, kBytes, kChange, kAsker}) text += "|" + Cell(row, column);
      rows.push_back(text);
    }
    return rows;
  }
  void Pick(const char* menu, const char* entry) {
    auto& popUp = Desk::Get<QMenu>(*desk.window, menu);
    Desk::Get<QAction>(popUp, entry).trigger();
    popUp.close();
    Desk::Settle();
  }
  QString Path(const QString& name) { return folder.filePath(name); }
  void Open(const QString& name, const std::string& contents) {
    std::ofstream(Path(name).toStdString()) << contents;
    desk.fileDialogs.script.push_back(Path(name));
    Do("cmdOpen");
  }
  void Save(const QString& name, const char* entry) {
    desk.fileDialogs.script.push_back(Path(name));
    Do("cmdSave");
    Pick("mnuSaveTraffic", entry);
  }
  std::string Contents(const QString& name) {
    std::ifstream file(Path(name).toStdString());
    return {std::istreambuf_iterator<char>(file), {}};
  }
  std::string Text(const char* label) const { return Desk::Text(*desk.window, label).toStdString(); }
  void ScrollTo(int row) const { table.verticalScrollBar()->setValue(row * table.rowHeight(row)); }
  bool IsAtEnd() const { return table.verticalScrollBar()->value() == table.verticalScrollBar()->maximum(); }

  QTemporaryDir folder;
  WindowDesk desk;
  QTableView& table = Desk::Get<QTableView>(*desk.window, "tblTraffic");
};

TEST_F(TrafficWindow, ShowsEachCallAndMakesNone) {
  EXPECT_EQ(desk.load, Traffic{});
  testing::Do(desk.Open("frmRegMap"), "txtReadAddr=22; cmdRead");
  desk.Advance(150);
  EXPECT_EQ(Rows(), Lines{"R|22h|PWM2 Config|31||frmRegMap cmdRead"}) << "at once";
  Do("cmdClear");
  Write("21", "11");
  Write("21", "31");
  EXPECT_EQ(Rows(), (Lines{"W|21h|PWM1 Config|11||frmRegMap cmdWrite", "R|21h|PWM1 Config|11||frmRegMap cmdWrite",
                           "R|21h|PWM1 Config|11||frmRegMap cmdWrite",
                           "W|21h|PWM1 Config|31|11 → 31: Bhvr 0 → 1|frmRegMap cmdWrite",
                           "R|21h|PWM1 Config|31||frmRegMap cmdWrite", "R|21h|PWM1 Config|31||frmRegMap cmdWrite"}));
  EXPECT_EQ(Cell(3, kFields), "Bhvr = 1, Inv = 1, Slow = 0, Spin = 1");
  EXPECT_EQ(Cell(3, kAddress) + Cell(3, kBus), "58hUSB");
  EXPECT_GT(Cell(3, kTime), Cell(0, kTime)) << "seconds since the start";
  const QDateTime at = QDateTime::fromString(Cell(3, kTime, Qt::ToolTipRole).c_str(), "yyyy-MM-dd HH:mm:ss.zzz");
  EXPECT_LT(std::abs(at.msecsTo(desk.clock.WallTime())), 2000);
  desk.board.TakeTraffic();
  Do("txtFilter=PWM; chkWrites=1; chkNoMonitor=1; chkFailures=1; cmbAsker=1; cmdHold; cmdMark; cmdClear");
  desk.Open("frmTraffic");
  QTest::keyClick(desk.window, Qt::Key_F5);
  desk.Advance(5000);
  EXPECT_EQ(desk.board.TakeTraffic(), Traffic{});
}

TEST_F(TrafficWindow, FollowsTheEndUnlessTheUserHasScrolledUp) {
  ReadMany(200);
  EXPECT_TRUE(IsAtEnd());
  ReadMany(5);
  EXPECT_TRUE(IsAtEnd());
  ScrollTo(50);
  ReadMany(5);
  EXPECT_EQ(table.rowAt(0), 50);
  EXPECT_EQ(Text("lblState"), "210 of 210");
}

class ShortTraffic : public TrafficWindow {
 protected:
  ShortTraffic() : TrafficWindow(300) {}
};

TEST_F(ShortTraffic, KeepsItsPlaceWhileOldCallsAreForgotten) {
  ReadMany(290);
  ScrollTo(100);
  const std::string top = Cell(100, kTime);
  ReadMany(30);
  EXPECT_EQ(table.model()->rowCount(), 300);
  EXPECT_EQ(table.rowAt(0), 80);
  EXPECT_EQ(Cell(80, kTime), top);
  Do("cmdHold");
  ReadMany(310);
  EXPECT_EQ(table.model()->rowCount(), 0) << "the ring goes on";
  EXPECT_EQ(Text("lblState"), "0 of 0, 300 wait");
}

TEST_F(TrafficWindow, CombinesItsFilters) {
  Write("21", "31");
  testing::Do(desk.Open("frmGenConfig"), "cmdApply");
  desk.Advance(1100);
  auto& askers = Desk::Get<QComboBox>(*desk.window, "cmbAsker");
  EXPECT_GE(askers.findText("frmGenConfig"), 1);
  EXPECT_EQ(askers.findText("monitor"), -1) << "polling is off";
  const int all = table.model()->rowCount();
  Do("chkWrites=1");
  const int writes = table.model()->rowCount();
  EXPECT_LT(writes, all);
  Do(QString("cmbAsker=%1").arg(askers.findText("frmRegMap")));
  EXPECT_EQ(Rows(), Lines{"W|21h|PWM1 Config|31||frmRegMap cmdWrite"});
  Do("txtFilter=0x22");
  EXPECT_EQ(Rows(), Lines{});
  EXPECT_EQ(Text("lblState"), "0 of " + std::to_string(all));
  Write("22", "51");
  EXPECT_EQ(Rows(), Lines{"W|22h|PWM2 Config|51||frmRegMap cmdWrite"}) << "new calls are filtered too";
  auto& filter = Desk::Get<QLineEdit>(*desk.window, "txtFilter");
  QTest::keyClick(&filter, Qt::Key_Escape);
  EXPECT_TRUE(desk.IsOpen() && filter.text().isEmpty());
  Do("chkWrites=0; cmbAsker=0");
  EXPECT_EQ(table.model()->rowCount(), all + 3);
}

TEST_F(TrafficWindow, LeavesOutTheMonitorAndTellsFailures) {
  chip::Model.PollEnabled = true;
  desk.Advance(2000);
  chip::Model.PollEnabled = false;
  const int polled = table.model()->rowCount();
  EXPECT_GT(polled, 0);
  Write("28", "80");
  Do("chkNoMonitor=1");
  EXPECT_EQ(Rows(), (Lines{"W|28h|PWM1 Min|80||frmRegMap cmdWrite", "R|28h|PWM1 Min|80||frmRegMap cmdWrite"}));
  tasks::TrafficRecord failed;
  failed.mode = 1;
  failed.address = 0x58;
  failed.succeeded = false;
  tasks::Work.traffic->Add(failed, "test");
  Do("chkFailures=1");
  EXPECT_EQ(Rows(), Lines{"R, failed|00h|Configuration 0|||test"});
  EXPECT_TRUE(table.model()->index(0, 0).data(Qt::ForegroundRole).isValid()) << "in a colour of its own";
}

TEST_F(TrafficWindow, HoldsClearsAndMarks) {
  Write("28", "80");
  Do("cmdHold");
  Write("28", "81");
  EXPECT_EQ(table.model()->rowCount(), 2);
  EXPECT_EQ(Text("lblState"), "2 of 2, 2 wait");
  Do("txtFilter=81");
  EXPECT_EQ(Rows(), Lines{}) << "what waits is not filtered in";
  Do("txtFilter=; cmdHold");
  EXPECT_EQ(table.model()->rowCount(), 4);
  Do("txtMark=before  the fault; cmdMark; chkWrites=1");
  EXPECT_EQ(Rows().back(), "mark||before the fault|||");
  EXPECT_EQ(Text("txtMark"), "");
  auto& note = Desk::Get<QLineEdit>(*desk.window, "txtMark");
  QTest::keyClicks(&note, "again");
  QTest::keyClick(&note, Qt::Key_Return);
  desk.Advance(1100);
  EXPECT_EQ(Rows().back(), "mark||again|||");
  Do("cmdClear");
  EXPECT_EQ(Rows(), Lines{});
  EXPECT_EQ(tasks::Work.traffic->First(), tasks::Work.traffic->End());
}

TEST_F(TrafficWindow, CopiesTheSelectionOrAllThatIsShown) {
  Write("21", "31");
  table.selectRow(0);
  Do("cmdCopy");
  Pick("mnuCopy", "mnuCopyI2c");
  EXPECT_EQ(desk.clipboard.text.toStdString(),
            "BUS=${BUS:-1}  # the number of the I2C adapter, see i2cdetect -l\n# 58h on USB: 0x2c in 7 bits\n"
            "i2cset -y $BUS 0x2c 0x21 0x31  # PWM1 Config\n");
  emit table.customContextMenuRequested({5, 5});
  Pick("mnuTable", "mnuCopyC");
  EXPECT_EQ(desk.clipboard.text.toStdString(), "// 58h on USB\n{0x21, 0x31}, // PWM1 Config\n");
  table.setFocus();
  QTest::keyClick(&table, Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(desk.clipboard.text.count('\n'), 1);
  EXPECT_EQ(desk.clipboard.text.section('\t', 1, 6).toStdString(), "USB\t58h\tW\t21h\tPWM1 Config\t31");
  table.clearSelection();
  QTest::keyClick(&table, Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(desk.clipboard.text.count('\n'), 3);
  QTest::keyClick(desk.window, Qt::Key_F, Qt::ControlModifier);
  EXPECT_TRUE(Desk::Get<QLineEdit>(*desk.window, "txtFilter").hasFocus());
}

TEST_F(TrafficWindow, SavesAndShowsAgainWhatItHolds) {
  Write("21", "31");
  Do("txtMark=between; cmdMark");
  Write("21", "51");
  const Lines live = Rows();
  const std::string time = Cell(4, kTime);
  Do("chkWrites=1");
  Save("all.txt", "mnuSaveAll");
  Save("shown.txt", "mnuSaveShown");
  EXPECT_EQ(Text("lblTold"), "Saved as shown.txt");
  EXPECT_EQ(Contents("all.txt").find("# ZTH4718 bus traffic 1\n# started "), 0U);
  EXPECT_NE(Contents("all.txt").find(" usb w 58 21 31 -> ok ; frmRegMap cmdWrite\n"), std::string::npos);

  Do("chkWrites=0");
  desk.fileDialogs.script.push_back(Path("shown.txt"));
  Do("cmdOpen");
  EXPECT_EQ(table.model()->rowCount(), 3) << "two writes and the mark";
  desk.fileDialogs.script.push_back(Path("all.txt"));
  Do("cmdOpen");
  EXPECT_EQ(Rows(), live);
  EXPECT_EQ(Cell(4, kTime), time);
  EXPECT_EQ(desk.window->windowTitle().toStdString(), "Bus Traffic - all.txt");
  EXPECT_FALSE(Desk::Get<QPushButton>(*desk.window, "cmdClear").isEnabled());
  Write("28", "80");
  EXPECT_EQ(Rows(), live) << "what goes on is not mixed in";
  Save("again.txt", "mnuSaveAll");
  EXPECT_EQ(Contents("again.txt"), Contents("all.txt"));
  Do("cmdLive");
  EXPECT_EQ(table.model()->rowCount(), static_cast<int>(live.size()) + 2);
  EXPECT_EQ(desk.window->windowTitle().toStdString(), "Bus Traffic");
}

TEST_F(TrafficWindow, TellsWhereAFileIsDamagedAndKeepsWhatIsGood) {
  Write("28", "80");
  const Lines live = Rows();
  Open("picture.txt", "\x89PNG\r\n\x1a\n");
  EXPECT_EQ(Text("lblTold"), "Not opened: picture.txt, line 1: it holds bytes that are no text");
  Open("new.txt", "# ZTH4718 bus traffic 9\n");
  EXPECT_NE(Text("lblTold").find("new.txt, line 1: version \"9\""), std::string::npos) << Text("lblTold");
  desk.fileDialogs.script.push_back(Path("missing.txt"));
  Do("cmdOpen");
  EXPECT_EQ(Text("lblTold"), "Not opened: missing.txt could not be read");
  EXPECT_EQ(Rows(), live);
  EXPECT_EQ(desk.window->windowTitle().toStdString(), "Bus Traffic");
  Open("torn.txt", "# ZTH4718 bus traffic 1\n0.5 usb w 58 21 31 -> ok ; me\n0.6 usb w 58 2");
  EXPECT_EQ(Rows(), Lines{"W|21h|PWM1 Config|31||me"});
  EXPECT_EQ(Text("lblTold").find("Read only as far as a fault in torn.txt, line 3: "), 0U) << Text("lblTold");
}

TEST_F(TrafficWindow, TakesAFileThatIsDroppedOnIt) {
  std::ofstream(Path("dropped.txt").toStdString()) << "# ZTH4718 bus traffic 1\n0.5 usb w 58 21 31 -> ok ; me\n";
  QMimeData data;
  data.setUrls({QUrl::fromLocalFile(Path("dropped.txt"))});
  QDragEnterEvent enter({5, 5}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(desk.window, &enter);
  EXPECT_TRUE(enter.isAccepted());
  QDropEvent drop({5, 5}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(desk.window, &drop);
  Desk::Settle();
  EXPECT_EQ(Rows(), Lines{"W|21h|PWM1 Config|31||me"});
}

}  // namespace
}  // namespace zth::testing

// The window that compares configurations, driven as a user does, on the fake board.
#include <algorithm>
#include <fstream>

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QLabel>
#include <QMenu>
#include <QMimeData>
#include <QTableView>
#include <QTemporaryDir>
#include <QTreeWidget>
#include <QUrl>
#include <gmock/gmock.h>

#include "chip/ChipState.h"
#include "chip/ReadEffects.h"
#include "link/Declarations.h"
#include "tasks/RegisterImage.h"
#include "tests/support/Steps.h"
#include "windows/data/RecentFiles.h"

namespace zth::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

using Lines = std::vector<std::string>;

/// A chip at 58h and one at 5Ah on USB, one at 2Ch on SMBus that tells its failures.
class CompareWindow : public ::testing::Test {
 protected:
  CompareWindow() {
    desk.board.AddUsbChip(0x5A);
    desk.board.missingEntries.clear();
    desk.process.stateFolder = folder.path();
    desk.Start();
    chip::Model.PollEnabled = false;
    Open();
  }

  /// Opens the window and takes what that has sent.
  void Open() {
    desk.board.TakeTraffic();
    window = &desk.Open("frmCompare");
    load = desk.board.TakeTraffic();
  }
  void Do(const QString& steps) const { testing::Do(*window, steps); }
  QTableView& Table() const { return Desk::Get<QTableView>(*window, "tblCompare"); }
  FakeBoard::Registers& Chip(int address = 0x58) { return desk.board.usbChips[address]; }
  /// Chooses what a column shows, by its text in the list.
  void Choose(int column, const QString& text) {
    auto& list = Desk::Get<QComboBox>(*window, QString("cmbColumn(%1)").arg(column));
    ASSERT_GE(list.findText(text), 0) << text.toStdString();
    list.setCurrentIndex(list.findText(text));
  }
  std::string Cell(int row, int column, int role = Qt::DisplayRole) const {
    return Table().model()->index(row, column).data(role).toString().toStdString();
  }
  /// The rows as shown, their cells separated by "|".
  Lines Rows() const {
    Lines rows;
    for (int row = 0; row < Table().model()->rowCount(); ++row) {
      std::string line;
      for (int column = 0; column < Table().model()->columnCount(); ++column) {
        line += (column == 0 ? "" : "|") + Cell(row, column);
      }
      rows.push_back(line);
    }
    return rows;
  }
  void Select(const std::vector<int>& rows) {
    Table().clearSelection();
    for (const int row : rows) {
      Table().selectionModel()->select(Table().model()->index(row, 0),
                                       QItemSelectionModel::Select | QItemSelectionModel::Rows);
    }
  }
  std::string Told() const { return Desk::Text(*window, "lblTold").toStdString(); }
  Lines Left() const {
    Lines lines;
    const auto& list = Desk::Get<QTreeWidget>(*window, "lstLeft");
    for (int i = 0; i < list.topLevelItemCount(); ++i) lines.push_back(list.topLevelItem(i)->text(0).toStdString());
    return lines;
  }
  QString File(const QString& name, const std::string& contents) {
    std::ofstream(folder.filePath(name).toStdString(), std::ios::binary) << contents;
    return folder.filePath(name);
  }
  void Drop(QWidget& target, const QStringList& paths) {
    QMimeData data;
    QList<QUrl> urls;
    for (const QString& path : paths) urls << QUrl::fromLocalFile(path);
    data.setUrls(urls);
    QDragEnterEvent enter({5, 5}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&target, &enter);
    EXPECT_TRUE(enter.isAccepted());
    QDropEvent drop({5, 5}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&target, &drop);
    Desk::Settle();
  }

  QTemporaryDir folder;
  Desk desk;
  windows::ChildWindow* window = nullptr;
  Traffic load;
};

TEST_F(CompareWindow, ReadsNothingUntilAskedAndThenLeavesAloneWhatAReadChanges) {
  EXPECT_EQ(load, Traffic{});
  Do("txtFilter=PWM; chkDifferences=1; chkFields=1; cmbGroup=3; cmbGroup=0; chkDifferences=0; txtFilter=");
  Choose(2, "5Ah on USB");
  Choose(3, "2Ch on SMBus");
  desk.Open("frmCompare").ReadAgain();
  desk.Advance(3000);
  EXPECT_EQ(desk.board.TakeTraffic(), Traffic{});
  Do("cmdRead");
  const Traffic read = desk.board.TakeTraffic();
  const std::size_t each = tasks::ComparableRegisters().size();
  ASSERT_EQ(read.size(), 3 * each);
  for (std::size_t i = 0; i < read.size(); ++i) {
    const char* chips[]{"usb R 58:", "usb R 5A:", "smb R 2C:"};
    EXPECT_EQ(read[i].find(chips[i / each]), 0U) << read[i];
    EXPECT_FALSE(chip::ReadClears(std::stoi(read[i].substr(9), nullptr, 16))) << read[i];
  }
  EXPECT_EQ(link::Bus.DeviceAddress, 0x58) << "the chip in use is still the same";
  EXPECT_EQ(link::Bus.InterfaceMode, link::kModeUsb);
  Do("cmdRead");
  EXPECT_EQ(desk.board.TakeTraffic(), read);
}

TEST_F(CompareWindow, ShowsADifferenceInItsFieldsByMoreThanColourAndFindsIt) {
  Put(Chip(), "21=E2");
  Do("cmdRead; chkDifferences=1; txtFilter=21h");
  const auto rows = Rows();
  ASSERT_EQ(rows.size(), 4U) << ::testing::PrintToString(rows);
  EXPECT_EQ(rows[0].find("PWM1 Config|21h|"), 0U) << rows[0];
  EXPECT_THAT(rows[0], HasSubstr("|\u2260 E2h|"));
  EXPECT_THAT(rows[0], HasSubstr("Bhvr "));
  EXPECT_EQ(rows[1].find("    Bhvr|bits 7:5|"), 0U) << rows[1];
  EXPECT_THAT(rows[1], HasSubstr("|\u2260 7|"));
  EXPECT_TRUE(Table().model()->index(1, 3).data(Qt::FontRole).value<QFont>().bold());
  EXPECT_FALSE(Table().model()->index(1, 2).data(Qt::FontRole).isValid())
      << "the first column is what others differ from";
  EXPECT_THAT(Cell(1, 3, Qt::AccessibleTextRole), HasSubstr("7, differs from "));
  Do("txtFilter=; cmbGroup=1");
  EXPECT_THAT(Rows(), IsEmpty());
  Do("cmbGroup=0");
  EXPECT_EQ(Rows(), rows);
  EXPECT_THAT(Desk::Text(*window, "lblState").toStdString(), HasSubstr("1 of "));
  Do("chkDifferences=0; chkFields=1; txtFilter=21");
  EXPECT_GT(Rows().size(), rows.size()) << "every field";
}

TEST_F(CompareWindow, WritesTheSelectedFieldsOfAnyColumnMaskedAndReadsEachBack) {
  Put(Chip(), "21=E2 48=12");
  Do("cmdRead; chkDifferences=1");
  const auto rows = Rows();
  const auto rowOf = [&](const char* begin) {
    return static_cast<int>(std::ranges::find_if(rows, [&](const auto& row) { return row.find(begin) == 0; }) -
                            rows.begin());
  };
  desk.board.TakeTraffic();
  Do("cmdWrite");
  EXPECT_THAT(Told(), HasSubstr("select"));
  Select({rowOf("    Bhvr"), rowOf("Local Low Limit") < std::ssize(rows) ? rowOf("Local Low Limit") : 0});
  desk.prompts.picks = {"&Cancel", "&Write"};
  Do("cmdWrite");
  EXPECT_EQ(desk.board.TakeTraffic(), Traffic{}) << "a cancelled question";
  EXPECT_THAT(desk.prompts.choicesShown.at(0).text.toStdString(), HasSubstr("of Defaults to 58h on USB?"));
  Select({rowOf("    Bhvr")});
  const int wanted = (Chip()[0x21] & 0x1F) | (DefaultRegisters()[0x21] & 0xE0);
  Do("cmdWrite");
  EXPECT_EQ(desk.board.TakeTraffic().front(), "usb R 58:21");
  EXPECT_EQ(Chip()[0x21], wanted) << "the other fields stay";
  EXPECT_THAT(desk.prompts.choicesShown.at(1).text.toStdString(),
              EndsWith("PWM1 Config (21h): E2h -> 02h, Bhvr 7 -> 0"));
  EXPECT_EQ(Told(), "1 register of 58h on USB as in Defaults.");
  EXPECT_THAT(Left(), IsEmpty());
  const std::string shown = Cell(rowOf("PWM1 Config"), 3);
  EXPECT_THAT(shown, HasSubstr(QString("%1h").arg(wanted, 2, 16, QChar('0')).toUpper().replace('H', 'h').toStdString()))
      << "what was read back shows in the chip's column";
}

TEST_F(CompareWindow, FollowsWhatOtherWindowsWriteAndReadMeanwhile) {
  Put(Chip(), "21=11");
  Do("cmdRead; txtFilter=21h");
  const auto title = [&] { return Table().model()->headerData(3, Qt::Horizontal).toString(); };
  testing::Do(desk.Open("frmRegMap"), "txtReadAddr=21; txtHex=71; cmdWrite");
  Desk::Settle();
  EXPECT_THAT(Rows().at(0), HasSubstr("71h")) << "the register map reads back what it writes";
  EXPECT_EQ(title(), "2: 58h on USB");
  testing::Do(desk.Open("frmFanConfig"), "cmdApply");
  Desk::Settle();
  EXPECT_EQ(title(), "2: 58h on USB, written since") << "this window does not read back";
  Do("cmdRead");
  EXPECT_EQ(title(), "2: 58h on USB");
}

TEST_F(CompareWindow, TellsWhatCannotBeWrittenAndNamesWhatTheChipDoesNotTake) {
  Put(Chip(), "48=12 49=13");
  Choose(0, "5Ah on USB");
  Put(Chip(0x5A), "01=41 48=22 49=23");  // locked
  Do("cmdRead; chkDifferences=1");
  Table().selectAll();
  desk.prompts.picks = {"&Write"};
  desk.board.onTransfer = [this] { Chip()[0x49] = 0x13; };
  Do("cmdWrite");
  desk.board.onTransfer = {};
  EXPECT_THAT(desk.prompts.choicesShown.at(0).choices, ElementsAre("&Write", "Write and &lock", "&Cancel"));
  EXPECT_THAT(desk.prompts.choicesShown.at(0).text.toStdString(),
              HasSubstr("Not written:\nConfiguration 1 (01h), LCK"));
  EXPECT_EQ(Chip()[0x48], 0x22);
  EXPECT_EQ(Chip()[0x01] & 0x40, 0) << "the lock has a button of its own";
  ASSERT_EQ(Left().size(), 2U) << ::testing::PrintToString(Left());
  EXPECT_THAT(Left()[0], HasSubstr("(49h): the chip did not take the value"));
  EXPECT_THAT(Told(), HasSubstr("2 items not written."));
}

TEST_F(CompareWindow, NamesTheRegisterWhoseTransferFailsAndGoesOn) {
  Desk::Pick(desk.Main(), "cmbDevices", 2);
  ASSERT_EQ(link::Bus.InterfaceMode, link::kModeSmbus);
  Put(desk.board.smbusChips[0x2C], "48=12 49=13");
  Choose(1, "2Ch on SMBus");
  Do("cmdRead; chkDifferences=1");
  desk.board.smbusFails = [this](const std::string& transfer) {
    const bool fails = transfer.find("2C:48") != std::string::npos;
    if (fails) ++desk.board.smbusFailures[0x2C];
    return fails;
  };
  Table().selectAll();
  desk.prompts.picks = {"&Write"};
  Do("cmdWrite");
  EXPECT_THAT(Left(), ElementsAre(HasSubstr("(48h): a transfer failed")));
  EXPECT_EQ(desk.board.smbusChips[0x2C][0x49], DefaultRegisters()[0x49]);
  Do("cmdRead");
  EXPECT_THAT(Told(), HasSubstr("1 transfer failed"));
}

TEST_F(CompareWindow, WritesNothingToAnotherChipThanTheOneThatWasAskedAbout) {
  Put(Chip(), "48=12");
  Do("cmdRead; chkDifferences=1");
  desk.board.TakeTraffic();
  Table().selectAll();
  desk.prompts.picks = {"&Write"};
  desk.prompts.whileShown = [this] { Desk::Pick(desk.Main(), "cmbDevices", 1); };
  Do("cmdWrite");
  desk.prompts.whileShown = {};
  EXPECT_EQ(desk.board.TakeTraffic(), Traffic{});
  EXPECT_EQ(Told(), "Nothing written: another chip is in use now.");
  EXPECT_THAT(Desk::Get<QWidget>(*window, "cmdWrite").toolTip().toStdString(), HasSubstr("5Ah on USB"));
  EXPECT_THAT(Rows(), ::testing::Not(IsEmpty())) << "the columns name their chips and stay";
}

TEST_F(CompareWindow, TakesDroppedFilesAndSaysWhatIsWrongWithADamagedOne) {
  const QString good = File("good.sav", "{\r\n0x48\t0x12\t// \r\n}\r\n");
  const QString bad = File("bad.sav", "no configuration at all");
  Drop(*window, {good});
  EXPECT_EQ(Held(*window, "cmbColumn(2)"),
            std::to_string(Desk::Get<QComboBox>(*window, "cmbColumn(2)").findText("File: good.sav")));
  EXPECT_EQ(Table().model()->headerData(4, Qt::Horizontal).toString().toStdString(), "3: good.sav");
  const auto rows = Rows();
  Drop(*window, {bad});
  EXPECT_EQ(Told().find("Not opened: bad.sav, "), 0U) << Told();
  EXPECT_EQ(Rows(), rows);
  desk.fileDialogs.script.push_back(folder.filePath("missing.sav"));
  Do("cmdOpen(1)");
  EXPECT_EQ(Told(), "Not opened: missing.sav could not be read");
  EXPECT_EQ(Rows(), rows);
  EXPECT_EQ(windows::RecentFiles(desk.settings), QStringList{good}) << "a file that cannot be used is not offered";
  EXPECT_EQ(desk.board.TakeTraffic(), Traffic{});
}

TEST_F(CompareWindow, SavesAndCopiesAColumnOrItsDifferences) {
  Put(Chip(), "48=12");
  Do("cmdRead; cmbFrom=1");
  const auto pick = [&](const char* entry) {
    Do("cmdExport");
    auto& menu = Desk::Get<QMenu>(*window, "mnuExport");
    Desk::Get<QAction>(menu, entry).trigger();
    menu.close();
    Desk::Settle();
  };
  const QString path = folder.filePath("all.sav");
  desk.fileDialogs.script.push_back(path);
  pick("mnuSaveColumn(sav)");
  EXPECT_EQ(Told(), "Saved as all.sav");
  Choose(2, "File: all.sav");
  Do("chkDifferences=1");
  for (int row = 0; row < Table().model()->rowCount(); ++row) {
    EXPECT_EQ(Cell(row, 3), Cell(row, 4)) << Cell(row, 0);
  }
  pick("mnuCopyDifferences(c)");
  const std::string c = desk.clipboard.text.toStdString();
  EXPECT_THAT(c, HasSubstr("0x48, 0x12"));
  EXPECT_EQ(c.find("0x49,"), std::string::npos) << "only what differs";
  Do("cmbFrom=0; cmdExport");
  EXPECT_FALSE(Desk::Get<QMenu>(*window, "mnuSaveDifferences").isEnabled()) << "of a column to itself";
}

TEST_F(CompareWindow, KeepsSnapshotsByNameForThisAndLaterSessions) {
  Put(Chip(), "48=12");
  Do("tabPages=1; txtName=before; cmdTake");
  EXPECT_EQ(Writes(desk.board.traffic), Traffic{});
  EXPECT_EQ(desk.board.TakeTraffic().size(), tasks::ReadableRegisters().size());
  EXPECT_THAT(Desk::Text(*window, "lblSnapshot").toStdString(), HasSubstr("Kept as \"before\"."));
  Do("cmdTake");
  EXPECT_EQ(desk.board.TakeTraffic(), Traffic{}) << "the name is taken";
  Do("txtName=after; cmdRename; tabPages=0");
  window->Unload();
  Desk::Settle();
  Open();
  EXPECT_EQ(load, Traffic{});
  auto& list = Desk::Get<QComboBox>(*window, "cmbColumn(1)");
  ASSERT_GE(list.findText("Snapshot: after"), 0);
  list.setCurrentIndex(list.findText("Snapshot: after"));
  Do("chkDifferences=1; txtFilter=48");
  EXPECT_EQ(Table().model()->index(0, 3).data().toString().toStdString(), "\u2260 12h");
  auto& snapshots = Desk::Get<QTreeWidget>(*window, "lstSnapshots");
  snapshots.setCurrentItem(snapshots.topLevelItem(0));
  desk.prompts.picks = {"&Keep it", "&Delete it"};
  Do("cmdDelete");
  EXPECT_EQ(snapshots.topLevelItemCount(), 1);
  Do("cmdDelete");
  EXPECT_EQ(snapshots.topLevelItemCount(), 0);
  EXPECT_EQ(list.findText("Snapshot: after"), -1);
}

}  // namespace
}  // namespace zth::testing

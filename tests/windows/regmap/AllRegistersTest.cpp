// The register map's page of all registers, and the search for registers that are not in the tree.
#include <QAction>
#include <QApplication>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>
#include <QTest>
#include <QTreeWidget>

#include "chip/ChipState.h"
#include "tests/support/Steps.h"
#include "windows/regmap/RegisterTexts.h"

namespace zth::testing {
namespace {

/// The page of all registers, with polling stopped and nothing read.
class AllRegisters : public ::testing::Test {
 protected:
  enum Column { kAddress, kName, kValue, kDefault, kChange, kReadAt, kFields };

  AllRegisters() {
    chip::Model.PollEnabled = false;
    desk.Main().show();
    QApplication::setActiveWindow(&desk.Main());
    desk.Do("tabPages=1");
  }

  QAbstractItemModel& Rows() const { return *table.model(); }
  /// The row with that name in the table as shown; -1 if there is none.
  int Row(const QString& name) const {
    const QModelIndexList found = Rows().match(Rows().index(0, kName), Qt::DisplayRole, name, 1, Qt::MatchExactly);
    return found.isEmpty() ? -1 : found[0].row();
  }
  std::string Cell(const QString& name, Column column) const {
    return Rows().index(Row(name), column).data().toString().toStdString();
  }
  std::string Cells(const QString& name) const {
    return Cell(name, kValue) + "|" + Cell(name, kChange) + "|" + Cell(name, kFields);
  }
  bool Bold(const QString& name) const {
    return qvariant_cast<QFont>(Rows().index(Row(name), kName).data(Qt::FontRole)).bold();
  }
  void Select(const QStringList& names) {
    table.clearSelection();
    for (const QString& name : names) {
      table.selectionModel()->select(Rows().index(Row(name), 0),
                                     QItemSelectionModel::Select | QItemSelectionModel::Rows);
    }
  }
  /// The first `count` texts of a column.
  std::string First(Column column, int count) const {
    QStringList texts;
    for (int row = 0; row < count; ++row) texts << Rows().index(row, column).data().toString();
    return texts.join('|').toStdString();
  }

  Traffic ReadSelected(const QStringList& names) {
    Select(names);
    return desk.Sent("cmdReadSelected");
  }

  WindowDesk desk{"frmRegMap", Desk::Buses::Usb};
  QTableView& table = Desk::Get<QTableView>(*desk.window, "tblRegisters");
};

TEST_F(AllRegisters, AreReadWhenAskedForEachAddressOnceAndNoneThatAReadClears) {
  EXPECT_EQ(Concat(desk.load, desk.board.TakeTraffic()), Traffic{}) << "opening and turning the page reads nothing";
  EXPECT_EQ(Rows().rowCount(), 176) << "of a shared address both rows";
  EXPECT_EQ(Cells("Fan Status,BMC"), "reading clears||");
  EXPECT_EQ(Cells("Fan Mask"), "||");
  Put(desk.board.Chip(), "45=12");
  std::set<std::string> expected;
  for (const chip::RegisterEntry& entry : chip::Model.RegisterTable) {
    expected.insert(QString("R%1").arg(entry.Address, 2, 16, QChar('0')).toUpper().toStdString());
  }
  for (const char* cleared :
       {"RB8", "RB9", "RBA", "RBB", "RBC", "RBD", "RBE", "RC0", "RC1", "RC3", "RC4", "RC5", "RC6"})
    expected.erase(cleared);
  std::string all;
  for (const std::string& transfer : expected) all += transfer + ' ';
  EXPECT_EQ(desk.Sent("cmdReadShown"), T(all));
  EXPECT_EQ(Cell("Remote 1 Low Limit", kValue) + Cell("Pin 15 Low Limit", kValue), "12h12h");
  EXPECT_EQ(Cells("Fan Status,BMC"), "reading clears||");
  EXPECT_EQ(desk.Held("lblTold"),
            "146 registers read. 13 registers left out: a read clears them. Select one alone to read it.");
}

TEST_F(AllRegisters, OneThatAReadClearsIsReadWhenItAloneIsSelected) {
  Put(desk.board.Chip(), "C5=81");
  EXPECT_EQ(ReadSelected({"Fan Status,BMC", "Fan Mask", "Thermal Status 1,Host"}), T("R34"));
  EXPECT_EQ(Cells("Fan Status,BMC"), "reading clears||");
  EXPECT_EQ(ReadSelected({"Fan Status,BMC"}), T("RC5"));
  EXPECT_EQ(Cell("Fan Status,BMC", kValue), "81h");
  EXPECT_EQ(desk.Held("lblTold"), "Fan Status,BMC was read, and by that cleared of what is over.");
  QTest::keyClick(&desk.Main(), Qt::Key_F5);
  EXPECT_EQ(desk.board.TakeTraffic(), T("R34")) << "F5 reads what has been read, but asks for no row by itself";
  EXPECT_EQ(ReadSelected({}), Traffic{});
  EXPECT_EQ(desk.Held("lblTold"), "No register is selected.");
}

TEST_F(AllRegisters, OfAGroupOrOfASearchAreReadAlone) {
  for (const auto& [steps, rows, sent] : {std::tuple{"cmbGroup=11", 4, "R60 R61 R62 R63"},
                                          {"cmbGroup=22", 6, ""},
                                          {"cmbGroup=0; txtSearch=bhvr", 6, "R09 R0A R21 R22 R23 R24"},
                                          {"txtSearch=7Ch", 2, "R7C"},
                                          {"cmbGroup=9", 0, ""}}) {
    desk.Do(steps);
    EXPECT_EQ(Rows().rowCount(), rows) << steps;
    EXPECT_EQ(desk.Sent("cmdReadShown"), T(sent)) << steps;
  }
}

TEST_F(AllRegisters, TellsFieldsTimesAndChangesInMoreThanColour) {
  desk.clock.SetWallTime(QDateTime({2026, 11, 23}, {9, 8, 7}));
  Put(desk.board.Chip(), "21=51 34=00");
  ReadSelected({"PWM1 Config", "Fan Mask"});
  EXPECT_EQ(Cells("PWM1 Config"), "51h||Bhvr = 2, Inv = 1, Slow = 0, Spin = 1");
  EXPECT_EQ(Cell("PWM1 Config", kReadAt), "09:08:07");
  EXPECT_EQ(Cell("PWM1 Config", kDefault), "11h");
  Put(desk.board.Chip(), "21=E1");
  ReadSelected({"PWM1 Config", "Fan Mask"});
  EXPECT_EQ(Cells("PWM1 Config").substr(0, 15), "E1h|was 51h|Bhv");
  EXPECT_TRUE(Bold("PWM1 Config"));
  EXPECT_FALSE(Bold("Fan Mask"));
  desk.Do("cmdReadSelected");
  EXPECT_EQ(Cell("PWM1 Config", kChange), "") << "since the last read";
  Put(desk.board.Chip(), "21=E2");
  desk.Do("tabPages=0; txtReadAddr=21; cmdRead");
  EXPECT_EQ(Cell("PWM1 Config", kChange), "was E1h") << "a read on the other page counts as well";
}

TEST_F(AllRegisters, AreSortedByAnyColumnAndCopiedAsText) {
  EXPECT_EQ(First(kAddress, 3), "00h|01h|02h");
  Put(desk.board.Chip(), "00..FF=00 2C=FF 30=FE");
  desk.Do("cmdReadShown");
  for (const auto& [column, order, first] :
       {std::tuple{kValue, Qt::DescendingOrder, "PWM 1-4 Max|Thermal Mask 1"},
        {kName, Qt::AscendingOrder, "+1.5V1 (3GIO) Low Limit|+1.5V1 (3GIO) Voltage"},
        {kAddress, Qt::DescendingOrder, "Digital Status,BMC|Fan Status,BMC"}}) {
    table.sortByColumn(column, order);
    EXPECT_EQ(First(kName, 2), first);
  }
  desk.clock.SetWallTime(QDateTime({2026, 11, 23}, {23, 0, 1}));
  ReadSelected({"Thermal Mask 1"});
  Select({"PWM 1-4 Max", "Fan Status,BMC"});
  table.findChild<QAction*>("actCopyRows")->trigger();
  EXPECT_TRUE(
      desk.clipboard.text.startsWith("C5h\tFan Status,BMC\treading clears\t00h\t\t\t\n2Ch\tPWM 1-4 Max\tFFh\tC0h\t\t"))
      << desk.clipboard.text.toStdString();
}

TEST(AllRegistersOfAnotherChip, AreDroppedWhenTheDeviceChanges) {
  WindowDesk desk("frmRegMap", Desk::Buses::Both);
  chip::Model.PollEnabled = false;
  const auto& table = Desk::Get<QTableView>(*desk.window, "tblRegisters");
  const auto value = [&table] { return table.model()->index(0, 2).data().toString().toStdString(); };
  desk.Do("tabPages=1; txtSearch=3E; cmdReadShown");
  EXPECT_EQ(value(), "41h");
  Do(desk.Main(), "cmbDevices=1");
  EXPECT_EQ(value(), "");
  EXPECT_EQ(desk.Held("lblTold"), "Nothing has been read yet.");
  EXPECT_EQ(desk.window->windowTitle(), "Register Map") << "none of it is left to be of another chip";
}

TEST(RegisterFields, AreNumbersOfTheirBitsWithoutReservedOnes) {
  Desk desk;
  desk.Start();
  for (const auto& [name, value, fields] : {std::tuple{"Tmin_Cal2", 0x6B, "Ver = 1, CYR2 = 5, CYR1 = 3"},
                                            {"Operating Point Hyst", 0xF4, "Hys = 15"},
                                            {"EDO Enable", 0x0D, "CS = 1, SC = 1, EDO2 = 0, EDO1 = 1"},
                                            {"Configuration 0", 0x80, "SWR = 1"},
                                            {"PWM1 Min", 0xFF, ""}}) {
    const auto& entry = chip::Model.RegisterTable.at(static_cast<std::size_t>(chip::RowOfName(name)));
    EXPECT_EQ(windows::FieldsText(entry, value).toStdString(), fields) << name;
  }
}

TEST(RegisterSearch, SaysWhatToReadByAddressAndEnterGoesToTheFirstHit) {
  WindowDesk desk("frmRegMap", Desk::Buses::Usb);
  chip::Model.PollEnabled = false;
  desk.Main().show();
  QApplication::setActiveWindow(&desk.Main());
  auto& search = Desk::Get<QLineEdit>(*desk.window, "txtFind");
  for (const auto& [typed, note, sent, address] :
       {std::tuple{"fan mask", "", "R34", "34H"},
        {"fan mask", "", "R34", "34H"},
        {"B8", "Not in the tree; read it by address: B8h Thermal Status 1,Host Register", "", "B8H"},
        {"0x04", "Not in the tree; read it by address: 4h", "", "4H"},
        {"voltage status 1", "Not in the tree; read it by address: BBh Voltage Status 1,Host Register", "RC3", "C3H"},
        {",host", "Not in the tree; read them by address: B8h, B9h, BBh, BCh, BDh, BEh", "RBA", "BAH"},
        {"nowhere", "No register has such a name, bit or address.", "", "BAH"},
        {"", "", "", "BAH"}}) {
    search.setFocus();
    desk.Do(QString("txtFind=%1").arg(typed));
    EXPECT_EQ(desk.board.TakeTraffic(), Traffic{}) << "searching reads nothing";
    EXPECT_EQ(desk.Held("lblNoMatch"), note);
    EXPECT_EQ(Desk::Get<QWidget>(*desk.window, "lblNoMatch").isHidden(), *note == 0);
    QTest::keyClick(&search, Qt::Key_Return);
    EXPECT_EQ(desk.board.TakeTraffic(), T(sent)) << typed;
    EXPECT_EQ(desk.Held("txtReadAddr"), address) << typed;
    const bool beside = *sent == 0 && QString(note).startsWith("Not in the tree");
    EXPECT_EQ(QApplication::focusWidget()->objectName(), beside ? "cmdRead" : "txtFind");
  }
}

}  // namespace
}  // namespace zth::testing

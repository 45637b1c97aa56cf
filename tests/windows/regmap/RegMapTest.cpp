#include <array>
#include <set>

#include <QTest>
#include <QTreeWidget>
#include <gmock/gmock.h>

#include "chip/Measurements.h"
#include "chip/RegMapStuff.h"
#include "link/Declarations.h"
#include "tests/support/Desk.h"
#include "windows/SharedState.h"

namespace zth::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class RegisterMap : public ::testing::Test {
 protected:
  explicit RegisterMap(Desk::Buses buses = Desk::Buses::Usb) : desk(buses) {
    desk.Start();
    chip::PollEnabled = false;
    window = &desk.Open("frmRegMap");
  }

  QTreeWidget& Tree() const { return Desk::Get<QTreeWidget>(*window, "TreeView1"); }
  QTreeWidgetItem& Node(const QString& text) const {
    return *Tree().findItems(text, Qt::MatchExactly | Qt::MatchRecursive).at(0);
  }
  void Click(const QString& text) const {
    QTreeWidgetItem& node = Node(text);
    Tree().scrollToItem(&node);
    QTest::mouseClick(Tree().viewport(), Qt::LeftButton, {}, Tree().visualItemRect(&node).center());
  }
  void ClickBit(int bit) const {
    QTest::mouseClick(&Desk::Get<QWidget>(*window, QString("lblBit(%1)").arg(bit)), Qt::LeftButton);
  }
  QString Text(const char* name) const { return Desk::Text(*window, name); }
  QString Digits() const {
    QString digits;
    for (int bit = 7; bit >= 0; --bit) digits += Desk::Text(*window, QString("lblBit(%1)").arg(bit));
    return digits;
  }
  QString BitNames() const {
    QStringList names;
    for (int place = 0; place < 8; ++place) names << Desk::Text(*window, QString("lblInfo(%1)").arg(place));
    return names.join(':');
  }
  void Read(const QString& address) const {
    Desk::Type(*window, "txtReadAddr", address);
    Desk::Press(*window, "cmdRead");
  }

  Desk desk;
  windows::ChildWindow* window;
};

class RegisterMapOnSmbus : public RegisterMap {
 protected:
  RegisterMapOnSmbus() : RegisterMap(Desk::Buses::Smbus) {}
};

TEST_F(RegisterMap, OpensWithoutATransferAndShowsItsStartTexts) {
  EXPECT_THAT(desk.board.TakeTraffic(), IsEmpty());
  EXPECT_TRUE(windows::RegMapOpen);
  EXPECT_EQ(window->windowTitle(), "Register Map");
  EXPECT_EQ(Text("lblRegDescription"), "Description");
  EXPECT_EQ(Text("lblCurrentAddr"), "Address");
  EXPECT_EQ(Text("lblHexVal"), "HexVal");
  EXPECT_EQ(Text("lblDecVal"), "DecVal");
  EXPECT_EQ(Text("lblReadOnly"), "ReadOnly");
  EXPECT_EQ(Digits(), "00000000");
  EXPECT_EQ(BitNames(), "X:X:X:X:X:X:X:X");
  window->Unload();
  EXPECT_FALSE(windows::RegMapOpen);
}

TEST_F(RegisterMap, ListsAllRegistersButSixUnderTheirTopics) {
  QStringList roots;
  int groups = 0;
  std::set<QString> names;
  std::set<QString> keys;
  for (QTreeWidgetItemIterator at(&Tree()); *at != nullptr; ++at) {
    EXPECT_TRUE(keys.insert((*at)->data(0, Qt::UserRole).toString()).second) << (*at)->text(0).toStdString();
    if ((*at)->parent() == nullptr) {
      roots << (*at)->text(0);
      EXPECT_EQ((*at)->isExpanded(), roots.size() == 1);
    } else if ((*at)->parent()->parent() == nullptr) {
      ++groups;
      EXPECT_FALSE((*at)->isExpanded());
    } else {
      names.insert((*at)->text(0));
    }
  }
  EXPECT_EQ(roots.join('|'), "General|Temperature|Fan|Voltage|GPIO|THERM Timer");
  EXPECT_EQ(groups, 21);
  EXPECT_EQ(keys.size(), 197U);
  QStringList left;
  for (const chip::RegisterEntry& entry : chip::RegisterTable) {
    const QString name = QString::fromStdString(entry.Name);
    if (names.erase(name) == 0) left << name;
  }
  EXPECT_TRUE(names.empty()) << "not in the table: " << names.begin()->toStdString();
  EXPECT_EQ(left.join('|'),
            "Thermal Status 1,Host|Thermal Status 2,Host|Voltage Status 1,Host|Voltage Status 2,Host|Fan Status,Host|"
            "Digital Status,Host");
  EXPECT_EQ(Node("GPIO  Values").data(0, Qt::UserRole), "GPIO Values");
  EXPECT_EQ(Node("GPIO Status,Host").parent(), &Node("GPIO  Values"));
  EXPECT_EQ(Node("Pin 15 Low Limit").parent(), &Node("Voltage Limits"));
  EXPECT_EQ(Node("Voltage Limits").child(3), &Node("Pin 15 Low Limit"));
}

TEST_F(RegisterMap, ShowsTheRegisterThatIsClickedOnceForEachClick) {
  desk.Main().show();
  desk.board.Chip()[0x02] = 0xA5;
  Node("Configuration").setExpanded(true);
  Click("Configuration 2");
  EXPECT_THAT(desk.board.TakeTraffic(), ElementsAre(R(0x02)));
  EXPECT_EQ(Text("lblRegDescription"), "Configuration 2 Register");
  EXPECT_EQ(Text("lblCurrentAddr"), "2h");
  EXPECT_EQ(Text("txtReadAddr"), "2H");
  EXPECT_EQ(Text("lblReadOnly"), "No");
  EXPECT_EQ(Text("lblDecVal"), "165");
  EXPECT_EQ(Text("lblHexVal"), "A5");
  EXPECT_EQ(Digits(), "10100101");
  EXPECT_EQ(BitNames(), "#FP:#FP:FFS:VB2:VB1:HF:Shdn:Fst");
  EXPECT_EQ(Text("txtHex"), "") << "what the user is about to write is left alone";

  Click("Configuration 2");
  EXPECT_THAT(desk.board.TakeTraffic(), ElementsAre(R(0x02))) << "a second click reads again";
  QTest::keyClick(&Tree(), Qt::Key_Down);
  EXPECT_THAT(desk.board.TakeTraffic(), ElementsAre(R(0x03))) << "as does the keyboard's move to the next";

  Click("Configuration");
  Click("General");
  EXPECT_THAT(desk.board.TakeTraffic(), IsEmpty());
  EXPECT_EQ(Text("lblRegDescription"), "Configuration 3 Register");
}

TEST_F(RegisterMap, ShowsTheClickedNameOfASharedAddressUntilTheNextReadByAddress) {
  Tree().setCurrentItem(&Node("Pin 15 Low Limit"));
  EXPECT_EQ(Text("lblRegDescription"), "Pin 15 Low Limit Register");
  EXPECT_THAT(desk.board.TakeTraffic(), ElementsAre(R(0x45)));
  Desk::Press(*window, "cmdRead");
  EXPECT_EQ(Text("lblRegDescription"), "Remote 1 Low Limit Register");
}

TEST_F(RegisterMap, ReadsAnyAddressTyped) {
  struct Case {
    const char* typed;
    int address;
    const char* description;
    const char* label;
    const char* box;
    const char* bitNames;
  };
  constexpr const char* kNumbers = "7:6:5:4:3:2:1:0";
  desk.board.Chip()[0x04] = 0x81;
  Read("3F");
  for (const Case& row : {
           Case{"", 0x00, "Configuration 0 Register", "0h", "0H", "SWR:6:5:4:3:2:1:0"},
           Case{"1e", 0x1E, "Free Wheel Test En Register", "1Eh", "1EH", "Fn8:Fn7:Fn6:Fn5:Fn4:Fn3:Fn2:Fn1"},
           Case{"1Ah", 0x1A, "Enhance Acoustics 1 Register", "1Ah", "1AH", "RR2:RR2:RR2:RR1:RR1:RR1:En2:En1"},
           Case{"45", 0x45, "Remote 1 Low Limit Register", "45h", "45H", kNumbers},
           Case{"b8", 0xB8, "Thermal Status 1,Host Register", "B8h", "B8H", "R3D:R2D:R1D:R3:R2:R1:Local:Res"},
           Case{"04", 0x04, "Unknown", "4h", "4H", kNumbers},
           Case{"C2", 0xC2, "Unknown", "C2h", "C2H", kNumbers},
       }) {
    desk.board.TakeTraffic();
    Read(row.typed);
    EXPECT_THAT(desk.board.TakeTraffic(), ElementsAre(R(row.address))) << row.typed;
    EXPECT_EQ(Text("lblRegDescription"), row.description);
    EXPECT_EQ(Text("lblCurrentAddr"), row.label);
    EXPECT_EQ(Text("txtReadAddr"), row.box);
    EXPECT_EQ(BitNames(), row.bitNames);
  }
  Read("04");
  EXPECT_EQ(Digits(), "10000001");
  EXPECT_EQ(Text("lblReadOnly"), "Yes") << "an unknown address says nothing about it: B8h was the last that did";
}

TEST_F(RegisterMap, WritesTheDecimalBoxAndReadsBack) {
  struct Case {
    const char* address;
    const char* decimal;
    Traffic expected;
  };
  for (const Case& row : {
           Case{"44", "66", {W(0x44, 66), R(0x44)}}, Case{"44", "2.5 volts", {W(0x44, 2), R(0x44)}},
           Case{"44", "3.5", {W(0x44, 4), R(0x44)}}, Case{"44", "", {W(0x44, 0), R(0x44)}},
           Case{"44", "300", {W(0x44, 0xFF), R(0x44)}}, Case{"44", "-5", {W(0x44, 0), R(0x44)}},
           Case{"04", "7", {W(0x04, 7), R(0x04)}},
           Case{"3E", "9", {W(0x3E, 9), R(0x3E)}},                // read-only or not plays no part
           Case{"21", "224", {W(0x21, 0xE0), R(0x21), R(0x21)}},  // the first read renews the PWM's manual flag
           Case{"145", "1", {}},                                  // no such register: the link refuses it
       }) {
    Desk::Type(*window, "txtReadAddr", row.address);
    Desk::Type(*window, "txtDec", row.decimal);
    desk.board.TakeTraffic();
    Desk::Press(*window, "cmdWrite");
    EXPECT_EQ(desk.board.TakeTraffic(), row.expected) << row.address << " " << row.decimal;
  }
  EXPECT_TRUE(link::PwmManual[1]);
}

TEST_F(RegisterMapOnSmbus, ReadsWritesAndFlipsThere) {
  Read("31");
  ClickBit(6);
  EXPECT_THAT(desk.board.TakeTraffic(), ElementsAre("smb R 2C:31", "smb W 2C:31=80", "smb R 2C:31"));
}

TEST_F(RegisterMap, SaysWhatBecomesOfANumberBeyondAByte) {
  const auto hint = [this](const char* box) { return Desk::Get<QWidget>(*window, box).toolTip(); };
  const auto paper = [this](const char* box) {
    return Desk::Get<QWidget>(*window, box).palette().color(QPalette::Base);
  };
  const QColor plain = paper("txtDec");
  Desk::Type(*window, "txtDec", "300");
  EXPECT_TRUE(hint("txtDec").contains("255") && hint("txtHex") == hint("txtDec")) << hint("txtDec").toStdString();
  EXPECT_NE(paper("txtHex"), plain);
  Desk::Type(*window, "txtHex", "FF");
  EXPECT_EQ(hint("txtDec") + hint("txtHex"), "");
  EXPECT_EQ(paper("txtDec"), plain);
  Desk::Type(*window, "txtReadAddr", "100");
  EXPECT_TRUE(hint("txtReadAddr").contains("100h"));
  Desk::Type(*window, "txtReadAddr", "FFH");
  EXPECT_EQ(hint("txtReadAddr"), "");
}

TEST_F(RegisterMap, FlipsABitOfTheDigitsOnTheScreen) {
  desk.board.Chip()[0x30] = 0x0F;
  Read("30");
  desk.board.Chip()[0x30] = 0xF0;  // changed behind the window's back
  desk.board.TakeTraffic();
  ClickBit(7);
  EXPECT_THAT(desk.board.TakeTraffic(), ElementsAre(W(0x30, 0x8F), R(0x30)));
  ClickBit(0);
  EXPECT_THAT(desk.board.TakeTraffic(), ElementsAre(W(0x30, 0x8E), R(0x30)));
  EXPECT_EQ(Digits(), "10001110");
  Desk::Type(*window, "txtReadAddr", "34");
  ClickBit(3);
  EXPECT_THAT(desk.board.TakeTraffic(), ElementsAre(W(0x34, 0x86), R(0x34)));
  EXPECT_EQ(Text("lblRegDescription"), "Fan Mask Register");
}

TEST_F(RegisterMap, KeepsTheTwoValueBoxesInStep) {
  struct Case {
    const char* box;
    const char* typed;
    const char* other;
    const char* shown;
  };
  for (const Case& row : {
           Case{"txtHex", "ff", "txtDec", "255"},
           Case{"txtDec", "254", "txtHex", "FE"},
           Case{"txtDec", "0.5", "txtHex", "0"},
           Case{"txtDec", "1.5", "txtHex", "2"},
           Case{"txtHex", "12xyz", "txtDec", "18"},
           Case{"txtHex", "", "txtDec", "0"},
       }) {
    Desk::Type(*window, row.box, row.typed);
    EXPECT_EQ(Text(row.other), row.shown) << row.typed;
    EXPECT_EQ(Text(row.box), row.typed) << "not written back";
  }
  EXPECT_THAT(desk.board.TakeTraffic(), IsEmpty());
}

TEST_F(RegisterMap, WritesOnEnterInAValueBoxOnly) {
  Desk::Type(*window, "txtReadAddr", "44");
  Desk::Type(*window, "txtHex", "41");
  for (const char* box : {"txtHex", "txtDec"}) {
    QTest::keyClick(&Desk::Get<QWidget>(*window, box), Qt::Key_Return);
    EXPECT_THAT(desk.board.TakeTraffic(), ElementsAre(W(0x44, 0x41), R(0x44))) << box;
  }
  QTest::keyClick(&Desk::Get<QWidget>(*window, "txtReadAddr"), Qt::Key_Return);
  EXPECT_THAT(desk.board.TakeTraffic(), IsEmpty());
}

TEST_F(RegisterMap, RepeatsTheReadOnceASecondWhileTicked) {
  Read("89");
  desk.board.TakeTraffic();
  desk.Advance(3000);
  EXPECT_THAT(desk.board.TakeTraffic(), IsEmpty());
  Desk::Check(*window, "chkContRead", true);
  desk.Advance(60);
  EXPECT_THAT(desk.board.TakeTraffic(), ElementsAre(R(0x89))) << "the first at once";
  desk.Advance(1000);
  EXPECT_THAT(desk.board.TakeTraffic(), IsEmpty());
  desk.Advance(100);
  EXPECT_THAT(desk.board.TakeTraffic(), ElementsAre(R(0x89)));
  auto& box = Desk::Get<QWidget>(*window, "txtReadAddr");
  Desk::Type(*window, "txtReadAddr", "");
  QTest::keyClicks(&box, "4");
  desk.Advance(1100);
  EXPECT_THAT(desk.board.TakeTraffic(), ElementsAre(R(0x04))) << "half typed";
  QTest::keyClicks(&box, "c");
  EXPECT_EQ(Text("txtReadAddr"), "4CH") << "typing goes on where it was";
  window->Unload();
  desk.Advance(2000);
  EXPECT_THAT(desk.board.TakeTraffic(), IsEmpty());
}

}  // namespace
}  // namespace zth::testing

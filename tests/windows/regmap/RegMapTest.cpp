// Reading and writing on the register map, and its other features: search, marks, copying, bits by keyboard.
#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QKeyEvent>
#include <QLineEdit>
#include <QTest>
#include <QTreeWidget>

#include "chip/ChipState.h"
#include "chip/Measurements.h"
#include "chip/PwmModes.h"
#include "link/Declarations.h"
#include "tests/support/Steps.h"

namespace zth::testing {
namespace {

/// The register map, with the measurement cycle stopped.
class RegisterMap : public ::testing::Test {
 protected:
  RegisterMap() {
    chip::Model.PollEnabled = false;
    desk.Main().show();
  }

  QTreeWidgetItem& Node(const QString& text) const {
    return *tree.findItems(text, Qt::MatchExactly | Qt::MatchRecursive).at(0);
  }
  QWidget& At(const char* name) const { return Desk::Get<QWidget>(window, name); }
  /// The transfers of a click on a node, and on a bit.
  Traffic Click(const QString& text) {
    QTreeWidgetItem& node = Node(text);
    tree.scrollToItem(&node);
    QTest::mouseClick(tree.viewport(), Qt::LeftButton, {}, tree.visualItemRect(&node).center());
    return desk.board.TakeTraffic();
  }
  Traffic ClickBit(const char* bit) {
    desk.board.TakeTraffic();
    QTest::mouseClick(&At(bit), Qt::LeftButton);
    return desk.board.TakeTraffic();
  }
  /// The visible registers, with groups expanded.
  QStringList Found() const {
    QStringList names;
    for (QTreeWidgetItemIterator at(&tree, QTreeWidgetItemIterator::NoChildren); *at != nullptr; ++at) {
      if (tree.visualItemRect(*at).isValid() && !(*at)->isHidden()) names << (*at)->text(0);
    }
    return names;
  }
  bool Bold(const QString& text) const { return Node(text).font(0).bold(); }

  WindowDesk desk{"frmRegMap", Desk::Buses::Usb};
  windows::ChildWindow& window = *desk.window;
  QTreeWidget& tree = Desk::Get<QTreeWidget>(window, "TreeView1");
};

/// From bit 0 on.
constexpr char kDigits[] = "lblBit(0..7)";
/// What a read shows: description, address, the box of the address.
constexpr char kShown[] = "lblRegDescription lblCurrentAddr txtReadAddr";

TEST_F(RegisterMap, ShowsTheRegisterThatIsClickedOnceForEachClick) {
  Put(desk.board.Chip(), "02=A5");
  Node("Configuration").setExpanded(true);
  EXPECT_EQ(Click("Configuration 2"), T("R02"));
  EXPECT_EQ(desk.Held(kShown), "Configuration 2 Register|2h|2H");
  EXPECT_EQ(desk.Held("lblReadOnly lblDecVal lblHexVal"), "No|165|A5");
  EXPECT_EQ(desk.Held(kDigits), "1|0|1|0|0|1|0|1");
  EXPECT_EQ(desk.Held("lblInfo(0..7)"), "#FP|#FP|FFS|VB2|VB1|HF|Shdn|Fst");
  EXPECT_EQ(desk.Held("txtHex"), "") << "what the user is about to write is left alone";

  EXPECT_EQ(Click("Configuration 2"), T("R02")) << "a second click reads again";
  QTest::keyClick(&tree, Qt::Key_Down);
  EXPECT_EQ(desk.board.TakeTraffic(), T("R03")) << "as does the keyboard's move to the next";

  EXPECT_EQ(Concat(Click("Configuration"), Click("General")), Traffic{});
  EXPECT_EQ(desk.Held("lblRegDescription"), "Configuration 3 Register");
}

TEST_F(RegisterMap, ShowsTheClickedNameOfASharedAddressUntilTheNextReadByAddress) {
  tree.setCurrentItem(&Node("Pin 15 Low Limit"));
  EXPECT_EQ(desk.Held("lblRegDescription"), "Pin 15 Low Limit Register");
  EXPECT_EQ(desk.Sent("cmdRead"), T("R45"));
  EXPECT_EQ(desk.Held("lblRegDescription"), "Remote 1 Low Limit Register");
}

TEST_F(RegisterMap, ReadsAnyAddressTyped) {
  constexpr const char* kNumbers = "7|6|5|4|3|2|1|0";
  Put(desk.board.Chip(), "04=81");
  desk.Do("txtReadAddr=3F; cmdRead");
  for (const auto& [typed, read, shown, bitNames] : {
           std::tuple{"", "R00", "Configuration 0 Register|0h|0H", "SWR|6|5|4|3|2|1|0"},
           {"1e", "R1E", "Free Wheel Test En Register|1Eh|1EH", "Fn8|Fn7|Fn6|Fn5|Fn4|Fn3|Fn2|Fn1"},
           {"1Ah", "R1A", "Enhance Acoustics 1 Register|1Ah|1AH", "RR2|RR2|RR2|RR1|RR1|RR1|En2|En1"},
           {"45", "R45", "Remote 1 Low Limit Register|45h|45H", kNumbers},
           {"b8", "RB8", "Thermal Status 1,Host Register|B8h|B8H", "R3D|R2D|R1D|R3|R2|R1|Local|Res"},
           {"C2", "RC2", "Unknown|C2h|C2H", kNumbers},
           {"04", "R04", "Unknown|4h|4H", kNumbers},
       }) {
    EXPECT_EQ(desk.Sent(QString("txtReadAddr=%1; cmdRead").arg(typed)), T(read)) << typed;
    EXPECT_EQ(desk.Held(kShown), shown);
    EXPECT_EQ(desk.Held("lblInfo(0..7)"), bitNames);
  }
  EXPECT_EQ(desk.Held(kDigits), "1|0|0|0|0|0|0|1");
  EXPECT_EQ(desk.Held("lblReadOnly"), "Yes") << "an unknown address says nothing about it: B8h was the last that did";
}

TEST_F(RegisterMap, WritesTheDecimalBoxAndReadsBack) {
  for (const auto& [steps, sent] : {
           std::pair{"txtReadAddr=44; txtDec=66", "W44=42 R44"},
           {"txtDec=2.5 volts", "W44=02 R44"},
           {"txtDec=3.5", "W44=04 R44"},
           {"txtDec=", "W44=00 R44"},
           {"txtDec=300", "W44=FF R44"},
           {"txtDec=-5", "W44=00 R44"},
           {"txtReadAddr=04; txtDec=7", "W04=07 R04"},
           {"txtReadAddr=3E; txtDec=9", "W3E=09 R3E"},        // read-only makes no difference
           {"txtReadAddr=21; txtDec=224", "W21=E0 R21 R21"},  // the first read updates the PWM's manual flag
           {"txtReadAddr=145; txtDec=1", ""},                 // no such register: the link rejects it
       }) {
    desk.Do(steps);
    EXPECT_EQ(desk.Sent("cmdWrite"), T(sent)) << steps;
  }
  EXPECT_TRUE(chip::Model.PwmManual[1]);
}

TEST_F(RegisterMap, SaysWhatHappensToANumberAboveAByte) {
  const QColor plain = At("txtHex").palette().color(QPalette::Base);
  for (const auto& [steps, told, marked] : {std::tuple{"txtDec=300", "255", "txtHex txtDec"},
                                            {"txtHex=FF", "", ""},
                                            {"txtReadAddr=100", "100h", "txtReadAddr"},
                                            {"txtReadAddr=FFH", "", ""}}) {
    desk.Do(steps);
    for (const char* name : {"txtHex", "txtDec", "txtReadAddr"}) {
      const bool on = QString(marked).contains(name);
      EXPECT_EQ(At(name).palette().color(QPalette::Base) != plain, on) << steps;
      EXPECT_TRUE(!on || At(name).toolTip().contains(told)) << steps;
    }
  }
}

TEST_F(RegisterMap, FlipsABitOfTheDigitsOnTheScreen) {
  Put(desk.board.Chip(), "30=0F");
  desk.Do("txtReadAddr=30; cmdRead");
  Put(desk.board.Chip(), "30=F0");  // changed behind the window's back
  EXPECT_EQ(ClickBit("lblBit(7)"), T("W30=8F R30"));
  EXPECT_EQ(ClickBit("lblBit(0)"), T("W30=8E R30"));
  EXPECT_EQ(desk.Held(kDigits), "0|1|1|1|0|0|0|1");
  desk.Do("txtReadAddr=34");
  EXPECT_EQ(ClickBit("lblBit(3)"), T("W34=86 R34"));
  EXPECT_EQ(desk.Held("lblRegDescription"), "Fan Mask Register");
}

TEST_F(RegisterMap, KeepsTheTwoValueBoxesInStep) {
  const std::pair<const char*, const char*> rows[]{{"txtHex=ff", "ff|255"},      {"txtDec=254", "FE|254"},
                                                   {"txtDec=0.5", "0|0.5"},      {"txtDec=1.5", "2|1.5"},
                                                   {"txtHex=12xyz", "12xyz|18"}, {"txtHex=", "|0"}};
  for (const auto& [typed, shown] : rows) {
    EXPECT_EQ(desk.Sent(typed), Traffic{});
    EXPECT_EQ(desk.Held("txtHex txtDec"), shown) << "what is typed is not written back";
  }
}

TEST_F(RegisterMap, WritesOnEnterInAValueBoxOnly) {
  desk.Do("txtReadAddr=44; txtHex=41");
  for (const auto& [box, sent] : {std::pair{"txtHex", "W44=41 R44"}, {"txtDec", "W44=41 R44"}, {"txtReadAddr", ""}}) {
    QTest::keyClick(&At(box), Qt::Key_Return);
    EXPECT_EQ(desk.board.TakeTraffic(), T(sent)) << box;
  }
}

TEST_F(RegisterMap, RepeatedReadsDoNotChangeTheAddressBeingTyped) {
  QApplication::setActiveWindow(&desk.Main());
  auto& box = Desk::Get<QLineEdit>(window, "txtReadAddr");
  desk.Do("txtReadAddr=89; cmdRead; chkContRead=1");
  box.setFocus();
  box.selectAll();
  const auto tick = [this] {
    desk.board.TakeTraffic();
    desk.Advance(1100);
    return Traffic{desk.board.TakeTraffic().back()};
  };
  EXPECT_EQ(tick(), T("R89"));
  EXPECT_EQ(box.selectedText(), "89H") << "what would not change is not set anew";
  QTest::keyClicks(&box, "1");
  EXPECT_EQ(tick(), T("R01")) << "half typed";
  EXPECT_EQ(desk.Held(kShown), "Configuration 1 Register|1h|1") << "what is read is shown, but not in the box";
  QTest::keyClicks(&box, "e");
  EXPECT_EQ(tick(), T("R1E"));
  EXPECT_EQ(box.text(), "1E");
  desk.Do("cmdRead");
  EXPECT_EQ(box.text(), "1EH") << "a read that the user asks for says what it read";
  box.selectAll();
  QTest::keyClicks(&box, "2");
  EXPECT_EQ(tick(), T("R02"));
  EXPECT_EQ(box.text(), "2");
  At("cmdRead").setFocus();
  tick();
  EXPECT_EQ(box.text(), "2H") << "the typing is over";
}

TEST_F(RegisterMap, SaysInAdvanceWhatAWriteSendsAndWhere) {
  const auto tips = [this] {
    QString told = At("lblBit(7)").toolTip() + " | " + At("cmdWrite").toolTip();
    return told.replace('\n', ' ').toStdString();
  };
  constexpr const char* kFresh = " Nothing has been read yet: the digits are not this register's.";
  Put(desk.board.Chip(), "44=90");
  for (const auto& [steps, told] : {
           std::pair{"txtFind=", std::string("Writes 80h to register 00h, Configuration 0") + kFresh +
                                     " | Writes 00h to register 00h, Configuration 0"},
           {"txtReadAddr=44", std::string("Writes 80h to register 44h, Local Low Limit") + kFresh +
                                  " | Writes 00h to register 44h, Local Low Limit"},
           {"cmdRead; txtHex=41",
            "Writes 10h to register 44h, Local Low Limit | Writes 41h to register 44h, Local Low Limit"},
           {"txtReadAddr=3e",
            "Writes 10h to register 3Eh, Company ID, read only The digits were read from 44h. | "
            "Writes 41h to register 3Eh, Company ID, read only"},
           {"txtReadAddr=4; cmdRead; txtDec=900",
            "Writes 80h to register 04h, an unknown one | Writes FFh to register 04h, an unknown one"},
       }) {
    desk.Do(steps);
    EXPECT_EQ(tips(), told) << steps;
    for (const char* name : {"lblBit(7)", "cmdWrite"}) EXPECT_EQ(At(name).accessibleDescription(), At(name).toolTip());
  }
  desk.Do("txtReadAddr=30; cmdRead; txtReadAddr=31; txtDec=7");
  EXPECT_TRUE(At("lblBit(7)").toolTip().startsWith("Writes 80h to register 31h"));
  EXPECT_EQ(ClickBit("lblBit(7)"), T("W31=80 R31"));
  tree.setCurrentItem(&Node("Pin 15 Low Limit"));
  EXPECT_TRUE(At("txtHex").toolTip().endsWith("Pin 15 Low Limit")) << "as the window calls it";
  desk.Do("txtReadAddr=145");
  EXPECT_TRUE(At("cmdWrite").toolTip().contains("nothing is sent"));
}

TEST_F(RegisterMap, ShowsWhatTheControlInFocusOrUnderThePointerWrites) {
  QApplication::setActiveWindow(&desk.Main());
  const auto line = [this] {
    Desk::Settle();
    return Desk::Text(window, "lblWrites");
  };
  for (const char* name : {"lblBit(3)", "txtHex", "txtDec", "cmdWrite"}) {
    At(name).setFocus();
    EXPECT_EQ(line(), At(name).toolTip()) << name;
  }
  desk.Do("txtDec=5");
  EXPECT_EQ(line(), "Writes 05h to register 00h, Configuration 0");
  At("txtFind").setFocus();
  EXPECT_EQ(line(), "");
}

TEST_F(RegisterMap, ColoursDigitsOfAnotherRegister) {
  const auto foreign = [this] {
    const QImage bit = At("lblBit(0)").grab().toImage();
    return bit.pixelColor(bit.width() / 4, bit.height() / 2) != window.palette().color(QPalette::Base);
  };
  EXPECT_TRUE(foreign()) << "nothing has been read";
  desk.Do("txtReadAddr=30; cmdRead");
  EXPECT_FALSE(foreign());
  desk.Do("txtReadAddr=31");
  EXPECT_TRUE(foreign());
  desk.Do("txtReadAddr=30h");
  EXPECT_FALSE(foreign());
}

TEST_F(RegisterMap, SearchFindsByNameBitAndAddress) {
  constexpr const char* kLimits = "Local THERM1 Limit|1.5V2 (ICH) High Limit";
  const std::pair<const char*, const char*> rows[]{
      {"device", "Device ID"},    {"4c", kLimits},           {"0x4C", kLimits},          {" 4Ch ", kLimits},
      {"AVG", "Configuration 1"}, {"vrd", "Thermal Mask 2"}, {"SWR", "Configuration 0"}, {"Cl_r", "Configuration 3"},
      {"07", "Tach Enable"},      {"no such thing", ""}};
  for (const auto& [text, found] : rows) {
    Desk::Type(window, "txtFind", text);
    EXPECT_EQ(Found().join('|'), found) << text;
    EXPECT_EQ(At("lblNoMatch").isHidden(), *found != 0) << text;
  }
  Desk::Type(window, "txtFind", "bhvr");
  EXPECT_TRUE(Found().contains("GPIO1_Bhvr") && Found().contains("PWM3 Config")) << "by name and by bit";
  QTest::keyClick(&At("txtFind"), Qt::Key_Escape);
  EXPECT_EQ(Desk::Text(window, "txtFind"), "");
  EXPECT_FALSE(Node("Device ID").isHidden());
  EXPECT_EQ(desk.board.TakeTraffic(), Traffic{}) << "searching reads nothing";
}

TEST_F(RegisterMap, BoldMarksWhatDiffersFromItsDefaultOnceRead) {
  desk.board.Chip()[0x45] = 0x41;
  EXPECT_FALSE(Bold("Remote 1 Low Limit")) << "not read yet";
  tree.setCurrentItem(&Node("Pin 15 Low Limit"));
  EXPECT_TRUE(Bold("Remote 1 Low Limit") && Bold("Pin 15 Low Limit")) << "one register under two names";
  desk.Do("txtReadAddr=45; txtDec=64; cmdWrite");
  EXPECT_FALSE(Bold("Remote 1 Low Limit") || Bold("Pin 15 Low Limit"));
}

TEST_F(RegisterMap, CopiesARowOrAGroupAsText) {
  auto& copy = *tree.findChild<QAction*>("actCopy");
  tree.setCurrentItem(&Node("Company ID"));
  copy.trigger();
  EXPECT_EQ(desk.clipboard.text, "Company ID\t3Eh\t41h\t41h\tYes\t7:6:5:4:3:2:1:0");
  tree.setCurrentItem(&Node("ID/Revision"));
  copy.trigger();
  EXPECT_EQ(desk.clipboard.text,
            "Device ID\t3Dh\t\t62h\tYes\t7:6:5:4:3:2:1:0\nCompany ID\t3Eh\t41h\t41h\tYes\t7:6:5:4:3:2:1:0\n"
            "Revision Number\t3Fh\t\t0h\tYes\t7:6:5:4:3:2:1:0");
}

TEST_F(RegisterMap, KeysFlipABitOnceHoweverLongTheyAreHeld) {
  Desk::Type(window, "txtReadAddr", "30");
  auto& bit = At("lblBit(2)");
  QTest::keyClick(&bit, Qt::Key_Space);
  EXPECT_EQ(desk.board.TakeTraffic(), T("W30=04 R30"));
  QKeyEvent repeated(QEvent::KeyPress, Qt::Key_Space, Qt::NoModifier, " ", true);
  QApplication::sendEvent(&bit, &repeated);
  EXPECT_EQ(desk.board.TakeTraffic(), Traffic{});
}

}  // namespace
}  // namespace zth::testing

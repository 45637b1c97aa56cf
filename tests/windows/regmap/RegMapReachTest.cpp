// What the register map offers beside reading and writing: search, marks, copies, bits by key.
#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QKeyEvent>
#include <QLineEdit>
#include <gmock/gmock.h>

#include "tests/windows/regmap/RegMapDesk.h"

namespace zth::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class ReachOfTheRegisterMap : public RegisterMap {
 protected:
  ReachOfTheRegisterMap() { desk.Main().show(); }

  /// The registers that can be seen, groups unfolded.
  QStringList Found() const {
    QStringList names;
    for (QTreeWidgetItemIterator at(&Tree(), QTreeWidgetItemIterator::NoChildren); *at != nullptr; ++at) {
      if (Tree().visualItemRect(*at).isValid() && !(*at)->isHidden()) names << (*at)->text(0);
    }
    return names;
  }
  bool Bold(const QString& text) const { return Node(text).font(0).bold(); }

  QWidget* window = desk.window;
};

TEST_F(ReachOfTheRegisterMap, SearchFindsByNameBitAndAddress) {
  constexpr const char* kLimits = "Local THERM1 Limit|1.5V2 (ICH) High Limit";
  const std::pair<const char*, const char*> rows[]{
      {"device", "Device ID"},    {"4c", kLimits},           {"0x4C", kLimits},          {" 4Ch ", kLimits},
      {"AVG", "Configuration 1"}, {"vrd", "Thermal Mask 2"}, {"SWR", "Configuration 0"}, {"Cl_r", "Configuration 3"},
      {"07", "Tach Enable"},      {"no such thing", ""}};
  for (const auto& [text, found] : rows) {
    Desk::Type(*window, "txtFind", text);
    EXPECT_EQ(Found().join('|'), found) << text;
    EXPECT_EQ(Desk::Get<QWidget>(*window, "lblNoMatch").isHidden(), *found != 0) << text;
  }
  Desk::Type(*window, "txtFind", "bhvr");
  EXPECT_TRUE(Found().contains("GPIO1_Bhvr") && Found().contains("PWM3 Config")) << "by name and by bit";
  QTest::keyClick(&Desk::Get<QWidget>(*window, "txtFind"), Qt::Key_Escape);
  EXPECT_EQ(Desk::Text(*window, "txtFind"), "");
  EXPECT_FALSE(Node("Device ID").isHidden());
  EXPECT_THAT(desk.board.TakeTraffic(), IsEmpty()) << "searching reads nothing";
}

TEST_F(ReachOfTheRegisterMap, BoldMarksWhatDiffersFromItsDefaultOnceRead) {
  desk.board.Chip()[0x45] = 0x41;
  EXPECT_FALSE(Bold("Remote 1 Low Limit")) << "not read yet";
  Tree().setCurrentItem(&Node("Pin 15 Low Limit"));
  EXPECT_TRUE(Bold("Remote 1 Low Limit") && Bold("Pin 15 Low Limit")) << "one register under two names";
  desk.Do("txtReadAddr=45; txtDec=64; cmdWrite");
  EXPECT_FALSE(Bold("Remote 1 Low Limit") || Bold("Pin 15 Low Limit"));
}

TEST_F(ReachOfTheRegisterMap, CopiesARowOrAGroupAsText) {
  auto& copy = *Tree().findChild<QAction*>("actCopy");
  Tree().setCurrentItem(&Node("Company ID"));
  copy.trigger();
  EXPECT_EQ(QApplication::clipboard()->text(), "Company ID\t3Eh\t41h\t41h\tYes\t7:6:5:4:3:2:1:0");
  Tree().setCurrentItem(&Node("ID/Revision"));
  copy.trigger();
  EXPECT_EQ(QApplication::clipboard()->text(),
            "Device ID\t3Dh\t\t62h\tYes\t7:6:5:4:3:2:1:0\nCompany ID\t3Eh\t41h\t41h\tYes\t7:6:5:4:3:2:1:0\n"
            "Revision Number\t3Fh\t\t0h\tYes\t7:6:5:4:3:2:1:0");
}

TEST_F(ReachOfTheRegisterMap, KeysFlipABitOnceHoweverLongTheyAreHeld) {
  Desk::Type(*window, "txtReadAddr", "30");
  auto& bit = Desk::Get<QWidget>(*window, "lblBit(2)");
  QTest::keyClick(&bit, Qt::Key_Space);
  EXPECT_THAT(desk.board.TakeTraffic(), ElementsAre(W(0x30, 0x04), R(0x30)));
  QKeyEvent repeated(QEvent::KeyPress, Qt::Key_Space, Qt::NoModifier, " ", true);
  QApplication::sendEvent(&bit, &repeated);
  EXPECT_THAT(desk.board.TakeTraffic(), IsEmpty());
}

}  // namespace
}  // namespace zth::testing

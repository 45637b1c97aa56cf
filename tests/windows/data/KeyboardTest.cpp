#include <set>
#include <string>
#include <vector>

#include <QAbstractButton>
#include <QAccessible>
#include <QKeySequence>
#include <QLabel>
#include <QTest>

#include "tests/windows/data/DataGround.h"

namespace zth::testing {
namespace {

class DataByKeyboard : public DataTest {
 protected:
  /// Names of the controls that Tab reaches, in its order.
  std::vector<std::string> Reached(windows::ChildWindow& window) {
    desk.Main().show();
    Desk::Settle();
    std::vector<std::string> names;
    for (QWidget* next = window.nextInFocusChain(); next != &window; next = next->nextInFocusChain()) {
      const bool here = window.isAncestorOf(next) && next->isVisibleTo(&window) && next->isEnabled();
      if (here && (next->focusPolicy() & Qt::TabFocus) != 0 && !next->objectName().isEmpty()) {
        names.push_back(next->objectName().toStdString());
      }
    }
    return names;
  }
};

TEST_F(DataByKeyboard, TabGoesInReadingOrder) {
  std::vector<std::string> logging;
  for (const auto& [first, last] : {std::pair{0, 3}, {39, 44}, {4, 15}, {16, 38}}) {
    for (int i = first; i <= last; ++i) logging.push_back("chkLog(" + std::to_string(i) + ")");
  }
  for (const char* name : {"txtLogInt", "cmdSelectAll", "cmdDeselectAll", "cmdLogData", "cmdClose"}) {
    logging.emplace_back(name);
  }
  EXPECT_EQ(Reached(desk.Open("frmLogging")), logging);
  EXPECT_EQ(Reached(desk.Open("frmSave")),
            (std::vector<std::string>{"cmdsave", "cmdRecall", "chkNotDefaults", "txtComment", "cmdClose"}));
  EXPECT_EQ(Reached(desk.Open("frmGraph")), (std::vector<std::string>{"cmbGraph", "txtUpdate", "stpGraph(3)"}));
}

TEST_F(DataByKeyboard, EachControlHasANameAndMnemonicsDoNotClash) {
  for (const char* name : {"frmLogging", "frmSave", "frmGraph"}) {
    windows::ChildWindow& window = desk.Open(name);
    std::set<QString> taken{"Alt+F", "Alt+V", "Alt+C", "Alt+O", "Alt+H", "Alt+W", "Alt+A"};  // of the menus
    for (const QWidget* widget : window.findChildren<QWidget*>()) {
      const auto* label = qobject_cast<const QLabel*>(widget);
      const auto* button = qobject_cast<const QAbstractButton*>(widget);
      QString key;
      if (label != nullptr && label->buddy() != nullptr) key = QKeySequence::mnemonic(label->text()).toString();
      if (button != nullptr) key = QKeySequence::mnemonic(button->text()).toString();
      EXPECT_TRUE(key.isEmpty() || taken.insert(key).second) << key.toStdString() << " in " << name;
    }
    for (const std::string& control : Reached(window)) {
      QAccessibleInterface* access =
          QAccessible::queryAccessibleInterface(window.findChild<QWidget*>(QString::fromStdString(control)));
      ASSERT_NE(access, nullptr) << control;
      EXPECT_FALSE(access->text(QAccessible::Name).isEmpty()) << control;
    }
  }
}

TEST_F(DataByKeyboard, EnterStartsTheLogAndEscapeCloses) {
  windows::ChildWindow& window = Logging();
  Desk::Check(window, "chkLog(0)", true);
  desk.fileDialogs.script.push_back(Path("a.csv"));
  QTest::keyClick(&window, Qt::Key_Return);
  EXPECT_EQ(Status(), "Logging Enabled");
  QTest::keyClick(&window, Qt::Key_Escape);
  QTest::keyClick(&desk.Open("frmSave"), Qt::Key_Escape);
  Desk::Settle();
  EXPECT_EQ(desk.Main().FindWindow("frmLogging"), nullptr);
  EXPECT_EQ(desk.Main().FindWindow("frmSave"), nullptr);
}

}  // namespace
}  // namespace zth::testing

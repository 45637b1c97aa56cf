// Enter presses the default button of a window whose values wait for it, and nothing in a window that writes at once:
// on every desktop, even on those where Enter presses the check box or opens the list that has the focus.
#include <QCheckBox>
#include <QPushButton>

#include "tests/hand/HandGround.h"
#include "windows/SharedState.h"

namespace zth::testing {
namespace {

/// The button that Enter presses; none if Enter only selects the text of a box.
const std::map<std::string, const char*> kDefaults{
    {"frmAbout", "cmdOK"},     {"frmEDO", "cmdOK"},   {"frmEasySetup", "cmdApply"}, {"frmFanConfig", "cmdOK"},
    {"frmGenConfig", "cmdOK"}, {"frmTherm", "cmdOK"}, {"frmVoltConfig", "cmdOK"},   {"frmSwitches", "cmbApply"}};

/// Windows in whose boxes Enter selects.
const std::set<std::string> kSelecting{"frmAutoGraph", "frmDynamicTmin", "frmLogging"};

/// In these controls Enter has its own meaning.
bool TakesEnter(const QWidget& control) {
  return qobject_cast<const QPushButton*>(&control) != nullptr || control.inherits("zth::windows::BitLabel") ||
         control.inherits("zth::shell::WebLink") || control.inherits("zth::widgets::Strip");
}

class Enter : public Hand {
 protected:
  /// The effect of a key or of the button: what is sent, and whether the window stays open.
  using Effect = std::pair<Traffic, bool>;
  Effect Took() {
    Traffic sent = desk.board.TakeTraffic();
    return {std::move(sent), IsOpen(GetParam())};
  }
};

TEST_P(Enter, PressesTheDefaultButtonOrNothing) {
  const auto button = kDefaults.find(GetParam());
  Effect expected{{}, true};
  if (button != kDefaults.end()) {
    Desk::Press(Open(GetParam()), button->second);
    expected = Took();
  }
  WithEachKindOfControl(GetParam(), [&](windows::ChildWindow& window, QWidget& control, const std::string& where) {
    if (TakesEnter(control) || control.objectName() == "txtHex") return;
    const std::string before = Holding(window);
    if (auto* box = qobject_cast<QLineEdit*>(&control)) box->deselect();
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter}) {
      QTest::keyClick(&control, key);
      EXPECT_EQ(Took(), expected) << where;
      if (!IsOpen(GetParam())) return;
    }
    EXPECT_EQ(Holding(window), before) << where;
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr) << where;
    if (const auto* box = qobject_cast<QLineEdit*>(&control)) {
      EXPECT_EQ(box->hasSelectedText(), kSelecting.contains(GetParam()) && !box->text().isEmpty()) << where;
    }
  });
}

TEST_P(Enter, HeldDownPressesNothing) {
  windows::ChildWindow& window = Open(GetParam());
  QKeyEvent held(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, {}, true);
  QApplication::sendEvent(&window, &held);
  EXPECT_EQ(Took(), (Effect{{}, true}));
}

INSTANTIATE_TEST_SUITE_P(Windows, Enter, ::testing::ValuesIn(EveryWindow()), WindowOf);

class EnterAnywhere : public Hand {};

TEST_F(EnterAnywhere, OnAPushButtonPressesThatButton) {
  windows::ChildWindow& window = Open("frmFanConfig");
  auto& cancel = Desk::Get<QPushButton>(window, "cmdCancel");
  cancel.setFocus();
  QTest::keyClick(&cancel, Qt::Key_Return);
  EXPECT_FALSE(IsOpen("frmFanConfig"));
  EXPECT_EQ(desk.board.TakeTraffic(), Traffic{});
}

TEST_F(EnterAnywhere, LeavesALogRunning) {
  windows::ChildWindow& window = Open("frmLogging");
  for (const bool active : {false, true}) {
    windows::Shared.LogActive = active;
    for (const char* control : {"txtLogInt", "chkLog(0)"}) {
      auto& at = Desk::Get<QWidget>(window, control);
      at.setFocus();
      QTest::keyClick(&at, Qt::Key_Return);
      EXPECT_EQ(windows::Shared.LogActive, active) << control;
    }
  }
  windows::Shared.LogActive = false;
  EXPECT_TRUE(desk.fileDialogs.shown.empty());
}

TEST_F(EnterAnywhere, IsTestedOnTheRequestedTheme) {
  QCheckBox bare;
  bare.show();
  QTest::keyClick(&bare, Qt::Key_Return);
  EXPECT_EQ(bare.isChecked(), qgetenv("QT_QPA_PLATFORMTHEME") == "gnome");
}

}  // namespace
}  // namespace zth::testing

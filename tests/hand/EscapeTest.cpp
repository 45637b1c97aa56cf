// The keys that close a window, in every window.
#include <QAbstractItemView>
#include <QMdiSubWindow>

#include "tests/hand/HandGround.h"

namespace zth::testing {
namespace {

class Escape : public Hand {};

TEST_P(Escape, AndTheOtherClosingKeysWorkFromEveryKindOfControl) {
  for (const QKeySequence& keys : {QKeySequence("Esc"), QKeySequence("Ctrl+W"), QKeySequence("Ctrl+F4")}) {
    const QKeyCombination key = keys[0];
    const auto press = [&](QWidget& at, const std::string& where) {
      QTest::keyClick(&at, key.key(), key.keyboardModifiers());
      EXPECT_EQ(desk.board.TakeTraffic(), Traffic{}) << where;
      EXPECT_FALSE(IsOpen(GetParam())) << where << " " << keys.toString().toStdString();
    };
    WithEachKindOfControl(
        GetParam(), [&](windows::ChildWindow&, QWidget& control, const std::string& where) { press(control, where); });
    // A click between the controls leaves the focus to the frame.
    auto* frame = Open(GetParam()).parentWidget();
    frame->setFocus();
    press(*frame, GetParam() + ", its frame");
  }
}

INSTANTIATE_TEST_SUITE_P(Windows, Escape, ::testing::ValuesIn(EveryWindow()), WindowOf);

class EscapeFirst : public Hand {};

TEST_F(EscapeFirst, CancelsWhatIsInProgress) {
  const auto escape = [this](const std::string& window, QWidget& at) {
    QTest::keyClick(&at, Qt::Key_Escape);
    return IsOpen(window);
  };
  {
    auto& search = Desk::Get<QLineEdit>(Open("frmRegMap"), "txtFind");
    search.setText("THERM");
    EXPECT_TRUE(escape("frmRegMap", search));
    EXPECT_EQ(search.text(), "");
    EXPECT_FALSE(escape("frmRegMap", search));
  }
  {
    auto& list = Desk::Get<QComboBox>(Open("frmGPIO"), "cmbDir(0)");
    list.setFocus();
    list.showPopup();
    EXPECT_TRUE(escape("frmGPIO", *list.view()));
    EXPECT_FALSE(list.view()->isVisible());
    EXPECT_FALSE(escape("frmGPIO", list));
  }
  {
    auto& slider = Desk::Get<widgets::GSlider>(Open("frmManualControl"), "sldManual(0)");
    QTest::mousePress(&slider, Qt::LeftButton, {}, slider.rect().center());
    EXPECT_TRUE(escape("frmManualControl", slider));
    EXPECT_FALSE(slider.Held());
    EXPECT_FALSE(escape("frmManualControl", slider));
  }
  {
    auto& gauge = Desk::Get<widgets::LGauge>(Open("frmLimits"), "ggeTemp");
    const double before = gauge.SliderValue(0);
    QTest::keyPress(&gauge, Qt::Key_Up);
    EXPECT_NE(gauge.SliderValue(0), before);
    EXPECT_TRUE(escape("frmLimits", gauge));
    EXPECT_EQ(gauge.SliderValue(0), before);
    EXPECT_FALSE(escape("frmLimits", gauge));
  }
  EXPECT_EQ(Writes(desk.board.TakeTraffic()), Traffic{});
}

TEST_F(EscapeFirst, HeldDownClosesOneWindowOnly) {
  Open("frmSwitches");
  windows::ChildWindow& window = Open("frmSave");
  QKeyEvent held(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier, {}, true);
  QApplication::sendEvent(&window, &held);
  EXPECT_TRUE(IsOpen("frmSave"));
}

}  // namespace
}  // namespace zth::testing

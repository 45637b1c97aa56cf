#include <QLabel>
#include <QTest>

#include "chip/ChipState.h"
#include "chip/Measurements.h"
#include "link/Declarations.h"
#include "link/USBStuff.h"
#include "tests/support/Steps.h"
#include "widgets/GSlider.h"
#include "windows/SharedState.h"

namespace zth::testing {
namespace {

/// PWM2 and PWM4 are manual; the measured duties are 20, 40, 60 and 80 percent.
void PutPwms(Desk& desk) {
  Put(desk.board.Chip(), "AA=33 AB=66 AC=99 AD=CC");
  for (int pwm = 0; pwm < 4; ++pwm) {
    link::WriteRegisterValue(link::Bus.DeviceAddress, 0x21 + pwm, pwm % 2 == 1 ? 0xE5 : 0x25);
  }
  desk.Advance(1000);
  desk.board.TakeTraffic();
}

class ManualControl : public ::testing::Test {
 protected:
  widgets::GSlider& Slider(int pwm) const {
    return Desk::Get<widgets::GSlider>(*desk.window, QString("sldManual(%1)").arg(pwm));
  }

  WindowDesk desk{"frmManualControl", Desk::Buses::Both, PutPwms};
};

TEST_F(ManualControl, ShowsWhatTheMonitorKnows) {
  EXPECT_EQ(desk.Held("sldManual(0..3)"), "20|40|60|80");
  EXPECT_EQ(desk.Held("lblManual(0..3)"), "Disabled|Enabled|Disabled|Enabled");
  for (int pwm = 0; pwm < 4; ++pwm) {
    const auto& label = Desk::Get<QLabel>(*desk.window, QString("lblManual(%1)").arg(pwm));
    const bool manual = pwm % 2 == 1;
    EXPECT_EQ(label.palette().color(QPalette::WindowText), manual ? QColor(0, 127, 0) : QColor(255, 0, 0));
    EXPECT_EQ(Slider(pwm).isEnabled(), manual);
  }
}

TEST_F(ManualControl, FollowsTheChipOnceASecondUnlessAnySliderIsHeld) {
  Put(desk.board.Chip(), "AA=FF");
  desk.Advance(2000);
  EXPECT_EQ(desk.Held("sldManual(0)"), "100");

  Slider(3).MouseDown();
  EXPECT_TRUE(windows::Shared.ManualSliderHeld);
  Put(desk.board.Chip(), "AA=00");
  link::WriteRegisterValue(link::Bus.DeviceAddress, 0x21, 0xE0);
  desk.Advance(2500);
  EXPECT_EQ(desk.Held("sldManual(0) lblManual(0)"), "100|Enabled") << "no slider moves, the labels go on";
  Slider(3).MouseUp();
  desk.Advance(2000);
  EXPECT_EQ(desk.Held("sldManual(0)"), "0");
}

TEST_F(ManualControl, WritesTheDutyOfTheSliderThatMoves) {
  const std::pair<const char*, const char*> rows[]{{"10", "WAB=1A"}, {"30", "WAB=4C"}, {"50", "WAB=7F"},
                                                   {"70", "WAB=B2"}, {"90", "WAB=E5"}, {"100", "WAB=FF"},
                                                   {"0", "WAB=00"}};
  for (const auto& [percent, transfer] : rows) {
    EXPECT_EQ(desk.Sent(QString("sldManual(1)=%1").arg(percent)), T(transfer)) << percent;
  }
  EXPECT_EQ(desk.Sent("sldManual(1)=50; sldManual(3)=100"), T("WAB=7F WAD=FF"));
  EXPECT_EQ(desk.Sent("sldManual(0)=70"), Traffic{}) << "not manual, not the user's to move";

  QTest::keyClick(&Slider(1), Qt::Key_Right);
  EXPECT_EQ(desk.board.TakeTraffic(), T("WAB=82"));
  EXPECT_FALSE(windows::Shared.ManualSliderHeld);
}

TEST_F(ManualControl, NoKeyStepIsLostToAnOlderDuty) {
  // Across every refresh and at every distance from it and from the reading of the duty, as with a held key.
  Slider(1).SetValue(20);
  link::WriteRegisterValue(link::Bus.DeviceAddress, 0xAB, 51);
  desk.Advance(3000);
  desk.board.TakeTraffic();
  for (int step = 1; step <= 40; ++step) {
    QTest::keyClick(&Slider(1), Qt::Key_Right);
    EXPECT_EQ(desk.Held("sldManual(1)"), std::to_string(20 + step));
    desk.Advance(50 + 30 * (step % 8));
  }
  EXPECT_EQ(desk.board.Chip()[0xAB], 153);
  desk.Advance(2000);
  EXPECT_EQ(desk.Held("sldManual(1)"), "60");
}

TEST_F(ManualControl, FollowsTheChipAgainOnceTheDutyWasMeasured) {
  desk.Do("sldManual(1)=70; sldManual(3)=5");
  chip::Model.PollEnabled = false;
  Put(desk.board.Chip(), "AA=00 AB=0D AD=0D");
  chip::Model.Measurements.PwmPercent = {0, 5, 5, 5};
  desk.Advance(2500);
  EXPECT_EQ(desk.Held("sldManual(0..3)"), "0|70|5|5") << "not measured since: the others follow, the written wait";
  // No longer manual meanwhile: here, too, the value shown is not older than its write.
  link::WriteRegisterValue(link::Bus.DeviceAddress, 0x22, 0x25);
  desk.Advance(1100);
  EXPECT_EQ(desk.Held("sldManual(1) lblManual(1)"), "70|Disabled");
  chip::Model.PollEnabled = true;
  desk.Advance(2500);
  EXPECT_EQ(desk.Held("sldManual(0..3)"), "0|5|60|5");
}

TEST_F(ManualControl, AWindowClosedUnderAHeldSliderReleasesIt) {
  Slider(2).MouseDown();
  desk.window->Unload();
  EXPECT_FALSE(windows::Shared.ManualSliderHeld);
}

}  // namespace
}  // namespace zth::testing

#include <QLabel>
#include <QTest>
#include <gtest/gtest.h>

#include "chip/Conversions.h"
#include "link/Declarations.h"
#include "link/USBStuff.h"
#include "tests/support/Desk.h"
#include "widgets/GSlider.h"
#include "windows/SharedState.h"

namespace zth::testing {
namespace {

widgets::GSlider& Slider(const QWidget& window, int pwm) {
  return Desk::Get<widgets::GSlider>(window, QString("sldManual(%1)").arg(pwm));
}

/// PWM2 and PWM4 are manual; the measured duties are 20, 40, 60 and 80 percent.
void PutPwms(Desk& desk) {
  auto& chip = desk.board.Chip();
  for (int pwm = 0; pwm < 4; ++pwm) {
    chip[static_cast<std::size_t>(0xAA + pwm)] = static_cast<std::uint8_t>(51 * (pwm + 1));
    link::WriteRegisterValue(link::DeviceAddress, 0x21 + pwm, pwm % 2 == 1 ? 0xE5 : 0x25);
  }
  desk.Advance(1000);
  desk.board.TakeTraffic();
}

std::vector<double> Shown(const QWidget& window) {
  std::vector<double> values;
  for (int pwm = 0; pwm < 4; ++pwm) values.push_back(Slider(window, pwm).Value());
  return values;
}

TEST(ManualControl, ShowsWhatTheMonitorKnowsWithoutATransfer) {
  Desk desk;
  desk.Start();
  PutPwms(desk);
  auto& window = desk.Open("frmManualControl");
  EXPECT_EQ(desk.board.TakeTraffic(), Traffic{});
  EXPECT_EQ(Shown(window), (std::vector<double>{20, 40, 60, 80}));
  for (int pwm = 0; pwm < 4; ++pwm) {
    auto& label = Desk::Get<QLabel>(window, QString("lblManual(%1)").arg(pwm));
    const bool manual = pwm % 2 == 1;
    EXPECT_EQ(label.text(), manual ? "Enabled" : "Disabled");
    EXPECT_EQ(label.palette().color(QPalette::WindowText), manual ? QColor(0, 127, 0) : QColor(255, 0, 0));
    EXPECT_EQ(Slider(window, pwm).isEnabled(), manual);
  }
}

TEST(ManualControl, FollowsTheChipOnceASecondUnlessAnySliderIsHeld) {
  Desk desk;
  desk.Start();
  PutPwms(desk);
  auto& window = desk.Open("frmManualControl");
  desk.board.Chip()[0xAA] = 255;
  desk.Advance(2000);
  EXPECT_EQ(Slider(window, 0).Value(), 100);

  Slider(window, 3).MouseDown();
  EXPECT_TRUE(windows::ManualSliderHeld);
  desk.board.Chip()[0xAA] = 0;
  link::WriteRegisterValue(link::DeviceAddress, 0x21, 0xE0);
  desk.Advance(2500);
  EXPECT_EQ(Slider(window, 0).Value(), 100) << "no slider moves";
  EXPECT_EQ(Desk::Text(window, "lblManual(0)"), "Enabled") << "the labels go on";
  Slider(window, 3).MouseUp();
  desk.Advance(2000);
  EXPECT_EQ(Slider(window, 0).Value(), 0);
}

TEST(ManualControl, WritesTheDutyOfTheSliderThatMoves) {
  Desk desk;
  desk.Start();
  PutPwms(desk);
  auto& window = desk.Open("frmManualControl");
  Slider(window, 1).StepByUser(50);
  Slider(window, 3).StepByUser(100);
  EXPECT_EQ(desk.board.TakeTraffic(), Concat(W(0xAB, 127), W(0xAD, 255)));
  Slider(window, 0).StepByUser(70);
  EXPECT_EQ(desk.board.TakeTraffic(), Traffic{}) << "not manual, not the user's to move";

  // By keyboard alone, on either link the same.
  window.activateWindow();
  Slider(window, 1).setFocus();
  QTest::keyClick(&Slider(window, 1), Qt::Key_Right);
  EXPECT_EQ(desk.board.TakeTraffic(), Concat(W(0xAB, 130)));
  EXPECT_FALSE(windows::ManualSliderHeld);
  QTest::keyClick(&Slider(window, 1), Qt::Key_Escape);
  EXPECT_FALSE(windows::ManualOpen);
  EXPECT_EQ(desk.board.TakeTraffic(), Traffic{});
}

TEST(ManualControl, AWindowClosedUnderAHeldSliderLetsGoOfIt) {
  Desk desk(Desk::Buses::Smbus);
  desk.Start();
  auto& window = desk.Open("frmManualControl");
  Slider(window, 2).MouseDown();
  window.Unload();
  EXPECT_FALSE(windows::ManualSliderHeld);
}

TEST(ManualControl, RoundsTheProductOfItsSliders) {
  const std::vector<std::pair<double, int>> sliders{{0, 0},    {10, 26},  {30, 76},  {50, 127},
                                                    {70, 178}, {90, 229}, {100, 255}};
  for (const auto& [percent, byte] : sliders) EXPECT_EQ(chip::ByteFromPercent(percent), byte) << percent;
}

}  // namespace
}  // namespace zth::testing

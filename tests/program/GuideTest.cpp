#include <QApplication>
#include <QTest>

#include "chip/ChipState.h"
#include "chip/Measurements.h"
#include "tests/support/SimulatedDesk.h"

namespace zth::testing {
namespace {

/// What a new user sees: the guide's first ten minutes, with its keys and its figures.
TEST(Guide, FirstTenMinutesByKeyboardGiveItsFigures) {
  SimulatedDesk board;
  Desk& desk = board.desk;
  desk.settings.values.erase("OpenEasySetup");
  ASSERT_EQ(desk.RunMain(), std::nullopt);
  QApplication::setActiveWindow(&desk.Main());
  const auto press = [&desk](const char* keys) {
    Desk::Settle();
    QWidget* focus = QApplication::focusWidget();
    QTest::keySequence(focus != nullptr ? focus : &desk.Main(), QKeySequence(keys));
    Desk::Settle();
  };
  const auto type = [](const char* text) { QTest::keyClicks(QApplication::focusWidget(), text); };
  const auto expect = [](double remote1, int percent, int rpm) {
    const chip::MeasurementSet& now = chip::Model.Measurements;
    EXPECT_NEAR(now.Temperature[1], remote1, 0.5);
    EXPECT_NEAR(now.PwmPercent[1], percent, 1);
    EXPECT_NEAR(now.TachRpm[1], rpm, 0.03 * rpm);
  };

  desk.Advance(1000);
  expect(37, 75, 0);
  press("Return");
  EXPECT_NE(desk.Main().FindWindow("frmGraph"), nullptr);
  desk.Advance(60000);
  expect(30, 100, 3325);
  constexpr std::array kRpm{3320, 3325, 3130, 3160};
  for (std::size_t fan = 0; fan < kRpm.size(); ++fan) {
    EXPECT_NEAR(chip::Model.Measurements.TachRpm[fan], kRpm[fan], 40) << fan;
    EXPECT_NEAR(chip::Model.Measurements.Temperature[fan], 30, 2) << fan;
  }
  EXPECT_NEAR(chip::Model.Measurements.Voltage[18], 3.3F, 0.1F);

  press("Ctrl+Shift+A");
  for (int i = 0; i < 3; ++i) press("Tab");
  press("Right");
  press("Alt+M");
  type("30");
  press("Alt+D");
  type("30");
  press("Alt+G");
  type("20");
  desk.Advance(30000);
  expect(31, 34, 1340);
  press("Escape");

  press("Ctrl+Shift+H");
  press("Alt+1");
  press("End");
  desk.Advance(10000);
  expect(41, 63, 2160);
  desk.Advance(110000);
  expect(48, 87, 2950);
  press("Home");
  desk.Advance(120000);
  expect(31.25, 34, 1340);
}

}  // namespace
}  // namespace zth::testing

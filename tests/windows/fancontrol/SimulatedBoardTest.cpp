#include <cmath>

#include "tests/support/Seen.h"
#include "tests/support/SimulatedDesk.h"
#include "tests/support/Steps.h"

namespace zth::testing {
namespace {

class SimulatedBoard : public ::testing::Test {
 protected:
  SimulatedBoard() { desk.Start(); }

  SimulatedDesk sim;
  Desk& desk = sim.desk;
};

/// The duty of a drawn path at a temperature, above its step.
double DutyOnPath(const Points& path, double degrees) {
  for (std::size_t i = 1; i < path.size(); ++i) {
    const auto& [x0, y0] = path[i - 1];
    const auto& [x1, y1] = path[i];
    if (x0 < x1 && x0 <= degrees && degrees <= x1) return y0 + (y1 - y0) * (degrees - x0) / (x1 - x0);
  }
  return NAN;
}

TEST_F(SimulatedBoard, TheDotClimbsTheDrawnCurveWhileTheHeaterHeats) {
  const QWidget& curve = desk.Open("frmAutoGraph");
  // Over 40 degrees.
  Do(curve, "cmbControl(0)=2; cmbControl(1..3)=4; txtMaxPWM=100; txtMinPWM(0)=20; txtTmin(2)=40; cmbTrange(2)=13");
  const QWidget& heaters = desk.Open("frmHeaters");
  const auto& chart = Desk::Get<widgets::Strip>(curve, "stpGraph");
  int onRamp = 0;
  double hottest = 0;
  for (int percent = 0; percent <= 100; percent += 10) {
    Do(heaters, QString("sldHeater(1)=%1").arg(percent));
    desk.Advance(60000);
    const Points dots = PointsOf(chart, 4);
    ASSERT_EQ(dots.size(), 2U) << percent;
    const auto [degrees, duty] = dots[0];
    EXPECT_GT(degrees, hottest - 0.5) << percent;
    hottest = std::max(hottest, degrees);
    if (degrees <= 40.5) continue;
    ++onRamp;
    EXPECT_NEAR(duty, DutyOnPath(PointsOf(chart, 0), degrees), 1.0) << percent << " percent, " << degrees;
  }
  EXPECT_GE(onRamp, 5);
}

TEST_F(SimulatedBoard, DynamicTminMovesTminAndTheChartsShowIt) {
  const QWidget& curve = desk.Open("frmAutoGraph");
  Do(curve, "cmbControl(0..3)=2");
  const QWidget& window = desk.Open("frmDynamicTmin");
  Do(window, "txtTmin(1)=60; txtLowLim(1)=30; txtHighLim(1)=80; txtR2OpPoint=45; txtOpPointHyst=2; chkEnDynR2=1");
  Do(desk.Open("frmHeaters"), "sldHeater(1)=60");
  desk.Advance(240000);
  const int tmin = sim.Register(0x5E) - 64;
  EXPECT_LT(tmin, 60) << "too hot, so the chip starts its fans earlier";
  EXPECT_EQ(PointsOf(Desk::Get<widgets::Strip>(window, "Strip2(1)"), 2).back().second, tmin);
  EXPECT_EQ(PointsOf(Desk::Get<widgets::Strip>(curve, "stpGraph"), 0)[1].first, tmin);
  EXPECT_EQ(Desk::Text(window, "txtTmin(1)"), "60");
}

TEST_F(SimulatedBoard, TheDemoBringsItsTherm2EventOnce) {
  const QWidget& window = desk.Open("frmDynamicTmin");
  Do(window, "cmdDemo");
  EXPECT_EQ(sim.Register(0x5B), 0x95);
  sim.requests.clear();
  Do(desk.Open("frmHeaters"), "sldHeater(1)=100");
  desk.Advance(120000);
  EXPECT_EQ((sim.requests[{0xDE, 0, 0x52}]), 2) << "down and up again, once";
  EXPECT_EQ(sim.Register(0x52), 0x9A);
  EXPECT_NEAR(sim.Register(0x5B) - 64, 35, 6) << "the chip has loaded it from the channel's value";
  Do(window, "cmdDemo; cmdDemo");
  sim.requests.clear();
  desk.Advance(60000);
  EXPECT_EQ((sim.requests[{0xDE, 0, 0x52}]), 0);
}

}  // namespace
}  // namespace zth::testing

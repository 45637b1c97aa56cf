#include <cmath>

#include <gtest/gtest.h>

#include "tests/support/SimulatedDesk.h"
#include "widgets/GSlider.h"
#include "widgets/Strip.h"
#include "windows/SharedState.h"

namespace zth::testing {
namespace {

/// The running program on the board.
class RunningBoard : public SimulatedDesk {
 public:
  RunningBoard() { desk.Start(); }
};

widgets::GSlider& Heater2(const QWidget& window) {
  return Desk::Get<widgets::GSlider>(window, "sldHeater(1)");
}

/// The duty that a drawn path has at a temperature, beyond its step.
double DutyOnPath(const QVariantList& path, double degrees) {
  for (int i = 1; i < path.size(); ++i) {
    const double x0 = path[i - 1].toList()[0].toDouble();
    const double x1 = path[i].toList()[0].toDouble();
    if (x1 <= x0 || degrees < x0 || degrees > x1) continue;
    const double y0 = path[i - 1].toList()[1].toDouble();
    const double y1 = path[i].toList()[1].toDouble();
    return y0 + (y1 - y0) * (degrees - x0) / (x1 - x0);
  }
  return NAN;
}

TEST(SimulatedBoard, TheDotClimbsTheDrawnCurveWhileTheHeaterHeats) {
  RunningBoard sim;
  Desk& desk = sim.desk;
  const QWidget& curve = desk.Open("frmAutoGraph");
  Desk::Pick(curve, "cmbControl(0)", 2);
  for (const int pwm : {1, 2, 3}) Desk::Pick(curve, QString("cmbControl(%1)").arg(pwm), 4);
  Desk::Type(curve, "txtMaxPWM", "100");
  Desk::Type(curve, "txtMinPWM(0)", "20");
  Desk::Type(curve, "txtTmin(2)", "40");
  Desk::Pick(curve, "cmbTrange(2)", 13);  // 40 degrees
  const QWidget& heaters = desk.Open("frmHeaters");
  const auto& chart = Desk::Get<widgets::Strip>(curve, "stpGraph");
  int onRamp = 0;
  double hottest = 0;
  for (int percent = 0; percent <= 100; percent += 10) {
    Heater2(heaters).StepByUser(percent);
    desk.Advance(60000);
    const QVariantList dots = chart.TracePoints(4);
    ASSERT_EQ(dots.size(), 2) << percent;
    const double degrees = dots[0].toList()[0].toDouble();
    const double duty = dots[0].toList()[1].toDouble();
    EXPECT_GT(degrees, hottest - 0.5) << percent;
    hottest = std::max(hottest, degrees);
    if (degrees <= 40.5) continue;
    ++onRamp;
    EXPECT_NEAR(duty, DutyOnPath(chart.TracePoints(0), degrees), 1.0) << percent << " percent, " << degrees;
  }
  EXPECT_GE(onRamp, 5);
}

TEST(SimulatedBoard, DynamicTminMovesTminAndTheChartsShowIt) {
  RunningBoard sim;
  Desk& desk = sim.desk;
  const QWidget& curve = desk.Open("frmAutoGraph");
  for (const int pwm : {0, 1, 2, 3}) Desk::Pick(curve, QString("cmbControl(%1)").arg(pwm), 2);
  const QWidget& window = desk.Open("frmDynamicTmin");
  Desk::Type(window, "txtTmin(1)", "60");
  Desk::Type(window, "txtLowLim(1)", "30");
  Desk::Type(window, "txtHighLim(1)", "80");
  Desk::Type(window, "txtR2OpPoint", "45");
  Desk::Type(window, "txtOpPointHyst", "2");
  Desk::Check(window, "chkEnDynR2", true);
  Heater2(desk.Open("frmHeaters")).StepByUser(60);
  desk.Advance(240000);
  const int tmin = sim.Register(0x5E) - 64;
  EXPECT_LT(tmin, 60) << "too hot, so the chip starts its fans earlier";
  const QVariantList points = Desk::Get<widgets::Strip>(window, "Strip2(1)").TracePoints(2);
  EXPECT_EQ(points.back().toList()[1].toInt(), tmin);
  EXPECT_EQ(Desk::Get<widgets::Strip>(curve, "stpGraph").TracePoints(0)[1].toList()[0].toInt(), tmin);
  EXPECT_EQ(Desk::Text(window, "txtTmin(1)"), "60");
}

TEST(SimulatedBoard, TheDemoBringsItsTherm2EventOnce) {
  RunningBoard sim;
  Desk& desk = sim.desk;
  const QWidget& window = desk.Open("frmDynamicTmin");
  Desk::Press(window, "cmdDemo");
  EXPECT_EQ(sim.Register(0x5B), 0x95);
  sim.requests.clear();
  Heater2(desk.Open("frmHeaters")).StepByUser(100);
  desk.Advance(120000);
  EXPECT_EQ((sim.requests[{0xDE, 0, 0x52}]), 2) << "down and up again, once";
  EXPECT_TRUE(windows::DemoThermTripped);
  EXPECT_EQ(sim.Register(0x52), 0x9A);
  const int opPoint = sim.Register(0x5B) - 64;
  EXPECT_LT(opPoint, 85) << "the chip has loaded it from the channel's value";
  EXPECT_NEAR(opPoint, 35, 6);
  Desk::Press(window, "cmdDemo");
  Desk::Press(window, "cmdDemo");
  sim.requests.clear();
  desk.Advance(60000);
  EXPECT_EQ((sim.requests[{0xDE, 0, 0x52}]), 0);
}

}  // namespace
}  // namespace zth::testing

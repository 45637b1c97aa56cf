#include <QLineEdit>
#include <QTabWidget>
#include <gtest/gtest.h>

#include "chip/Measurements.h"
#include "chip/PinModel.h"
#include "tests/support/Desk.h"
#include "tests/windows/fancontrol/LiveCases.h"
#include "widgets/Strip.h"
#include "windows/SharedState.h"

namespace zth::testing {
namespace {

widgets::Strip& Chart(const QWidget& window, int channel) {
  return Desk::Get<widgets::Strip>(window, QString("Strip2(%1)").arg(channel));
}

double Newest(const QWidget& window, int channel, int trace) {
  const QVariantList points = Chart(window, channel).TracePoints(trace);
  return points.isEmpty() ? -999 : points.back().toList()[1].toDouble();
}

QString LabelText(const QWidget& window, int channel, int slot) {
  Chart(window, channel).SetLabelIndex(slot);
  return Chart(window, channel).Caption();
}

float LabelTop(const QWidget& window, int channel, int slot) {
  Chart(window, channel).SetLabelIndex(slot);
  return Chart(window, channel).LabelTop();
}

Traffic LoadTransfers() {
  return Concat(B(0x0B, 2), B(0x5A, 2), B(0x5D, 2), B(0x45, 2), B(0x49, 2), B(0x64, 1));
}

TEST(DynamicTmin, LoadReadsInOrderAndWritesNothing) {
  for (const auto buses : {Desk::Buses::Usb, Desk::Buses::Smbus}) {
    for (const int fill : {0x00, 0xFF, 0xA5}) {
      Desk desk(buses);
      desk.Start();
      desk.board.Chip().fill(static_cast<std::uint8_t>(fill));
      const auto& window = desk.Open("frmDynamicTmin");
      EXPECT_EQ(desk.board.TakeTraffic(), LoadTransfers()) << fill;
      EXPECT_TRUE(windows::DynTminOpen);
      EXPECT_EQ(Desk::Checked(window, "chkConLoop"), fill != 0xFF) << "ticked when the bit is 0";
      EXPECT_EQ(Desk::Checked(window, "chkLoadOp1Th2"), fill == 0xFF);
      EXPECT_EQ(Desk::Picked(window, "cmbCycle(0)"), fill & 7);
      EXPECT_EQ(Desk::Picked(window, "cmbCycle(1)"), fill >> 3 & 7);
      EXPECT_EQ(Desk::Text(window, "txtR2OpPoint"), QString::number(fill - 64));
      EXPECT_EQ(Desk::Text(window, "txtOpPointHyst"), QString::number(fill >> 4));
    }
  }
}

TEST(DynamicTmin, EachControlWritesItsOwnBitsAtOnce) {
  const auto type = [](const char* box, const char* text) {
    return [box, text](const QWidget& window) { Desk::Type(window, box, text); };
  };
  const auto click = [](const char* box) { return [box](const QWidget& window) { Desk::Press(window, box); }; };
  const auto pick = [](const char* list, int item) {
    return [list, item](const QWidget& window) { Desk::Pick(window, list, item); };
  };
  const auto writes = [](int reg, int value) { return [=] { return Concat(W(reg, value)); }; };
  const auto changes = [](int reg, int value) { return [=] { return Concat(R(reg), W(reg, value)); }; };
  RunLiveCases("frmDynamicTmin", 0xA5,
               {
                   {"enable Remote1", click("chkEnDynR1"), changes(0x0B, 0xA4)},
                   {"enable Remote2", click("chkEnDynR2"), changes(0x0B, 0xA7)},
                   {"Remote1 on THERM1", click("chkLoadOp1Th1"), changes(0x0B, 0xA1)},
                   {"Remote2 on THERM1", click("chkLoadOp2Th1"), changes(0x0B, 0xAD)},
                   {"Remote1 on THERM2", click("chkLoadOp1Th2"), changes(0x0B, 0xB5)},
                   {"Remote2 on THERM2", click("chkLoadOp2Th2"), changes(0x0B, 0x85)},
                   {"control loop unticked sets its bit", click("chkConLoop"), changes(0x0C, 0xE5)},
                   {"cycle of Remote1", pick("cmbCycle(0)", 2), changes(0x0C, 0xA2)},
                   {"cycle of Remote2", pick("cmbCycle(1)", 7), changes(0x0C, 0xBD)},
                   {"op-point 1", type("txtR1OpPoint", "85"), writes(0x5A, 149)},
                   {"op-point 2 cleared", type("txtR2OpPoint", ""), writes(0x5B, 0x40)},
                   {"Tmin 1", type("txtTmin(0)", "2.5"), writes(0x5D, 66)},
                   {"Tmin 2", type("txtTmin(1)", "999"), writes(0x5E, 255)},
                   {"low limit", type("txtLowLim(1)", "-70"), writes(0x46, 0)},
                   {"high limit", type("txtHighLim(0)", "60"), writes(0x49, 124)},
                   {"hysteresis, whole and without a read", type("txtOpPointHyst", "18"), writes(0x64, 0x20)},
               });
}

TEST(DynamicTmin, ShowsTheChartOfTheTab) {
  Desk desk;
  desk.Start();
  chip::PinFunctions.D1 = true;
  const auto& window = desk.Open("frmDynamicTmin");
  EXPECT_FALSE(Chart(window, 0).isHidden());
  EXPECT_TRUE(Chart(window, 1).isHidden());
  auto& tabs = Desk::Get<QTabWidget>(window, "SSTab1");
  tabs.setCurrentIndex(1);
  EXPECT_TRUE(Chart(window, 0).isHidden());
  EXPECT_FALSE(Chart(window, 1).isHidden());
  EXPECT_EQ(desk.board.TakeTraffic(), LoadTransfers());
  // The chart reaches the right edge and leaves 600 twips below it.
  EXPECT_EQ(Chart(window, 1).geometry().right() + 1, window.width());
  EXPECT_EQ(window.height() - Chart(window, 1).geometry().bottom() - 1, 40);
}

TEST(DynamicTmin, WithoutRemote1OnlyTheSecondTabIsThere) {
  Desk desk;
  desk.Start();
  chip::PinFunctions.D1 = false;
  const auto& window = desk.Open("frmDynamicTmin");
  auto& tabs = Desk::Get<QTabWidget>(window, "SSTab1");
  EXPECT_EQ(tabs.currentIndex(), 1);
  EXPECT_FALSE(tabs.isTabEnabled(0));
  EXPECT_EQ(tabs.tabText(0), "R1 not enabled");
  EXPECT_FALSE(Chart(window, 1).isHidden());
  desk.Advance(1000);
  EXPECT_FALSE(Chart(window, 0).TracePoints(0).isEmpty()) << "fed all the same";
}

TEST(DynamicTmin, FeedsBothChartsAndPlacesTheirNames) {
  Desk desk;
  desk.Start();
  auto& chip = desk.board.Chip();
  for (const int reg : {0x21, 0x22, 0x23, 0x24}) chip[static_cast<std::size_t>(reg)] = 0xE0;
  chip[0x21] = 0x20, chip[0x23] = 0xC0, chip[0x64] = 0x30;
  chip[0x8A] = 0x80, chip[0x8B] = 64 + 50;  // 50.5 degrees
  chip[0x8D] = 64 + 90;                     // beyond the second chart's axis
  chip[0x5A] = 64 + 80, chip[0x5D] = 64 + 40, chip[0x49] = 64 + 110, chip[0x45] = 64 - 10;
  chip[0x5B] = 64 + 30, chip[0xAA] = 51, chip[0xAC] = 102;
  const auto& window = desk.Open("frmDynamicTmin");
  desk.Advance(2000);
  const std::vector<double> remote1{50.5, 80, 40, 110, -10, 20, 40, 0, 0, 77};
  for (int trace = 0; trace < 10; ++trace) {
    EXPECT_EQ(Newest(window, 0, trace), remote1[static_cast<std::size_t>(trace)]) << trace;
  }
  EXPECT_EQ(Newest(window, 1, 5), 40) << "a PWM by the hottest of all stands in both";
  EXPECT_NEAR(LabelTop(window, 0, 1), 0.31, 1e-5) << "50.5 rounds to 50";
  EXPECT_FLOAT_EQ(LabelTop(window, 0, 4), 0.03F);
  EXPECT_FLOAT_EQ(LabelTop(window, 0, 5), 0.59F);
  EXPECT_FLOAT_EQ(LabelTop(window, 1, 1), 0.03F) << "parked at the top";
  EXPECT_EQ(LabelText(window, 0, 6), "PWM1");
  EXPECT_EQ(LabelText(window, 0, 7), "PWM3");
  EXPECT_EQ(LabelText(window, 0, 8), "");
  EXPECT_EQ(LabelText(window, 1, 6), "PWM3");

  // To manual in another window: the rest moves up, and nobody is left for Remote2.
  chip[0x23] = 0xE0;
  desk.Advance(150);
  EXPECT_EQ(LabelText(window, 0, 7), "");
  EXPECT_EQ(Newest(window, 0, 6), 0);
  EXPECT_EQ(LabelText(window, 1, 6), "No fans controlled by Remote2");
  for (const int reg : {0x21, 0x22, 0x23, 0x24}) chip[static_cast<std::size_t>(reg)] = 0xC0;
  desk.Advance(150);
  EXPECT_EQ(LabelText(window, 1, 11), "PWM4");
  Desk::Type(window, "txtOpPointHyst", "");
  desk.Advance(150);
  EXPECT_EQ(Newest(window, 0, 9), Newest(window, 0, 1));
}

TEST(DynamicTmin, ARefreshReadsTheFourBehavioursAndNothingElse) {
  Desk desk;
  desk.Start();
  chip::PollEnabled = false;
  desk.Open("frmDynamicTmin");
  desk.board.TakeTraffic();
  desk.Advance(60);
  EXPECT_EQ(desk.board.TakeTraffic(), Concat(B(0x21, 4)));
  // The legend keeps below the lower zone's top wherever the user puts it.
  auto& chart = Chart(*desk.Main().FindWindow("frmDynamicTmin"), 0);
  chart.SetAxisIndex(1);
  chart.SetAxisAreaTop(0.4);
  const double top = chart.AxisAreaTop();
  for (const auto& [slot, below] : std::vector<std::pair<int, double>>{{6, 0.04}, {7, 0.06}, {8, 0.08}, {11, 0.1}}) {
    EXPECT_NEAR(LabelTop(*desk.Main().FindWindow("frmDynamicTmin"), 0, slot), top + below, 1e-5) << slot;
  }
}

TEST(DynamicTmin, TheDemoShowsRemote2AndOutlivesTheWindow) {
  Desk desk;
  desk.Start();
  chip::PinFunctions.D1 = true;
  auto& window = desk.Open("frmDynamicTmin");
  desk.Advance(500);
  Desk::Press(window, "cmdDemo");
  EXPECT_TRUE(windows::DemoRunning);
  EXPECT_EQ(Desk::Text(window, "cmdDemo").remove('&'), "Stop...");
  EXPECT_EQ(Desk::Get<QTabWidget>(window, "SSTab1").currentIndex(), 1);
  EXPECT_TRUE(Chart(window, 1).TracePoints(0).isEmpty()) << "the chart starts empty";
  EXPECT_FALSE(Chart(window, 0).TracePoints(0).isEmpty());

  // The demo outlives the window.
  window.Unload();
  Desk::Settle();
  auto& again = desk.Open("frmDynamicTmin");
  EXPECT_EQ(Desk::Text(again, "cmdDemo").remove('&'), "Stop...");
  desk.board.TakeTraffic();
  Desk::Press(again, "cmdDemo");
  EXPECT_FALSE(windows::DemoRunning);
  EXPECT_EQ(Desk::Text(again, "cmdDemo").remove('&'), "Run Demo");
  EXPECT_EQ(desk.board.TakeTraffic(), Traffic{}) << "no register is touched";
}

}  // namespace
}  // namespace zth::testing

#include <QTabWidget>
#include <gtest/gtest.h>

#include "chip/Measurements.h"
#include "chip/PinModel.h"
#include "tests/windows/fancontrol/LiveCases.h"
#include "windows/SharedState.h"

namespace zth::testing {
namespace {

widgets::Strip& Chart(const WindowDesk& desk, int channel) {
  return Desk::Get<widgets::Strip>(*desk.window, QString("Strip2(%1)").arg(channel));
}

double Newest(const WindowDesk& desk, int channel, int trace) {
  const Points points = PointsOf(Chart(desk, channel), trace);
  return points.empty() ? -999 : points.back().second;
}

float LabelTop(const WindowDesk& desk, int channel, int slot) {
  Chart(desk, channel).SetLabelIndex(slot);
  return Chart(desk, channel).LabelTop();
}

/// The first chart shows, the second, or both: "10", "01", "11".
std::string Shown(const WindowDesk& desk) {
  return std::string(Chart(desk, 0).isHidden() ? "0" : "1") + (Chart(desk, 1).isHidden() ? "0" : "1");
}

TEST(DynamicTmin, ShowsWhatTheRegistersHold) {
  const WindowDesk desk("frmDynamicTmin", "0B=15 0C=1D 5A=41 5B=42 5D=43 5E=44 45=45 46=46 49=47 4A=48 64=90");
  EXPECT_EQ(desk.Held("chkEnDynR1 chkEnDynR2 chkLoadOp1Th1 chkLoadOp2Th1 chkLoadOp1Th2 chkLoadOp2Th2"), "1|0|1|0|1|0");
  EXPECT_EQ(desk.Held("chkConLoop cmbCycle(0..1) txtOpPointHyst"), "1|5|3|9")
      << "the loop is ticked while its bit is 0";
  EXPECT_EQ(desk.Held("txtR1OpPoint txtR2OpPoint txtTmin(0..1) txtLowLim(0..1) txtHighLim(0..1)"), "1|2|3|4|5|6|7|8");
}

TEST(DynamicTmin, EachControlWritesItsOwnBitsAtOnce) {
  // The loop sets its bit when it is unticked; the hysteresis goes out whole and without a read.
  RunLiveCases(
      "frmDynamicTmin", 0xA5,
      "chkEnDynR1: R0B W0B=A4, chkEnDynR2: R0B W0B=A7, chkLoadOp1Th1: R0B W0B=A1, chkLoadOp2Th1: R0B W0B=AD, "
      "chkLoadOp1Th2: R0B W0B=B5, chkLoadOp2Th2: R0B W0B=85, chkConLoop: R0C W0C=E5, cmbCycle(0)=2: R0C W0C=A2, "
      "cmbCycle(1)=7: R0C W0C=BD, txtR1OpPoint=85: W5A=95, txtR2OpPoint=: W5B=40, txtTmin(0)=2.5: W5D=42, "
      "txtTmin(1)=999: W5E=FF, txtLowLim(1)=-70: W46=00, txtHighLim(0)=60: W49=7C, txtOpPointHyst=18: W64=20");
}

TEST(DynamicTmin, ShowsTheChartOfTheTab) {
  WindowDesk desk("frmDynamicTmin", Desk::Buses::Both, [](Desk&) { chip::PinFunctions.D1 = true; });
  EXPECT_EQ(Shown(desk), "10");
  EXPECT_EQ(desk.Sent("SSTab1=1"), Traffic{});
  EXPECT_EQ(Shown(desk), "01");
}

TEST(DynamicTmin, WithoutRemote1OnlyTheSecondTabIsThere) {
  WindowDesk desk("frmDynamicTmin", Desk::Buses::Both, [](Desk&) { chip::PinFunctions.D1 = false; });
  const auto& tabs = Desk::Get<QTabWidget>(*desk.window, "SSTab1");
  EXPECT_TRUE(!tabs.isTabEnabled(0) && tabs.tabText(0) == "R1 not enabled");
  EXPECT_EQ(desk.Held("SSTab1") + Shown(desk), "101");
  desk.Advance(1000);
  EXPECT_NE(PointsOf(Chart(desk, 0), 0), Points{}) << "fed all the same";
}

TEST(DynamicTmin, FeedsBothChartsAndPlacesTheirNames) {
  // 50.5 degrees, and on Remote2 90, which is beyond the second chart's axis.
  WindowDesk desk("frmDynamicTmin",
                  "21=20 22=E0 23=C0 24=E0 64=30 8A=80 8B=72 8D=9A 5A=90 5D=68 49=AE 45=36 5B=5E AA=33 AC=66");
  desk.Advance(2000);
  const std::vector<double> remote1{50.5, 80, 40, 110, -10, 20, 40, 0, 0, 77};
  for (int trace = 0; trace < 10; ++trace) {
    EXPECT_EQ(Newest(desk, 0, trace), remote1[static_cast<std::size_t>(trace)]) << trace;
  }
  EXPECT_EQ(Newest(desk, 1, 5), 40) << "a PWM by the hottest of all stands in both";
  EXPECT_NEAR(LabelTop(desk, 0, 1), 0.31, 1e-5) << "50.5 rounds to 50";
  EXPECT_FLOAT_EQ(LabelTop(desk, 0, 4), 0.03F);
  EXPECT_FLOAT_EQ(LabelTop(desk, 0, 5), 0.59F);
  EXPECT_FLOAT_EQ(LabelTop(desk, 1, 1), 0.03F) << "parked at the top";
  EXPECT_EQ(Captions(Chart(desk, 0), 6, 8), "PWM1|PWM3|");
  EXPECT_EQ(Captions(Chart(desk, 1), 6, 6), "PWM3");

  // To manual in another window: the rest moves up, and nobody is left for Remote2.
  Put(desk.board.Chip(), "23=E0");
  desk.Advance(150);
  EXPECT_EQ(Captions(Chart(desk, 0), 7, 7), "");
  EXPECT_EQ(Newest(desk, 0, 6), 0);
  EXPECT_EQ(Captions(Chart(desk, 1), 6, 6), "No fans controlled by Remote2");
  Put(desk.board.Chip(), "21..24=C0");
  desk.Advance(150);
  EXPECT_EQ(Captions(Chart(desk, 1), 11, 11), "PWM4");
  desk.Do("txtOpPointHyst=");
  desk.Advance(150);
  EXPECT_EQ(Newest(desk, 0, 9), Newest(desk, 0, 1));
}

TEST(DynamicTmin, ARefreshReadsTheFourBehavioursAndNothingElse) {
  WindowDesk desk("frmDynamicTmin");
  chip::PollEnabled = false;
  desk.Advance(60);
  EXPECT_EQ(desk.board.TakeTraffic(), B(0x21, 4));
  // The legend keeps below the lower zone's top wherever the user puts it.
  Chart(desk, 0).SetAxisIndex(1);
  Chart(desk, 0).SetAxisAreaTop(0.4);
  const double top = Chart(desk, 0).AxisAreaTop();
  for (const auto& [slot, below] : std::vector<std::pair<int, double>>{{6, 0.04}, {7, 0.06}, {8, 0.08}, {11, 0.1}}) {
    EXPECT_NEAR(LabelTop(desk, 0, slot), top + below, 1e-5) << slot;
  }
}

TEST(DynamicTmin, TheDemoShowsRemote2AndOutlivesTheWindow) {
  WindowDesk desk("frmDynamicTmin", Desk::Buses::Both, [](Desk&) { chip::PinFunctions.D1 = true; });
  desk.Advance(500);
  desk.Do("cmdDemo");
  EXPECT_TRUE(windows::DemoRunning);
  EXPECT_EQ(desk.Held("cmdDemo SSTab1"), "Stop...|1");
  EXPECT_EQ(PointsOf(Chart(desk, 1), 0), Points{}) << "the chart starts empty";
  EXPECT_NE(PointsOf(Chart(desk, 0), 0), Points{});
  desk.Reopen();
  EXPECT_EQ(desk.Held("cmdDemo"), "Stop...");
  EXPECT_EQ(desk.Sent("cmdDemo"), Traffic{}) << "no register is touched";
  EXPECT_FALSE(windows::DemoRunning);
  EXPECT_EQ(desk.Held("cmdDemo"), "Run Demo");
}

}  // namespace
}  // namespace zth::testing

#include <QTabWidget>

#include "chip/ChipState.h"
#include "chip/Measurements.h"
#include "chip/PinModel.h"
#include "link/Declarations.h"
#include "tests/windows/fancontrol/LiveCases.h"
#include "windows/SharedState.h"
#include "windows/fancontrol/Demo.h"
#include "windows/fancontrol/DynTminModel.h"

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

/// Which charts are visible, the first, the second or both: "10", "01", "11".
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
  // Unticking the loop sets its bit; the hysteresis is written whole, without a read.
  RunLiveCases(
      "frmDynamicTmin", 0xA5,
      "chkEnDynR1: R0B W0B=A4, chkEnDynR2: R0B W0B=A7, chkLoadOp1Th1: R0B W0B=A1, chkLoadOp2Th1: R0B W0B=AD, "
      "chkLoadOp1Th2: R0B W0B=B5, chkLoadOp2Th2: R0B W0B=85, chkConLoop: R0C W0C=E5, cmbCycle(0)=2: R0C W0C=A2, "
      "cmbCycle(1)=7: R0C W0C=BD, txtR1OpPoint=85: W5A=95, txtR2OpPoint=: W5B=40, txtTmin(0)=2.5: W5D=42, "
      "txtTmin(1)=999: W5E=FF, txtLowLim(1)=-70: W46=00, txtHighLim(0)=60: W49=7C, txtOpPointHyst=18: W64=20");
}

TEST(DynamicTmin, ShowsTheChartOfTheTab) {
  WindowDesk desk("frmDynamicTmin", Desk::Buses::Both, [](Desk&) { chip::Model.PinFunctions.D1 = true; });
  EXPECT_EQ(Shown(desk), "10");
  EXPECT_EQ(desk.Sent("SSTab1=1"), Traffic{});
  EXPECT_EQ(Shown(desk), "01");
}

TEST(DynamicTmin, WithoutRemote1OnlyTheSecondTabIsThere) {
  WindowDesk desk("frmDynamicTmin", Desk::Buses::Both, [](Desk&) { chip::Model.PinFunctions.D1 = false; });
  const auto& tabs = Desk::Get<QTabWidget>(*desk.window, "SSTab1");
  EXPECT_TRUE(!tabs.isTabEnabled(0) && tabs.tabText(0) == "R1 not enabled");
  EXPECT_EQ(desk.Held("SSTab1") + Shown(desk), "101");
  desk.Advance(1000);
  EXPECT_NE(PointsOf(Chart(desk, 0), 0), Points{}) << "fed all the same";
}

TEST(DynamicTmin, FeedsBothChartsAndPlacesTheirNames) {
  // 50.5 degrees, and 90 on Remote2, which is outside the second chart's axis.
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

  // Set to manual in another window: the rest moves up, and no fan is left for Remote2.
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
  chip::Model.PollEnabled = false;
  desk.Advance(60);
  EXPECT_EQ(desk.board.TakeTraffic(), B(0x21, 4));
  // The legend stays below the lower zone's top wherever the user moves it.
  Chart(desk, 0).SetAxisIndex(1);
  Chart(desk, 0).SetAxisAreaTop(0.4);
  const double top = Chart(desk, 0).AxisAreaTop();
  for (const auto& [slot, below] : std::vector<std::pair<int, double>>{{6, 0.04}, {7, 0.06}, {8, 0.08}, {11, 0.1}}) {
    EXPECT_NEAR(LabelTop(desk, 0, slot), top + below, 1e-5) << slot;
  }
}

TEST(DynamicTmin, ABoxShowsTheChipsOwnValueOnceThatHasBeenMeasured) {
  // Each box with its register. The demo shows Remote2 15 degrees too high in the chart, but not in the boxes.
  const std::vector<std::tuple<const char*, QString, QString, int>> rows{
      {"frmDynamicTmin", "txtTmin(0)", "lblChipTmin(0)", 0x5D},
      {"frmDynamicTmin", "txtTmin(1)", "lblChipTmin(1)", 0x5E},
      {"frmDynamicTmin", "txtR1OpPoint", "lblChipR1OpPoint", 0x5A},
      {"frmDynamicTmin", "txtR2OpPoint", "lblChipR2OpPoint", 0x5B},
      {"frmDynamicTmin", "txtLowLim(1)", "lblChipLowLim(1)", 0x46},
      {"frmDynamicTmin", "txtHighLim(0)", "lblChipHighLim(0)", 0x49},
      {"frmDynamicTmin", "txtHighLim(1)", "lblChipHighLim(1)", 0x4A},
      {"frmAutoGraph", "txtTmin(0)", "lblChipTmin(0)", 0x5C},
      {"frmAutoGraph", "txtTmin(2)", "lblChipTmin(2)", 0x5E},
      {"frmAutoGraph", "txtTmin(3)", "lblChipTmin(3)", 0x5F}};
  constexpr int kOneRound = 1500;
  for (const bool demo : {false, true}) {
    for (const auto& [window, box, label, reg] : rows) {
      SCOPED_TRACE(box.toStdString() + (demo ? ", demo" : ""));
      WindowDesk desk(window, "5A..5F=50 45..46=50 49..4A=50");
      windows::Shared.DemoRunning = demo;
      windows::Shared.DemoThermTripped = true;
      const QSize size = desk.window->sizeHint();
      desk.Advance(kOneRound);
      EXPECT_EQ(desk.Held(label), "") << "as it was read";
      Put(desk.board.Chip(), QString::asprintf("%02X=6F", reg).toStdString());
      desk.Advance(kOneRound);
      EXPECT_EQ(desk.Held(label), "chip: 47");
      EXPECT_EQ(desk.window->sizeHint(), size);
      windows::Shared.DemoRunning = !demo;
      desk.Advance(50);
      EXPECT_EQ(desk.Held(label), "chip: 47") << "a lift that came or went after the measurement";
      desk.Do(box + "=30");
      desk.Advance(300 / 6);
      EXPECT_EQ(desk.Held(label), "") << "what was measured before the write tells nothing of it";
      desk.Advance(kOneRound);
      EXPECT_EQ(desk.Held(label), "") << "the chip holds what was written";
      Put(desk.board.Chip(), QString::asprintf("%02X=6F", reg).toStdString());
      desk.Advance(kOneRound);
      desk.window->ReadAgain();
      EXPECT_EQ(desk.Held(box + " " + label), "47|") << "read again, the box holds it itself";
      Put(desk.board.Chip(), QString::asprintf("%02X=50", reg).toStdString());
      link::Bus.DeviceAddress = 0x5A;
      desk.Advance(kOneRound);
      EXPECT_EQ(desk.Held(label), "") << "a box of another chip has none";
    }
  }
}

TEST(DynamicTmin, TheDemoShowsRemote2AndOutlivesTheWindow) {
  WindowDesk desk("frmDynamicTmin", Desk::Buses::Both, [](Desk&) { chip::Model.PinFunctions.D1 = true; });
  desk.Advance(500);
  desk.Do("cmdDemo");
  EXPECT_TRUE(windows::Shared.DemoRunning);
  EXPECT_EQ(desk.Held("cmdDemo SSTab1"), "Stop...|1");
  EXPECT_EQ(PointsOf(Chart(desk, 1), 0), Points{}) << "the chart starts empty";
  EXPECT_NE(PointsOf(Chart(desk, 0), 0), Points{});
  desk.Reopen();
  EXPECT_EQ(desk.Held("cmdDemo"), "Stop...");
  EXPECT_EQ(desk.Sent("cmdDemo"), Traffic{}) << "no register is touched";
  EXPECT_FALSE(windows::Shared.DemoRunning);
  EXPECT_EQ(desk.Held("cmdDemo"), "Run Demo");
}

// On a chip with all registers 0. After a write to a PWM's configuration its manual flag is read; a register that is
// changed twice is read again in between.
constexpr char kOnZeros[] =
    "R21 W21=40 R21 R22 W22=40 R22 R23 W23=40 R23 R24 W24=40 R24 R0D W0D=02 W2C=FF R02 W02=40 R07 W07=0F R0F W0F=08 "
    "R0F W0F=09 R30 W30=90 R33 W33=20 R0B W0B=02 R0B W0B=22 R64 W64=20 R62 W62=02 W52=9A R62 W62=B2 W5B=95 W5E=68 "
    "W46=5F "
    "W4A=6D R01 W01=20";
// The same transfers on a chip with all bits 1, to see which bits are kept.
constexpr char kOnOnes[] =
    "R21 W21=5F R21 R22 W22=5F R22 R23 W23=5F R23 R24 W24=5F R24 R0D W0D=FF W2C=FF R02 W02=7F R07 W07=FF R0F W0F=FF "
    "R0F W0F=FF R30 W30=FF R33 W33=FF R0B W0B=FF R0B W0B=FF R64 W64=2F R62 W62=F2 W52=9A R62 W62=B2 W5B=95 W5E=68 "
    "W46=5F "
    "W4A=6D R01 W01=2F";

// After the set-up the window reads again. Each control that changes then writes back what was just read, 0x64 as a
// whole.
TEST(Demo, TheButtonSendsTheSetUpAndTheReloadWritesBackOnBothLinks) {
  for (const auto buses : {Desk::Buses::Usb, Desk::Buses::Smbus}) {
    for (const bool ones : {false, true}) {
      WindowDesk desk("frmDynamicTmin", buses, [&](Desk& each) { each.board.Chip().fill(ones ? 0xFF : 0); });
      desk.board.ports[0x4A] = 0xBF;
      EXPECT_EQ(desk.Sent("cmdDemo"),
                ones ? Concat(T("P4A D4A=BC"), T(kOnOnes),
                              T("B0B+2 B5A+2 W5B=95 B5D+2 W5E=68 B45+2 W46=5F B49+2 W4A=6D B64+1 W64=20"))
                     : Concat(T("P4A D4A=BC"), T(kOnZeros),
                              T("B0B+2 R0B W0B=22 R0B W0B=22 B5A+2 W5B=95 B5D+2 W5E=68 B45+2 W46=5F B49+2 W4A=6D B64+1 "
                                "W64=20")));
      EXPECT_TRUE(windows::Shared.DemoRunning);
    }
  }
}

/// The demo, running after its set-up.
void RunDemo() {
  windows::Shared.DemoChip = link::ChipInUse();
  windows::Shared.DemoRunning = true;
}

/// Registers of Remote2: a temperature, and the state that the dynamic Tmin chart shows.
void PutRemote2(Desk& desk, int quarters) {
  Put(desk.board.Chip(), "5E=68 5B=95 46=5F 4A=6D");
  desk.board.Chip()[0x8C] = static_cast<std::uint8_t>((quarters % 4) * 64);
  desk.board.Chip()[0x8D] = static_cast<std::uint8_t>(64 + quarters / 4);
}

TEST(Demo, RaisesRemote2InTheMonitorButNotInTheLog) {
  Desk desk;
  desk.Start();
  PutRemote2(desk, 4 * 20);
  RunDemo();
  desk.Advance(3000);
  const auto& live = chip::Model.Measurements;
  EXPECT_EQ(live.Temperature[2], 35.0F);
  EXPECT_EQ((std::array{live.PolledTmin[2], live.PolledOpPoint[2], live.PolledLowLimit[2], live.PolledHighLimit[2]}),
            (std::array<std::int16_t, 4>{55, 100, 46, 60}));
  EXPECT_EQ(live.PolledTmin[1], desk.board.Chip()[0x5D] - 64) << "Remote1 stays";
  EXPECT_EQ(chip::Model.LogChannelTable[2].Value, 20.0F);
  EXPECT_EQ(chip::Model.LogChannelTable[41].Value, 40.0F);
  EXPECT_EQ(chip::Model.LogChannelTable[44].Value, 85.0F);
  windows::Shared.DemoRunning = false;
  desk.Advance(3000);
  EXPECT_EQ(live.Temperature[2], 20.0F);
  EXPECT_EQ(live.PolledTmin[2], 40);
}

TEST(Demo, ForcesItsOneTherm2EventAtFiftyDegreesAsDrawn) {
  for (const auto buses : {Desk::Buses::Usb, Desk::Buses::Smbus}) {
    Desk desk(buses);
    desk.Start();
    const double waited = desk.clock.waitedMs;
    RunDemo();
    PutRemote2(desk, 4 * 34 + 3);
    desk.Advance(3000);
    EXPECT_EQ(Writes(desk.board.TakeTraffic()), Traffic{}) << "34.75 degrees are not enough";
    PutRemote2(desk, 4 * 35);
    desk.Advance(1500);
    EXPECT_EQ(Writes(desk.board.TakeTraffic()), T("W52=40 W52=9A"));
    EXPECT_EQ(desk.clock.waitedMs - waited, 500);
    EXPECT_TRUE(windows::Shared.DemoThermTripped);
    // Stopping and running again does not cause a second one.
    windows::Shared.DemoRunning = false;
    desk.Advance(1000);
    windows::Shared.DemoRunning = true;
    desk.Advance(3000);
    EXPECT_EQ(Writes(desk.board.TakeTraffic()), Traffic{});
    EXPECT_EQ(desk.clock.waitedMs - waited, 500);
  }
}

TEST(Demo, LeavesAnotherChipAlone) {
  Desk desk;
  desk.board.AddUsbChip(0x5A);
  desk.Start();
  RunDemo();
  PutRemote2(desk, 4 * 60);
  Put(desk.board.usbChips[0x5A], "5E=68 8D=7C");
  Do(desk.Main(), "cmbDevices=1");
  desk.Advance(3000);
  EXPECT_EQ(Writes(desk.board.TakeTraffic()), Traffic{});
  EXPECT_EQ(chip::Model.Measurements.Temperature[2], 60.0F);
  EXPECT_EQ(chip::Model.Measurements.PolledTmin[2], 40);
  Do(desk.Main(), "cmbDevices=0");
  desk.Advance(3000);
  EXPECT_EQ(Writes(desk.board.TakeTraffic()), T("W52=40 W52=9A")) << "it goes on where it was set up";
}

TEST(DutyTraces, AreTheFansThatAChannelDrives) {
  using Configs = std::array<std::uint8_t, 4>;
  const std::tuple<Configs, const char*, const char*> rows[]{
      {{0x20, 0x40, 0xC0, 0xA0}, "PWM1=0 PWM3=2 ", "PWM2=1 PWM3=2 "},
      {{0xC0, 0xDF, 0xC1, 0xC2}, "PWM1=0 PWM2=1 PWM3=2 PWM4=3 ", "PWM1=0 PWM2=1 PWM3=2 PWM4=3 "},
      {{0x00, 0x60, 0x80, 0xE0}, "", ""},
      {{0xE0, 0x3F, 0x5F, 0x20}, "PWM2=1 PWM4=3 ", "PWM3=2 "}};
  for (const auto& [configs, remote1, remote2] : rows) {
    QString names[2];
    for (std::size_t channel = 0; channel < 2; ++channel) {
      const auto list = windows::ListDutyTraces(configs)[channel];
      for (std::size_t k = 0; k < static_cast<std::size_t>(list.Count); ++k) {
        names[channel] += QString("%1=%2 ").arg(list.Name[k]).arg(list.Pwm[k]);
      }
    }
    EXPECT_EQ(names[0] + "|" + names[1], QString(remote1) + "|" + remote2);
  }
}

TEST(TraceNames, AreLevelWithTheirValueAndStayInTheZone) {
  const std::pair<int, float> rows[]{{110, 0.03F}, {-10, 0.59F}, {50, 0.31F}, {190, 0.03F}, {-64, 0.59F}};
  for (const auto& [value, top] : rows)
    EXPECT_FLOAT_EQ(TraceLabelTop(windows::TraceZone{0.59F, -10, 110}, value), top) << value;
}

}  // namespace
}  // namespace zth::testing

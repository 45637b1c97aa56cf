#include <gtest/gtest.h>

#include "chip/Measurements.h"
#include "link/Declarations.h"
#include "tests/support/Desk.h"
#include "windows/SharedState.h"
#include "windows/fancontrol/Demo.h"
#include "windows/fancontrol/DynTminModel.h"

namespace zth::testing {
namespace {

/// What the set-up sends to a chip whose registers all hold `before`, without the board's switches.
Traffic SetUpTraffic(int before) {
  const auto change = [before](int reg, int keep, int set) { return Concat(R(reg), W(reg, (before & keep) | set)); };
  // A write to a PWM's configuration is followed by the look at its manual flag.
  const auto pwm = [&](int reg) { return Concat(change(reg, 0x1F, 0x40), R(reg)); };
  // A register that is changed twice is read again in between.
  const auto twice = [before](int reg, int keep1, int set1, int keep2, int set2) {
    const int between = (before & keep1) | set1;
    return Concat(R(reg), W(reg, between), R(reg), W(reg, (between & keep2) | set2));
  };
  const int tmin = (before & 0xF0) | 0x02;
  return Concat(pwm(0x21), pwm(0x22), pwm(0x23), pwm(0x24),                                     //
                change(0x0D, 0xFF, 0x02), W(0x2C, 0xFF),                                        //
                change(0x02, 0x3F, 0x40), change(0x07, 0xF0, 0x0F),                             //
                twice(0x0F, 0xFF, 0x08, 0xFF, 0x01),                                            //
                change(0x30, 0xFF, 0x90), change(0x33, 0xFF, 0x20),                             //
                twice(0x0B, 0xFF, 0x02, 0xFF, 0x20),                                            //
                change(0x64, 0x0F, 0x20),                                                       //
                R(0x62), W(0x62, tmin), W(0x52, 0x9A), R(0x62), W(0x62, (tmin & 0x0F) | 0xB0),  //
                W(0x5B, 0x95), W(0x5E, 0x68), W(0x46, 0x5F), W(0x4A, 0x6D),                     //
                change(0x01, 0x0F, 0x20));
}

TEST(Demo, SetsTheBoardUpToTheByteOnBothLinks) {
  for (const auto buses : {Desk::Buses::Usb, Desk::Buses::Smbus}) {
    for (const int before : {0x00, 0xFF, 0xA5, 0x5A}) {
      Desk desk(buses);
      desk.Start();
      desk.board.Chip().fill(static_cast<std::uint8_t>(before));
      desk.board.ports[0x4A] = 0xBF;
      windows::SetUpDemo();
      const bool usb = buses == Desk::Buses::Usb;
      const Traffic switches = usb ? Traffic{"usb P 4A", "usb D 4A=BC"} : Traffic{};
      EXPECT_EQ(desk.board.TakeTraffic(), Concat(switches, SetUpTraffic(before))) << usb << " " << before;
    }
  }
}

// The whole click: behind the set-up the window reads anew, and as it is ready, each control that changes by that
// writes back what has just been read, 0x64 whole.
TEST(Demo, TheButtonSendsTheSetUpAndWhatTheReloadWritesBack) {
  for (const auto buses : {Desk::Buses::Usb, Desk::Buses::Smbus}) {
    Desk desk(buses);
    desk.Start();
    desk.board.Chip().fill(0);
    desk.board.ports[0x4A] = 0x3F;
    auto& window = desk.Open("frmDynamicTmin");
    desk.board.TakeTraffic();
    Desk::Press(window, "cmdDemo");
    const Traffic switches = buses == Desk::Buses::Usb ? Traffic{"usb P 4A", "usb D 4A=3C"} : Traffic{};
    const Traffic reload = Concat(B(0x0B, 2), R(0x0B), W(0x0B, 0x22), R(0x0B), W(0x0B, 0x22),  //
                                  B(0x5A, 2), W(0x5B, 0x95), B(0x5D, 2), W(0x5E, 0x68),        //
                                  B(0x45, 2), W(0x46, 0x5F), B(0x49, 2), W(0x4A, 0x6D),        //
                                  B(0x64, 1), W(0x64, 0x20));
    EXPECT_EQ(desk.board.TakeTraffic(), Concat(switches, SetUpTraffic(0), reload));
    EXPECT_TRUE(windows::DemoRunning);
  }
}

TEST(Demo, OpensTheSwitchesEvenWhenTheirWriteFails) {
  Desk desk;
  desk.Start();
  desk.board.failMatching = "usb D";
  windows::SetUpDemo();
  EXPECT_TRUE(desk.prompts.shown.empty());
  EXPECT_EQ(desk.board.Chip()[0x01], 0x21);
}

/// Registers of Remote2: a temperature, and the state that dynamic Tmin is drawn by.
void PutRemote2(Desk& desk, int quarters) {
  auto& chip = desk.board.Chip();
  chip[0x8C] = static_cast<std::uint8_t>((quarters % 4) * 64);
  chip[0x8D] = static_cast<std::uint8_t>(64 + quarters / 4);
  chip[0x5E] = 0x68, chip[0x5B] = 0x95, chip[0x46] = 0x5F, chip[0x4A] = 0x6D;
}

TEST(Demo, LiftsRemote2ForTheMonitorAndNotForTheLog) {
  Desk desk;
  desk.Start();
  PutRemote2(desk, 4 * 20);
  windows::DemoRunning = true;
  desk.Advance(3000);
  const auto& live = chip::Measurements;
  EXPECT_EQ(live.Temperature[2], 35.0F);
  EXPECT_EQ(live.PolledTmin[2], 55);
  EXPECT_EQ(live.PolledOpPoint[2], 100);
  EXPECT_EQ(live.PolledLowLimit[2], 46);
  EXPECT_EQ(live.PolledHighLimit[2], 60);
  EXPECT_EQ(live.PolledTmin[1], desk.board.Chip()[0x5D] - 64) << "Remote1 stays";
  EXPECT_EQ(chip::LogChannelTable[2].Value, 20.0F);
  EXPECT_EQ(chip::LogChannelTable[41].Value, 40.0F);
  EXPECT_EQ(chip::LogChannelTable[44].Value, 85.0F);
  windows::DemoRunning = false;
  desk.Advance(3000);
  EXPECT_EQ(live.Temperature[2], 20.0F);
  EXPECT_EQ(live.PolledTmin[2], 40);
}

Traffic LimitWrites(Desk& desk) {
  Traffic writes;
  for (const std::string& transfer : desk.board.TakeTraffic()) {
    if (transfer.find(" W ") != std::string::npos) writes.push_back(transfer);
  }
  return writes;
}

TEST(Demo, ForcesItsOneTherm2EventAtFiftyDegreesAsDrawn) {
  for (const auto buses : {Desk::Buses::Usb, Desk::Buses::Smbus}) {
    Desk desk(buses);
    desk.Start();
    const double waited = desk.clock.waitedMs;
    windows::DemoRunning = true;
    PutRemote2(desk, 4 * 34 + 3);
    desk.Advance(3000);
    EXPECT_EQ(LimitWrites(desk), Traffic{}) << "34.75 degrees are not enough";
    PutRemote2(desk, 4 * 35);
    desk.Advance(1500);
    EXPECT_EQ(LimitWrites(desk), Concat(W(0x52, 0x40), W(0x52, 0x9A)));
    EXPECT_EQ(desk.clock.waitedMs - waited, 500);
    EXPECT_TRUE(windows::DemoThermTripped);
    // Stopping and running again brings no second one.
    windows::DemoRunning = false;
    desk.Advance(1000);
    windows::DemoRunning = true;
    desk.Advance(3000);
    EXPECT_EQ(LimitWrites(desk), Traffic{});
    EXPECT_EQ(desk.clock.waitedMs - waited, 500);
  }
}

TEST(DutyTraces, AreTheFansThatAChannelDrives) {
  struct Row {
    std::array<std::uint8_t, 4> configs;
    std::vector<int> remote1, remote2;
  };
  for (const Row& row :
       {Row{{0x20, 0x40, 0xC0, 0xA0}, {0, 2}, {1, 2}}, Row{{0xC0, 0xDF, 0xC1, 0xC2}, {0, 1, 2, 3}, {0, 1, 2, 3}},
        Row{{0x00, 0x60, 0x80, 0xE0}, {}, {}}, Row{{0xE0, 0x3F, 0x5F, 0x20}, {1, 3}, {2}}}) {
    const auto lists = windows::ListDutyTraces(row.configs);
    for (std::size_t channel = 0; channel < 2; ++channel) {
      const auto& wanted = channel == 0 ? row.remote1 : row.remote2;
      std::vector<int> pwms;
      for (std::size_t k = 0; k < static_cast<std::size_t>(lists[channel].Count); ++k) {
        pwms.push_back(lists[channel].Pwm[k]);
        EXPECT_EQ(lists[channel].Name[k], QString("PWM%1").arg(pwms.back() + 1));
      }
      EXPECT_EQ(pwms, wanted);
    }
  }
}

TEST(TraceNames, StandLevelWithTheirValueAndStayInTheZone) {
  const windows::TraceZone zone{0.59F, -10, 110};
  EXPECT_FLOAT_EQ(TraceLabelTop(zone, 110), 0.03F);
  EXPECT_FLOAT_EQ(TraceLabelTop(zone, -10), 0.59F);
  EXPECT_NEAR(TraceLabelTop(zone, 50), 0.31, 1e-6);
  EXPECT_FLOAT_EQ(TraceLabelTop(zone, 190), 0.03F);
  EXPECT_FLOAT_EQ(TraceLabelTop(zone, -64), 0.59F);
}

}  // namespace
}  // namespace zth::testing

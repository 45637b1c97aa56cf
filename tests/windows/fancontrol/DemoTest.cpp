#include <gtest/gtest.h>

#include "chip/Measurements.h"
#include "link/Declarations.h"
#include "tests/support/Steps.h"
#include "windows/SharedState.h"
#include "windows/fancontrol/Demo.h"
#include "windows/fancontrol/DynTminModel.h"

namespace zth::testing {
namespace {

// On a chip of zeros. A write to a PWM's configuration is followed by the look at its manual flag; a register that is
// changed twice is read again in between.
constexpr char kOnZeros[] =
    "R21 W21=40 R21 R22 W22=40 R22 R23 W23=40 R23 R24 W24=40 R24 R0D W0D=02 W2C=FF R02 W02=40 R07 W07=0F R0F W0F=08 "
    "R0F W0F=09 R30 W30=90 R33 W33=20 R0B W0B=02 R0B W0B=22 R64 W64=20 R62 W62=02 W52=9A R62 W62=B2 W5B=95 W5E=68 "
    "W46=5F "
    "W4A=6D R01 W01=20";
// On a chip of ones the same transfers, by which the bits that stay are seen.
constexpr char kOnOnes[] =
    "R21 W21=5F R21 R22 W22=5F R22 R23 W23=5F R23 R24 W24=5F R24 R0D W0D=FF W2C=FF R02 W02=7F R07 W07=FF R0F W0F=FF "
    "R0F W0F=FF R30 W30=FF R33 W33=FF R0B W0B=FF R0B W0B=FF R64 W64=2F R62 W62=F2 W52=9A R62 W62=B2 W5B=95 W5E=68 "
    "W46=5F "
    "W4A=6D R01 W01=2F";

// Behind the set-up the window reads anew, and as it is ready, each control that changes by that writes back what has
// just been read, 0x64 whole.
TEST(Demo, TheButtonSendsTheSetUpAndWhatTheReloadWritesBackOnBothLinks) {
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
      EXPECT_TRUE(windows::DemoRunning);
    }
  }
}

/// Registers of Remote2: a temperature, and the state that dynamic Tmin is drawn by.
void PutRemote2(Desk& desk, int quarters) {
  Put(desk.board.Chip(), "5E=68 5B=95 46=5F 4A=6D");
  desk.board.Chip()[0x8C] = static_cast<std::uint8_t>((quarters % 4) * 64);
  desk.board.Chip()[0x8D] = static_cast<std::uint8_t>(64 + quarters / 4);
}

TEST(Demo, LiftsRemote2ForTheMonitorAndNotForTheLog) {
  Desk desk;
  desk.Start();
  PutRemote2(desk, 4 * 20);
  windows::DemoRunning = true;
  desk.Advance(3000);
  const auto& live = chip::Measurements;
  EXPECT_EQ(live.Temperature[2], 35.0F);
  EXPECT_EQ((std::array{live.PolledTmin[2], live.PolledOpPoint[2], live.PolledLowLimit[2], live.PolledHighLimit[2]}),
            (std::array<std::int16_t, 4>{55, 100, 46, 60}));
  EXPECT_EQ(live.PolledTmin[1], desk.board.Chip()[0x5D] - 64) << "Remote1 stays";
  EXPECT_EQ(chip::LogChannelTable[2].Value, 20.0F);
  EXPECT_EQ(chip::LogChannelTable[41].Value, 40.0F);
  EXPECT_EQ(chip::LogChannelTable[44].Value, 85.0F);
  windows::DemoRunning = false;
  desk.Advance(3000);
  EXPECT_EQ(live.Temperature[2], 20.0F);
  EXPECT_EQ(live.PolledTmin[2], 40);
}

TEST(Demo, ForcesItsOneTherm2EventAtFiftyDegreesAsDrawn) {
  for (const auto buses : {Desk::Buses::Usb, Desk::Buses::Smbus}) {
    Desk desk(buses);
    desk.Start();
    const double waited = desk.clock.waitedMs;
    windows::DemoRunning = true;
    PutRemote2(desk, 4 * 34 + 3);
    desk.Advance(3000);
    EXPECT_EQ(Writes(desk.board.TakeTraffic()), Traffic{}) << "34.75 degrees are not enough";
    PutRemote2(desk, 4 * 35);
    desk.Advance(1500);
    EXPECT_EQ(Writes(desk.board.TakeTraffic()), T("W52=40 W52=9A"));
    EXPECT_EQ(desk.clock.waitedMs - waited, 500);
    EXPECT_TRUE(windows::DemoThermTripped);
    // Stopping and running again brings no second one.
    windows::DemoRunning = false;
    desk.Advance(1000);
    windows::DemoRunning = true;
    desk.Advance(3000);
    EXPECT_EQ(Writes(desk.board.TakeTraffic()), Traffic{});
    EXPECT_EQ(desk.clock.waitedMs - waited, 500);
  }
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

TEST(TraceNames, StandLevelWithTheirValueAndStayInTheZone) {
  const std::pair<int, float> rows[]{{110, 0.03F}, {-10, 0.59F}, {50, 0.31F}, {190, 0.03F}, {-64, 0.59F}};
  for (const auto& [value, top] : rows)
    EXPECT_FLOAT_EQ(TraceLabelTop(windows::TraceZone{0.59F, -10, 110}, value), top) << value;
}

}  // namespace
}  // namespace zth::testing

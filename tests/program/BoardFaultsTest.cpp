#include <functional>

#include "chip/Measurements.h"
#include "link/Declarations.h"
#include "tests/support/SimulatedDesk.h"
#include "tests/support/Steps.h"

namespace zth::testing {
namespace {

using chip::Measurements;

bool Lamp(Desk& desk, const QString& name) {
  return Held(*desk.Main().FindWindow("frmLimits"), name) == "1";
}

struct Fault {
  const char* line;                       ///< of the board's settings; it strikes at 60 s
  std::function<bool(Desk& desk)> shows;  ///< what the user sees; false before, true after
};

const Fault kFaults[] = {
    {"fan 2 stalled", [](Desk&) { return Measurements.TachRpm[1] == 0; }},
    {"heater 1 stuck at 100 %", [](Desk&) { return Measurements.Temperature[1] > 40; }},
    {"diode 1 open", [](Desk& desk) { return Lamp(desk, "tglTempAlert(4)"); }},
    {"supply pin 25 at 70 %", [](Desk&) { return Measurements.Voltage[18] < 2.5F; }},
    {"therm 1 low", [](Desk&) { return Measurements.ThermPercent[0] > 50; }},
    {"register 0x5C stuck at 0x40", [](Desk&) { return Measurements.PolledTmin[0] == 0; }},
    {"register 0x89 bit 7 flipped",
     [](Desk&) { return Measurements.Temperature[0] > 100 || Measurements.Temperature[0] < -20; }},
    {"pin 27 asserted", [](Desk& desk) { return Lamp(desk, "tglDigAlert(4)"); }},
};

TEST(BoardFaults, AreShownWhereTheyBelongAndTheProgramRunsOn) {
  for (const Fault& fault : kFaults) {
    SCOPED_TRACE(fault.line);
    SimulatedDesk board(std::string("fault at 60 ") + fault.line + "\n");
    Desk& desk = board.desk;
    desk.Start();
    // Tachs 1 to 4 on, all limits at their defaults, the windows that tell of faults open.
    Do(desk.Open("frmEasySetup"), "cmdApply");
    for (const char* window : {"frmLimits", "frmGPIO", "frmHeaters"}) desk.Open(window);
    desk.Advance(30000);
    EXPECT_FALSE(fault.shows(desk)) << "before it strikes";
    desk.Advance(90000);
    EXPECT_TRUE(fault.shows(desk)) << "after it has struck";
    EXPECT_TRUE(desk.prompts.shown.empty());
    EXPECT_TRUE(desk.process.ends.empty());
  }
}

TEST(LinkFaults, ThatPassLeaveTheProgramRunning) {
  struct Row {
    const char* settings;
    std::function<bool()> shows;  ///< behind a minute
  };
  for (const Row& row : {
           Row{"connect-at-try = 20\nfault from 40 to 50 transfer slow 250 ms\n",
               [] { return link::InterfaceMode == link::kModeUsb && Measurements.Temperature[0] > 20; }},
           Row{"firmware = refused\n", [] { return link::DeviceAddress == 0x2C && Measurements.Temperature[0] > 20; }},
           Row{"usb = none\nfirmware = refused\nfault at 30 transfer fails on smbus\n",  // reads all ones
               [] { return Measurements.Temperature[0] == 191.75F && Measurements.TachRpm[0] == 0; }},
       }) {
    SCOPED_TRACE(row.settings);
    SimulatedDesk board(row.settings);
    board.desk.Start();
    board.desk.Open("frmGPIO");
    board.desk.Advance(60000);
    EXPECT_TRUE(row.shows());
    EXPECT_TRUE(board.desk.process.ends.empty());
  }
}

}  // namespace
}  // namespace zth::testing

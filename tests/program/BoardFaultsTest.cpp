#include <functional>

#include <gtest/gtest.h>

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

struct LinkFault {
  const char* name;
  const char* line;
  const char* message;  ///< of the box that ends the program
};

class LinkFaults : public ::testing::TestWithParam<LinkFault> {};

TEST_P(LinkFaults, EndTheProgramInOrderWithOneBox) {
  SimulatedDesk board(std::string(GetParam().line) + "\n");
  Desk& desk = board.desk;
  desk.prompts.script = {platform::BoxAnswer::Ok};
  int requestsAtTheBox = 0;
  desk.prompts.whileShown = [&] {
    requestsAtTheBox = board.usbRequests;
    desk.clock.Advance(500);
  };
  if (!desk.RunMain()) {
    desk.Open("frmGPIO");
    desk.Advance(60000);
  }
  ASSERT_EQ(desk.prompts.shown.size(), 1U);
  EXPECT_EQ(desk.prompts.shown[0].text, GetParam().message);
  EXPECT_EQ(desk.process.ends, std::vector<int>{1});
  EXPECT_EQ(board.usbRequests, requestsAtTheBox) << "a transfer behind the failure";
}

constexpr char kInterrupted[] = "Communications Interrupted - Check USB connections";

INSTANTIATE_TEST_SUITE_P(
    Kinds, LinkFaults,
    ::testing::Values(LinkFault{"TransferFailsOnce", "fault at 30 transfer fails once", kInterrupted},
                      LinkFault{"TransferFailsByRegister", "fault at 30 transfer fails register 0x8C", kInterrupted},
                      LinkFault{"TransferFailsByRequest", "fault at 30 transfer fails request 0xDC", kInterrupted},
                      LinkFault{"AdapterUnplugged", "fault at 30 adapter unplugged", kInterrupted},
                      LinkFault{"NeverConnects", "connect-at-try = 21",
                                "Initial Connection Failed - Check USB connections"}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(LinkFaultsThatPass, ASlowLinkAndALateAdapterOnlyTakeTheirTime) {
  SimulatedDesk board("connect-at-try = 20\nfault from 40 to 50 transfer slow 250 ms\n");
  Desk& desk = board.desk;
  desk.Start();
  desk.Open("frmGPIO");
  desk.Advance(60000);
  EXPECT_TRUE(desk.process.ends.empty());
  EXPECT_GT(Measurements.Temperature[0], 20);
}

TEST(LinkFaultsThatPass, AnAdapterThatRefusesItsFirmwareLeavesTheHost) {
  SimulatedDesk board("firmware = refused\n");
  board.desk.Start();
  EXPECT_EQ(link::InterfaceMode, link::kModeSmbus);
  EXPECT_EQ(link::DeviceAddress, 0x2C);
  board.desk.Advance(2000);
  EXPECT_GT(Measurements.Temperature[0], 20);
}

TEST(LinkFaultsThatPass, AnSmbusThatFailsReadsAllOnesAndTheProgramRunsOn) {
  SimulatedDesk board("usb = none\nfirmware = refused\nfault at 30 transfer fails on smbus\n");
  Desk& desk = board.desk;
  desk.Start();
  desk.Advance(40000);
  EXPECT_EQ(Measurements.Temperature[0], 191.75F);
  EXPECT_EQ(Measurements.TachRpm[0], 0);
  EXPECT_TRUE(desk.process.ends.empty());
}

TEST(LinkFaultsThatPass, AHeaterThatFailsAsksAndGoesOn) {
  SimulatedDesk board("fault from 20 to 30 transfer fails request 0xDA\n");
  Desk& desk = board.desk;
  desk.Start();
  const QWidget& heaters = desk.Open("frmHeaters");
  desk.Advance(15000);
  desk.prompts.script = {platform::BoxAnswer::No};
  Do(heaters, "sldHeater(0)=50");
  ASSERT_EQ(desk.prompts.shown.size(), 1U);
  EXPECT_EQ(desk.prompts.shown[0].buttons, platform::BoxButtons::YesNo);
  desk.Advance(30000);
  EXPECT_TRUE(desk.process.ends.empty());
}

}  // namespace
}  // namespace zth::testing

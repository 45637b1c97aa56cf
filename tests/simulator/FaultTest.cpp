#include <algorithm>
#include <array>
#include <tuple>
#include <utility>

#include "simulator/SmbusHost.h"
#include "tests/simulator/UsbOnBench.h"

namespace zth::simulator {
namespace {

using namespace std::chrono_literals;

TEST(Faults, EachKindStartsAndEndsAsPlanned) {
  for (const auto& [plan, steps] : {
           std::pair{"from 1 to 2 register 0x2C stuck at 0x12\nfault at 1 register 0x3E bit 6 flipped",
                     "2C=80 ~1 2C:12 2C=99 2C:12 3E:01 ~1 2C:80"},  // a write to a stuck register is lost
           {"at 1 diode 3 open", "~0.9 C0:00 ~1 C0:80"},
           {"at 1 therm 1 low\nfault at 1 vr-hot 2 reported", "12=4A ~0.9 C1:00 ~1 C1:86"},  // pin 26 is VR_Hot2
           {"at 1 pin 27 asserted\nfault at 1 gpio 3 low", "10=7B 03=01 ~0.9 C6:00 BF:04 ~1 C6:80 BF:00"},
           // The THERM1 switch disconnects the pin from what pulls it.
           {"at 0 therm 1 low", "~1 C1:06 p4A=3B ~1 C1 C1:00"},
           {"at 60 heater 1 stuck at 100 %", "49=68 ~59 C0 C0:00 ~60 C0:04"},  // above 40 degrees
           {"at 3 fan 2 stalled", "07=0F ~2.9 C5:00 ~6 9A:FF 9B:FF"},
           {"from 1 to 2 adapter unplugged", "3E:41 p4A:3F ~1 3E:-1 p4A:-1 ~1 3E:41"},
           {"at 1 supply pin 24 at 80%", "~0.9 91:C0 73=B0 C4:00 ~1 91:99 C4:08"},  // below its low limit
           {"from 1 to 2 vid 0x2A", "10=FF ~0.9 78:FF C6:00 ~0.2 78:EA C6:40 C6:00 ~1 78:FF C6:40"},
       }) {
    SCOPED_TRACE(plan);
    Usb(std::string("noise = 0\nfault ") + plan + "\n").Play(steps);
  }
}

/// The readings of a warm board after some seconds of a plan: its sensors in quarters of a degree, then fans 2 and 3 in
/// RPM.
std::array<double, 6> Readings(const std::string& plan, double seconds = 310) {
  Usb usb("noise = 0\nfault at 0 heater 2 stuck at 100 %\nfault " + plan);
  usb.Play("07=FF");
  usb.Run(seconds);
  const auto word = [&usb](int low) { return usb.Read(low) | usb.Read(low + 1) << 8; };
  return {word(0x88) / 64.0, word(0x8A) / 64.0,      word(0x8C) / 64.0,
          word(0x8E) / 64.0, 5400000.0 / word(0x9A), 5400000.0 / word(0x9C)};
}

TEST(Faults, WhatWearsAndDriftsShowsInItsOwnReadings) {
  const auto sound = Readings("at 9 vid 0"), early = Readings("at 9 vid 0", 10);
  // The error of each of the four sensors in quarters of a degree, its tolerance, and the speed of fan 3 as a share of
  // a healthy one's.
  for (const auto& [plan, off, within, share] :
       {std::tuple{"at 10 tach 3 misses 50 %", std::array{0., 0., 0., 0.}, 0, 0.5},
        {"at 10 fan 3 at 60 %", {1, 1, 10, 1}, 2, 0.6},  // its sensor gets less air, the others a little less
        {"at 10 sensor 1 drifts -0.6 degrees a minute", {0, -12, 0, 0}, 1, 1},
        {"at 10 ambient at 40 degrees", {60, 60, 60, 60}, 1, 1},
        {"at 10 ambient drifts 3 degrees a minute", {55, 55, 55, 55}, 6, 1},  // they follow with a lag
        {"from 10 to 300 sensor 2 frozen", {0, 0, 0, 0}, 0, 1},
        {"at 10 sensor 2 frozen", {0, 0, early[2] - sound[2], 0}, 1, 1}}) {
    const auto ill = Readings(plan);
    for (std::size_t i = 0; i < 4; ++i) EXPECT_NEAR(ill[i] - sound[i], off[i], within) << plan << i;
    EXPECT_EQ(ill[4], sound[4]) << plan;
    EXPECT_NEAR(ill[5] / sound[5], share, 0.005) << plan;
  }
  EXPECT_GT(std::abs(early[2] - sound[2]), 8);
  double low = 2, high = 0;
  for (int second = 20; second < 60; ++second) {
    const double noisy = Readings("at 10 tach 3 noisy 20 %", second)[5] / sound[5];
    low = std::min(low, noisy), high = std::max(high, noisy);
  }
  EXPECT_TRUE(low > 0.79 && low < 0.9 && high > 1.1 && high < 1.22) << low << " to " << high;
}

TEST(Faults, TransfersFailAsOftenAsPlanned) {
  Usb usb("fault at 1 transfer fails once\nfault at 2 transfer fails 3 times\nfault from 4 to 5 transfer fails\n");
  for (const int expected : {0, 1, 3, 0, 10, 0}) {  // out of ten transfers per second
    int failures = 0;
    for (int i = 0; i < 10; ++i) failures += usb.Read(0x3E) != 0x41;
    EXPECT_EQ(failures, expected);
    usb.Wait(1s);
  }
}

TEST(Faults, FollowTheRequestAndTheRegisterOfBlocksToo) {
  Usb usb(
      "fault at 0 transfer fails request 0xDA\nfault at 0 transfer fails register 0x2C\n"
      "fault at 0 register 0x3E bit 6 flipped\n");
  EXPECT_EQ(usb.Ask(0xDC, 0x58, 0x3D, 1, 3), 0);
  EXPECT_EQ(usb.buffer[1], 0x01) << "the wrong bit in a block";
  EXPECT_NE(usb.Ask(0xDA, 0, 0, 1, 3), 0);
  EXPECT_NE(usb.Write(0x2C, 0), 0);
  EXPECT_NE(usb.Ask(0xDC, 0x58, 0x28, 1, 5), 0) << "a block that covers it";
  EXPECT_EQ(usb.Ask(0xDC, 0x58, 0x28, 1, 4), 0);
  usb.Play("2D=00 p4A:3F");
}

TEST(Faults, ASlowTransferIsReportedToTheLibrary) {
  Usb usb("fault from 1 to 2 transfer slow 250 ms request 0xDC register 0x88\n");
  for (const auto& [wait, first, delay] :
       {std::tuple{0s, 0x88, 0ms}, {1s, 0x88, 250ms}, {0s, 0x98, 0ms}, {1s, 0x88, 0ms}}) {
    usb.Wait(wait);
    usb.Ask(0xDC, 0x58, first, 1, 8);
    EXPECT_EQ(usb.adapter.TheBus().TakeDelay(), delay);
  }
}

TEST(Faults, AnUnpluggedAdapterAcceptsNothingAndThePcsBusKeepsWorking) {
  Usb usb("fault at 0 adapter unplugged\n");
  EXPECT_NE(usb.Ask(0xDA, 0, 0, 1, 3), 0);
  EXPECT_NE(usb.Connect(), 0);
  EXPECT_LE(usb.adapter.LoadFirmware(), 0);
  EXPECT_EQ(SmbusHost(Parsed("fault at 0 adapter unplugged\n")).Read(0x2C, 0x3E), 0x41);
}

TEST(Faults, AFailedTransferOnTheSmbusReadsAllOnesOrIsLost) {
  SmbusHost host(Parsed("fault at 0 transfer fails register 0x2C on smbus\nfault at 0 transfer fails on usb\n"));
  host.Write(0x2C, 0x2C, 0x11);
  EXPECT_EQ(host.Read(0x2C, 0x2C), 0xFF);
  EXPECT_EQ(host.Read(0x2C, 0x3E), 0x41);
  EXPECT_EQ(host.Failures(0x2C), 2);
}

TEST(SimulatorSettings, EveryKeyIsAccepted) {
  const Settings s = Parsed(
      "seed = 12345\r\nambient = -5.5  # a cold room\ntime-factor = 20\nrevision = 3\nfan-pulses = 4\nnoise = 0\n"
      "d2-connector = open\nusb = 0x58 0x5C\nsmbus = none\nfirmware = refused\nconnect-at-try = 21\n"
      "set-up = 0x07 0xFF 2 64");
  EXPECT_TRUE(s.seed == 12345U && s.ambientC == -5.5 && s.timeFactor == 20 && s.revision == 3 && s.fanPulses == 4);
  EXPECT_TRUE(s.noise == 0 && !s.diodeAtD2Connector && s.usbChips == (std::vector<std::uint8_t>{0x58, 0x5C}));
  EXPECT_TRUE(s.smbusChips.empty() && s.firmwareRefused && s.connectAtTry == 21);
  EXPECT_EQ(s.setUp, (std::vector<std::uint8_t>{7, 0xFF, 2, 0x40}));
}

TEST(SimulatorSettings, AFaultKeepsItsTimesNumbersAndFilters) {
  const FaultPlan plan = Parsed(
                             "fault from 1.5 to 20 transfer fails 4 times register 0x89 request 0xDC on usb\n"
                             "fault at 3 supply pin 21 at 120 % on smbus\n")
                             .faults;
  ASSERT_EQ(plan.size(), 2U);
  const Fault &fails = plan[0], &supply = plan[1];
  EXPECT_TRUE(fails.from == 1500ms && fails.until == 20s && fails.count == 4);
  EXPECT_TRUE(fails.address == 0x89 && fails.request == 0xDC && fails.link == Link::Usb);
  EXPECT_TRUE(supply.kind == FaultKind::SupplyFactor && supply.pin == VoltagePin::P21 && supply.value == 120);
  EXPECT_TRUE(!supply.until.has_value() && supply.link == Link::Smbus);
}

TEST(SimulatorSettings, AWrongLineIsNamedAndSaysWhatIsWrong) {
  // Lines, each with the message about it.
  std::istringstream cases(
      "ambient => key = value; ambient 25 => key = value; colour = red => 'colour' is no setting; "
      "ambient = warm => from -40 to 100; ambient = 25 26 => from -40 to 100; "
      "ambient = 101 => from -40 to 100; ambient = nan => from -40 to 100; "
      "time-factor = 0 => from 0.01 to 1000; revision = 256 => from 0 to 255; revision = 1.5 => whole number; "
      "seed = -1 => whole number; usb = => bus addresses; usb = 0x58 0x80 => '0x80'; smbus = 0x2C 44 => twice; "
      "set-up = 7 => in turn; set-up = 7 256 => '256'; "
      "firmware = maybe => accepted or refused; fault => begins with; fault fan 1 stalled => begins with; "
      "fault at soon fan 1 stalled => 'soon'; fault from 5 to 5 fan 1 stalled => ends before; "
      "fault at 5 => missing; fault at 5 fan 9 stalled => fans 1 to 8; "
      "fault at 5 fan 0 stalled => fans 1 to 8; fault at 5 heater 3 stuck at 5 % => heaters; "
      "fault at 5 heater 1 stuck at 101 % => 0 to 100; fault at 5 diode 0 open => diodes; "
      "fault at 5 therm 3 low => THERM; fault at 5 vr-hot 0 reported => regulators; "
      "fault at 5 gpio 9 low => GPIOs; fault at 5 supply pin 14 at 80 % => pin; "
      "fault at 5 register 0x100 stuck at 0 => 0xFF; fault at 5 register 1 bit 8 flipped => 0 to 7; "
      "fault at 5 register 1 stuck => stuck at; fault at 5 transfer fails 0 times => at least; "
      "fault at 5 transfer slow 0 ms => 60000; fault at 5 transfer fails request 0x1DA => no request; "
      "fault at 5 transfer vanishes => transfer fails; fault at 5 adapter unplugged on fire => usb or smbus; "
      "fault at 5 coffee spilled => not known; fault at 5 fan 2 at 0 % => 1 to 100 %; fault at 5 fan 1.5 stalled => "
      "fans; "
      "fault at 5 tach 1 noisy 91 % => 90 %; fault at 5 tach 0 misses 1 % => tachs; fault at 5 vid 0x40 => 0x3F; "
      "fan-stall = 91 => 0 to 90; fan-rise = 0 => 0.05 to 20; heat-capacity = 1 2 => one for each; "
      "still-air = 1 2 3 0 => 0.01 to 10; "
      "fault at 5 sensor 4 frozen => sensors 0; fault at 5 sensor 1 drifts 601 degrees a minute => -600 to 600; "
      "fault at 5 ambient at warm degrees => not known; fault at 5 ambient at 101 degrees => -40 to 100; ");
  for (std::string row; std::getline(cases >> std::ws, row, ';');) {
    const std::string line = row.substr(0, row.find(" => "));
    const std::string says = row.substr(line.size() + 4);
    const auto parsed = ParseSettings("ambient = 30\n\n" + line + "\nambient = 20\n");
    const auto* error = std::get_if<SettingsError>(&parsed);
    ASSERT_NE(error, nullptr) << line;
    EXPECT_EQ(error->line, 3) << line;
    EXPECT_NE(error->text.find(says), std::string::npos) << line << " gave: " << error->text;
  }
}

}  // namespace
}  // namespace zth::simulator

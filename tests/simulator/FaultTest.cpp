#include <chrono>
#include <string>
#include <tuple>
#include <utility>

#include <gtest/gtest.h>

#include "simulator/SmbusHost.h"
#include "tests/simulator/UsbOnBench.h"

namespace zth::simulator {
namespace {

using namespace std::chrono_literals;

TEST(Faults, EachKindBeginsAndEndsAsThePlanSays) {
  for (const auto& [plan, steps] : {
           std::pair{"from 1 to 2 register 0x2C stuck at 0x12\nfault at 1 register 0x3E bit 6 flipped",
                     "2C=80 ~1 2C:12 2C=99 2C:12 3E:01 ~1 2C:80"},  // a write to what sticks is lost
           {"at 1 diode 3 open", "~0.9 C0:00 ~1 C0:80"},
           {"at 1 therm 1 low\nfault at 1 vr-hot 2 reported", "12=4A ~0.9 C1:00 ~1 C1:86"},  // pin 26 is VR_Hot2
           {"at 1 pin 27 asserted\nfault at 1 gpio 3 low", "10=7B 03=01 ~0.9 C6:00 BF:04 ~1 C6:80 BF:00"},
           // The THERM1 switch parts the pin from whoever pulls it.
           {"at 0 therm 1 low", "~1 C1:06 p4A=3B ~1 C1 C1:00"},
           {"from 1 to 2 adapter unplugged", "3E:41 p4A:3F ~1 3E:-1 p4A:-1 ~1 3E:41"},
           {"at 1 supply pin 24 at 80%", "~0.9 91:C0 73=B0 C4:00 ~1 91:99 C4:08"},  // below its low limit
       }) {
    SCOPED_TRACE(plan);
    Usb(std::string("noise = 0\nfault ") + plan + "\n").Play(steps);
  }
}

TEST(Faults, TransfersFailAsOftenAsThePlanSays) {
  Usb usb("fault at 1 transfer fails once\nfault at 2 transfer fails 3 times\nfault from 4 to 5 transfer fails\n");
  for (const int expected : {0, 1, 3, 0, 10, 0}) {  // of ten transfers in each second
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

TEST(Faults, AnUnpluggedAdapterTakesNothingAndTheBusOfThePcGoesOn) {
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
}

}  // namespace
}  // namespace zth::simulator

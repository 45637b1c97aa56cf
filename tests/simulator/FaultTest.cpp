#include <chrono>
#include <string>
#include <tuple>

#include <gtest/gtest.h>

#include "simulator/SmbusHost.h"
#include "tests/simulator/UsbOnBench.h"

namespace zth::simulator {
namespace {

using namespace std::chrono_literals;

TEST(Faults, TransfersFailAsOftenAsThePlanSays) {
  Usb usb("fault at 1 transfer fails once\nfault at 2 transfer fails 3 times\nfault from 4 to 5 transfer fails\n");
  for (const int expected : {0, 1, 3, 0, 10, 0}) {  // of ten transfers in each second
    int failures = 0;
    for (int i = 0; i < 10; ++i) failures += usb.Read(0x3E) != 0x41;
    EXPECT_EQ(failures, expected);
    usb.Wait(1s);
  }
}

TEST(Faults, TransfersFailByRequestOrByRegister) {
  Usb usb("fault at 0 transfer fails request 0xDA\nfault at 0 transfer fails register 0x2C\n");
  EXPECT_NE(usb.Ask(0xDA, 0, 0, 1, 3), 0);
  EXPECT_NE(usb.Write(0x2C, 0), 0);
  EXPECT_EQ(usb.Write(0x2D, 0), 0);
  EXPECT_NE(usb.Ask(0xDC, 0x58, 0x28, 1, 5), 0) << "a block that covers it";
  EXPECT_EQ(usb.Ask(0xDC, 0x58, 0x28, 1, 4), 0);
  EXPECT_EQ(usb.ReadPort(0x4A), 0x3F);
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

TEST(Faults, ARegisterSticksOrReadsABitWrong) {
  Usb usb("fault from 1 to 2 register 0x2C stuck at 0x12\nfault at 1 register 0x3E bit 6 flipped\n");
  usb.Write(0x2C, 0x80);
  usb.Wait(1s);
  EXPECT_EQ(usb.Read(0x2C), 0x12);
  EXPECT_EQ(usb.Write(0x2C, 0x99), 0);
  EXPECT_EQ(usb.Read(0x2C), 0x12);
  EXPECT_EQ(usb.Read(0x3E), 0x01);
  EXPECT_EQ(usb.Ask(0xDC, 0x58, 0x3D, 1, 3), 0);
  EXPECT_EQ(usb.buffer[1], 0x01);
  usb.Wait(1s);
  EXPECT_EQ(usb.Read(0x2C), 0x80) << "the write was lost";
}

TEST(Faults, AStalledFanReadsAllOnesAndRecovers) {
  Usb usb("fault from 10 to 20 fan 2 stalled\n");
  usb.Write(0x07, 0xFF);
  for (const auto& [wait, stalled] : {std::pair{9s, false}, {3s, true}, {18s, false}}) {
    usb.Wait(wait);
    EXPECT_EQ(usb.Read(0x9B) == 0xFF, stalled);
    EXPECT_LT(usb.Read(0x99), 0x0C) << "its neighbour turns";
  }
}

TEST(Faults, AStuckHeaterWarmsWhateverIsSetAndReportsWhatWasSet) {
  Usb usb("noise = 0\nfault at 0 heater 1 stuck at 100 %\n");
  usb.Ask(0xDA, 1, 0, 0, 1);
  usb.Wait(1s);
  const int before = usb.Read(0x8B);
  usb.Wait(30s);
  EXPECT_GT(usb.Read(0x8B), before + 3);
  usb.Ask(0xDA, 0, 0, 1, 3);
  EXPECT_EQ(usb.buffer[0], 0);
}

TEST(Faults, DiodesAndSuppliesFailByNumber) {
  Usb usb("noise = 0\nfault at 1 diode 3 open\nfault at 1 supply pin 24 at 80%\n");
  usb.Wait(900ms);
  EXPECT_EQ(usb.Read(0xC0), 0);
  const int sound = usb.Read(0x91);
  usb.Write(0x73, 0xB0);  // low limit of pin 24
  usb.Wait(1s);
  EXPECT_EQ(usb.Read(0xC0), 0x80);
  EXPECT_NEAR(usb.Read(0x91), 0.8 * sound, 1);
  EXPECT_EQ(usb.Read(0xC4), 0x08);
}

TEST(Faults, PinsAreHeldByHand) {
  Usb usb("fault at 1 therm 1 low\nfault at 1 vr-hot 2 reported\nfault at 1 pin 27 asserted\nfault at 1 gpio 3 low\n");
  usb.Write(0x12, 0x4A);  // pin 26 is VR_Hot2
  usb.Write(0x10, 0x7B);  // pin 3 is GPIO 3
  usb.Write(0x03, 0x01);
  usb.Wait(900ms);
  EXPECT_EQ(usb.Read(0xC1), 0x00);
  EXPECT_EQ(usb.Read(0xBF), 0x04);
  usb.Wait(1s);
  EXPECT_EQ(usb.Read(0xC1), 0x86);
  EXPECT_EQ(usb.Read(0xC6), 0x80);
  EXPECT_EQ(usb.Read(0xBF), 0x00);
  usb.Ask(0xDF, 0x4A, 0x3B, 0, 0);  // the THERM1 switch parts the pin from whoever pulls it
  usb.Wait(1s);
  usb.Read(0xC1);
  EXPECT_EQ(usb.Read(0xC1), 0x80);
}

TEST(Faults, AnUnpluggedAdapterAnswersNothingAndTheBusOfThePcGoesOn) {
  const std::string plan = "fault from 1 to 2 adapter unplugged\n";
  Usb usb(plan);
  SmbusHost host(Parsed(plan));
  usb.Wait(1s);
  host.TheBus().AdvanceReal(1s);
  EXPECT_EQ(usb.Read(0x3E), -1);
  EXPECT_NE(usb.Ask(0xDA, 0, 0, 1, 3), 0);
  EXPECT_NE(usb.Connect(), 0);
  EXPECT_LE(usb.adapter.LoadFirmware(), 0);
  EXPECT_EQ(host.Read(0x2C, 0x3E), 0x41);
  usb.Wait(1s);
  EXPECT_EQ(usb.Read(0x3E), 0x41);
}

TEST(Faults, AFailedTransferOnTheSmbusReadsAllOnesOrIsLost) {
  SmbusHost host(Parsed("fault at 0 transfer fails register 0x2C on smbus\nfault at 0 transfer fails on usb\n"));
  host.Write(0x2C, 0x2C, 0x11);
  EXPECT_EQ(host.Read(0x2C, 0x2C), 0xFF);
  EXPECT_EQ(host.Read(0x2C, 0x3E), 0x41);
}

}  // namespace
}  // namespace zth::simulator

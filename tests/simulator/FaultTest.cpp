#include <chrono>
#include <cstdint>
#include <string>
#include <variant>

#include <gtest/gtest.h>

#include "simulator/SettingsText.h"
#include "simulator/SmbusHost.h"
#include "simulator/UsbAdapter.h"

namespace zth::simulator {
namespace {

using namespace std::chrono_literals;

Settings Parsed(const std::string& text) {
  const auto parsed = ParseSettings(text);
  const auto* error = std::get_if<SettingsError>(&parsed);
  EXPECT_EQ(error, nullptr) << error->line << ": " << error->text;
  return error == nullptr ? std::get<Settings>(parsed) : Settings{};
}

struct Usb {
  explicit Usb(const std::string& text) : adapter(Parsed(text)) {}

  void Wait(std::chrono::nanoseconds time) { adapter.TheBus().AdvanceReal(time); }
  int Ask(int request, int value, int index, int direction, int length) {
    return adapter.Request(static_cast<std::int16_t>(request), value, index, static_cast<std::int16_t>(direction),
                           static_cast<std::int16_t>(length), buffer);
  }
  int Read(int reg) {
    buffer[0] = 0;
    return Ask(0xDE, 0x58, reg, 1, 1) == 0 ? buffer[0] : -1;
  }
  int Write(int reg, int value) { return Ask(0xDE, 0x58, value * 256 + reg, 0, 0); }
  int Tach(int fan) {
    const int low = (fan < 5 ? 0x98 : 0x9A) + 2 * (fan - 1);
    return Read(low) | Read(low + 1) << 8;
  }

  UsbAdapter adapter;
  std::uint8_t buffer[65] = {};
};

TEST(Faults, TransfersFailAsOftenAsThePlanSays) {
  Usb usb("fault at 1 transfer fails once\nfault at 2 transfer fails 3 times\nfault from 4 to 5 transfer fails\n");
  const auto failures = [&usb] {
    int count = 0;
    for (int i = 0; i < 10; ++i) count += usb.Read(0x3E) != 0x41;
    return count;
  };
  EXPECT_EQ(failures(), 0);
  usb.Wait(1s);
  EXPECT_EQ(failures(), 1);
  usb.Wait(1s);
  EXPECT_EQ(failures(), 3);
  usb.Wait(2s);
  EXPECT_EQ(failures(), 10);
  usb.Wait(1s);
  EXPECT_EQ(failures(), 0);
}

TEST(Faults, TransfersFailByRequestOrByRegister) {
  Usb usb("fault at 0 transfer fails request 0xDA\nfault at 0 transfer fails register 0x2C\n");
  EXPECT_NE(usb.Ask(0xDA, 0, 0, 1, 3), 0);
  EXPECT_NE(usb.Write(0x2C, 0), 0);
  EXPECT_EQ(usb.Write(0x2D, 0), 0);
  EXPECT_NE(usb.Ask(0xDC, 0x58, 0x28, 1, 5), 0) << "a block that covers it";
  EXPECT_EQ(usb.Ask(0xDC, 0x58, 0x28, 1, 4), 0);
  EXPECT_EQ(usb.Ask(0xDF, 0x4A, 0, 1, 1), 0);
}

TEST(Faults, ASlowTransferIsReportedToTheLibrary) {
  Usb usb("fault from 1 to 2 transfer slow 250 ms request 0xDC register 0x88\n");
  const auto delayOf = [&usb](int first) {
    usb.Ask(0xDC, 0x58, first, 1, 8);
    return usb.adapter.TheBus().TakeDelay();
  };
  EXPECT_EQ(delayOf(0x88), 0ms);
  usb.Wait(1s);
  EXPECT_EQ(delayOf(0x88), 250ms);
  EXPECT_EQ(delayOf(0x98), 0ms);
  usb.Wait(1s);
  EXPECT_EQ(delayOf(0x88), 0ms);
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
  usb.Wait(9s);
  EXPECT_LT(usb.Tach(2), 3000);
  usb.Wait(3s);
  EXPECT_EQ(usb.Tach(2), 0xFFFF);
  EXPECT_LT(usb.Tach(1), 3000);
  usb.Wait(18s);
  EXPECT_LT(usb.Tach(2), 3000);
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
  EXPECT_NE(usb.Ask(0xDD, 0x30, 0x33, 0, 0), 0);
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

#include <sstream>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "replay/Links.h"
#include "replay/Pace.h"
#include "replay/Replay.h"

namespace zth::replay {
namespace {

/// A recording behind both libraries' entries.
class Recording {
 public:
  explicit Recording(const std::string& lines) : text_("# ZTH4718 bus traffic 1\n" + lines) {}

  int Usb(int address, int reg) { return Request(0xDE, address, reg, 1); }
  int Write(int address, int reg, int value) { return usbLink.Request(0xDE, address, value * 256 + reg, 0, 0, &byte); }
  /// What was read; the negative result of a failure.
  int Request(int request, int value, int index, int length) {
    std::array<std::uint8_t, 65> buffer{};
    const auto result = usbLink.Request(static_cast<std::int16_t>(request), value, index, 1,
                                        static_cast<std::int16_t>(length), buffer.data());
    return result != 0 ? -result : buffer[static_cast<std::size_t>(length) - 1];
  }
  int Smbus(int address, int reg) {
    return smbusLink.Read(static_cast<std::uint8_t>(address), static_cast<std::uint8_t>(reg));
  }

 private:
  tasks::TrafficReader::Source Open() const {
    return [text = text_]() mutable { return std::exchange(text, {}); };
  }
  std::string text_;

 public:
  Replay usb{[this] { return Open(); }, 1, "it"};
  Replay smbus{[this] { return Open(); }, 2, "it"};
  UsbLink usbLink{[this](const auto& request) { return usb.Answer(request); }};
  SmbusLink smbusLink{[this](const auto& request) { return smbus.Answer(request); }};
  std::uint8_t byte = 0;
};

TEST(Replay, EachFormOfRequestIsAnsweredAndFailsAsRecorded) {
  Recording it(
      "0 usb firmware -> 3\n1 usb connect -> fail 7\n2 usb connect -> 30 33\n3 usb r 58 3e -> 41\n"
      "4 usb rb 58 20 2 -> 01 02\n5 usb w 58 21 31 -> ok\n6 usb w 58 21 32 -> fail -5\n7 usb port r 4a -> 3c\n"
      "8 usb port w 4a 03 -> ok\n9 usb port wb 4a 3c -> fail\n10 usb heater w 1 50 -> ok\n11 usb heater r -> 64 00 07\n"
      "12 usb r 58 3e -> fail\n13 smbus r 00 00 -> fail\n14 smbus detect -> ok\n15 smbus r 2c 3e -> fail 12\n"
      "16 smbus w 2c 21 31 -> ok\n17 smbus w 2c 21 32 -> fail\n");
  const auto command = [&it](int request, int value, int index, int length) {
    return it.usbLink.Request(static_cast<std::int16_t>(request), value, index, 0, static_cast<std::int16_t>(length),
                              &it.byte);
  };
  EXPECT_EQ(it.usbLink.LoadFirmware(), 3);
  EXPECT_EQ(command(0xDD, 0x30, 0x33, 0), 7);
  EXPECT_EQ(command(0xDD, 0x30, 0x33, 0), 0);
  EXPECT_EQ(it.Usb(0x58, 0x3E), 0x41);
  EXPECT_EQ(it.Request(0xDC, 0x58, 0x20, 2), 2);
  EXPECT_EQ(it.Write(0x58, 0x21, 0x31), 0);
  EXPECT_EQ(it.Write(0x58, 0x21, 0x32), -5);
  EXPECT_EQ(it.Request(0xDF, 0x4A, 0, 1), 0x3C);
  EXPECT_EQ(command(0xDF, 0x4A, 0x03, 0), 0);
  EXPECT_EQ(command(0xDF, 0x4A, 0x3C, 1), 1);
  EXPECT_EQ(command(0xDA, 1, 50, 1), 0);
  EXPECT_EQ(it.Request(0xDA, 0, 0, 3), 7);
  EXPECT_EQ(it.Usb(0x58, 0x3E), -1);
  EXPECT_EQ(it.usb.Trouble(), "");
  EXPECT_EQ(it.Smbus(0, 0), 0xFF);
  it.smbusLink.Detect();
  EXPECT_EQ(it.Smbus(0x2C, 0x3E), 0x12);
  EXPECT_EQ(it.smbus.Failures(0x2C), 1);
  it.smbusLink.Write(0x2C, 0x21, 0x31);
  EXPECT_EQ(it.smbus.Failures(0x2C), 1);
  it.smbusLink.Write(0x2C, 0x21, 0x32);
  EXPECT_EQ(it.smbus.Failures(0x2C), 2);
  EXPECT_EQ(it.smbus.Failures(0x2D), 0);
  EXPECT_EQ(it.smbus.Trouble(), "");
}

TEST(Replay, WhereTheOrderDepartsItSaysSoOnceAndGoesOnFromWhatIsKnown) {
  Recording it(
      "0 usb r 58 20 -> 01\n1 usb r 58 21 -> 02\n2 usb w 58 20 05 -> ok\n3 usb r 58 20 -> 05\n4 usb r 58 30 -> 09\n");
  EXPECT_EQ(it.Usb(0x58, 0x20), 1);
  EXPECT_EQ(it.Usb(0x58, 0x20), 1) << "as last read";
  const std::string parted = it.usb.Trouble();
  EXPECT_EQ(parted, "Program and recording part at line 3 of it: recorded \"usb r 58 21\", asked \"usb r 58 20\"");
  EXPECT_EQ(it.Write(0x58, 0x20, 0x07), 0);
  EXPECT_EQ(it.Usb(0x58, 0x20), 7) << "as last written";
  EXPECT_EQ(it.Usb(0x58, 0x30), 9) << "as it will be read first";
  EXPECT_EQ(it.Usb(0x5A, 0x3E), 0xFF) << "a chip that the recording does not know";
  EXPECT_EQ(it.Usb(0x58, 0x21), 2) << "the recording has waited";
  EXPECT_EQ(it.Write(0x58, 0x20, 0x05), 0);
  EXPECT_EQ(it.Usb(0x58, 0x30), 9) << "a read left out is passed over";
  EXPECT_EQ(it.Usb(0x58, 0x20), 5);
  EXPECT_EQ(it.usb.Trouble(), parted);
}

TEST(Replay, NeitherAWriteNorAFailureIsPassedOver) {
  Recording it("0 usb r 58 20 -> 01\n1 usb r 58 21 -> fail\n2 usb r 58 22 -> 03\n3 usb r 58 20 -> 04\n");
  EXPECT_EQ(it.Usb(0x58, 0x22), 3) << "known from its first read";
  EXPECT_EQ(it.Usb(0x58, 0x21), -1) << "the failure";
  EXPECT_EQ(it.Usb(0x58, 0x20), 4);
}

TEST(Replay, AfterItsEndItSaysSoAndGoesOn) {
  Recording it("0 smbus r 2c 20 -> 01\n");
  EXPECT_EQ(it.Smbus(0x2C, 0x20), 1);
  EXPECT_EQ(it.Smbus(0x2C, 0x20), 1);
  EXPECT_EQ(it.smbus.Trouble(), "it ends with line 2, the program asks on with \"smbus r 2c 20\"");
  EXPECT_EQ(it.Smbus(0x2C, 0x77), 0xFF);
  EXPECT_EQ(it.smbus.Failures(0x2C), 1) << "what is not known is said to be";
  EXPECT_FALSE(it.usb.HasCalls());
  EXPECT_EQ(it.usbLink.LoadFirmware(), 0);
  EXPECT_EQ(it.usb.Trouble(), "it has no call over this link");
}

TEST(Replay, ARecordingThatCannotBeReadIsNoBoard) {
  Recording it("0 usb firmware -> 1\n1 usb r 58 3e -> 41\n2 smbus r 2c 3e -> 41\nwhat?\n");
  EXPECT_EQ(it.usb.Trouble(), "it, line 5: it does not begin with a time in seconds");
  EXPECT_EQ(it.usbLink.LoadFirmware(), 0);
  EXPECT_EQ(it.Smbus(0x2C, 0x3E), 0xFF);
}

TEST(Replay, FailuresAreNotKnownIfTheRecordingSaysSo) {
  Recording it("# smbus failures unknown\n0 smbus r 2c 20 -> 01\n");
  EXPECT_EQ(it.smbus.Failures(0x2C), -1);
}

TEST(Pace, AnswersComeAtTheirTimesUnlessTheProgramIsFarFromThem) {
  Pace kept(1);
  EXPECT_EQ(kept.WaitFor(10, 500), 0);
  EXPECT_NEAR(kept.WaitFor(10.5, 500.1), 0.4, 1e-9) << "too soon";
  EXPECT_EQ(kept.WaitFor(10.6, 500.7), 0) << "late";
  EXPECT_NEAR(kept.WaitFor(10.8, 500.7), 0.1, 1e-9) << "caught up";
  EXPECT_EQ(kept.WaitFor(70, 501), 0) << "the user was quicker";
  EXPECT_NEAR(kept.WaitFor(70.3, 501.1), 0.2, 1e-9);
  Pace tenfold(10);
  EXPECT_EQ(tenfold.WaitFor(0, 5), 0);
  EXPECT_NEAR(tenfold.WaitFor(5, 5.1), 0.4, 1e-9);
  Pace none(0);
  EXPECT_EQ(none.WaitFor(0, 0), 0);
  EXPECT_EQ(none.WaitFor(0.5, 0), 0);
}

}  // namespace
}  // namespace zth::replay

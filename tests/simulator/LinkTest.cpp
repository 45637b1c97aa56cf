#include <algorithm>

#include "simulator/SmbusHost.h"
#include "simulator/entry/RealTime.h"
#include "tests/simulator/UsbOnBench.h"

namespace zth::simulator {
namespace {

using namespace std::chrono_literals;

TEST(UsbAdapter, AnswersEveryRequestOfItsTable) {
  Usb usb;
  EXPECT_EQ(usb.adapter.LoadFirmware(), 1);
  EXPECT_EQ(usb.Connect(), 0);
  usb.Play("3E:41 2C=AB 2C:AB p4A=15 p4A:15 p48:FF");
  EXPECT_EQ(usb.Ask(0xDC, 0x58, 0x3D, 1, 3), 0);
  EXPECT_EQ(usb.buffer[0] << 16 | usb.buffer[1] << 8 | usb.buffer[2], 0x624100);
  EXPECT_EQ(usb.Ask(0xDA, 1, 30, 0, 1) | usb.Ask(0xDA, 2, 100, 0, 1) | usb.Ask(0xDA, 0, 0, 1, 3), 0);
  EXPECT_EQ(usb.buffer[0] << 8 | usb.buffer[1], 60 << 8 | 200);
  EXPECT_EQ(usb.Ask(0xDF, 0x4A, 0x16, 0, 1), 0) << "a write of a port may also name a length";
  usb.Play("p4A:16");
}

TEST(UsbAdapter, AnAddressWithoutAChipIsNeitherAFailureNorAChip) {
  Usb usb;
  for (const int address : {0x5A, 0x5C, 0, 0x7F, 300, -1}) {
    EXPECT_EQ(usb.Ask(0xDC, address, 0x3E, 1, 8), 0);
    EXPECT_EQ(std::count(usb.buffer.begin(), usb.buffer.begin() + 8, 0xFF), 8);
    for (int reg = 0; reg < 256; ++reg) EXPECT_EQ(usb.Read(reg, address), 0xFF);
    EXPECT_EQ(usb.Write(0x2C, 0, address), 0);
  }
}

TEST(UsbAdapter, RejectsWhatIsNotInItsTable) {
  constexpr int kRows[][5] = {
      {0xDB, 0x58, 0, 1, 1},    {0xD9, 0, 0, 0, 0},          {0, 0, 0, 0, 0},          {0xDE, 0x58, 0, 2, 1},
      {0xDE, 0x58, 0, -1, 1},   {0xDE, 0x58, 0x3E, 1, 0},    {0xDE, 0x58, 0x3E, 1, 2}, {0xDE, 0x58, 0x100, 1, 1},
      {0xDE, 0x58, -1, 0, 0},   {0xDE, 0x58, 0x10000, 0, 0}, {0xDC, 0x58, 0, 0, 8},    {0xDC, 0x58, 0, 1, 66},
      {0xDC, 0x58, 0xFC, 1, 8}, {0xDC, 0x58, -1, 1, 8},      {0xDD, 0x30, 0x34, 0, 0}, {0xDD, 0x30, 0x33, 1, 1},
      {0xDA, 3, 10, 0, 1},      {0xDA, 0, 0, 1, 4},          {0xDF, 0x49, 0, 1, 1},    {0xDF, 0x4A, 256, 0, 0},
      {0xDF, 0x4A, -1, 0, 0},   {0xDF, 0x4A, 0, 1, 2}};
  for (const auto& [request, value, index, direction, length] : kRows) {
    Usb usb;
    usb.buffer.fill(0x77);
    EXPECT_NE(usb.Ask(request, value, index, direction, length), 0)
        << std::hex << request << " " << value << " " << index;
    EXPECT_EQ(usb.buffer[0], 0x77) << "a refused request leaves the buffer alone";
  }
  EXPECT_NE(Usb().adapter.Request(0xDE, 0x58, 0x3E, 1, 1, nullptr), 0);
}

TEST(UsbAdapter, StartsAsTheSettingsSay) {
  Usb third("connect-at-try = 3");
  EXPECT_TRUE(third.Connect() != 0 && third.Connect() != 0 && third.Connect() == 0 && third.Connect() == 0);
  EXPECT_LE(Usb("firmware = refused").adapter.LoadFirmware(), 0);
  Usb setUp("set-up = 0x28 0x40 0x07 0xFF");
  setUp.adapter.TheBus().PowerUp();
  EXPECT_EQ(setUp.Read(0x28), 0x40);
  EXPECT_EQ(setUp.Read(0x07), 0xFF);
}

TEST(UsbAdapter, HasTheChipsOfTheSettingsWithSwitchesOnTheFirst) {
  Usb usb("noise = 0\nd2-connector = open\nusb = 0x5C 0x58");
  usb.Write(0x2C, 2, 0x5C);
  usb.Play("2C=01 2C:01 p4A=00 ~1 C0:00");
  EXPECT_EQ(usb.Read(0x2C, 0x5C), 2);
  EXPECT_EQ(usb.Read(0xC0, 0x5C), 0x40);
  Usb none("usb = none");
  none.Play("3E:FF p4A:-1");
  EXPECT_NE(none.Ask(0xDA, 1, 10, 0, 1), 0);
}

TEST(SmbusHost, HasOneChipAndReadsAllOnesElsewhere) {
  SmbusHost host{Settings{}};
  for (int address = 0; address < 256; ++address) {
    EXPECT_EQ(host.Read(static_cast<std::uint8_t>(address), 0x3E), address == 0x2C ? 0x41 : 0xFF);
  }
  host.Write(0x2C, 0x2C, 0x33);
  host.Write(0x2D, 0x2C, 0x44);
  EXPECT_EQ(host.Read(0x2C, 0x2C), 0x33);
  EXPECT_EQ(host.Failures(0x2D), 2);
  host.TheBus().AdvanceReal(1s);
  EXPECT_EQ(host.Read(0x2C, 0xC0), 0x00) << "without switches every connection is closed";
}

TEST(Bus, RealTimeIsScaledAndALongSleepIsCutShort) {
  const auto celsiusAfter = [](double factor, std::chrono::nanoseconds real) {
    SmbusHost host{Settings{.timeFactor = factor, .noise = 0}};
    host.TheBus().AdvanceReal(real);
    return host.Read(0x2C, 0x8D) * 4 + host.Read(0x2C, 0x8C) / 64;
  };
  EXPECT_EQ(celsiusAfter(10, 1s), celsiusAfter(1, 10s));
  EXPECT_NE(celsiusAfter(1, 1s), celsiusAfter(1, 10s));
  EXPECT_EQ(celsiusAfter(1, 1000h), celsiusAfter(1, 10min));
  EXPECT_EQ(celsiusAfter(1, -5s), 0) << "a clock that goes back stands still";
}

/// A clock that advances by `look` each time it is read, and further when told.
struct SlowClock {
  using duration = std::chrono::nanoseconds;
  using rep = duration::rep;
  using period = duration::period;
  using time_point = std::chrono::time_point<SlowClock>;
  static time_point now() { return time_point(time += look); }
  static inline duration time{0}, look{1ms};
};

TEST(RealTime, NoCallWaitsOrComputesLongForABoardThatIsBehindAndTheFollowingOnesMakeUpForIt) {
  const Settings settings = Parsed(
      "time-factor = 200\nfault from 3 to 900 fan 2 at 50 %\nfault at 5 tach 1 noisy 10 %\nfault at 40 vid 3\n"
      "fault at 20 sensor 1 drifts 1 degrees a minute\nfault from 30 to 300 sensor 2 frozen\n"
      "fault at 50 ambient drifts 2 degrees a minute\n");
  for (const auto look : {1ms, 0ms}) {  // a slow machine, and an infinitely fast one
    SlowClock::look = look;
    SmbusHost pieces{settings};
    SmbusHost whole{settings};
    RealTimeBy<SlowClock> clock;
    const auto begin = SlowClock::time;
    auto last = begin;
    SlowClock::time += 5s;
    int calls = 0;
    do {
      const auto before = SlowClock::time;
      const std::int64_t ticks = pieces.TheBus().TicksRun();
      last = before + look;  // its first reading
      clock.CatchUp(pieces.TheBus());
      ASSERT_LE(SlowClock::time - before, kCatchUpTime + 2ms) << calls;
      ASSERT_LE(pieces.TheBus().TicksRun() - ticks, kTicksInACall) << calls;
    } while (++calls < 400 && pieces.TheBus().Owes());
    EXPECT_GE(calls, 10) << "for 100,000 ticks";
    EXPECT_FALSE(pieces.TheBus().Owes());
    whole.TheBus().AdvanceReal(last - begin);
    for (int reg = 0; reg < 256; ++reg) {
      const auto at = static_cast<std::uint8_t>(reg);
      EXPECT_EQ(pieces.Read(0x2C, at), whole.Read(0x2C, at)) << reg;
    }
  }
}

}  // namespace
}  // namespace zth::simulator

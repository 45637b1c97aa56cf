#include <array>
#include <chrono>
#include <cstdint>

#include <gtest/gtest.h>

#include "simulator/Settings.h"
#include "simulator/SmbusHost.h"
#include "simulator/UsbAdapter.h"

namespace zth::simulator {
namespace {

using namespace std::chrono_literals;

struct Usb {
  explicit Usb(const Settings& settings = {}) : adapter(settings) {}

  int Ask(int request, int value, int index, int direction, int length) {
    return adapter.Request(static_cast<std::int16_t>(request), value, index, static_cast<std::int16_t>(direction),
                           static_cast<std::int16_t>(length), buffer.data());
  }
  int Read(int address, int reg) {
    buffer[0] = 0;
    EXPECT_EQ(Ask(0xDE, address, reg, 1, 1), 0);
    return buffer[0];
  }
  int Write(int address, int reg, int value) { return Ask(0xDE, address, value * 256 + reg, 0, 0); }

  UsbAdapter adapter;
  std::array<std::uint8_t, 65> buffer{};
};

TEST(UsbAdapter, AnswersEveryRequestOfItsTable) {
  Usb usb;
  EXPECT_EQ(usb.adapter.LoadFirmware(), 1);
  EXPECT_EQ(usb.Ask(0xDD, 0x30, 0x33, 0, 0), 0);

  EXPECT_EQ(usb.Read(0x58, 0x3E), 0x41);
  EXPECT_EQ(usb.Write(0x58, 0x2C, 0xAB), 0);
  EXPECT_EQ(usb.Read(0x58, 0x2C), 0xAB);
  EXPECT_EQ(usb.Ask(0xDC, 0x58, 0x3D, 1, 3), 0);
  EXPECT_EQ(usb.buffer[0], 0x62);
  EXPECT_EQ(usb.buffer[1], 0x41);
  EXPECT_EQ(usb.buffer[2], 0x00);

  EXPECT_EQ(usb.Ask(0xDA, 1, 30, 0, 1), 0);
  EXPECT_EQ(usb.Ask(0xDA, 2, 100, 0, 1), 0);
  EXPECT_EQ(usb.Ask(0xDA, 0, 0, 1, 3), 0);
  EXPECT_EQ(usb.buffer[0], 60);
  EXPECT_EQ(usb.buffer[1], 200);

  for (const int length : {0, 1}) {
    EXPECT_EQ(usb.Ask(0xDF, 0x4A, 0x15 + length, 0, length), 0);
    EXPECT_EQ(usb.Ask(0xDF, 0x4A, 0, 1, 1), 0);
    EXPECT_EQ(usb.buffer[0], 0x15 + length);
  }
  EXPECT_EQ(usb.Ask(0xDF, 0x48, 0, 1, 1), 0);
  EXPECT_EQ(usb.buffer[0], 0xFF);
}

TEST(UsbAdapter, AnAddressWithoutAChipIsNoFailureAndNoChipEither) {
  Usb usb;
  for (const int address : {0x5A, 0x5C, 0, 0x7F, 300, -1}) {
    EXPECT_EQ(usb.Ask(0xDC, address, 0x3E, 1, 8), 0);
    for (int i = 0; i < 8; ++i) EXPECT_NE(usb.buffer[static_cast<std::size_t>(i)], 0x41);
    for (int reg = 0; reg < 256; ++reg) EXPECT_NE(usb.Read(address, reg), 0x41);
    EXPECT_EQ(usb.Write(address, 0x2C, 0), 0);
  }
}

TEST(UsbAdapter, RefusesWhatIsNotInItsTable) {
  struct Row {
    int request, value, index, direction, length;
  };
  for (const Row& row : {Row{0xDB, 0x58, 0, 1, 1},       Row{0xD9, 0, 0, 0, 0},        Row{0, 0, 0, 0, 0},
                         Row{0xDE, 0x58, 0, 2, 1},       Row{0xDE, 0x58, 0, -1, 1},    Row{0xDE, 0x58, 0x3E, 1, 0},
                         Row{0xDE, 0x58, 0x3E, 1, 2},    Row{0xDE, 0x58, 0x100, 1, 1}, Row{0xDE, 0x58, -1, 0, 0},
                         Row{0xDE, 0x58, 0x10000, 0, 0}, Row{0xDC, 0x58, 0, 0, 8},     Row{0xDC, 0x58, 0, 1, 66},
                         Row{0xDC, 0x58, 0xFC, 1, 8},    Row{0xDC, 0x58, -1, 1, 8},    Row{0xDD, 0x30, 0x34, 0, 0},
                         Row{0xDD, 0x30, 0x33, 1, 1},    Row{0xDA, 3, 10, 0, 1},       Row{0xDA, 0, 0, 1, 4},
                         Row{0xDF, 0x49, 0, 1, 1},       Row{0xDF, 0x4A, 256, 0, 0},   Row{0xDF, 0x4A, -1, 0, 0},
                         Row{0xDF, 0x4A, 0, 1, 2}}) {
    Usb usb;
    usb.buffer.fill(0x77);
    EXPECT_NE(usb.Ask(row.request, row.value, row.index, row.direction, row.length), 0)
        << std::hex << row.request << " " << row.value << " " << row.index;
    EXPECT_EQ(usb.buffer[0], 0x77) << "a refused request leaves the buffer alone";
  }
  UsbAdapter adapter{Settings{}};
  EXPECT_NE(adapter.Request(0xDE, 0x58, 0x3E, 1, 1, nullptr), 0);
}

TEST(UsbAdapter, ConnectsAtTheTryThatTheSettingsName) {
  Usb usb(Settings{.connectAtTry = 3});
  EXPECT_NE(usb.Ask(0xDD, 0x30, 0x33, 0, 0), 0);
  EXPECT_NE(usb.Ask(0xDD, 0x30, 0x33, 0, 0), 0);
  EXPECT_EQ(usb.Ask(0xDD, 0x30, 0x33, 0, 0), 0);
  EXPECT_EQ(usb.Ask(0xDD, 0x30, 0x33, 0, 0), 0);
}

TEST(UsbAdapter, RefusesItsFirmwareWhenToldTo) {
  EXPECT_LE(UsbAdapter(Settings{.firmwareRefused = true}).LoadFirmware(), 0);
}

TEST(UsbAdapter, HoldsAsManyChipsAsTheSettingsSayWithSwitchesOnTheFirst) {
  Usb usb(Settings{.noise = 0, .diodeAtD2Connector = false, .usbChips = {0x5C, 0x58}});
  EXPECT_EQ(usb.Write(0x58, 0x2C, 1), 0);
  EXPECT_EQ(usb.Write(0x5C, 0x2C, 2), 0);
  EXPECT_EQ(usb.Read(0x58, 0x2C), 1);
  EXPECT_EQ(usb.Read(0x5C, 0x2C), 2);
  EXPECT_EQ(usb.Ask(0xDF, 0x4A, 0x00, 0, 0), 0);
  usb.adapter.TheBus().AdvanceReal(1s);
  EXPECT_EQ(usb.Read(0x5C, 0xC0), 0x40);
  EXPECT_EQ(usb.Read(0x58, 0xC0), 0x00);

  Usb none(Settings{.usbChips = {}});
  EXPECT_NE(none.Read(0x58, 0x3E), 0x41);
  EXPECT_NE(none.Ask(0xDA, 1, 10, 0, 1), 0);
  EXPECT_NE(none.Ask(0xDF, 0x4A, 0, 1, 1), 0);
}

TEST(SmbusHost, HasOneChipAndReadsAllOnesElsewhere) {
  SmbusHost host{Settings{}};
  for (int address = 0; address < 256; ++address) {
    EXPECT_EQ(host.Read(static_cast<std::uint8_t>(address), 0x3E), address == 0x2C ? 0x41 : 0xFF);
  }
  host.Write(0x2C, 0x2C, 0x33);
  host.Write(0x2D, 0x2C, 0x44);
  EXPECT_EQ(host.Read(0x2C, 0x2C), 0x33);
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

}  // namespace
}  // namespace zth::simulator

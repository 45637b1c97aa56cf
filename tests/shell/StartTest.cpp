#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QLabel>
#include <gtest/gtest.h>

#include "chip/Measurements.h"
#include "chip/RegMapStuff.h"
#include "link/Declarations.h"
#include "shell/Commands.h"
#include "shell/Discovery.h"
#include "shell/Firmware.h"
#include "shell/frmSplash.h"
#include "tests/support/Desk.h"
#include "windows/SharedState.h"

namespace zth::testing {
namespace {

std::string FirmwareTransfer() {
  return ("usb F /opt/zth" + QString(QDir::separator()) + "ZTH4718FW.Hex").toStdString();
}

/// What the start does on the chip in use once it has been found.
Traffic TablesOf() {
  const bool usb = link::InterfaceMode == link::kModeUsb;
  const auto port = [usb](const char* text) { return usb ? Traffic{text} : Traffic{}; };
  return Concat(R(0x21), R(0x22), R(0x23), R(0x24), R(0x3F), port("usb P 4A=03"), port("usb P 48=F0"), B(0x10, 4),
                port("usb P 4A=3F"), port("usb P 48=FF"));
}

Traffic SmbusScan() {
  Traffic scan;
  for (int address = 0x10; address <= 0x7F; ++address) {
    char text[32];
    std::snprintf(text, sizeof text, "smb R %02X:3E", address);
    scan.emplace_back(text);
  }
  return scan;
}

const Traffic kUsbScan{"usb C 30:33", "usb R 58:3E", "usb R 5A:3E", "usb R 5C:3E"};

TEST(Start, TransfersOnUsbAlone) {
  Desk desk(Desk::Buses::Usb);
  EXPECT_EQ(desk.RunMain(), std::nullopt);
  EXPECT_EQ(desk.board.traffic, Concat(FirmwareTransfer(), kUsbScan, TablesOf()));
  EXPECT_FALSE(link::SmbusPresent);
}

TEST(Start, TransfersOnSmbusAlone) {
  Desk desk(Desk::Buses::Smbus);
  EXPECT_EQ(desk.RunMain(), std::nullopt);
  EXPECT_EQ(desk.board.traffic, Concat("smb R 00:00", "smb detect", SmbusScan(), TablesOf()));
  EXPECT_EQ(link::InterfaceMode, link::kModeSmbus);
  EXPECT_EQ(link::DeviceAddress, 0x2C);
  EXPECT_FALSE(link::UsbPresent);
}

TEST(Start, TransfersOnBothAndUsbComesFirst) {
  Desk desk;
  desk.board.AddUsbChip(0x5C);
  EXPECT_EQ(desk.RunMain(), std::nullopt);
  EXPECT_EQ(desk.board.traffic,
            Concat("smb R 00:00", "smb detect", FirmwareTransfer(), kUsbScan, SmbusScan(), TablesOf()));
  auto& devices = Desk::Get<QComboBox>(desk.Main(), "cmbDevices");
  ASSERT_EQ(devices.count(), 3);
  EXPECT_EQ(devices.itemText(0), "58h on USB");
  EXPECT_EQ(devices.itemText(1), "5Ch on USB");
  EXPECT_EQ(devices.itemText(2), "2Ch on SMBus");
  EXPECT_EQ(devices.currentIndex(), 0);
  EXPECT_EQ(link::InterfaceMode, link::kModeUsb);
  EXPECT_EQ(link::DeviceAddress, 0x58);
}

TEST(Start, PickingAnotherChipOnlyChangesWhereTheNextTransferGoes) {
  Desk desk;
  desk.board.AddUsbChip(0x5C)[0x10] = 0;
  desk.Start();
  Desk::Pick(desk.Main(), "cmbDevices", 2);
  EXPECT_EQ(link::InterfaceMode, link::kModeSmbus);
  EXPECT_EQ(link::DeviceAddress, 0x2C);
  Desk::Pick(desk.Main(), "cmbDevices", 1);
  EXPECT_EQ(link::InterfaceMode, link::kModeUsb);
  EXPECT_EQ(link::DeviceAddress, 0x5C);
  EXPECT_TRUE(desk.board.traffic.empty());
  EXPECT_TRUE(chip::PinFunctions.D1) << "the flags stay those of the chip read at the start";
  desk.Advance(150);
  EXPECT_EQ(desk.board.traffic, B(0x88, 8));
}

TEST(Start, FillsTheSharedTables) {
  Desk desk;
  desk.board.usbChips[0x58][0x3F] = 3;
  desk.board.usbChips[0x58][0x22] = 0xE0;
  chip::PollPeriodMs = 7;
  windows::GraphPeriodMs = 7;
  desk.Start();
  EXPECT_EQ(chip::ChipRevision, 3);
  EXPECT_EQ(link::PwmManual, (std::array{false, false, true, false, false}));
  EXPECT_EQ(chip::TachClock, 90000);
  EXPECT_EQ(chip::PollPeriodMs, 100);
  EXPECT_EQ(windows::GraphPeriodMs, 50);
  EXPECT_EQ(windows::LogPeriodMs, 100);
  EXPECT_EQ(chip::RegisterTable[175].Name, "1.5V1 (3GIO) High Limit");
  EXPECT_EQ(chip::VoltageName[20], "VBatt");
  EXPECT_TRUE(chip::PinFunctions.D1);
}

TEST(Start, TakesSevenSecondsOfWhichFiveAreTheAdapters) {
  Desk usb(Desk::Buses::Usb);
  EXPECT_EQ(usb.RunMain(), std::nullopt);
  EXPECT_FLOAT_EQ(static_cast<float>(usb.clock.waitedMs), 5000 + 200 + 1000 + 1000);
}

TEST(Start, TheSplashTellsWhereTheSearchIs) {
  Desk desk(Desk::Buses::Smbus);
  desk.board.smbusChips.clear();
  desk.prompts.script = {platform::BoxAnswer::Ok};
  std::vector<double> widths;
  QString first;
  desk.events.onPump = [&] {
    for (const QWidget* window : QApplication::topLevelWidgets()) {
      const auto* splash = qobject_cast<const shell::frmSplash*>(window);
      if (splash == nullptr) continue;
      widths.push_back(splash->Progress());
      if (first.isEmpty()) first = Desk::Text(*splash, "lblProgInfo");
      EXPECT_EQ(Desk::Text(*splash, "lblVersion"), "Version 1.0.7");
      EXPECT_EQ(Desk::Text(*splash, "lblProductName"), "ZTH4718 Evaluation Software");
      EXPECT_EQ(Desk::Text(*splash, "lblPlatform"), "Windows Vista/XP");
      EXPECT_EQ(splash->pos(), QPoint(133, 133));
    }
  };
  double atTheEnd = 0;
  desk.prompts.whileShown = [&] {
    for (const QWidget* window : QApplication::topLevelWidgets()) {
      if (const auto* splash = qobject_cast<const shell::frmSplash*>(window)) atTheEnd = splash->Progress();
    }
  };
  EXPECT_EQ(desk.RunMain(), 1);
  EXPECT_EQ(first, "Enumerating...");
  ASSERT_EQ(widths.size(), 100U);
  EXPECT_EQ(widths.front(), 0.5);
  EXPECT_EQ(widths.back(), 50);
  EXPECT_EQ(atTheEnd, 100);
  EXPECT_EQ(desk.prompts.shown.back().text, "Failed to find the ZTH4718");
}

struct EndCase {
  const char* name;
  std::function<void(Desk&)> arrange;
  const char* message;
};

class StartEnds : public ::testing::TestWithParam<EndCase> {};

TEST_P(StartEnds, WithItsMessage) {
  Desk desk;
  GetParam().arrange(desk);
  desk.prompts.script = {platform::BoxAnswer::Ok};
  EXPECT_EQ(desk.RunMain(), 1);
  ASSERT_EQ(desk.prompts.shown.size(), 1U);
  EXPECT_EQ(desk.prompts.shown[0].text, GetParam().message);
  EXPECT_EQ(desk.prompts.shown[0].icon, platform::BoxIcon::Critical);
  EXPECT_EQ(desk.process.ends.size(), 1U);
}

INSTANTIATE_TEST_SUITE_P(
    Causes, StartEnds,
    ::testing::Values(EndCase{"NoLibraryInReach",
                              [](Desk& desk) {
                                desk.board.loadErrors["smbus"] = "File not found: libsmbus.so";
                                desk.board.loadErrors["USBFunctions"] = "File not found: libUSBFunctions.so";
                              },
                              "USB/SMBus Hardware not detected"},
                      EndCase{"AdapterRefusesTheFirmwareAndNoHost",
                              [](Desk& desk) {
                                desk.board.loadErrors["smbus"] = "FILE NOT FOUND";
                                desk.board.firmwareResult = 0;
                              },
                              "USB/SMBus Hardware not detected"},
                      EndCase{"FirmwarePathWithoutAnAnsiForm",
                              [](Desk& desk) {
                                desk.board.loadErrors["smbus"] = "File not found: libsmbus.so";
                                desk.process.folder = QString::fromUtf8("/opt/\u4E2D");
                              },
                              "USB/SMBus Hardware not detected"},
                      EndCase{"FirmwarePathTooLong",
                              [](Desk& desk) {
                                desk.board.loadErrors["smbus"] = "File not found: libsmbus.so";
                                desk.process.folder = QString(499, 'x');
                              },
                              "USB/SMBus Hardware not detected"},
                      EndCase{"NoChip",
                              [](Desk& desk) {
                                desk.board.usbChips.clear();
                                desk.board.smbusChips.clear();
                              },
                              "Failed to find the ZTH4718"},
                      EndCase{"BrokenHostLibraryCountsAsPresent",
                              [](Desk& desk) {
                                desk.board.loadErrors["smbus"] = "invalid ELF header";
                                desk.board.firmwareResult = -1;
                              },
                              "Failed to find the ZTH4718"},
                      EndCase{"AdapterDoesNotAnswer", [](Desk& desk) { desk.board.failMatching = "usb C"; },
                              "Initial Connection Failed - Check USB connections"},
                      EndCase{"FailureInTheScan", [](Desk& desk) { desk.board.failMatching = "usb R 5A:3E"; },
                              "Communications Interrupted - Check USB connections"}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(Start, AConnectionOnTheTwentiethTryCounts) {
  for (const int failures : {19, 20}) {
    Desk desk(Desk::Buses::Usb);
    int tries = 0;
    desk.board.failMatching = "usb C";
    // The adapter comes back while the program lets events run, between two tries.
    desk.events.onPump = [&] {
      const auto connects = std::count(desk.board.traffic.begin(), desk.board.traffic.end(), "usb C 30:33");
      tries = static_cast<int>(connects);
      if (connects >= failures) desk.board.failMatching.clear();
    };
    if (failures == 20) desk.prompts.script = {platform::BoxAnswer::Ok};
    EXPECT_EQ(desk.RunMain(), failures == 20 ? std::optional(1) : std::nullopt);
    EXPECT_EQ(std::count(desk.board.traffic.begin(), desk.board.traffic.end(), "usb C 30:33"), 20);
  }
}

TEST(Start, TheFirmwarePathIsAnsiText) {
  EXPECT_TRUE(shell::StringToAnsiBuffer(QString::fromUtf8("/opt/M\u00FCller \u20AC")));
  EXPECT_STREQ(shell::AnsiBuffer.data(), "/opt/M\xFCller \x80");
  EXPECT_TRUE(shell::StringToAnsiBuffer(QString(512, 'x')));
  EXPECT_EQ(shell::AnsiBuffer[511], 'x');
  EXPECT_EQ(shell::AnsiBuffer[512], 0);
  EXPECT_FALSE(shell::StringToAnsiBuffer(QString(513, 'x')));
  EXPECT_EQ(shell::AnsiBuffer[0], 0);
}

}  // namespace
}  // namespace zth::testing

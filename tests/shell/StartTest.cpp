#include <QApplication>
#include <QComboBox>
#include <QDir>

#include "chip/ChipState.h"
#include "chip/Measurements.h"
#include "chip/PwmModes.h"
#include "link/Declarations.h"
#include "platform/PathBytes.h"
#include "shell/Firmware.h"
#include "shell/ProgramState.h"
#include "shell/frmSplash.h"
#include "tests/support/Steps.h"
#include "windows/SharedState.h"

namespace zth::testing {
namespace {

/// What the start does with the chip in use once it has been found.
constexpr char kTables[] = "R21 R22 R23 R24 R3F P4A=03 P48=F0 B10+4 P4A=3F P48=FF";

Traffic SmbusScan() {
  Traffic scan;
  for (int address = 0x10; address <= 0x7F; ++address) {
    scan.push_back(QString::asprintf("smb R %02X:3E", address).toStdString());
  }
  return scan;
}

const Traffic kUsbScan{"usb C 30:33", "usb R 58:3E", "usb R 5A:3E", "usb R 5C:3E"};

TEST(Start, TransfersOnEitherBusAndUsbComesFirst) {
  const Traffic host{"smb R 00:00", "smb detect"}, none;
  const Traffic firmware{("usb F /opt/zth" + QString(QDir::separator()) + "ZTH4718FW.Hex").toStdString()};
  for (const auto buses : {Desk::Buses::Usb, Desk::Buses::Smbus, Desk::Buses::Both}) {
    const bool usb = buses != Desk::Buses::Smbus;
    const bool smbus = buses != Desk::Buses::Usb;
    Desk desk(buses);
    if (usb) desk.board.AddUsbChip(0x5C);
    EXPECT_EQ(desk.RunMain(), std::nullopt);
    EXPECT_EQ(desk.board.traffic, Concat(smbus ? host : none, usb ? firmware : none, usb ? kUsbScan : none,
                                         smbus ? SmbusScan() : none, T(kTables)));
    EXPECT_TRUE(smbus || static_cast<int>(desk.clock.waitedMs) == 5000 + 200 + 1000 + 1000) << desk.clock.waitedMs;
    EXPECT_EQ(link::Bus.UsbPresent, usb);
    EXPECT_EQ(link::Bus.SmbusPresent, smbus);
    EXPECT_EQ(link::Bus.InterfaceMode, usb ? link::kModeUsb : link::kModeSmbus);
    EXPECT_EQ(link::Bus.DeviceAddress, usb ? 0x58 : 0x2C);
    QStringList found;
    const auto& devices = Desk::Get<QComboBox>(desk.Main(), "cmbDevices");
    for (int i = 0; i < devices.count(); ++i) found << devices.itemText(i);
    EXPECT_EQ(found.join(", ").toStdString(), std::string(usb ? "58h on USB, 5Ch on USB" : "") +
                                                  (usb && smbus ? ", " : "") + (smbus ? "2Ch on SMBus" : ""));
    EXPECT_EQ(devices.currentIndex(), 0);
  }
}

TEST(Start, SelectingAnotherChipOnlyChangesWhereTheNextTransferGoes) {
  Desk desk;
  desk.board.AddUsbChip(0x5C)[0x10] = 0;
  desk.Start();
  Do(desk.Main(), "cmbDevices=2");
  EXPECT_EQ(R(0), "smb R 2C:00");
  Do(desk.Main(), "cmbDevices=1");
  EXPECT_EQ(R(0), "usb R 5C:00");
  EXPECT_TRUE(desk.board.traffic.empty());
  EXPECT_TRUE(chip::Model.PinFunctions.D1) << "the flags stay those of the chip read at the start";
  desk.Advance(150);
  EXPECT_EQ(desk.board.traffic, B(0x88, 8));
}

TEST(Start, FillsTheSharedTables) {
  Desk desk;
  desk.board.usbChips[0x58][0x3F] = 3;
  desk.board.usbChips[0x58][0x22] = 0xE0;
  chip::Model.PollPeriodMs = 7;
  windows::Shared.GraphPeriodMs = 7;
  desk.Start();
  EXPECT_EQ(chip::Model.ChipRevision, 3);
  EXPECT_EQ(chip::Model.PwmManual, (std::array{false, false, true, false, false}));
  EXPECT_EQ((std::array<int, 4>{chip::Model.TachClock, chip::Model.PollPeriodMs, windows::Shared.GraphPeriodMs,
                                windows::Shared.LogPeriodMs}),
            (std::array{90000, 100, 50, 100}));
  EXPECT_TRUE(chip::Model.PinFunctions.D1);
}

/// The splash screen while it is shown.
const shell::frmSplash* Splash() {
  for (const QWidget* window : QApplication::topLevelWidgets()) {
    if (const auto* splash = qobject_cast<const shell::frmSplash*>(window)) return splash;
  }
  return nullptr;
}

/// The progress of its bar, in percent.
double Filled(const shell::frmSplash& splash) {
  return 100.0 * Desk::Get<QWidget>(splash, "lblProgress").width() / Desk::Get<QWidget>(splash, "fraProgress").width();
}

TEST(Start, TheSplashShowsTheProgressOfTheSearch) {
  Desk desk(Desk::Buses::Smbus);
  desk.board.smbusChips.clear();
  desk.prompts.script = {platform::BoxAnswer::Ok};
  std::vector<double> widths;
  desk.events.onPump = [&] {
    const shell::frmSplash* splash = Splash();
    if (splash == nullptr) return;
    EXPECT_TRUE(!widths.empty() || Held(*splash, "lblProgInfo") == "Enumerating...");
    widths.push_back(Filled(*splash));
    EXPECT_EQ(Held(*splash, "lblVersion lblProductName lblPlatform"),
              "Version 1.0.7|ZTH4718 Evaluation Software|Windows Vista/XP");
    EXPECT_EQ(splash->pos(), QPoint(133, 133));
  };
  double atTheEnd = 0;
  desk.prompts.whileShown = [&] { atTheEnd = Filled(*Splash()); };
  EXPECT_EQ(desk.RunMain(), 1);
  ASSERT_EQ(widths.size(), 100U);
  EXPECT_EQ((std::vector{widths.front(), widths.back(), atTheEnd}), (std::vector{0.5, 50.0, 100.0}));
  EXPECT_EQ(desk.prompts.shown.back().text, "Failed to find the ZTH4718");
}

TEST(Start, EndsWithItsMessage) {
  constexpr const char* kNoHardware = "USB/SMBus Hardware not detected";
  constexpr const char* kNoChip = "Failed to find the ZTH4718";
  using enum Desk::Buses;
  const std::tuple<const char*, Desk::Buses, void (*)(Desk&), const char*> rows[] = {
      {"no library in reach", Smbus, [](Desk& desk) { desk.board.loadErrors["smbus"] = "FILE NOT FOUND"; },
       kNoHardware},
      {"the adapter refuses the firmware", Usb, [](Desk& desk) { desk.board.firmwareResult = 0; }, kNoHardware},
      {"no chip", Both, [](Desk& desk) { desk.board.usbChips.clear(), desk.board.smbusChips.clear(); }, kNoChip},
      {"a broken host library counts as present", Smbus,
       [](Desk& desk) { desk.board.loadErrors["smbus"] = "invalid ELF header"; }, kNoChip},
  };
  for (const auto& [what, buses, arrange, message] : rows) {
    SCOPED_TRACE(what);
    Desk desk(buses);
    arrange(desk);
    desk.prompts.script = {platform::BoxAnswer::Ok};
    EXPECT_EQ(desk.RunMain(), 1);
    ASSERT_EQ(desk.prompts.shown.size(), 1U);
    EXPECT_EQ(desk.prompts.shown[0].text, message);
    EXPECT_EQ(desk.prompts.shown[0].icon, platform::BoxIcon::Critical);
    EXPECT_EQ(desk.process.ends.size(), 1U);
  }
}

TEST(Start, AConnectionOnTheTwentiethTryCounts) {
  Desk desk(Desk::Buses::Usb);
  const auto connects = [&traffic = desk.board.traffic] {
    return std::count(traffic.begin(), traffic.end(), "usb C 30:33");
  };
  desk.board.failMatching = "usb C";
  // The adapter returns while the program processes events between two tries.
  desk.events.onPump = [&] {
    if (connects() == 19) desk.board.failMatching.clear();
  };
  EXPECT_EQ(desk.RunMain(), std::nullopt);
  EXPECT_EQ(connects(), 20);
}

#if !defined(_WIN32)
TEST(Start, TheLibraryIsCalledWithTheBytesOfWhateverFolderTheProgramIsIn) {
  for (const QString& folder :
       {QString::fromUtf16(u"/opt/Pr\u00FCfstand"), QString::fromUtf16(u"/opt/\u7814\u7A76 \U0001F680/bin"),
        '/' + QString(498, 'x'), '/' + QString(3000, 'x')}) {
    Desk desk(Desk::Buses::Usb);
    desk.process.folder = folder;
    EXPECT_EQ(desk.RunMain(), std::nullopt);
    EXPECT_EQ(desk.board.traffic.front(), "usb F " + folder.toUtf8().toStdString() + "/ZTH4718FW.Hex");
    EXPECT_EQ(shell::Program.AnsiBuffer[0] == 0, folder.size() > 498) << "what fits 513 bytes with its end";
  }
}

TEST(Start, AFolderWhoseNameIsNotTextIsPassedByItsBytes) {
  Desk desk(Desk::Buses::Usb);
  desk.process.folder = "";
  EXPECT_EQ(desk.RunMain(), std::nullopt);
  EXPECT_EQ(desk.board.traffic.front(), "usb F " + platform::ProgramFolderBytes().toStdString() + "/ZTH4718FW.Hex");
}
#endif

}  // namespace
}  // namespace zth::testing

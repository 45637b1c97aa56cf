#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QPointer>

#include "chip/ChipState.h"
#include "chip/Measurements.h"
#include "chip/PwmModes.h"
#include "link/Declarations.h"
#include "platform/PathBytes.h"
#include "shell/frmSplash.h"
#include "tasks/Firmware.h"
#include "tasks/TasksState.h"
#include "tests/support/Steps.h"
#include "widgets/Strip.h"
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

/// The board as the panel or the label shows it.
std::string ShownBoard(const QWidget& window) {
  return Desk::Get<QWidget>(window, "lblBoard").isHidden() ? "" : Held(window, "lblBoard");
}

TEST(Start, SaysWhatTheLinkInUseTalksToFromTheSplashToThePicturesAndNothingOfAMakersLibrary) {
  for (const std::string name : {"Adapter 7", ""}) {
    Desk desk;
    desk.board.boardNames["smbus"] = "SMBus I801 (i2c-7)";
    if (!name.empty()) desk.board.boardNames["USBFunctions"] = name;
    std::string splash;
    desk.events.onPaint = [&splash] {
      const std::string shown = Splash() == nullptr ? "" : '[' + ShownBoard(*Splash()) + ']';
      if (!splash.ends_with(shown)) splash += shown;
    };
    desk.Start();
    EXPECT_EQ(splash, (name.empty() ? "[]" : "[][" + name + "]") + "[SMBus I801 (i2c-7)][" + name + "]");
    auto& chart = Desk::Get<widgets::Strip>(desk.Open("frmGraph"), "stpGraph(3)");
    desk.board.TakeTraffic();
    for (const auto& [device, shown] :
         {std::pair("cmbDevices=1", std::string("SMBus I801 (i2c-7)")), {"cmbDevices=0", name}}) {
      Do(desk.Main(), device);
      EXPECT_EQ(ShownBoard(desk.Main()), shown);
      chart.Files().CopyPicture();
      EXPECT_EQ(desk.clipboard.picture, chart.Picture(QString::fromStdString(shown)));
    }
    EXPECT_TRUE(desk.board.traffic.empty()) << "a name is no transfer";
  }
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

/// The ways to find nothing, and what the box says of each below its text.
TEST(Start, ThatFindsNothingTellsWhatWasTriedAndEndsOrStartsOverAsTheUserSays) {
  using enum platform::BoxAnswer;
  using enum Desk::Buses;
  constexpr const char* kNoHardware = "USB/SMBus Hardware not detected";
  constexpr const char* kNoChip = "Failed to find the ZTH4718";
  constexpr const char* kLost = "a transfer behind it failed.\nThe last transfer ended with -5";
  const std::tuple<const char*, Desk::Buses, void (*)(FakeBoard&), QStringList> rows[] = {
      {kNoHardware,
       Smbus,
       [](FakeBoard& board) { board.loadErrors["smbus"] = "FILE NOT FOUND (words)"; },
       {"Error: File not found: libUSBFunctions.so", "beside the program, in /opt/zth.",
        "Error: FILE NOT FOUND (words)", "zth4718-evaluation linux-smbus",
        "1. /opt/zth (the program's folder)\n2. the system's folders"}},
      {kNoHardware,
       Usb,
       [](FakeBoard& board) { board.firmwareResult = 0; },
       {"USBFunctions (Adapter 7)\nIt says: No permission.\nAsk somebody.",
        "/opt/zth/ZTH4718FW.Hex, which is not there\nIts download gave 0"}},
      {"Initial Connection Failed - Check USB connections",
       Usb,
       [](FakeBoard& board) { board.failMatching = "usb C"; },
       {"has not answered since.\nThe last transfer ended with -5 in place of 0"}},
      {"Communications Interrupted - Check USB connections",
       Usb,
       [](FakeBoard& board) { board.failMatching = "usb R 5A"; },
       {kLost}},
      {"Communications Interrupted - Check USB connections",
       Usb,
       [](FakeBoard& board) { board.failMatching = "usb P 48"; },
       {kLost}},
      {kNoChip,
       Both,
       [](FakeBoard& board) { board.usbChips.clear(), board.smbusChips.clear(); },
       {"Looked for a chip at 58h, 5Ah and 5Ch", "Looked for a chip from 10h to 7Fh"}},
      {kNoChip,
       Smbus,
       [](FakeBoard& board) { board.loadErrors["smbus"] = "invalid ELF header"; },
       {"Error: invalid ELF header\nRemedy: this file is there"}},
  };
  for (const auto& [text, buses, spoil, told] : rows) {
    SCOPED_TRACE(text);
    const Traffic whole = [buses = buses] {
      Desk desk(buses);
      return desk.RunMain(), desk.board.traffic;
    }();
    for (const bool ends : {true, false}) {
      Desk desk(buses);
      desk.board.boardNames["USBFunctions"] = "Adapter 7";
      desk.board.boardTroubles["USBFunctions"] = "No permission.\nAsk\x1B somebody.";
      desk.libraries.onTake = [&board = desk.board, errors = desk.board.loadErrors,
                               chips = std::pair(desk.board.usbChips, desk.board.smbusChips)] {
        std::tie(board.usbChips, board.smbusChips) = chips;
        board.loadErrors = errors, board.firmwareResult = 1, board.failMatching.clear();
      };
      spoil(desk.board);
      if (!ends) desk.libraries.boards = QStringList{"simulated"};
      desk.prompts.script = ends ? std::deque{Ok} : std::deque{TryAgain, Simulated};
      std::vector<Traffic> runs;
      desk.prompts.whileShown = [&] { runs.push_back(desk.board.TakeTraffic()); };
      EXPECT_EQ(desk.RunMain(), ends ? std::optional(1) : std::nullopt);
      EXPECT_EQ(runs, std::vector(ends ? 1 : 2, runs.at(0))) << "the same steps again";
      EXPECT_TRUE(ends || desk.board.TakeTraffic() == whole) << "a whole start on the simulated board";
      for (const platform::BoxQuestion& box : desk.prompts.shown) {
        EXPECT_EQ(std::tuple(box.text, box.icon), std::tuple(text, platform::BoxIcon::Critical));
        EXPECT_EQ(box.offers, ends ? std::vector{TryAgain} : std::vector({TryAgain, Simulated}));
        for (const QString& line : told) EXPECT_TRUE(box.details.contains(line)) << line.toStdString();
      }
      if (ends || link::Bus.InterfaceMode != link::kModeUsb) continue;
      // A failure from now on is not a failed start: its box has no details and no extra buttons.
      desk.prompts.script = {Ok};
      desk.board.failFrom = 0;
      desk.clock.Advance(1000);
      EXPECT_TRUE(desk.prompts.shown.back().offers.empty() && desk.prompts.shown.back().details.isEmpty());
    }
  }
}

TEST(Start, ThatStartsOverLeavesNothingOfTheFailedOneBehind) {
  Desk desk(Desk::Buses::Usb);
  desk.board.failMatching = "usb P 48";  // one of the last transfers
  desk.prompts.script = {platform::BoxAnswer::TryAgain};
  QPointer<QObject> window;
  desk.prompts.whileShown = [&] {
    desk.board.failMatching.clear();
    window = shell::MainForm.data();
    link::Bus.usbFailures += 100;
    chip::Model.Freshness.staleInARow = 2;
    windows::Shared.LastFileWork = "Saved";
    tasks::Work.start.SmbusChips = 1;
  };
  EXPECT_EQ(desk.RunMain(), std::nullopt);
  EXPECT_EQ(window, nullptr);
  EXPECT_EQ(link::Bus.usbFailures, 0);
  EXPECT_EQ(chip::Model.Freshness.staleInARow, 0);
  EXPECT_EQ(windows::Shared.LastFileWork, "");
  EXPECT_EQ(tasks::Work.start.SmbusChips, 0);
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
    EXPECT_EQ(tasks::Work.start.AnsiBuffer[0] == 0, folder.size() > 498) << "what fits 513 bytes with its end";
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

#include <functional>
#include <tuple>

#include <QApplication>

#include "link/Declarations.h"
#include "tests/support/Steps.h"

/// The boxes of a start that finds nothing: what they tell beside their text, and the ways out of them.
namespace zth::testing {
namespace {

using enum platform::BoxAnswer;
using enum Desk::Buses;

/// A way for the start to fail, and how it is mended behind the program's back.
struct Failure {
  const char* box;
  Desk::Buses buses;
  std::function<void(Desk&)> break_;
  std::function<void(Desk&)> mend;
  QStringList told;  ///< in its details
};

const Failure kFailures[] = {
    {"USB/SMBus Hardware not detected",
     Smbus,
     [](Desk& desk) { desk.board.loadErrors["smbus"] = "File not found: libsmbus.so (no such file)"; },
     [](Desk& desk) { desk.board.loadErrors.erase("smbus"); },
     {"Error: File not found: libUSBFunctions.so", "ZTH4718FW.Hex beside the program, in /opt/zth.",
      "Error: File not found: libsmbus.so (no such file)", "zth4718-evaluation linux-smbus",
      "1. /opt/zth (the program's folder)\n2. the system's folders", "docs/hardware.md"}},
    {"USB/SMBus Hardware not detected",
     Usb,
     [](Desk& desk) { desk.board.firmwareResult = -3; },
     [](Desk& desk) { desk.board.firmwareResult = 1; },
     {"Library: USBFunctions (Adapter 7)", "It says: No permission.\nAsk somebody.",
      "Firmware: /opt/zth/ZTH4718FW.Hex, which is not there", "Its download gave -3", "put the firmware file there"}},
    {"Initial Connection Failed - Check USB connections",
     Usb,
     [](Desk& desk) { desk.board.failMatching = "usb C"; },
     [](Desk& desk) { desk.board.failMatching.clear(); },
     {"has taken its firmware and has not answered since", "ended with -5 in place of 0"}},
    {"Communications Interrupted - Check USB connections",
     Usb,
     [](Desk& desk) { desk.board.failMatching = "usb R 5A"; },
     [](Desk& desk) { desk.board.failMatching.clear(); },
     {"a transfer behind it failed", "ended with -5 in place of 0"}},
    {"Communications Interrupted - Check USB connections",
     Usb,
     [](Desk& desk) { desk.board.failMatching = "usb P 48"; },
     [](Desk& desk) { desk.board.failMatching.clear(); },
     {"a transfer behind it failed", "ended with -5 in place of 0"}},
    {"Failed to find the ZTH4718",
     Both,
     [](Desk& desk) { desk.board.usbChips.clear(), desk.board.smbusChips.clear(); },
     [](Desk& desk) { desk.board.AddUsbChip(0x58), desk.board.AddSmbusChip(0x2C); },
     {"Looked for a chip at 58h, 5Ah and 5Ch", "Looked for a chip from 10h to 7Fh", "smbus.log"}},
    {"Failed to find the ZTH4718",
     Smbus,
     [](Desk& desk) { desk.board.loadErrors["smbus"] = "wrong ELF class"; },
     [](Desk& desk) { desk.board.loadErrors.erase("smbus"); },
     {"Error: wrong ELF class\nRemedy: this file is there"}},
};

struct FailingStart {
  explicit FailingStart(const Failure& failure) : desk(failure.buses) {
    desk.board.boardNames["USBFunctions"] = "Adapter 7";
    desk.board.boardTroubles["USBFunctions"] = "No permission.\nAsk\x1B somebody.";
    failure.break_(desk);
    desk.libraries.boards = QStringList{"simulated"};
  }
  Desk desk;
};

TEST(FirstContact, EachBoxTellsWhatWasTriedAndItsOkEndsTheProgram) {
  for (const Failure& failure : kFailures) {
    SCOPED_TRACE(failure.box);
    FailingStart start(failure);
    start.desk.prompts.script = {Ok};
    EXPECT_EQ(start.desk.RunMain(), 1);
    ASSERT_EQ(start.desk.prompts.shown.size(), 1U);
    const platform::BoxQuestion& box = start.desk.prompts.shown[0];
    EXPECT_EQ(box.text, failure.box);
    EXPECT_EQ(std::tuple(box.icon, box.buttons), std::tuple(platform::BoxIcon::Critical, platform::BoxButtons::Ok));
    EXPECT_EQ(box.offers, (std::vector{TryAgain, Simulated}));
    for (const QString& text : failure.told) {
      EXPECT_TRUE(box.details.contains(text)) << text.toStdString() << " in\n" << box.details.toStdString();
    }
  }
}

/// What a start sends that finds all there is.
Traffic WholeStart(Desk::Buses buses) {
  Desk desk(buses);
  EXPECT_EQ(desk.RunMain(), std::nullopt);
  return desk.board.TakeTraffic();
}

TEST(FirstContact, TryAgainIsTheWholeStartAgain) {
  for (const Failure& failure : kFailures) {
    SCOPED_TRACE(failure.box);
    const Traffic whole = WholeStart(failure.buses);
    FailingStart start(failure);
    start.desk.prompts.script = {TryAgain, TryAgain};
    Traffic first;
    start.desk.prompts.whileShown = [&] {
      const Traffic run = start.desk.board.TakeTraffic();
      if (start.desk.prompts.shown.size() == 1) {
        first = run;
        return;
      }
      EXPECT_EQ(run, first) << "the same steps as before it";
      failure.mend(start.desk);
    };
    EXPECT_EQ(start.desk.RunMain(), std::nullopt);
    EXPECT_EQ(start.desk.board.traffic, whole);
    EXPECT_EQ(start.desk.libraries.taken, "");
    EXPECT_EQ(QApplication::topLevelWidgets().count(shell::MainForm), 1);
    start.desk.Advance(150);
    EXPECT_FALSE(start.desk.board.TakeTraffic().empty()) << "it polls";
    // What fails from now on is no box of the start.
    if (link::Bus.InterfaceMode != link::kModeUsb) continue;
    start.desk.prompts.whileShown = nullptr;
    start.desk.prompts.script = {Ok};
    start.desk.board.failFrom = 0;
    start.desk.clock.Advance(1000);
    ASSERT_EQ(start.desk.prompts.shown.size(), 3U);
    EXPECT_TRUE(start.desk.prompts.shown[2].offers.empty() && start.desk.prompts.shown[2].details.isEmpty());
  }
}

TEST(FirstContact, TheSimulatedBoardIsOfferedWhereItIsThereAndThenAnswersAlone) {
  for (const Failure& failure : kFailures) {
    SCOPED_TRACE(failure.box);
    FailingStart start(failure);
    start.desk.prompts.script = {Simulated};
    start.desk.libraries.onTake = [&] { failure.mend(start.desk); };
    EXPECT_EQ(start.desk.RunMain(), std::nullopt);
    EXPECT_EQ(start.desk.libraries.taken, "simulated");
  }
  FailingStart start(kFailures[0]);
  start.desk.libraries.boards.clear();
  start.desk.prompts.script = {Ok};
  EXPECT_EQ(start.desk.RunMain(), 1);
  EXPECT_EQ(start.desk.prompts.shown[0].offers, std::vector{TryAgain});
}

}  // namespace
}  // namespace zth::testing

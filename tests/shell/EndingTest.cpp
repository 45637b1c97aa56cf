#include <array>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <unistd.h>

#include <QAction>
#include <QApplication>
#include <QTemporaryDir>
#include <QTimer>
#include <gtest/gtest.h>

#include "link/Declarations.h"
#include "link/USBStuff.h"
#include "platform/DesktopServices.h"
#include "shell/Main.h"
#include "tests/support/Steps.h"
#include "windows/SharedState.h"
#include "windows/data/LogJob.h"

/// How the program ends: by real signals to a real process, and by the user.
namespace zth::testing {
namespace {

using platform::BoxIcon;

/// The program with real boxes, dialogs, events and process, otherwise as usual. At its end it prints the outcome on
/// standard error: transfers, windows still open, the contents of the log, and the window's position.
struct RealDesk : Desk {
  RealDesk() {
    self = this;
    events.onPump = [] { QCoreApplication::processEvents(); };
    std::atexit([] {
      std::string told = "transfers";
      for (const std::string& transfer : self->board.traffic) told += " [" + transfer + "]";
      if (windows::Shared.HeatersOpen) told += " open";
      const auto log = self->files.Read(windows::Shared.LogFileName, 10000);
      told += ", lines " + std::to_string(log.value_or("").count('\n')) + ", stored ";
      for (const char* key : {"MainLeft", "MainTop", "MainWidth", "MainHeight"}) {
        told += self->settings.Get(key, "-").toStdString() + " ";
      }
      std::fprintf(stderr, "%s.\n", told.c_str());
    });
  }

  /// A log with three waiting lines, whose file only now becomes writable again, and a window with a closing step.
  void StartWork() {
    RunMain();
    Main().showNormal();
    Main().move(100, 50);
    Main().resize(640, 480);
    Open("frmHeaters");
    windows::Shared.LogFileName = folder.filePath("log.csv");
    files.locked = true;
    windows::StartLog(100, Main());
    const windows::Context context{real, Main()};
    for (int i = 0; i < 3; ++i) windows::RunLogJob(context);
    files.locked = false;
    board.TakeTraffic();
  }

  platform::DesktopServices desktop;
  platform::Services real{
      desktop.All().prompts, desktop.All().fileDialogs, settings, shell, clock, events, libraries, files, clipboard,
      desktop.All().process};
  QTemporaryDir folder;

  void RunMain() { ::zth::shell::Main(real); }

  static inline RealDesk* self = nullptr;
};

/// Does something while the event loop runs.
void Soon(const std::function<void()>& routine) {
  QTimer::singleShot(50, routine);
}

constexpr const char* kClosed = "transfers, lines 3, stored 1500 750 9600 7200 \\.\n$";

class Ending : public ::testing::Test {
 protected:
  void SetUp() override { GTEST_FLAG_SET(death_test_style, "threadsafe"); }
};

TEST_F(Ending, ASignalClosesInOrderAtAnyMoment) {
  const std::pair<const char*, std::function<void(RealDesk&)>> moments[] = {
      {"idle", [](RealDesk&) { QApplication::exec(); }},
      {"a box",
       [](RealDesk& desk) {
         desk.real.prompts.Ask({"t", "x", BoxIcon::None, platform::BoxButtons::Ok});
       }},
      {"a question",
       [](RealDesk& desk) {
         desk.real.prompts.Choose({"t", "x", {"a", "b"}, 1});
       }},
      {"a file dialog",
       [](RealDesk& desk) {
         desk.real.fileDialogs.Ask(
             {platform::FileQuestion::Kind::Save, "d", "c", desk.folder.path(), "Text (*.txt)|*.txt", "", false},
             desk.Main().FindWindow("frmHeaters"));
       }},
      {"asked whether to leave", [](RealDesk& desk) { desk.Main().close(); }},
  };
  for (const auto& [what, wait] : moments) {
    for (const int number : {SIGTERM, SIGHUP, SIGINT}) {
      SCOPED_TRACE(what + std::string(" ") + std::to_string(number));
      EXPECT_EXIT(
          {
            RealDesk desk;
            desk.StartWork();
            desk.files.locked = std::string(what) == "asked whether to leave";
            Soon([number] { std::raise(number); });
            Soon([&] { desk.files.locked = false; });
            wait(desk);
            std::_Exit(9);
          },
          ::testing::ExitedWithCode(0), kClosed);
    }
  }
}

TEST_F(Ending, AnEndOfTheSessionStoresFirstAndThenClosesInOrder) {
  const auto session = [](bool quits) {
    RealDesk desk;
    desk.StartWork();
    Soon([quits] {
      static QObject nobody;  // the program asks this user nothing
      emit qGuiApp->commitDataRequest(reinterpret_cast<QSessionManager&>(nobody));
      quits ? QCoreApplication::quit() : std::exit(8);
    });
    QApplication::exec();
    std::_Exit(9);
  };
  EXPECT_EXIT(session(true), ::testing::ExitedWithCode(0), kClosed);
  EXPECT_EXIT(session(false), ::testing::ExitedWithCode(8), "transfers open, lines 3, stored 1500 750 9600 7200 \\.\n$")
      << "it may yet be called off";
}

TEST_F(Ending, ASignalDuringTheStartEndsItAndStoresNothing) {
  const auto start = [] {
    RealDesk desk;
    desk.events.onPump = [&desk, pumps = 0]() mutable {
      if (++pumps == 50) desk.board.TakeTraffic(), std::raise(SIGTERM);
      QCoreApplication::processEvents();
    };
    desk.RunMain();
    std::_Exit(9);
  };
  EXPECT_EXIT(start(), ::testing::ExitedWithCode(0), "transfers, lines 0, stored - - - - \\.\n$");
}

/// Waits until a process catches SIGTERM, then sends it one.
void EndOnceItListens(pid_t process) {
  constexpr std::uint64_t kTerm = std::uint64_t{1} << (SIGTERM - 1);
  for (std::uint64_t caught = 0; (caught & kTerm) == 0; ::usleep(20'000)) {
    std::ifstream status("/proc/" + std::to_string(process) + "/status");
    std::string line;
    while (std::getline(status, line) && !line.starts_with("SigCgt:")) {
    }
    if (line.empty()) return;
    caught = std::stoull(line.substr(7), nullptr, 16);
  }
  ::kill(process, SIGTERM);
}

TEST_F(Ending, MessagesThatNobodyReadsDoNotEndTheProgram) {
  // The program's own output: Qt prints before the program starts, and the simulated board when it is loaded.
  const auto run = [] {
    std::array<int, 2> ends{};
    if (::pipe(ends.data()) != 0 || ::close(ends[0]) != 0) std::_Exit(9);
    ::unsetenv("XDG_RUNTIME_DIR");
    ::setenv("QT_QPA_PLATFORM", "offscreen", 1);
    ::setenv("LD_LIBRARY_PATH", ZTH_BOARD, 1);
    ::setenv("ZTH4718_SIMULATOR", "/no/such/file", 1);
    const pid_t program = ::getpid();
    if (::fork() == 0) EndOnceItListens(program), std::_Exit(0);
    ::dup2(ends[1], STDERR_FILENO);
    ::execl(ZTH_PROGRAM, ZTH_PROGRAM, nullptr);
    std::_Exit(9);
  };
  EXPECT_EXIT(run(), ::testing::ExitedWithCode(0), "");
}

/// The program when the user clicks the main window's X.
struct Leaving : ::testing::Test {
  Leaving() {
    desk.Start();
    windows::Shared.LogFileName = folder.filePath("log.csv");
  }
  /// Closes the main window with these answers. Returns what was asked and sent, and whether the window is still open.
  std::string Close(std::initializer_list<QString> picks) {
    for (const QString& pick : picks) desk.prompts.picks.push_back(pick);
    desk.prompts.choicesShown.clear();
    desk.Main().close();
    std::string told;
    for (const auto& asked : desk.prompts.choicesShown) {
      told += QString(asked.text + " <" + asked.choices.join('|') + ">").replace('\n', '/').toStdString();
      EXPECT_EQ(asked.choices.value(asked.escape), "&Cancel");
    }
    for (const std::string& transfer : desk.board.TakeTraffic()) told += " [" + transfer + "]";
    return told + (desk.Main().isVisible() ? " stays" : " gone");
  }
  static void Heat(int heater, std::int32_t percent) { link::SetHeater(heater, percent); }
  void Log(int linesWaiting) {
    desk.files.locked = linesWaiting > 0;
    windows::StartLog(1000, desk.Main());
    for (int i = 0; i < linesWaiting; ++i) windows::RunLogJob({desk.services, desk.Main()});
  }

  Desk desk;
  QTemporaryDir folder;
};

TEST_F(Leaving, WithNothingToLoseAsksNothing) {
  Heat(1, 30);
  Heat(1, 0);
  desk.board.TakeTraffic();
  EXPECT_EQ(Close({}), " gone");
}

TEST_F(Leaving, WithAHeaterOnAsksOnceAndSwitchesOffWhatIsOn) {
  desk.board.heaterState = {0, 61, 0};
  desk.Open("frmHeaters");
  desk.board.TakeTraffic();
  EXPECT_EQ(Close({"&Cancel"}),
            "Heater2 is on at 30.5 %.//A heater heats on when the program has ended. "
            "<&Heaters off and exit|E&xit|&Cancel> stays");
  EXPECT_NE(desk.Main().FindWindow("frmHeaters"), nullptr);
  desk.Advance(100);
  EXPECT_FALSE(desk.board.TakeTraffic().empty()) << "the monitor goes on";
  Heat(1, 50);
  Do(desk.Main(), "cmbDevices=1");  // a chip on SMBus; the heaters are on USB nevertheless
  desk.board.TakeTraffic();
  EXPECT_EQ(Close({"&Heaters off and exit"}),
            "Heater1 is on at 50 %./Heater2 is on at 30.5 %.//A heater heats on when the program has ended. "
            "<&Heaters off and exit|E&xit|&Cancel> [usb H 1=0] [usb H 2=0] gone");
  EXPECT_EQ(link::Bus.InterfaceMode, link::kModeSmbus);
}

TEST_F(Leaving, WithALogNamesTheFileAndTheLinesThatWouldBeLost) {
  Log(0);
  const std::string file = windows::Shared.LogFileName.toStdString();
  EXPECT_EQ(Close({"&Cancel"}), "A log is running and ends with the program:/" + file + " <E&xit|&Cancel> stays");
  Log(1);
  EXPECT_EQ(Close({"&Cancel"}), "A log is running and ends with the program:/" + file +
                                    "/1 line waits for a file that cannot be written, and will be lost:/" + file +
                                    " <E&xit|&Cancel> stays");
  Log(2);
  windows::StopLog({desk.services, desk.Main()});
  windows::Shared.LogFileName.clear();  // as after the cancelled dialog of the next log
  EXPECT_EQ(Close({"&Cancel"}),
            "3 lines wait for a file that cannot be written, and will be lost:/" + file + " <E&xit|&Cancel> stays");
  windows::Shared.LogFileName = folder.filePath("other.csv");
  const std::string other = windows::Shared.LogFileName.toStdString();
  Log(1);
  EXPECT_EQ(Close({"&Cancel"}), "A log is running and ends with the program:/" + other +
                                    "/4 lines wait for files that cannot be written, and will be lost:/" + file + "/" +
                                    other + " <E&xit|&Cancel> stays");
  windows::StopLog({desk.services, desk.Main()});
  desk.files.locked = false;
  EXPECT_EQ(Close({}), " gone") << "they could be written in the end";
}

TEST_F(Leaving, StaysWhenAHeaterCannotBeSwitchedOff) {
  Heat(1, 50);
  Log(0);
  desk.board.failMatching = "usb H";
  desk.board.TakeTraffic();
  desk.prompts.script = {platform::BoxAnswer::No};
  const std::string told = Close({"&Heaters off and exit"});
  EXPECT_NE(told.find("|&Cancel> [usb H 1=0] stays"), std::string::npos) << told;
  EXPECT_TRUE(Close({"E&xit"}).ends_with("|&Cancel> gone")) << "and knows that it is still on";
}

TEST_F(Leaving, AsksOnceWhateverHappensUnderneath) {
  Heat(2, 50);
  desk.prompts.whileShown = [this] {
    desk.Main().close();
    desk.Advance(2000);
  };
  EXPECT_TRUE(Close({"&Cancel"}).ends_with(" stays"));
  EXPECT_EQ(desk.prompts.choicesShown.size(), 1U);
  desk.prompts.whileShown = [this] { desk.process.orders.end(); };
  EXPECT_TRUE(Close({"&Cancel"}).ends_with(" gone") || desk.process.ends == std::vector<int>{0});
  desk.process.ends.clear();
  desk.Main().findChild<QAction*>("mnuExit")->trigger();
  EXPECT_EQ(desk.process.ends, std::vector<int>{0}) << "and Exit asks nothing";
}

}  // namespace
}  // namespace zth::testing

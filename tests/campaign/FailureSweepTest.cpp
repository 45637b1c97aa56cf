#include <fstream>
#include <tuple>

#include <QAction>
#include <QTemporaryDir>

#include "chip/ChipState.h"
#include "chip/Measurements.h"
#include "chip/RegisterRows.h"
#include "link/Declarations.h"
#include "shell/Commands.h"
#include "tests/campaign/Operate.h"
#include "tests/support/EveryWindow.h"
#include "tests/support/Steps.h"

/// Whatever a user or a timer does, with each of its transfers failing in turn: one box, all windows closed in order,
/// the end of the process, and nothing sent after the failure.
namespace zth::testing {
namespace {

using platform::BoxAnswer;

constexpr char kInterrupted[] = "Communications Interrupted - Check USB connections";
constexpr char kHeater[] = "Error in Heater Module -  Do you wish to close the application?";

/// What a box must keep from the board.
constexpr int kWhileABoxStandsMs = 200;

/// A saved configuration, the answer for whatever asks for a file.
constexpr char kSaved[] = "{\r\n0x21\t0xE2\t// \r\n0x10\t0x7F\t// \r\n0x44\t0x12\t// \r\n}\r\n";
QString SavedPath() {
  static const QTemporaryDir folder;
  return folder.filePath("a.sav");
}
std::string Content() {
  std::ifstream file(SavedPath().toStdString());
  return {std::istreambuf_iterator<char>(file), {}};
}

using Step = std::function<void(Desk& desk)>;

/// An action to sweep, and the steps to reach it.
struct Action {
  std::string name;
  Step reach, act;
};

/// A fresh program that answers every question so that it carries on, with the chip's registers at their defaults or
/// all at one byte.
class Program {
 public:
  explicit Program(std::optional<std::uint8_t> byte) {
    if (byte) {
      for (const chip::RegisterRow& row : chip::kRegisterRows) {
        if (row.address < 0x3C || row.address > 0x3F) desk.board.usbChips[0x58][row.address] = *byte;
      }
    }
    desk.prompts.script.assign(9, BoxAnswer::Yes);
    desk.fileDialogs.script.assign(3, SavedPath());
    std::ofstream(SavedPath().toStdString(), std::ios::binary) << kSaved;
    desk.board.ports = {{0x4A, 0x3F}, {0x48, 0xFF}};
  }
  ~Program() {
    desk.prompts.script.clear();
    desk.fileDialogs.script.clear();
  }

  /// Runs `act` with only the n-th call from here on failing; then compares what happened with the prescribed end.
  void ExpectTheEnd(int n, const Traffic& whole, const Step& act) {
    const std::size_t boxesBefore = desk.prompts.shown.size();
    desk.board.TakeTraffic();
    desk.board.failOnly = desk.board.usbCalls + n;
    bool failed = false;
    desk.prompts.whileShown = [&] {
      failed = failed || desk.board.usbCalls > *desk.board.failOnly;
      desk.clock.Advance(kWhileABoxStandsMs);
    };
    int ended = 0;
    desk.process.onEnd = [&] {
      if (++ended > 1) return;
      for (const std::string& name : EveryWindow()) EXPECT_EQ(desk.Main().FindWindow(name.c_str()), nullptr);
      for (const auto& [name, open] : OpenFlags()) EXPECT_FALSE(*open) << name;
      EXPECT_EQ(desk.settings.values.count("MainLeft"), 1U) << "the main window was closed in order";
    };
    act(desk);
    desk.process.onEnd = {};
    const std::string& transfer = whole.at(static_cast<std::size_t>(n));
    if (transfer.rfind("usb D", 0) == 0) {  // the one request whose result is not checked
      EXPECT_TRUE(desk.process.ends.empty());
      EXPECT_EQ(desk.prompts.shown.size(), boxesBefore);
      return;
    }
    desk.Advance(1000);
    EXPECT_TRUE(failed) << "no box";
    EXPECT_EQ(desk.board.TakeTraffic(), Traffic(whole.begin(), whole.begin() + n + 1)) << "sent up to the failure";
    ASSERT_EQ(desk.prompts.shown.size(), boxesBefore + 1);
    EXPECT_EQ(desk.prompts.shown.back().text, transfer.rfind("usb H", 0) == 0 ? kHeater : kInterrupted);
    // In a simulated end, the code after an inner handler finds the link closed, which ends it again.
    ASSERT_FALSE(desk.process.ends.empty());
    EXPECT_EQ(std::count(desk.process.ends.begin(), desk.process.ends.end(), 1), std::ssize(desk.process.ends));
    EXPECT_TRUE(desk.Main().findChildren<windows::ChildWindow*>().isEmpty());
    EXPECT_EQ(desk.settings.values.at("OpenEasySetup"), "False") << "a setting was saved behind the failure";
    EXPECT_EQ(Content(), kSaved) << "a file was written behind the failure";
  }

  Desk desk{Desk::Buses::Usb};
};

/// Runs a complete action, then repeats it on fresh programs with each of its transfers failing in turn. Returns the
/// transfers of the complete action; if they have been `swept` before, there are no repeats.
Traffic Sweep(std::optional<std::uint8_t> byte, const Action& action,
              std::set<std::pair<std::string, Traffic>>* swept = nullptr) {
  Traffic whole;
  for (int n = -1; n < std::ssize(whole); ++n) {
    SCOPED_TRACE(action.name + (n < 0 ? "" : ", failing at transfer " + std::to_string(n)));
    Program program(byte);
    program.desk.Start();
    action.reach(program.desk);
    program.desk.board.TakeTraffic();
    if (n >= 0) {
      program.ExpectTheEnd(n, whole, action.act);
    } else {
      action.act(program.desk);
      whole = program.desk.board.TakeTraffic();
      EXPECT_TRUE(program.desk.process.ends.empty());
      if (swept != nullptr && !swept->insert({action.name, whole}).second) break;
    }
    if (::testing::Test::HasFailure()) break;
  }
  return whole;
}

windows::ChildWindow& OnPage(Desk& desk, const std::string& window, int page) {
  windows::ChildWindow& opened = desk.Open(window.c_str());
  chip::Model.PollEnabled = false;
  ShowPage(opened, page);
  return opened;
}

/// The time in which every job runs twice, except that of the register map.
void LetJobsRun(Desk& desk) {
  desk.Advance(1200);
}

/// What a single click cannot reach: steps that lead there, then steps or time.
struct Sequence {
  const char *window, *reach, *act;
  void (*also)(Desk& desk) = [](Desk&) {};  ///< after `reach`
};
const Sequence kSequences[] = {
    {"frmRegMap", "chkContRead=1", ""},
    {"frmRegMap", "txtReadAddr=21", "cmdWrite"},
    {"frmRegMap", "txtReadAddr=14", "cmdWrite"},
    {"frmEasySetup", "chkStartUp=1; chkOption(0..6)=1", "cmdApply"},
    {"frmPinConfig", "", "cmdApply",
     [](Desk& desk) {
       for (const char* follower : {"frmGPIO", "frmLimits", "frmGraph", "frmTherm"}) desk.Open(follower);
     }},
    {"frmDynamicTmin", "cmdDemo", "",
     [](Desk& desk) {  // with its THERM2 event
       desk.board.Chip()[0x8D] = 64 + 60;
       chip::Model.PollEnabled = true;
     }},
};

/// A control of a window in its present state, operated in one of its ways.
Step Operate(const std::string& window, std::size_t control, std::size_t way) {
  return [window, control, way](Desk& desk) {
    const auto controls = OperableControls(*desk.Main().FindWindow(window.c_str()));
    WaysToOperate(*controls.at(control)).at(way).act();
  };
}

/// The load of a window, its jobs on each page, each way to operate a control of a page, and the sequences.
std::vector<Action> Actions(const std::string& window, std::optional<std::uint8_t> byte) {
  const auto entry = std::ranges::find(shell::kMenuEntries, window, &shell::MenuEntry::window);
  const Step load = [entry](Desk& desk) { desk.Main().findChild<QAction*>(entry->name)->trigger(); };
  std::vector<Action> all{{"load", [](Desk&) { chip::Model.PollEnabled = false; }, load}};
  Program program(byte);
  program.desk.Start();
  for (int page = 0; page < Pages(program.desk.Open(window.c_str())); ++page) {
    const Step reach = [window, page](Desk& desk) { OnPage(desk, window, page); };
    all.push_back({"", reach, LetJobsRun});
    const auto controls = OperableControls(OnPage(program.desk, window, page));
    for (std::size_t control = 0; control < controls.size(); ++control) {
      for (std::size_t at = 0; const Way& way : WaysToOperate(*controls[control])) {
        all.push_back({way.name, reach, Operate(window, control, at++)});
      }
    }
  }
  for (const Sequence& row : kSequences) {
    if (row.window != window) continue;
    const Step reach = [&row](Desk& desk) {
      Do(OnPage(desk, row.window, 0), row.reach);
      row.also(desk);
    };
    all.push_back({std::string(row.reach) + "; " + row.act, reach, [&row](Desk& desk) {
                     *row.act != 0 ? Do(*desk.Main().FindWindow(row.window), row.act) : desk.Advance(2000);
                   }});
  }
  return all;
}

class FailureSweep : public ::testing::TestWithParam<std::tuple<std::string, int>> {};

TEST_P(FailureSweep, EveryTransferOfEveryActionEndsTheProgramInOrder) {
  const auto& [window, board] = GetParam();
  const auto byte = board < 0 ? std::nullopt : std::optional(static_cast<std::uint8_t>(board));
  std::set<std::pair<std::string, Traffic>> swept;  // a button outside the tabs is the same on each page
  const std::vector<Action> actions = Actions(window, byte);
  for (const Action& action : actions) {
    if (!HasFailure()) Sweep(byte, action, &swept);
  }
  std::size_t transfers = 0;
  for (const auto& [name, traffic] : swept) transfers += traffic.size();
  RecordProperty("transfers", static_cast<int>(transfers));
  RecordProperty("actions", static_cast<int>(actions.size()));
  const bool nothing = window == "frmAbout" || window == "frmGuide" || window == "frmChanges" ||
                       window == "frmLogging" || window == "frmGraph" || window == "frmTraffic" ||
                       (window == "frmManualControl" && !byte);  // without a PWM in manual mode
  EXPECT_EQ(transfers == 0, nothing) << "what is swept";
}

#if defined(__SANITIZE_ADDRESS__)  // five times slower, and the same code on either chip
const std::vector<int> kChips{-1};
#else
const std::vector<int> kChips{-1, 0xFF};
#endif

INSTANTIATE_TEST_SUITE_P(Windows, FailureSweep,
                         ::testing::Combine(::testing::ValuesIn(EveryWindow()), ::testing::ValuesIn(kChips)),
                         [](const auto& row) {
                           return std::get<0>(row.param) + (std::get<1>(row.param) < 0 ? "_Defaults" : "_AllOnes");
                         });

/// The whole start and ten seconds of polling.
TEST(FailureSweep, EveryCallOfTheStartAndOfPollingEndsTheProgramInOrder) {
  for (int call = 0;; ++call) {
    Desk desk(Desk::Buses::Usb);
    // The connect request may fail nineteen times, so everything fails from there on.
    const bool connect = call == 0;
    (connect ? desk.board.failFrom : desk.board.failOnly) = call;
    desk.prompts.whileShown = [&desk] { desk.clock.Advance(kWhileABoxStandsMs); };
    desk.prompts.script = {BoxAnswer::Ok};
    if (!desk.RunMain()) desk.Advance(10000);
    if (desk.board.usbCalls <= call) {  // it needs no more of them
      desk.prompts.script.clear();
      EXPECT_GT(call, 100);
      return;
    }
    ASSERT_EQ(desk.prompts.shown.size(), 1U) << call;
    EXPECT_EQ(desk.prompts.shown[0].text, connect ? "Initial Connection Failed - Check USB connections" : kInterrupted);
    EXPECT_EQ(desk.process.ends, std::vector<int>{1}) << call;
    EXPECT_EQ(desk.board.usbCalls, connect ? 20 : call + 1) << "a transfer after the failure";
    EXPECT_EQ(desk.settings.values.count("MainLeft"), 1U) << "the main window was closed in order";
  }
}

}  // namespace
}  // namespace zth::testing

#include <fstream>
#include <set>
#include <tuple>

#include <QAction>
#include <QCheckBox>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include "chip/Measurements.h"
#include "chip/RegisterRows.h"
#include "link/Declarations.h"
#include "shell/Commands.h"
#include "tests/campaign/Operate.h"
#include "tests/support/EveryWindow.h"
#include "tests/support/Steps.h"

/// Whatever a user or a timer does, with each of its transfers failing in turn: one box, all windows closed in order,
/// the end of the process, and nothing sent behind the failure.
namespace zth::testing {
namespace {

using platform::BoxAnswer;

constexpr char kInterrupted[] = "Communications Interrupted - Check USB connections";
constexpr char kHeater[] = "Error in Heater Module -  Do you wish to close the application?";

/// What a box may not let through to the board.
constexpr int kWhileABoxStandsMs = 200;

/// A saved configuration, for whatever asks for a file.
constexpr char kSaved[] = "{\r\n0x21\t0xE2\t// \r\n0x10\t0x7F\t// \r\n0x44\t0x12\t// \r\n}\r\n";
QString SavedPath() {
  static const QTemporaryDir folder;
  return folder.filePath("a.sav");
}
std::string Content() {
  std::ifstream file(SavedPath().toStdString());
  return {std::istreambuf_iterator<char>(file), {}};
}

/// A fresh program that answers every question so that it goes on, with the chip's registers at their defaults or at a
/// byte.
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

  /// Lets the n-th call from here on fail alone, behind `act`; then holds what happened against the prescribed end.
  void ExpectTheEnd(int n, const Traffic& whole, const std::function<void()>& act) {
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
    act();
    desk.process.onEnd = {};
    const std::string& transfer = whole.at(static_cast<std::size_t>(n));
    if (transfer.rfind("usb D", 0) == 0) {  // the one request whose result nobody looks at
      EXPECT_TRUE(desk.process.ends.empty());
      EXPECT_EQ(desk.prompts.shown.size(), boxesBefore);
      return;
    }
    desk.Advance(1000);
    EXPECT_TRUE(failed) << "no box";
    EXPECT_EQ(desk.board.TakeTraffic(), Traffic(whole.begin(), whole.begin() + n + 1)) << "sent up to the failure";
    ASSERT_EQ(desk.prompts.shown.size(), boxesBefore + 1);
    EXPECT_EQ(desk.prompts.shown.back().text, transfer.rfind("usb H", 0) == 0 ? kHeater : kInterrupted);
    // Where the end is played, what goes on behind an inner handler meets the shut link, which ends it again.
    ASSERT_FALSE(desk.process.ends.empty());
    EXPECT_EQ(std::count(desk.process.ends.begin(), desk.process.ends.end(), 1), std::ssize(desk.process.ends));
    EXPECT_TRUE(desk.Main().findChildren<windows::ChildWindow*>().isEmpty());
    EXPECT_EQ(desk.settings.values.at("OpenEasySetup"), "False") << "a setting was saved behind the failure";
    EXPECT_EQ(Content(), kSaved) << "a file was written behind the failure";
  }

  Desk desk{Desk::Buses::Usb};
};

using Step = std::function<void(Desk& desk)>;

/// Does `act` whole, and then on fresh programs with each of its transfers failing in turn. `reach` takes a program to
/// where it can be done. Gives the transfers of the whole; what has been `swept` before ends there.
Traffic Sweep(std::optional<std::uint8_t> byte, const std::string& name, const Step& reach, const Step& act,
              std::set<std::pair<std::string, Traffic>>* swept = nullptr) {
  Traffic whole;
  for (int n = -1; n < std::ssize(whole); ++n) {
    SCOPED_TRACE(name + (n < 0 ? "" : ", failing at transfer " + std::to_string(n)));
    Program program(byte);
    program.desk.Start();
    reach(program.desk);
    program.desk.board.TakeTraffic();
    if (n >= 0) {
      program.ExpectTheEnd(n, whole, [&] { act(program.desk); });
    } else {
      act(program.desk);
      whole = program.desk.board.TakeTraffic();
      EXPECT_TRUE(program.desk.process.ends.empty());
      if (swept != nullptr && !swept->insert({name, whole}).second) break;
    }
    if (::testing::Test::HasFailure()) break;
  }
  return whole;
}

windows::ChildWindow& OnPage(Desk& desk, const std::string& window, int page) {
  windows::ChildWindow& opened = desk.Open(window.c_str());
  chip::PollEnabled = false;
  ShowPage(opened, page);
  return opened;
}

/// The time that every job needs to run twice, but for the register map's.
constexpr int kJobsMs = 1200;

void LetJobsRun(Desk& desk) {
  desk.Advance(kJobsMs);
}

/// What a single click cannot reach: steps that take the window there, and then steps or time.
struct Sequence {
  const char *window, *reach, *act;
  void (*also)(Desk& desk) = [](Desk&) {};  ///< behind `reach`
};
const Sequence kSequences[] = {
    {"frmRegMap", "chkContRead=1", ""},
    {"frmRegMap", "txtReadAddr=21", "cmdWrite"},
    {"frmRegMap", "txtReadAddr=14", "cmdWrite"},
    {"frmEasySetup", "", "cmdApply",
     [](Desk& desk) {
       for (auto* box : desk.Main().FindWindow("frmEasySetup")->findChildren<QCheckBox*>()) {
         if (box->isEnabled()) box->setChecked(true);
       }
     }},
    {"frmPinConfig", "", "cmdApply",
     [](Desk& desk) {
       for (const char* follower : {"frmGPIO", "frmLimits", "frmGraph", "frmTherm"}) desk.Open(follower);
     }},
    {"frmDynamicTmin", "cmdDemo", "",
     [](Desk& desk) {  // with its THERM2 event
       desk.board.Chip()[0x8D] = 64 + 60;
       chip::PollEnabled = true;
     }},
};

class FailureSweep : public ::testing::TestWithParam<std::tuple<std::string, int>> {};

TEST_P(FailureSweep, EveryTransferOfEveryActionEndsTheProgramInOrder) {
  const std::string window = std::get<0>(GetParam());
  const int board = std::get<1>(GetParam());
  const auto byte = board < 0 ? std::nullopt : std::optional(static_cast<std::uint8_t>(board));
  bool silent = true;
  std::set<std::pair<std::string, Traffic>> swept;  // a button beside the tabs is the same on each page
  const auto sweep = [&](const std::string& name, const Step& reach, const Step& act) {
    if (HasFailure()) return;
    silent = Sweep(byte, name, reach, act, &swept).empty() && silent;
  };
  sweep(
      "load", [](Desk&) { chip::PollEnabled = false; },
      [&](Desk& desk) {
        const auto entry = std::ranges::find(shell::kMenuEntries, window, &shell::MenuEntry::window);
        desk.Main().findChild<QAction*>(entry->name)->trigger();
      });
  struct Spot {
    int page;
    std::size_t control, way;
    std::string name;  ///< empty where time alone passes
  };
  std::vector<Spot> spots;
  {
    Program program(byte);
    program.desk.Start();
    for (int page = 0; page < Pages(program.desk.Open(window.c_str())); ++page) {
      spots.push_back({page, 0, 0, ""});
      const auto controls = OperableControls(OnPage(program.desk, window, page));
      for (std::size_t control = 0; control < controls.size(); ++control) {
        std::size_t at = 0;
        for (const Way& way : WaysToOperate(*controls[control])) spots.push_back({page, control, at++, way.name});
      }
    }
  }
  for (const Spot& spot : spots) {
    const Step operate = [&](Desk& desk) {
      WaysToOperate(*OperableControls(*desk.Main().FindWindow(window.c_str())).at(spot.control)).at(spot.way).act();
    };
    sweep(
        spot.name, [&](Desk& desk) { OnPage(desk, window, spot.page); }, spot.name.empty() ? LetJobsRun : operate);
  }
  for (const Sequence& row : kSequences) {
    if (row.window != window) continue;
    sweep(
        std::string(row.reach) + "; " + row.act,
        [&](Desk& desk) {
          QWidget& opened = OnPage(desk, window, 0);
          if (*row.reach != 0) Do(opened, row.reach);
          row.also(desk);
        },
        [&](Desk& desk) { *row.act != 0 ? Do(*desk.Main().FindWindow(row.window), row.act) : desk.Advance(2000); });
  }
  std::size_t transfers = 0;
  for (const auto& [name, traffic] : swept) transfers += traffic.size();
  RecordProperty("transfers", static_cast<int>(transfers));
  RecordProperty("actions", static_cast<int>(spots.size()));
  const bool nothing = window == "frmAbout" || window == "frmLogging" || window == "frmGraph" ||
                       (window == "frmManualControl" && !byte);  // without a PWM in manual mode
  EXPECT_EQ(silent, nothing) << "what is swept";
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
  int calls = 0;
  {
    Desk desk(Desk::Buses::Usb);
    desk.Start();
    desk.Advance(10000);
    calls = desk.board.usbCalls;
  }
  ASSERT_GT(calls, 100);
  for (int call = 0; call < calls; ++call) {
    Desk desk(Desk::Buses::Usb);
    // The connect request may fail nineteen times, so from it on everything does.
    const bool connect = call == 0;
    (connect ? desk.board.failFrom : desk.board.failOnly) = call;
    desk.prompts.whileShown = [&desk] { desk.clock.Advance(kWhileABoxStandsMs); };
    desk.prompts.script = {BoxAnswer::Ok};
    if (!desk.RunMain()) desk.Advance(10000);
    ASSERT_EQ(desk.prompts.shown.size(), 1U) << call;
    EXPECT_EQ(desk.prompts.shown[0].text, connect ? "Initial Connection Failed - Check USB connections" : kInterrupted);
    EXPECT_EQ(desk.process.ends, std::vector<int>{1}) << call;
    EXPECT_EQ(desk.board.usbCalls, connect ? 20 : call + 1) << "a transfer after the failure";
    EXPECT_EQ(desk.settings.values.count("MainLeft"), 1U) << "the main window was closed in order";
  }
}

/// The monitor with every window open, for as long as each job needs to run once.
TEST(FailureSweep, EveryTransferOfTheMonitorWithAllWindowsOpenEndsTheProgramInOrder) {
  const auto reach = [](Desk& desk) {
    for (const std::string& window : EveryWindow()) desk.Open(window.c_str());
    Desk::Check(*desk.Main().FindWindow("frmRegMap"), "chkContRead", true);
  };
  EXPECT_GT(Sweep(std::uint8_t{0xFF}, "monitor", reach, LetJobsRun).size(), 50U);
}

}  // namespace
}  // namespace zth::testing

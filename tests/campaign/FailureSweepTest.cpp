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
#include "tests/support/Desk.h"
#include "tests/support/EveryWindow.h"
#include "windows/SharedState.h"

/// Whatever a user or a timer does, with each of its transfers failing in turn: one box, all windows closed in order,
/// the end of the process, and nothing sent behind the failure.
namespace zth::testing {
namespace {

using platform::BoxAnswer;

constexpr char kInterrupted[] = "Communications Interrupted - Check USB connections";
constexpr char kHeater[] = "Error in Heater Module -  Do you wish to close the application?";

/// What a box may not let through to the board.
constexpr int kWhileABoxStandsMs = 200;

QString MenuEntryOf(const QString& window) {
  for (const shell::MenuEntry& entry : shell::kMenuEntries) {
    if (window == entry.window) return entry.name;
  }
  return {};
}

const QTemporaryDir& Folder() {
  static const QTemporaryDir folder;
  return folder;
}

/// A saved configuration, for whatever asks for a file.
constexpr char kSaved[] = "{\r\n0x21\t0xE2\t// \r\n0x10\t0x7F\t// \r\n0x44\t0x12\t// \r\n}\r\n";
QString SavedPath() {
  return Folder().filePath("a.sav");
}
std::string Content() {
  std::ifstream file(SavedPath().toStdString());
  return {std::istreambuf_iterator<char>(file), {}};
}

/// A fresh program that answers every question so that it goes on, with the chip's registers at their defaults or at a
/// byte.
class Program {
 public:
  explicit Program(std::optional<std::uint8_t> byte = {}) {
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
      if (++ended == 1) ExpectAllClosed();
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

 private:
  void ExpectAllClosed() {
    for (const QString& name : EveryWindow()) EXPECT_EQ(desk.Main().FindWindow(name), nullptr);
    for (const bool open : {windows::RegMapOpen, windows::LimitsOpen, windows::GpioOpen, windows::GraphOpen,
                            windows::HeatersOpen, windows::ManualOpen, windows::DynTminOpen, windows::AutoGraphOpen}) {
      EXPECT_FALSE(open);
    }
    EXPECT_EQ(desk.settings.values.count("MainLeft"), 1U) << "the main window was closed in order";
  }
};

/// A thing to do, on any fresh program: `reach` takes the program to where it can be done.
struct Action {
  std::string where;  ///< the window and its page
  std::string name;
  std::function<void(Desk& desk)> reach;
  std::function<void(Desk& desk)> act;
};

windows::ChildWindow& OnPage(Desk& desk, const QString& window, int page) {
  windows::ChildWindow& opened = desk.Open(window);
  chip::PollEnabled = false;
  ShowPage(opened, page);
  return opened;
}

/// The time that every job needs to run twice, but for the register map's.
constexpr int kJobsMs = 1200;

/// What a single click cannot reach.
std::vector<Action> Sequences(const QString& window) {
  std::vector<Action> actions;
  const auto add = [&](const char* name, const std::function<void(Desk&, windows::ChildWindow&)>& reach,
                       const std::function<void(Desk&, windows::ChildWindow&)>& act) {
    actions.push_back({window.toStdString(), name, [=](Desk& desk) { reach(desk, OnPage(desk, window, 0)); },
                       [=](Desk& desk) { act(desk, *desk.Main().FindWindow(window)); }});
  };
  const auto time = [](Desk& desk, windows::ChildWindow& /*window*/) { desk.Advance(kJobsMs); };
  if (window == "frmRegMap") {
    add(
        "continuous read", [](Desk&, auto& map) { Desk::Check(map, "chkContRead", true); }, time);
    add(
        "write of a PWM's behaviour", [](Desk&, auto& map) { Desk::Type(map, "txtReadAddr", "21"); },
        [](Desk&, auto& map) { Desk::Press(map, "cmdWrite"); });
    add(
        "write of a pin's function", [](Desk&, auto& map) { Desk::Type(map, "txtReadAddr", "14"); },
        [](Desk&, auto& map) { Desk::Press(map, "cmdWrite"); });
  }
  if (window == "frmEasySetup") {
    add(
        "OK with everything ticked",
        [](Desk&, auto& setup) {
          for (QWidget* control : OperableControls(setup)) {
            if (auto* box = qobject_cast<QCheckBox*>(control)) box->setChecked(true);
          }
        },
        [](Desk&, auto& setup) { Desk::Press(setup, "cmdApply"); });
  }
  if (window == "frmPinConfig") {
    add(
        "Apply beside windows that follow it",
        [](Desk& desk, auto&) {
          for (const char* other : {"frmGPIO", "frmLimits", "frmGraph", "frmTherm"}) desk.Open(other);
        },
        [](Desk&, auto& pins) { Desk::Press(pins, "cmdApply"); });
  }
  if (window == "frmDynamicTmin") {
    add(
        "demo with its THERM2 event",
        [](Desk& desk, auto& tmin) {
          Desk::Press(tmin, "cmdDemo");
          desk.board.Chip()[0x8D] = 64 + 60;
          chip::PollEnabled = true;
        },
        [](Desk& desk, auto& /*tmin*/) { desk.Advance(2000); });
  }
  return actions;
}

std::vector<Action> ActionsOf(const QString& window, std::optional<std::uint8_t> byte) {
  const std::string name = window.toStdString();
  std::vector<Action> actions{{name, "load", [](Desk&) { chip::PollEnabled = false; },
                               [=](Desk& desk) { desk.Main().findChild<QAction*>(MenuEntryOf(window))->trigger(); }}};
  Program program(byte);
  program.desk.Start();
  windows::ChildWindow& opened = program.desk.Open(window);
  for (int page = 0; page < Pages(opened); ++page) {
    const auto reach = [=](Desk& desk) { OnPage(desk, window, page); };
    const std::string where = name + ", page " + std::to_string(page);
    actions.push_back({where, "time", reach, [](Desk& desk) { desk.Advance(kJobsMs); }});
    OnPage(program.desk, window, page);
    const auto controls = OperableControls(opened);
    for (std::size_t control = 0; control < controls.size(); ++control) {
      const auto ways = WaysToOperate(*controls[control]);
      for (std::size_t way = 0; way < ways.size(); ++way) {
        actions.push_back(
            {where, ways[way].name, reach, [=](Desk& desk) {
               WaysToOperate(*OperableControls(*desk.Main().FindWindow(window)).at(control)).at(way).act();
             }});
      }
    }
  }
  const auto sequences = Sequences(window);
  actions.insert(actions.end(), sequences.begin(), sequences.end());
  return actions;
}

class FailureSweep : public ::testing::TestWithParam<std::tuple<QString, int>> {};

TEST_P(FailureSweep, EveryTransferOfEveryActionEndsTheProgramInOrder) {
  const auto& [window, board] = GetParam();
  const auto byte = board < 0 ? std::nullopt : std::optional(static_cast<std::uint8_t>(board));
  const std::vector<Action> actions = ActionsOf(window, byte);
  int sending = 0;
  int failures = 0;
  std::set<std::pair<std::string, Traffic>> swept;  // a button beside the tabs is the same on each page
  for (const Action& action : actions) {
    Traffic whole{"?"};
    for (int n = -1; n < static_cast<int>(whole.size()); ++n) {
      SCOPED_TRACE(action.where + ", " + action.name + (n < 0 ? "" : ", failing at transfer " + std::to_string(n)));
      Program program(byte);
      program.desk.Start();
      action.reach(program.desk);
      if (n < 0) {
        program.desk.board.TakeTraffic();
        action.act(program.desk);
        whole = program.desk.board.TakeTraffic();
        EXPECT_TRUE(program.desk.process.ends.empty());
        if (!whole.empty()) ++sending;
        if (!swept.insert({action.name, whole}).second) break;
      } else {
        program.ExpectTheEnd(n, whole, [&] { action.act(program.desk); });
        ++failures;
      }
      if (HasFailure()) return;
    }
  }
  RecordProperty("actions", static_cast<int>(actions.size()));
  RecordProperty("sending", sending);
  RecordProperty("failures", failures);
  const bool silent = window == "frmAbout" || window == "frmLogging" || window == "frmGraph" ||
                      (window == "frmManualControl" && !byte);  // without a PWM in manual mode
  EXPECT_EQ(sending == 0, silent) << "what is swept";
}

INSTANTIATE_TEST_SUITE_P(Windows, FailureSweep,
                         ::testing::Combine(::testing::ValuesIn(EveryWindow()), ::testing::Values(-1, 0xFF)),
                         [](const auto& row) {
                           return std::get<0>(row.param).toStdString() +
                                  (std::get<1>(row.param) < 0 ? "_Defaults" : "_AllOnes");
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
    (call == 0 ? desk.board.failFrom : desk.board.failOnly) = call;
    desk.prompts.whileShown = [&desk] { desk.clock.Advance(kWhileABoxStandsMs); };
    const bool connect = call == 0;
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
  Traffic whole{"?"};
  for (int n = -1; n < static_cast<int>(whole.size()); ++n) {
    SCOPED_TRACE("failing at transfer " + std::to_string(n));
    Program program(std::uint8_t{0xFF});
    program.desk.Start();
    for (const QString& window : EveryWindow()) program.desk.Open(window);
    Desk::Check(*program.desk.Main().FindWindow("frmRegMap"), "chkContRead", true);
    const auto act = [&] { program.desk.Advance(kJobsMs); };
    if (n >= 0) {
      program.ExpectTheEnd(n, whole, act);
    } else {
      program.desk.board.TakeTraffic();
      act();
      whole = program.desk.board.TakeTraffic();
      EXPECT_GT(whole.size(), 50U);
    }
    if (HasFailure()) return;
  }
}

}  // namespace
}  // namespace zth::testing

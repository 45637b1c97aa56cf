// Plays the recordings in tests/recordings through the whole program, and compares the traffic and all that is shown
// with what they were recorded with. With ZTH_RENEW_RECORDINGS set, records them anew on the simulated board.
#include <fstream>
#include <sstream>

#include <QTemporaryDir>

#include "shell/Commands.h"
#include "tests/campaign/Operate.h"
#include "tests/replay/Stage.h"
#include "tests/support/EveryWindow.h"
#include "tests/support/Steps.h"

namespace zth::testing {
namespace {

/// Opens each window as its menu entry does, shows each of its pages and closes it.
void Tour(Desk& desk, Lines& shown) {
  for (const std::string& name : EveryWindow()) {
    // They show nothing of the chip, or the traffic itself.
    if (name == "frmAbout" || name == "frmGuide" || name == "frmTraffic") continue;
    windows::ChildWindow& window = desk.Open(name.c_str());
    ForEachPage(window, [&](const std::string& /*page*/) { Look(window, shown); });
    desk.Advance(200);
    Look(window, shown);
    window.Unload();
    Desk::Settle();
  }
}

const std::vector<Scene> kScenes{
    {.name = "two-chips",
     .settings = "",
     .act =
         [](Desk& desk, Lines& shown) {
           desk.Advance(1000);
           Look(desk.Main(), shown);
           Desk::Pick(desk.Main(), "cmbDevices", 1);
           desk.Advance(1000);
           Look(desk.Main(), shown);
           Look(desk.Open("frmLimits"), shown);
         }},
    {.name = "tour", .settings = "", .act = Tour},
    {.name = "failing-transfer",
     .settings = "fault at 0 transfer fails register 0x2D",
     .act =
         [](Desk& desk, Lines& shown) {
           desk.Advance(500);
           auto& window = desk.Open("frmAutoGraph");
           Look(window, shown);
         }},
    {.name = "smbus-failures",
     .settings = "fault from 9 to 12 transfer fails on smbus",
     .absent = {"USBFunctions"},
     .act =
         [](Desk& desk, Lines& shown) {
           for (int second = 0; second < 7; ++second) {
             desk.Advance(1000);
             Look(desk.Main(), shown);
           }
         }},
};

std::string PathOf(const Scene& scene, const char* ending) {
  return ZTH_RECORDINGS "/" + scene.name + ending;
}

std::string ContentOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

std::string Joined(const Lines& lines) {
  std::string text;
  for (const std::string& line : lines) text += line + "\n";
  return text;
}

class Recordings : public ::testing::TestWithParam<Scene> {};

TEST_P(Recordings, ShowTheSameAndMakeTheSameTraffic) {
  const Scene& scene = GetParam();
  if (qEnvironmentVariableIsSet("ZTH_RENEW_RECORDINGS")) {
    const Played played = PlaySimulated(scene);
    std::ofstream(PathOf(scene, ".txt"), std::ios::binary) << played.recording;
    std::ofstream(PathOf(scene, ".shown"), std::ios::binary) << Joined(played.shown);
  }
  const std::string recording = ContentOf(PathOf(scene, ".txt"));
  ASSERT_NE(recording, "");
  const Played played = PlayRecorded(scene, recording);
  EXPECT_EQ(FirstDifference(recording, played.recording), "");
  EXPECT_EQ(played.parted, "");
  EXPECT_EQ(Joined(played.shown), ContentOf(PathOf(scene, ".shown")));
}

INSTANTIATE_TEST_SUITE_P(All, Recordings, ::testing::ValuesIn(kScenes), [](const auto& row) {
  std::string name = row.param.name;
  std::ranges::replace(name, '-', '_');
  return name;
});

/// Operates each control of each window in a few ways, with every window polling and time passing.
void OperateEverything(Desk& desk, Lines& shown) {
  // The same path each time: it is shown.
  static const QTemporaryDir folder;
  for (const std::string& name : EveryWindow()) {
    for (std::size_t control = 0, way = 0, page = 0;;) {
      windows::ChildWindow* window = desk.Main().FindWindow(name.c_str());
      if (window == nullptr) window = &desk.Open(name.c_str());
      ShowPage(*window, static_cast<int>(page));
      desk.fileDialogs.script.assign(2, folder.filePath("a.sav"));
      const auto controls = OperableControls(*window);
      if (control >= controls.size()) {
        control = way = 0;
        if (static_cast<int>(++page) >= Pages(*window)) break;
        continue;
      }
      const auto ways = WaysToOperate(*controls[control]);
      if (way >= ways.size()) {
        ++control;
        way = 0;
        continue;
      }
      ways[way++].act();
      Desk::Settle();
      desk.Advance(500);
      desk.fileDialogs.script.clear();
    }
    if (auto* window = desk.Main().FindWindow(name.c_str())) Look(*window, shown);
    Look(desk.Main(), shown);
  }
}

class Replayed : public ::testing::Test {
 protected:
  static const Played& Recorded() {
    static const Played played = PlaySimulated(kEverything);
    return played;
  }
  static inline const Scene kEverything{.name = "everything", .settings = "", .act = OperateEverything};
};

TEST_F(Replayed, ASessionOverAllWindowsShowsTheSameAndMakesTheSameTraffic) {
  const Played again = PlayRecorded(kEverything, Recorded().recording);
  EXPECT_EQ(FirstDifference(Recorded().recording, again.recording), "");
  EXPECT_EQ(again.parted, "");
  EXPECT_EQ(again.shown, Recorded().shown);
  const Lines calls = CallsOf(Recorded().recording);
  EXPECT_GT(calls.size(), 10'000U);
  for (const char* form : {"usb w ", "usb port w ", "usb heater w ", "usb rb ", "smbus r "}) {
    EXPECT_TRUE(std::ranges::any_of(calls, [form](const auto& call) { return call.starts_with(form); })) << form;
  }
}

const Scene kOneChange{.name = "one change", .settings = "", .act = [](Desk& desk, Lines& shown) {
                         auto& window = desk.Open("frmAutoGraph");
                         desk.Advance(500);
                         Do(window, "cmbControl(1)=2");
                         desk.Advance(500);
                         Look(window, shown);
                       }};

/// The recording with another answer in the first line that holds `what`, and the number of that line.
std::pair<std::string, std::size_t> Flipped(const std::string& recording, const std::string& what) {
  std::string flipped = recording;
  const std::size_t line = flipped.find(what);
  const std::size_t digit = flipped.find("-> ", line) + 3;
  flipped[digit] = flipped[digit] == '0' ? '1' : '0';
  return {flipped, static_cast<std::size_t>(
                       std::count(flipped.begin(), flipped.begin() + static_cast<std::ptrdiff_t>(line), '\n')) +
                       1};
}

TEST(Flipped, AnAnswerIsNamedWithItsLine) {
  const Played recorded = PlaySimulated(kOneChange);
  // One that the program shows, and one that it writes back.
  for (const char* what : {"frmAutoGraph opens", "frmAutoGraph cmbControl(1)"}) {
    const std::size_t at = recorded.recording.rfind('\n', recorded.recording.find(what)) + 1;
    const auto [flipped, line] =
        Flipped(recorded.recording, recorded.recording.substr(at, recorded.recording.find('\n', at) - at));
    const Played again = PlayRecorded(kOneChange, flipped);
    const std::string named = "line " + std::to_string(line) + ": ";
    EXPECT_EQ(FirstDifference(recorded.recording, again.recording).substr(0, named.size()), named);
    const bool isWrittenBack = std::string(what) != "frmAutoGraph opens";
    const std::string parted = "Program and recording part at line " + std::to_string(line + 1) + " of it";
    EXPECT_EQ(again.parted.substr(0, parted.size()), isWrittenBack ? parted : "");
  }
}

}  // namespace
}  // namespace zth::testing

// What the observer is shown of each call, and for whom the calls are said to be made.
#include <set>

#include <QDir>
#include <gmock/gmock.h>

#include "link/Asker.h"
#include "link/Declarations.h"
#include "link/LinkErrors.h"
#include "link/SMBusStuff.h"
#include "link/USBStuff.h"
#include "tasks/Recorder.h"
#include "tasks/TasksState.h"
#include "tasks/TrafficText.h"
#include "tests/support/Steps.h"

namespace zth::testing {
namespace {

using link::Asker;
using tasks::Traffic;
using tasks::TrafficRecord;

/// What the traffic holds from a number on, as lines without their times.
std::vector<std::string> LinesFrom(std::uint64_t first) {
  const Traffic& traffic = *tasks::Work.traffic;
  std::vector<std::string> lines;
  for (std::uint64_t number = first; number < traffic.End(); ++number) {
    const TrafficRecord& record = traffic.At(number);
    const std::string line = tasks::TrafficLineText(record, traffic.TextOf(record), 0);
    lines.push_back(line.substr(record.isNote ? 0 : line.find(' ') + 1));
  }
  return lines;
}

/// The askers of the records from a number on, each once.
std::set<std::string> AskersFrom(std::uint64_t first) {
  std::set<std::string> askers;
  const Traffic& traffic = *tasks::Work.traffic;
  for (; first < traffic.End(); ++first) askers.insert(traffic.TextOf(traffic.At(first)));
  return askers;
}

class Tap : public ::testing::Test {
 protected:
  /// The lines of the calls that `act` makes.
  template <typename Act>
  std::vector<std::string> Of(const Act& act) {
    const std::uint64_t first = tasks::Work.traffic->End();
    act();
    return LinesFrom(first);
  }
  template <typename Act>
  std::set<std::string> AskersOf(const Act& act) {
    const std::uint64_t first = tasks::Work.traffic->End();
    act();
    return AskersFrom(first);
  }

  Desk desk;
};

using Expected = std::vector<std::string>;

TEST_F(Tap, ShowsEachFormOverUsbWithItsContentAndResult) {
  desk.Start();
  desk.board.Chip()[0x20] = 0x12;
  desk.board.Chip()[0x21] = 0x34;
  desk.board.ports = {{0x4A, 0x3C}};
  desk.board.heaterState = {100, 50, 7};
  const auto calls = [] {
    std::int32_t percent = 75;
    link::LoadFirmware("x");
    link::ConnectAdapter();
    link::ReadRegister(0x58, 0x20);
    link::ReadRegisterBlock(0x58, 0x20, 2);
    link::WriteRegisterValue(0x58, 0x44, 0x31);
    link::ReadBoardPort(0x4A);
    link::WriteBoardPort(0x4A, 3);
    link::WriteBoardPortUnchecked(0x4A, 4);
    link::SetHeater(1, percent);
    link::ReadHeaterState();
  };
  EXPECT_EQ(Of(calls),
            (Expected{"usb firmware -> 1", "usb connect -> 30 33", "usb r 58 20 -> 12", "usb rb 58 20 2 -> 12 34",
                      "usb w 58 44 31 -> ok", "usb port r 4a -> 3c", "usb port w 4a 03 -> ok",
                      "usb port wb 4a 04 -> ok", "usb heater w 1 75 -> ok", "usb heater r -> 64 32 07"}));
  desk.board.failFrom = 0;
  desk.board.firmwareResult = -3;
  link::Bus.reporter.services = nullptr;  // nobody is told, and the program goes on
  EXPECT_EQ(Of(calls), (Expected{"usb firmware -> fail -3", "usb connect -> fail -5", "usb r 58 20 -> fail -5",
                                 "usb rb 58 20 2 -> fail -5", "usb w 58 44 31 -> fail -5", "usb port r 4a -> fail -5",
                                 "usb port w 4a 03 -> fail -5", "usb port wb 4a 04 -> fail -5",
                                 "usb heater w 1 75 -> fail -5", "usb heater r -> fail -5"}));
}

TEST_F(Tap, ShowsEachFormOverTheSmbusAndItsFailuresIfTheyAreKnown) {
  desk.board.missingEntries.clear();
  desk.Start();
  link::Bus.InterfaceMode = link::kModeSmbus;
  desk.board.smbusChips[0x2C][0x20] = 0x12;
  desk.board.smbusChips[0x2C][0x21] = 0x34;
  const auto calls = [] {
    link::ProbeSmbusHost();
    link::DetectSmbusHost();
    link::ReadRegister(0x2C, 0x20);
    link::ReadRegisterBlock(0x2C, 0x20, 2);
    link::WriteRegisterValue(0x2C, 0x44, 0x31);
  };
  EXPECT_EQ(Of(calls), (Expected{"smbus r 00 00 -> fail", "smbus detect -> ok", "smbus r 2c 20 -> 12",
                                 "smbus r 2c 20 -> 12", "smbus r 2c 21 -> 34", "smbus w 2c 44 31 -> ok"}));
  desk.board.smbusFails = [](const std::string& /*transfer*/) { return true; };
  const Expected failing = Of(calls);
  EXPECT_EQ(failing.back(), "smbus w 2c 44 31 -> fail");
  EXPECT_EQ(failing[2], "smbus r 2c 20 -> fail");
  desk.board.knowsFailures = false;
  EXPECT_EQ(Of(calls).back(), "smbus w 2c 44 31 -> ok");
}

TEST_F(Tap, AFailureIsShownBeforeTheProgramEnds) {
  desk.Start();
  desk.board.failFrom = 0;
  desk.prompts.script = {platform::BoxAnswer::Ok};
  const std::uint64_t first = tasks::Work.traffic->End();
  desk.prompts.whileShown = [first] { EXPECT_EQ(LinesFrom(first), (Expected{"usb r 58 3e -> fail -5"})); };
  EXPECT_THROW(link::ReadRegister(0x58, 0x3E), platform::ProcessEnded);
}

TEST_F(Tap, SaysWhoAsks) {
  EXPECT_EQ(AskersOf([this] { desk.Start(); }), std::set<std::string>{"start"});
  windows::ChildWindow* window = nullptr;
  EXPECT_EQ(AskersOf([&] { window = &desk.Open("frmAutoGraph"); }), std::set<std::string>{"frmAutoGraph opens"});
  EXPECT_EQ(AskersOf([&] { Do(*window, "cmbControl(1)=2"); }), std::set<std::string>{"frmAutoGraph cmbControl(1)"});
  EXPECT_EQ(AskersOf([&] { window->ReadAgain(); }), std::set<std::string>{"frmAutoGraph read again"});
  desk.Open("frmGPIO");
  EXPECT_EQ(AskersOf([this] { desk.Advance(1000); }), (std::set<std::string>{"monitor", "monitor frmGPIO"}));
  auto& pins = desk.Open("frmPinConfig");
  EXPECT_EQ(AskersOf([&] { Do(pins, "cmdApply"); }),
            (std::set<std::string>{"frmPinConfig cmdApply", "frmPinConfig cmdApply, pins"}));
}

TEST_F(Tap, SaysThatTheDemoAsksInATick) {
  desk.Start();
  desk.board.Chip()[0x8D] = 64 + 60;  // hot enough for its THERM2 event
  Do(desk.Open("frmDynamicTmin"), "cmdDemo");
  EXPECT_THAT(AskersOf([this] { desk.Advance(2000); }), ::testing::Contains("monitor, frmDynamicTmin demo"));
}

TEST_F(Tap, ATickBelowABoxOfAHandlerIsTheMonitors) {
  desk.Start();
  auto& window = desk.Open("frmLogging");
  desk.prompts.script = {platform::BoxAnswer::Ok};
  desk.fileDialogs.script = {QDir::temp().filePath("none.csv")};
  const auto askers = AskersOf([&] {
    desk.prompts.whileShown = [this] { desk.clock.Advance(500); };
    Do(window, "cmdLogData");  // nothing is selected
  });
  EXPECT_EQ(desk.prompts.shown.size(), 1U);
  EXPECT_EQ(askers, std::set<std::string>{"monitor"});
}

TEST(Askers, AnActionInsideAnotherIsPartOfItAndAJobIsNot) {
  link::Bus = {};
  const Asker outer(Asker::Kind::Action, [] { return "outer"; });
  {
    const Asker inner(Asker::Kind::Action, [] { return "inner"; });
    EXPECT_EQ(link::Bus.asker->Name(), "outer");
    const Asker part(Asker::Kind::Part, [] { return "pins"; });
    EXPECT_EQ(link::Bus.asker->Name(), "outer, pins");
    const Asker job(Asker::Kind::Job, [] { return "monitor"; });
    EXPECT_EQ(link::Bus.asker->Name(), "monitor");
  }
  EXPECT_EQ(link::Bus.asker->Name(), "outer");
}

link::Call WriteOf(std::uint8_t reg, const std::uint8_t& byte) {
  return {.mode = 1, .form = link::Form::Write, .address = 0x58, .reg = reg, .bytes = {&byte, 1}};
}

TEST(TrafficRing, KeepsTheLatestAndCountsOn) {
  Traffic traffic(3);
  const std::uint8_t byte = 7;
  for (std::uint8_t reg = 0; reg < 5; ++reg) traffic.Saw(WriteOf(reg, byte));
  EXPECT_EQ(traffic.First(), 2U);
  EXPECT_EQ(traffic.End(), 5U);
  EXPECT_EQ(traffic.At(2).reg, 2);
  EXPECT_EQ(traffic.At(4).reg, 4);
  traffic.Clear();
  EXPECT_EQ(traffic.First(), 5U);
  traffic.AddNote("here", 9.5);
  EXPECT_EQ(traffic.End(), 6U);
  EXPECT_TRUE(traffic.At(5).isNote);
  EXPECT_EQ(traffic.TextOf(traffic.At(5)), "here");
  EXPECT_EQ(traffic.At(5).time, 9.5);
}

TEST(TrafficRing, KnowsTheValueBeforeAWriteFromWhatWasReadOrWritten) {
  Traffic traffic;
  const std::array<std::uint8_t, 2> read{0x11, 0x22};
  traffic.Saw({.mode = 1, .form = link::Form::ReadBlock, .address = 0x58, .reg = 0x20, .bytes = read});
  const std::uint8_t byte = 0x33;
  const auto before = [&](link::Call call) {
    traffic.Saw(call);
    return traffic.At(traffic.End() - 1).before;
  };
  EXPECT_EQ(before(WriteOf(0x21, byte)), 0x22);
  EXPECT_EQ(before(WriteOf(0x21, byte)), 0x33);
  EXPECT_EQ(before(WriteOf(0x22, byte)), std::nullopt);
  link::Call failed = WriteOf(0x20, byte);
  failed.succeeded = false;
  EXPECT_EQ(before(failed), 0x11);
  EXPECT_EQ(before(WriteOf(0x20, byte)), 0x11) << "the failed write may have changed nothing";
  link::Call other = WriteOf(0x20, byte);
  other.address = 0x5A;
  EXPECT_EQ(before(other), std::nullopt) << "another chip";
  other.mode = 2;
  other.address = 0x58;
  EXPECT_EQ(before(other), std::nullopt) << "another bus";
  traffic.Saw({.mode = 1, .form = link::Form::ReadPort, .address = 0x4A, .bytes = {&byte, 1}});
  EXPECT_EQ(before({.mode = 1, .form = link::Form::WritePort, .address = 0x4A, .bytes = {&byte, 1}}), 0x33);
}

TEST(TrafficRing, AListenerHearsEachRecordUntilItsTokenGoes) {
  Traffic traffic;
  Expected heard;
  auto token =
      traffic.Listen([&heard](const TrafficRecord& /*record*/, const std::string& text) { heard.push_back(text); });
  traffic.AddNote("one", 0);
  traffic.Add({}, "two");
  token.reset();
  traffic.AddNote("three", 0);
  EXPECT_EQ(heard, (Expected{"one", "two"}));
}

}  // namespace
}  // namespace zth::testing

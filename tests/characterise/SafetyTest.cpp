#include <algorithm>
#include <array>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "chip/RegisterNames.h"
#include "link/USBStuff.h"
#include "tests/characterise/Rig.h"

namespace zth::testing {
namespace {

using characterise::Characterisation;
using characterise::Ending;
using characterise::Fate;
using characterise::PartState;
using characterise::Settings;

/// All parts of a run, as short as they can be.
Settings Short() {
  Settings settings;
  settings.heat = true;
  settings.controller = true;
  settings.pwms = {1, 2};
  settings.dutyStep = 25;
  settings.settleMost = 5;
  settings.heatDuties = {100, 50};
  settings.heatMost = 40;
  settings.profileHold = 20;
  return settings;
}

/// What is not as before.
std::vector<std::string> Left(const Characterisation& data) {
  std::vector<std::string> left;
  for (const PartState& part : data.parts) {
    if (part.fate != Fate::Restored && part.fate != Fate::Off) left.push_back(part.name + ": " + part.words);
  }
  return left;
}

/// Whether what the run says of each part is so on the board.
void ExpectTrueWords(Rig& rig, const std::array<int, 258>& before, const Characterisation& data, int at) {
  const auto now = rig.Found();
  std::vector<std::size_t> named;
  for (const PartState& part : data.parts) {
    EXPECT_NE(part.fate, Fate::InUse) << part.name;
    const bool isHeater = part.name.starts_with("Heater");
    const std::size_t open = part.name.find('(');
    const std::size_t index = isHeater ? 255U + static_cast<std::size_t>(part.name.back() - '0')
                                       : std::stoul(part.name.substr(open + 1, 2), nullptr, 16);
    named.push_back(index);
    EXPECT_TRUE(!isHeater || part.fate == Fate::Unknown || now.at(index) == 0) << at;
    EXPECT_TRUE(part.fate != Fate::Restored || now.at(index) == -1 || now.at(index) == before.at(index))
        << part.name << at;
  }
  for (std::size_t index = 0; index < now.size(); ++index) {
    const bool isNoSetting = now.at(index) == -1 || before.at(index) == -1;
    if (isNoSetting || std::ranges::find(named, index) != named.end()) continue;
    EXPECT_EQ(now.at(index), before.at(index)) << "register " << index << " is not in the list " << at;
  }
}

/// One part of a run alone, or all.
Settings Only(characterise::Phase part) {
  Settings settings = Short();
  if (part == characterise::Phase::Prepare) return settings;
  settings.fans = part == characterise::Phase::Fans;
  settings.heat = part == characterise::Phase::Heat;
  settings.controller = part == characterise::Phase::Controller;
  settings.dutyStep = 50;
  settings.heatDuties = {60};
  return settings;
}

class CharacteriseFailure : public ::testing::TestWithParam<characterise::Phase> {};

TEST_P(CharacteriseFailure, LeavesTheBoardAsItWasFound) {
  const Settings settings = Only(GetParam());
  int writes = 0;
  int reads = 0;
  {
    Rig rig;
    rig.sim.fails = [&](std::int16_t /*request*/, bool isRead) { return ++(isRead ? reads : writes), false; };
    ASSERT_EQ(rig.Run(settings).ending, Ending::Done) << rig.engine->Data().endWords;
  }
  ASSERT_GT(writes, 6);
  // Each write fails, once or so often that the run ends; and some of the reads. Of all parts together only a few.
  const bool isAll = GetParam() == characterise::Phase::Prepare;
  struct Failing {
    int from;
    int count;
    bool isWrite;
  };
  std::vector<Failing> all;
  for (int at = 1; at <= writes; at += isAll ? 9 : 1) all.insert(all.end(), {{at, 1, true}, {at, 2, true}});
  for (int at = 1; at <= reads; at += reads / 8) all.insert(all.end(), {{at, 1, false}, {at, 30, false}});
  int ended = 0;
  for (const Failing& failing : all) {
    Rig rig;
    const auto before = rig.Found();
    int count = 0;
    rig.sim.fails = [&](std::int16_t /*request*/, bool isRead) {
      if (failing.isWrite == isRead) return false;
      ++count;
      return count >= failing.from && count < failing.from + failing.count;
    };
    const Characterisation& data = rig.Run(settings);
    EXPECT_NE(data.ending, Ending::Running);
    EXPECT_TRUE(data.boardAsFound) << failing.from << " " << failing.count << ": " << data.endWords
                                   << ::testing::PrintToString(Left(data));
    EXPECT_EQ(rig.Found(), before) << failing.from << " " << failing.count << ": " << data.endWords;
    ended += data.ending == Ending::Done ? 0 : 1;
  }
  EXPECT_GT(ended, 3) << "most failures were never noticed";
}

INSTANTIATE_TEST_SUITE_P(Parts, CharacteriseFailure,
                         ::testing::Values(characterise::Phase::Prepare, characterise::Phase::Fans,
                                           characterise::Phase::Heat, characterise::Phase::Controller));

TEST(CharacteriseSafety, WithoutTheLinkItSaysWhatWasLeft) {
  for (int from = 1; from < 9000; from = from * 3 / 2 + 7) {
    Rig rig;
    const auto before = rig.Found();
    int count = 0;
    rig.sim.fails = [&](std::int16_t /*request*/, bool /*isRead*/) { return ++count >= from; };
    const Characterisation& data = rig.Run(Short());
    if (data.ending == Ending::Done) break;
    EXPECT_TRUE(data.ending == Ending::TransferFailed || data.ending == Ending::NoReadings ||
                data.ending == Ending::Refused)
        << data.endWords;
    ExpectTrueWords(rig, before, data, from);
    if (data.parts.empty()) continue;
    EXPECT_FALSE(data.boardAsFound);
    EXPECT_TRUE(std::ranges::any_of(data.parts, [](const PartState& part) {
      return part.words.find("may still hold") != std::string::npos;
    })) << from;
  }
}

TEST(CharacteriseSafety, CancelAndCloseAtAnyTimeLeaveTheBoardAsItWasFound) {
  for (const bool closes : {false, true}) {
    for (int ticks = 0; ticks < 5200; ticks += 211) {
      Rig rig("ambient = 30");
      const auto before = rig.Found();
      rig.Run(Short(), ticks);
      const bool wasRunning = rig.engine->IsRunning();
      if (closes) {
        rig.engine->Abort();
      } else {
        rig.engine->Cancel();
        rig.GoOn(200);
      }
      EXPECT_FALSE(rig.engine->IsRunning());
      const Characterisation& data = rig.engine->Data();
      EXPECT_EQ(data.ending, !wasRunning ? Ending::Done : closes ? Ending::Closed : Ending::Cancelled) << ticks;
      EXPECT_TRUE(data.boardAsFound) << ticks << data.endWords;
      EXPECT_EQ(rig.Found(), before) << ticks;
      EXPECT_TRUE(rig.engine->Owned().empty());
      EXPECT_TRUE(tasks::Work.journal->Actions().empty());
    }
  }
}

TEST(CharacteriseSafety, AnEngineThatGoesPutsBack) {
  Rig rig;
  const auto before = rig.Found();
  rig.Run(Short(), 400);
  EXPECT_TRUE(rig.engine->Owns("PWM1 Config"_reg));
  EXPECT_TRUE(rig.engine->OwnsHeater(1));
  EXPECT_FALSE(rig.engine->Owns("PWM3 Config"_reg));
  EXPECT_NE(rig.Found(), before);
  rig.engine.reset();
  EXPECT_EQ(rig.Found(), before);
}

TEST(CharacteriseSafety, LimitsEndTheRun) {
  struct Case {
    const char* scenario;
    double temperature;
    double time;
    Ending ending;
  };
  const Case cases[] = {
      {"fault at 40 ambient at 75 degrees", 70, 3600, Ending::TemperatureLimit},
      {"fault from 20 to 500 sensor 2 drifts 100 degrees a minute", 70, 3600, Ending::TemperatureLimit},
      {"", 85, 60, Ending::TimeLimit},
      {"fault at 60 heater 1 stuck at 100 %\nmoving-air = 0", 70, 3600, Ending::TemperatureLimit},
      {"fault at 30 transfer fails request 0xDC", 85, 3600, Ending::NoReadings},
  };
  for (const Case& one : cases) {
    Rig rig(one.scenario);
    const auto before = rig.Found();
    Settings settings = Short();
    settings.temperatureLimit = one.temperature;
    settings.timeLimit = one.time;
    const Characterisation& data = rig.Run(settings);
    EXPECT_EQ(data.ending, one.ending) << one.scenario << ": " << data.endWords;
    EXPECT_TRUE(data.boardAsFound) << one.scenario << data.endWords;
    EXPECT_EQ(rig.Found(), before) << one.scenario;
  }
}

TEST(CharacteriseSafety, WhatWasSetByHandComesBack) {
  for (const char* const scenario : {"revision = 0", "revision = 1"}) {
    Rig rig(scenario);
    const auto set = [&](std::uint8_t reg, int value) { link::WriteRegisterValue(0x58, reg, value); };
    set("PWM1 Config"_reg, 0xF5);
    set("PWM 1 Value"_reg, 0x35);
    set("PWM2 Config"_reg, 0x8B);
    set("PWM3 Config"_reg, 0x41);
    set("Tach Enable"_reg, 0x03);
    rig.sim.desk.clock.WaitMs(500);
    const auto before = rig.Found();
    const Characterisation& data = rig.Run(Short());
    EXPECT_EQ(data.ending, Ending::Done) << data.endWords;
    EXPECT_TRUE(data.boardAsFound);
    EXPECT_EQ(rig.Found(), before) << scenario;
    EXPECT_EQ(std::ranges::count(data.departures, std::uint8_t{"PWM1 Config"_reg}, &characterise::Departure::reg), 1);
  }
}

TEST(CharacteriseSafety, WhatCannotBeDoneIsRefusedAndNothingIsSet) {
  struct Case {
    std::uint8_t reg;
    int value;
    const char* says;
  };
  for (const Case& one :
       {Case{"Configuration 1"_reg, 0x41, "locked"}, Case{"Configuration 1"_reg, 0x00, "monitoring"},
        Case{"Configuration 2"_reg, 0x82, "shut down"}, Case{"Configuration 2"_reg, 0xA0, "full speed"}}) {
    Rig rig;
    link::WriteRegisterValue(0x58, one.reg, one.value);
    const auto before = rig.Found();
    const Characterisation& data = rig.Run(Short());
    EXPECT_EQ(data.ending, Ending::Refused);
    EXPECT_NE(data.endWords.find(one.says), std::string::npos) << data.endWords;
    EXPECT_EQ(rig.Found(), before);
  }
  Rig rig({}, link::kModeSmbus);
  EXPECT_NE(rig.Run(Short()).endWords.find("USB only"), std::string::npos);
  Settings settings;
  settings.pwms = {5};
  EXPECT_NE(characterise::CheckSettings(settings), "");
  settings = {};
  settings.heatDuties = {101};
  settings.heat = true;
  EXPECT_NE(characterise::CheckSettings(settings), "");
  EXPECT_EQ(characterise::CheckSettings(Settings{}), "");
}

TEST(CharacteriseSafety, OverSmbusFailuresAreNoticedAsWell) {
  struct Case {
    const char* scenario;
    Ending ending;
  };
  for (const Case& one : {Case{"", Ending::Done}, Case{"fault at 20 transfer fails 20 times", Ending::Done},
                          Case{"fault from 20 to 26 transfer fails", Ending::TransferFailed},
                          Case{"fault from 20 to 26 register 0x21 stuck at 0x11", Ending::Done}}) {
    Rig rig(one.scenario, link::kModeSmbus);
    const auto before = rig.Found();
    const Characterisation& data = rig.Run(Only(characterise::Phase::Fans));
    EXPECT_EQ(data.ending, one.ending) << one.scenario << ": " << data.endWords;
    EXPECT_TRUE(data.boardAsFound) << one.scenario << ": " << ::testing::PrintToString(Left(data));
    EXPECT_EQ(rig.Found(), before) << one.scenario;
  }
}

TEST(CharacteriseSafety, AnotherChipEndsTheRunAndItsOwnIsPutBack) {
  Rig rig;
  const auto before = rig.Found();
  rig.Run(Short(), 300);
  link::Bus.InterfaceMode = link::kModeSmbus;
  link::Bus.DeviceAddress = 0x2C;
  EXPECT_EQ(rig.GoOn(200).ending, Ending::OtherChip);
  EXPECT_EQ(link::Bus.DeviceAddress, 0x2C);
  link::Bus.InterfaceMode = link::kModeUsb;
  EXPECT_EQ(rig.Found(), before);
}

TEST(CharacteriseSafety, InTheProgramItUsesWhatTheMonitorReads) {
  SimulatedDesk sim("spread = 0");
  sim.desk.Start();
  characterise::Characteriser engine(sim.desk.services);
  Settings settings;
  settings.pwms = {3};
  settings.dutyStep = 20;
  settings.pulses = 2;
  engine.Start(settings);
  const auto reads = [&] { return sim.requests[{0xDC, 1, "Local Temp LSBs"_reg}]; };
  const auto before = reads();
  double seconds = 0;
  for (; engine.IsRunning(); seconds += 0.05) {
    sim.desk.Advance(50);
    engine.Tick();
  }
  const Characterisation& data = engine.Data();
  ASSERT_EQ(data.ending, Ending::Done) << data.endWords;
  EXPECT_TRUE(data.boardAsFound);
  ASSERT_EQ(data.fans.size(), 1U);
  for (const characterise::TachResult& tach : data.fans[0].tachs) {
    EXPECT_NEAR(tach.topRpm, 4800, 24);
    EXPECT_NEAR(tach.timeConstant.value_or(characterise::Estimate{}).value, 0.8, 0.04);
  }
  // Every half second at most, the monitor's own among them.
  EXPECT_LT(static_cast<double>(reads() - before), seconds / 0.4);
  EXPECT_TRUE(tasks::Work.journal->Actions().empty());
}

TEST(CharacteriseSafety, AFailureOfTheMonitorPutsBackBeforeItsBox) {
  SimulatedDesk sim;
  sim.desk.Start();
  characterise::Characteriser engine(sim.desk.services);
  engine.Start(Short());
  for (int i = 0; i < 600; ++i) {
    sim.desk.Advance(50);
    engine.Tick();
  }
  ASSERT_TRUE(engine.IsRunning());
  EXPECT_EQ(sim.Register("PWM1 Config"_reg) >> 5, 7);
  bool isDue = true;
  sim.fails = [&](std::int16_t /*request*/, bool isRead) { return isRead && std::exchange(isDue, false); };
  sim.desk.prompts.script = {platform::BoxAnswer::Ok};
  sim.desk.Advance(200);
  EXPECT_EQ(engine.Data().ending, Ending::TransferFailed);
  EXPECT_TRUE(engine.Data().boardAsFound);
  EXPECT_EQ(sim.Register("PWM1 Config"_reg), 0x11);
  EXPECT_EQ(sim.desk.process.ends, std::vector<int>{1});
}

}  // namespace
}  // namespace zth::testing

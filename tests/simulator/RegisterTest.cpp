#include <random>
#include <set>

#include "simulator/RegisterRules.h"
#include "tests/simulator/ChipOnBench.h"

namespace zth::simulator {
namespace {

/// The value of an address at power-up.
int DefaultOf(int address, int revision = 1) {
  const RegisterRule* rule = RuleOf(static_cast<std::uint8_t>(address));
  return address == 0x3F ? revision : rule == nullptr ? 0 : rule->reset;
}

TEST(Registers, PowerUpShowsEveryDefaultAndAnEmptyAddressReadsZero) {
  for (const int revision : {0, 1}) {
    ChipOnBench bench(revision);
    for (int address = 0; address < 256; ++address) {
      EXPECT_EQ(bench.Read(address), DefaultOf(address, revision)) << "0x" << std::hex << address;
    }
  }
}

// The registers that a write does not simply replace.
const std::set<int> kSpecial{0x00, 0x14, 0xAA, 0xAB, 0xAC, 0xAD, 0xBF};

TEST(Registers, EveryAddressKeepsOrRejectsAllEightBits) {
  for (int address = 0; address < 256; ++address) {
    if (kSpecial.contains(address)) continue;
    const RegisterRule* rule = RuleOf(static_cast<std::uint8_t>(address));
    for (const int value : {0xFF, 0x00, 0xA5, 0x5A}) {
      ChipOnBench bench;
      const int before = bench.Read(address);
      bench.Write(address, value);
      const bool kept = rule != nullptr && !rule->ReadOnly();
      EXPECT_EQ(bench.Read(address), kept ? value : before) << "0x" << std::hex << address;
    }
  }
}

TEST(Registers, AWriteTouchesNoOtherRegisterUnlessThatIsItsPurpose) {
  for (int address = 0; address < 256; ++address) {
    ChipOnBench bench;
    bench.Write(0x07, 0xFF);
    bench.Write(address, 0x55);
    for (int other = 0; other < 256; ++other) {
      const bool pinsByEasyOption = address == 0x14 && other >= 0x10 && other <= 0x13;
      const bool optionLeft = other == 0x14 && address >= 0x10 && address <= 0x13;
      if (other == address || other == 0x07 || pinsByEasyOption || optionLeft) continue;
      EXPECT_EQ(bench.Read(other), DefaultOf(other)) << std::hex << "0x" << address << " changed 0x" << other;
    }
  }
}

TEST(Registers, SoftwareResetPutsEverythingBackAndClearsItsOwnBit) {
  ChipOnBench bench;
  std::mt19937 random(1);
  for (int address = 1; address < 256; ++address) bench.Write(address, static_cast<int>(random() & 0xFF));
  bench.pins.temperatureC.fill(120);
  bench.Run(3);
  bench.Write(0x00, 0x80);
  for (int address = 0; address < 256; ++address) {
    EXPECT_EQ(bench.Read(address), DefaultOf(address)) << "0x" << std::hex << address;
  }
  bench.Play("00=7F 00:7F");
}

TEST(Registers, AnEasyOptionSetsThePinsItPromises) {
  constexpr int kRows[][8] = {{0x01, 4, 4, 8, 4, 2, 0, 1}, {0x02, 4, 4, 8, 2, 2, 2, 0}, {0x04, 2, 3, 4, 13, 0, 0, 1},
                              {0x08, 3, 4, 6, 7, 1, 1, 0}, {0x10, 3, 3, 6, 7, 1, 1, 0}, {0x05, 2, 3, 4, 13, 0, 0, 1}};
  for (const auto& [option, temperatures, pwms, tachs, voltages, therms, vrHots, chassisIntrusion] : kRows) {
    SCOPED_TRACE(option);
    ChipOnBench bench({{0x10, 0}, {0x11, 0}, {0x12, 0}, {0x13, 0}, {0x14, option}});
    const PinModel& pins = bench.chip.Pins();
    const auto count = [](int n, auto has) {
      int sum = 0;
      for (int i = 0; i < n; ++i) sum += has(i);
      return sum;
    };
    EXPECT_EQ(count(kTemperatures, [&](int n) { return pins.HasDiode(n); }), temperatures);
    EXPECT_EQ(count(kPwms, [&](int n) { return pins.HasPwm(n); }), pwms);
    EXPECT_EQ(count(kTachs, [&](int n) { return pins.HasTach(n); }), tachs);
    EXPECT_EQ(count(kVoltagePins, [&](int n) { return pins.IsVoltage(static_cast<VoltagePin>(n)); }), voltages);
    EXPECT_EQ(count(2, [&](int n) { return pins.HasTherm(n); }), therms);
    EXPECT_EQ(count(2, [&](int n) { return pins.HasVrHot(n); }), vrHots);
    EXPECT_EQ(pins.HasChassisIntrusion(), chassisIntrusion == 1);
  }
}

TEST(Registers, TheFirstEasyOptionIsThePowerUpAssignmentAndNoneChangesNothing) {
  ChipOnBench bench("10=00 14=01");
  for (int address = 0x10; address < 0x14; ++address) EXPECT_EQ(bench.Read(address), DefaultOf(address));
  bench.Play("10=12 14=00 10:12 14:00");
}

TEST(Registers, EasyConfigNamesTheOptionInForceOrNone) {
  ChipOnBench("14=04 10=1E 14:04 10=1F 14:00 10=1E 14:00").Play("14=10 14:10 13=CC 14:10 11=CC 14:00");
}

TEST(Registers, WhatIsReadAndWrittenToAFreshChipBringsItsStateBack) {
  std::mt19937 random(1);
  for (int round = 0; round < 40; ++round) {
    SCOPED_TRACE(round);
    ChipOnBench bench;
    ChipOnBench fresh;
    for (const RegisterRule& rule : RegisterRules()) {
      // A third of the registers, so that some outputs stay in their initial state; no reset, and nothing that changes
      // by itself.
      const bool restless = rule.address == 0x0B || rule.address == 0x1A || rule.address == 0x1B;
      if (random() % 3 == 0 && !restless) bench.Write(rule.address, static_cast<int>(random() & 0x7F));
    }
    if (round % 2 == 0) bench.Write(0x11, static_cast<int>(random() & 0xFF));
    bench.Run(10);
    for (const RegisterRule& rule : RegisterRules()) {
      if (!rule.ReadOnly()) fresh.Write(rule.address, bench.Read(rule.address));
    }
    fresh.Run(10);
    for (const RegisterRule& rule : RegisterRules()) {
      if (rule.ReadOnly()) continue;
      EXPECT_EQ(fresh.Read(rule.address), bench.Read(rule.address)) << std::hex << int{rule.address};
    }
    for (int pwm = 0; pwm < kPwms; ++pwm) EXPECT_EQ(fresh.Duty(pwm), bench.Duty(pwm)) << pwm;
  }
}

}  // namespace
}  // namespace zth::simulator

#include <cstdint>
#include <random>
#include <set>

#include <gtest/gtest.h>

#include "simulator/RegisterRules.h"
#include "tests/simulator/ChipOnBench.h"

namespace zth::simulator {
namespace {

TEST(Registers, PowerUpShowsEveryDefaultAndAnEmptyAddressReadsZero) {
  for (const std::uint8_t revision : {std::uint8_t{0}, std::uint8_t{1}}) {
    ChipOnBench bench(revision);
    for (int address = 0; address < 256; ++address) {
      const RegisterRule* rule = RuleOf(static_cast<std::uint8_t>(address));
      int expected = rule == nullptr ? 0 : rule->reset;
      if (address == 0x3F) expected = revision;
      EXPECT_EQ(bench.Read(address), expected) << "0x" << std::hex << address;
    }
  }
}

// The registers whose bytes a write does not simply replace.
const std::set<int> kSpecial{0x00, 0x14, 0xAA, 0xAB, 0xAC, 0xAD, 0xBF};

TEST(Registers, EveryAddressKeepsOrRefusesAllEightBits) {
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

TEST(Registers, AWriteTouchesNoOtherRegisterButWhereThatIsItsPurpose) {
  for (int address = 0; address < 256; ++address) {
    ChipOnBench bench;
    bench.Write(0x07, 0xFF);
    bench.Write(address, 0x55);
    for (int other = 0; other < 256; ++other) {
      const bool pinsByEasyOption = address == 0x14 && other >= 0x10 && other <= 0x13;
      if (other == address || other == 0x07 || pinsByEasyOption) continue;
      const RegisterRule* rule = RuleOf(static_cast<std::uint8_t>(other));
      int expected = rule == nullptr ? 0 : rule->reset;
      if (other == 0x3F) expected = 1;
      EXPECT_EQ(bench.Read(other), expected) << std::hex << "0x" << address << " changed 0x" << other;
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
  for (const RegisterRule& rule : RegisterRules()) {
    if (rule.address == 0x3F) continue;
    EXPECT_EQ(bench.Read(rule.address), rule.reset) << "0x" << std::hex << int{rule.address};
  }
  bench.Write(0x00, 0x7F);
  EXPECT_EQ(bench.Read(0x00), 0x7F);
}

TEST(Registers, AnEasyOptionSetsThePinsItPromises) {
  struct Row {
    int option;
    int temperatures, pwms, tachs, voltages, therms, vrHots;
    bool chassisIntrusion;
  };
  for (const Row& row :
       {Row{0x01, 4, 4, 8, 4, 2, 0, true}, Row{0x02, 4, 4, 8, 2, 2, 2, false}, Row{0x04, 2, 3, 4, 13, 0, 0, true},
        Row{0x08, 3, 4, 6, 7, 1, 1, false}, Row{0x10, 3, 3, 6, 7, 1, 1, false}, Row{0x05, 2, 3, 4, 13, 0, 0, true}}) {
    SCOPED_TRACE(row.option);
    ChipOnBench bench;
    bench.Write({{0x10, 0}, {0x11, 0}, {0x12, 0}, {0x13, 0}, {0x14, row.option}});
    const PinModel& pins = bench.chip.Pins();
    const auto count = [](int n, auto has) {
      int sum = 0;
      for (int i = 0; i < n; ++i) sum += has(i);
      return sum;
    };
    EXPECT_EQ(count(kTemperatures, [&](int i) { return pins.HasDiode(i); }), row.temperatures);
    EXPECT_EQ(count(kPwms, [&](int i) { return pins.HasPwm(i); }), row.pwms);
    EXPECT_EQ(count(kTachs, [&](int i) { return pins.HasTach(i); }), row.tachs);
    EXPECT_EQ(count(kVoltagePins, [&](int i) { return pins.IsVoltage(static_cast<VoltagePin>(i)); }), row.voltages);
    EXPECT_EQ(count(2, [&](int i) { return pins.HasTherm(i); }), row.therms);
    EXPECT_EQ(count(2, [&](int i) { return pins.HasVrHot(i); }), row.vrHots);
    EXPECT_EQ(pins.HasChassisIntrusion(), row.chassisIntrusion);
  }
}

TEST(Registers, TheFirstEasyOptionIsThePowerUpAssignmentAndNoneChangesNothing) {
  ChipOnBench bench;
  bench.Write({{0x10, 0x00}, {0x14, 0x01}});
  EXPECT_EQ(bench.Read(0x10), 0x7F);
  EXPECT_EQ(bench.Read(0x11), 0xCE);
  EXPECT_EQ(bench.Read(0x12), 0x42);
  EXPECT_EQ(bench.Read(0x13), 0xFC);
  bench.Write({{0x10, 0x12}, {0x14, 0x00}});
  EXPECT_EQ(bench.Read(0x10), 0x12);
  EXPECT_EQ(bench.Read(0x14), 0x00);
}

}  // namespace
}  // namespace zth::simulator

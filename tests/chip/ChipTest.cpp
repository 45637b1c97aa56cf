#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <set>
#include <vector>

#include <gtest/gtest.h>

#include "chip/Conversions.h"
#include "chip/Measurements.h"
#include "chip/PinModel.h"
#include "link/Declarations.h"
#include "link/USBStuff.h"
#include "tests/support/Steps.h"

namespace zth::testing {
namespace {

using namespace zth::chip;

TEST(Conversions, TemperaturesHaveTheirOffsetAndQuarters) {
  const std::tuple<std::uint8_t, std::uint8_t, float> rows[]{
      {0x00, 0x59, 25.0F}, {0xC0, 0x59, 25.75F}, {0x3F, 0x59, 25.0F}, {0x00, 0x00, -64.0F}, {0xFF, 0xFF, 191.75F}};
  for (const auto& [low, high, degrees] : rows) EXPECT_EQ(TemperatureFromBytes(low, high), degrees);
}

TEST(Conversions, TachCountsOutsideTheWindowAreNoReading) {
  constexpr std::int32_t kRows[][2] = {{0, 0},      {26, 0},      {27, 200000}, {28, 192857}, {1000, 5400},
                                       {7000, 771}, {36000, 150}, {60000, 90},  {60001, 0},   {0xFFFF, 0}};
  for (const auto& [count, rpm] : kRows) EXPECT_EQ(TachCountToRpm(count, 90000), rpm) << count;
  EXPECT_EQ(TachCountToRpm(0, 3000), 180000) << "a count of 0 stands for the clock's own speed";
}

TEST(Conversions, PercentsAndVoltagesRoundHalfToEven) {
  EXPECT_EQ(PercentFromByte(128), 50);
  EXPECT_EQ(PercentFromByte(PwmRawNormalise(0, 0)), 100);
  EXPECT_EQ(PercentFromByte(PwmRawNormalise(255, 0)), 0);
  EXPECT_EQ(PwmRawNormalise(0x12, 2), 0x12);
  const std::tuple<std::uint8_t, double, float> rows[]{{192, 12, 12.0F},   {255, 12, 15.94F},
                                                       {192, 2.13, 2.13F}, {96, 4, 2.0F},
                                                       {2, 12, 0.12F},     {6, 12, 0.38F}};  // 0.125, 0.375
  for (const auto& [raw, nominal, volts] : rows) EXPECT_FLOAT_EQ(VoltageFromRaw(raw, nominal), volts);
}

/// A chip on the fake board whose four pin registers are at hand.
class Pins : public ::testing::Test {
 protected:
  Pins() { desk.Start(); }

  void Configure(std::array<std::uint8_t, 4> configs) {
    std::copy(configs.begin(), configs.end(), desk.board.Chip().begin() + 0x10);
    ReadPinConfiguration();
  }

  /// The indices of what holds.
  template <typename List, typename Holds>
  static std::set<int> Indices(const List& list, Holds holds) {
    std::set<int> indices;
    for (std::size_t i = 0; i < list.size(); ++i) {
      if (holds(list[i])) indices.insert(static_cast<int>(i));
    }
    return indices;
  }
  static std::set<int> Present() { return Indices(VoltagePresent, std::identity{}); }
  static std::set<int> AvailableRows() {
    return Indices(LogChannelTable, [](const LogChannel& row) { return row.Available == 1.0F; });
  }

  Desk desk;
};

TEST_F(Pins, AllRegistersAtZero) {
  Configure({0, 0, 0, 0});
  EXPECT_EQ(PinFunctions, (PinFunctionFlags{.Pin23 = 2, .Pin24 = 2}));
  EXPECT_EQ(Present(), (std::set{0, 1, 2, 3, 5, 7, 8, 9, 13, 18, 20}));
  EXPECT_EQ(AvailableRows(), (std::set{0, 2, 14, 16, 17, 18, 19, 21, 23, 24, 25, 29, 34, 36, 39, 40, 41, 42, 43, 44}));
}

TEST_F(Pins, FactoryDefaults) {
  Configure({0x7F, 0xCE, 0x42, 0xFC});
  PinFunctionFlags p{.D1 = true, .D3 = true, .Pin28 = 2, .Pin29 = 2};
  p.Pin1 = p.Pin2 = p.Pin3 = p.Pin4 = p.Pin7 = p.Pin8 = p.Pin13 = 1;
  p.Pin21 = p.Pin22 = p.Pin23 = p.Pin27 = p.Pin31 = p.Pin32 = 1;
  EXPECT_EQ(PinFunctions, p);
  EXPECT_EQ(Present(), (std::set{11, 16, 18, 20}));
}

/// For any configuration: no pin shows two voltages, and what a pin shows follows its own field alone.
TEST_F(Pins, EachPinHasAtMostOneVoltageWhateverTheRegistersHold) {
  const std::vector<std::set<int>> channelsOfPin{
      {0}, {1}, {2}, {3, 4}, {5, 6}, {7}, {8}, {9, 10, 11, 12}, {13, 14, 15, 16}, {17, 18}, {19, 20}, {21}, {22}};
  for (unsigned seed = 0; seed < 4096; ++seed) {
    const unsigned bits = seed * 2654435761U;
    std::array<std::uint8_t, 4> configs{};
    for (std::size_t i = 0; i < 4; ++i) configs[i] = static_cast<std::uint8_t>(bits >> 8 * i);
    Configure(configs);
    const std::set<int> present = Present();
    for (const auto& pin : channelsOfPin) {
      ASSERT_LE(std::count_if(pin.begin(), pin.end(), [&](int channel) { return present.contains(channel); }), 1);
    }
    const int field25 = configs[2] >> 4 & 3;
    ASSERT_EQ(present.count(18), field25 == 0);
    ASSERT_EQ(present.count(17), field25 == 1);
    const int field23 = configs[1] & 3;
    const std::array channelOfField23{9, 12, 11, 10};
    ASSERT_EQ(present.count(channelOfField23[static_cast<std::size_t>(field23)]), 1U);
    ASSERT_EQ(AvailableRows().count(13), static_cast<std::size_t>(configs[3] >> 2 & 1));
  }
}

TEST_F(Pins, TheSwitchesFollowThePins) {
  Configure({0x12, 0xCE, 0x42, 0x58});
  desk.board.TakeTraffic();
  UpdateBoardSwitches();
  EXPECT_EQ(desk.board.TakeTraffic(), T("P4A=13 P48=F9"));
  BoardSwitch.fill(false);
  BoardSwitch[8] = BoardSwitch[15] = true;
  EXPECT_EQ(PackSwitchByte(1), 0x81);
  EXPECT_EQ(PackSwitchByte(0), 0x00);
}

TEST_F(Pins, APinRegisterWriteRenewsFlagsAndSwitches) {
  for (std::int32_t reg = 0x10; reg <= 0x14; ++reg) {
    const std::int32_t value = desk.board.Chip()[static_cast<std::size_t>(reg)];
    link::WriteRegisterValue(link::DeviceAddress, reg, value);
    EXPECT_EQ(desk.board.TakeTraffic(), Concat(W(reg, value), T("B10+4 P4A=3F P48=FF")));
  }
  link::WriteRegisterValue(link::DeviceAddress, 0x10, 0x3F);
  EXPECT_FALSE(PinFunctions.D1);
}

/// What a group reads and where it puts it.
class Groups : public Pins {};

TEST_F(Groups, EachReadsItsOwnBlocksInOrder) {
  const char* const expected[]{
      "", "B88+8", "B98+8 BA2+8", "BAA+4", "B8B+1 B8F+8 BA3+7", "BAE+2", "B5A+2 B5C+4 B49+2 B45+2", ""};
  for (std::int16_t group = 0; group <= 7; ++group) {
    ReadMeasurementGroup(group);
    EXPECT_EQ(desk.board.TakeTraffic(), T(expected[group])) << group;
  }
}

/// Every measurement register holds a value of its own, so that a byte taken from the wrong place shows.
TEST_F(Groups, ValuesComeFromTheirRegistersAndReachTheLogTable) {
  auto& chip = desk.board.Chip();
  for (std::size_t reg = 0x40; reg < 0xB0; ++reg) chip[reg] = static_cast<std::uint8_t>(reg);
  for (std::int16_t group = 1; group <= 6; ++group) ReadMeasurementGroup(group);
  const MeasurementSet& m = Measurements;
  for (std::size_t i = 0; i < 4; ++i) {
    EXPECT_EQ(m.Temperature[i],
              TemperatureFromBytes(static_cast<std::uint8_t>(0x88 + 2 * i), static_cast<std::uint8_t>(0x89 + 2 * i)));
    EXPECT_EQ(m.PolledTmin[i], 0x5C + static_cast<int>(i) - 64);
    EXPECT_EQ(m.PwmPercent[i], std::lround((0xAA + static_cast<double>(i)) / 2.55));
    EXPECT_EQ(LogChannelTable[i].Value, m.Temperature[i]);
    EXPECT_EQ(LogChannelTable[12 + i].Value, m.PwmPercent[i]);
    EXPECT_EQ(LogChannelTable[39 + i].Value, m.PolledTmin[i]);
  }
  for (std::size_t i = 0; i < 8; ++i) {
    const int low = static_cast<int>((i < 4 ? 0x98 : 0xA2) + 2 * (i % 4));
    EXPECT_EQ(m.TachRpm[i], 5400000 / ((low + 1) * 256 + low));
    EXPECT_EQ(LogChannelTable[4 + i].Value, static_cast<float>(m.TachRpm[i]));
  }
  const std::array<int, 23> registers{0xA3, 0xA5, 0x96, 0x8B, 0x8B, 0x8F, 0x8F, 0xA7, 0xA9, 0x90, 0x90, 0x90,
                                      0x90, 0x91, 0x91, 0x91, 0x91, 0x92, 0x92, 0x93, 0x93, 0x94, 0x95};
  const std::array<double, 23> scales{12,  12,   3.3, 2.5, 1.8, 1.25, 0.9, 5,   12, 2.13, 1.5, 1.8,
                                      2.5, 2.13, 1.5, 1.8, 2.5, 1.2,  3.3, 1.2, 4,  1.5,  1.5};
  for (std::size_t i = 0; i < registers.size(); ++i) {
    EXPECT_NEAR(static_cast<double>(m.Voltage[i]), registers[i] * scales[i] / 192, 0.00501) << i;
    EXPECT_EQ(LogChannelTable[16 + i].Value, m.Voltage[i]);
  }
  EXPECT_EQ(m.ThermPercent, (std::array<float, 2>{68, 69}));
  for (std::size_t remote = 1; remote <= 2; ++remote) {
    const int above = static_cast<int>(remote) - 1 - 64;
    EXPECT_EQ(m.PolledOpPoint[remote], 0x5A + above);
    EXPECT_EQ(m.PolledHighLimit[remote], 0x49 + above);
    EXPECT_EQ(m.PolledLowLimit[remote], 0x45 + above);
    EXPECT_EQ(LogChannelTable[42 + remote].Value, 0x5A + above);
  }
  ChipRevision = 0;
  ReadMeasurementGroup(3);
  EXPECT_EQ(m.PwmPercent[1], std::lround((0xFF - 0xAB) / 2.55)) << "revision 0 reports its duty inverted";
}

}  // namespace
}  // namespace zth::testing

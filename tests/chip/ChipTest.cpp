#include <algorithm>
#include <cmath>
#include <sstream>

#include "chip/ChipState.h"
#include "chip/Conversions.h"
#include "chip/Limits.h"
#include "chip/Measurements.h"
#include "chip/PinModel.h"
#include "chip/RegisterNames.h"
#include "link/Declarations.h"
#include "link/USBStuff.h"
#include "tests/support/Steps.h"

namespace zth::testing {
namespace {

using namespace zth::chip;

// Register names in the program are looked up at compile time; a wrong name must not compile.
struct Edo {
  static constexpr std::string_view reg = "EDO Mask 1", bits = "Temp";
};
struct UnknownRegister {
  static constexpr std::string_view reg = "EDO Mask 3", bits = "Temp";
};
struct UnknownBits {
  static constexpr std::string_view reg = "EDO Mask 1", bits = "Tem";
};
struct Reserved {
  static constexpr std::string_view reg = "EDO Mask 1", bits = "Res";
};
template <typename T>
concept Compiles = requires {
  typename std::integral_constant<unsigned, Field(T::reg, T::bits).shift>;
};
static_assert(Compiles<Edo> && !Compiles<UnknownRegister> && !Compiles<UnknownBits> && !Compiles<Reserved>);

static_assert("Pin 19 High Limit"_reg == 0x4B && "Remote 3 High Limit"_reg == 0x4B, "two names of one address");

TEST(Conversions, TemperaturesHaveTheirOffsetAndQuarters) {
  const std::tuple<std::uint8_t, std::uint8_t, float> rows[]{
      {0x00, 0x59, 25.0F}, {0xC0, 0x59, 25.75F}, {0x3F, 0x59, 25.0F}, {0x00, 0x00, -64.0F}, {0xFF, 0xFF, 191.75F}};
  for (const auto& [low, high, degrees] : rows) EXPECT_EQ(TemperatureFromBytes(low, high), degrees);
}

TEST(Conversions, TachCountsOutsideTheRangeAreNoReading) {
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
  const std::tuple<std::uint8_t, double, float> rows[]{{192, 12, 12.0F},
                                                       {255, 12, 15.94F},
                                                       {192, 2.13, 2.13F},
                                                       {96, 4, 2.0F},
                                                       {2, 12, 0.12F},
                                                       {6, 12, 0.38F},  // 0.125, 0.375
                                                       // Halves that depend on the single precision of the quotient.
                                                       {16, 3.3, 0.28F},
                                                       {144, 3.3, 2.47F},
                                                       {136, 1.8, 1.27F},
                                                       {216, 1.8, 2.03F},
                                                       {32, 2.13, 0.35F},
                                                       {96, 2.13, 1.07F},
                                                       {4, 1.2, 0.03F},
                                                       {28, 1.2, 0.17F}};
  for (const auto& [raw, nominal, volts] : rows) EXPECT_FLOAT_EQ(VoltageFromRaw(raw, nominal), volts);
}

/// A chip on the fake board with access to its four pin registers.
class Pins : public ::testing::Test {
 protected:
  Pins() { desk.Start(); }

  void Configure(std::array<std::uint8_t, 4> configs) {
    std::copy(configs.begin(), configs.end(), desk.board.Chip().begin() + 0x10);
    ReadPinConfiguration();
  }

  /// The indices of the true elements.
  template <typename List, typename Holds>
  static std::set<int> Indices(const List& list, Holds holds) {
    std::set<int> indices;
    for (std::size_t i = 0; i < list.size(); ++i) {
      if (holds(list[i])) indices.insert(static_cast<int>(i));
    }
    return indices;
  }
  static std::set<int> Present() { return Indices(Model.VoltagePresent, std::identity{}); }
  static std::set<int> AvailableRows() {
    return Indices(Model.LogChannelTable, [](const LogChannel& row) { return row.Available == 1.0F; });
  }

  Desk desk;
};

// The pins again, from the data sheet: each flag's register, its field's lowest bit, and its state for each value of
// the field.
struct PinField {
  std::size_t config;  // 0 is register 0x10
  int low;
  std::string_view states;
  int (*flag)(const PinFunctionFlags&);
};
#define PIN(name) [](const PinFunctionFlags& flags) -> int { return flags.name; }
const std::map<std::string, PinField> kPins{
    {"Vid", {0, 7, "01", PIN(Vid)}},       {"D1", {0, 6, "01", PIN(D1)}},         {"D3", {0, 5, "01", PIN(D3)}},
    {"Pin1", {0, 4, "01", PIN(Pin1)}},     {"Pin2", {0, 3, "01", PIN(Pin2)}},     {"Pin3", {0, 2, "01", PIN(Pin3)}},
    {"Pin4", {0, 1, "01", PIN(Pin4)}},     {"Pin7", {0, 0, "01", PIN(Pin7)}},     {"Pin8", {1, 7, "01", PIN(Pin8)}},
    {"Pin13", {1, 6, "01", PIN(Pin13)}},   {"Pin15", {1, 5, "01", PIN(Pin15)}},   {"Pin20", {1, 4, "01", PIN(Pin20)}},
    {"Pin21", {1, 3, "01", PIN(Pin21)}},   {"Pin22", {1, 2, "01", PIN(Pin22)}},   {"Pin23", {1, 0, "2013", PIN(Pin23)}},
    {"Pin24", {2, 6, "2013", PIN(Pin24)}}, {"Pin25", {2, 4, "0122", PIN(Pin25)}}, {"Pin26", {2, 2, "0122", PIN(Pin26)}},
    {"Pin27", {2, 1, "01", PIN(Pin27)}},   {"Pin28", {3, 6, "0122", PIN(Pin28)}}, {"Pin29", {3, 4, "0122", PIN(Pin29)}},
    {"Pin31", {3, 3, "01", PIN(Pin31)}},   {"Pin32", {3, 2, "01", PIN(Pin32)}},
};
#undef PIN

// The condition for each voltage, by channel, and for each row of the log except those of the voltages.
constexpr std::array kVoltages{"Pin7=0",       "Pin8=0",  "Pin13=0", "D1=0 Pin15=0", "D1=0 Pin15=1", "D3=0 Pin20=0",
                               "D3=0 Pin20=1", "Pin21=0", "Pin22=0", "Pin23=2",      "Pin23=3",      "Pin23=1",
                               "Pin23=0",      "Pin24=2", "Pin24=3", "Pin24=1",      "Pin24=0",      "Pin25=1",
                               "Pin25=0",      "Pin26=1", "Pin26=0", "Pin28=1",      "Pin29=1"};
constexpr std::array kRows{"",       "D1=1",   "",        "D3=1",    "Pin1=1",  "Pin2=1",  "Pin3=1", "Pin4=1",
                           "Pin7=1", "Pin8=1", "Pin21=1", "Pin22=1", "Pin31=1", "Pin32=1", "",       "Pin13=1"};

TEST_F(Pins, FollowEachValueOfTheirRegisters) {
  std::array<std::uint8_t, 4> configs{};
  const auto state = [&configs](const std::string& name) {
    const PinField& pin = kPins.at(name);
    return pin.states[(configs[pin.config] >> pin.low) & (pin.states.size() - 1)];
  };
  const auto holds = [&](const std::string& conditions) {
    std::istringstream words(conditions);
    for (std::string word; words >> word;) {
      if (state(word.substr(0, word.find('='))) != word.back()) return false;
    }
    return true;
  };
  for (unsigned each = 0; each < 4 * 4 * 256; ++each) {  // over four backgrounds
    for (std::size_t i = 0; i < 4; ++i) configs[i] = std::array<std::uint8_t, 4>{0x00, 0xFF, 0x5A, 0xA5}[each >> 10];
    configs[each >> 8 & 3] = static_cast<std::uint8_t>(each);
    Configure(configs);
    SCOPED_TRACE(each);
    for (const auto& [name, pin] : kPins) ASSERT_EQ(pin.flag(Model.PinFunctions), state(name) - '0') << name;
    const std::set<int> present = Indices(kVoltages, holds);
    ASSERT_EQ(Present(), present);
    std::set<int> rows = Indices(kRows, holds);
    for (const int channel : present) rows.insert(16 + channel);
    for (int row = 39; row < 45; ++row) rows.insert(row);
    ASSERT_EQ(AvailableRows(), rows);
  }
}

TEST_F(Pins, TheSwitchesFollowThePins) {
  Configure({0x12, 0xCE, 0x42, 0x58});
  desk.board.TakeTraffic();
  UpdateBoardSwitches();
  EXPECT_EQ(desk.board.TakeTraffic(), T("P4A=13 P48=F9"));
  Model.BoardSwitch.fill(false);
  Model.BoardSwitch[8] = Model.BoardSwitch[15] = true;
  EXPECT_EQ(PackSwitchByte(1), 0x81);
  EXPECT_EQ(PackSwitchByte(0), 0x00);
}

/// What a group reads and where it stores it.
class Groups : public Pins {};

TEST_F(Groups, EachReadsItsOwnBlocksInOrder) {
  const char* const expected[]{
      "", "B88+8", "B98+8 BA2+8", "BAA+4", "B8B+1 B8F+8 BA3+7", "BAE+2", "B5A+2 B5C+4 B49+2 B45+2", ""};
  for (std::int16_t group = 0; group <= 7; ++group) {
    ReadMeasurementGroup(group);
    EXPECT_EQ(desk.board.TakeTraffic(), T(expected[group])) << group;
  }
}

/// Every measurement register holds a different value, so that a byte from the wrong register is noticed.
TEST_F(Groups, ValuesComeFromTheirRegistersAndReachTheLogTable) {
  auto& chip = desk.board.Chip();
  const auto held = [](std::size_t reg) { return static_cast<std::uint8_t>(43 * reg); };
  for (std::size_t reg = 0x40; reg < 0xB0; ++reg) chip[reg] = held(reg);
  for (std::int16_t group = 1; group <= 6; ++group) ReadMeasurementGroup(group);
  const MeasurementSet& m = Model.Measurements;
  for (std::size_t i = 0; i < 4; ++i) {
    EXPECT_EQ(m.Temperature[i], TemperatureFromBytes(held(0x88 + 2 * i), held(0x89 + 2 * i)));
    EXPECT_EQ(m.PolledTmin[i], held(0x5C + i) - 64);
    EXPECT_EQ(m.PwmPercent[i], std::lround(held(0xAA + i) / 2.55));
    EXPECT_EQ(Model.LogChannelTable[i].Value, m.Temperature[i]);
    EXPECT_EQ(Model.LogChannelTable[12 + i].Value, m.PwmPercent[i]);
    EXPECT_EQ(Model.LogChannelTable[39 + i].Value, m.PolledTmin[i]);
  }
  for (std::size_t i = 0; i < 8; ++i) {
    const std::size_t low = (i < 4 ? 0x98U : 0xA2U) + 2 * (i % 4);
    EXPECT_EQ(m.TachRpm[i], 5400000 / (held(low + 1) * 256 + held(low)));
    EXPECT_EQ(Model.LogChannelTable[4 + i].Value, static_cast<float>(m.TachRpm[i]));
  }
  const std::array<std::size_t, 23> registers{0xA3, 0xA5, 0x96, 0x8B, 0x8B, 0x8F, 0x8F, 0xA7, 0xA9, 0x90, 0x90, 0x90,
                                              0x90, 0x91, 0x91, 0x91, 0x91, 0x92, 0x92, 0x93, 0x93, 0x94, 0x95};
  const std::array<double, 23> scales{12,  12,   3.3, 2.5, 1.8, 1.25, 0.9, 5,   12, 2.13, 1.5, 1.8,
                                      2.5, 2.13, 1.5, 1.8, 2.5, 1.2,  3.3, 1.2, 4,  1.5,  1.5};
  for (std::size_t i = 0; i < registers.size(); ++i) {
    EXPECT_NEAR(static_cast<double>(m.Voltage[i]), held(registers[i]) * scales[i] / 192, 0.00501) << i;
    EXPECT_EQ(Model.LogChannelTable[16 + i].Value, m.Voltage[i]);
  }
  for (std::size_t i = 0; i < 2; ++i) {
    EXPECT_EQ(m.ThermPercent[i], static_cast<float>(std::lround(held(0xAE + i) / 2.55)));
  }
  for (std::size_t remote = 1; remote <= 2; ++remote) {
    EXPECT_EQ(m.PolledOpPoint[remote], held(0x59 + remote) - 64);
    EXPECT_EQ(m.PolledHighLimit[remote], held(0x48 + remote) - 64);
    EXPECT_EQ(m.PolledLowLimit[remote], held(0x44 + remote) - 64);
    EXPECT_EQ(Model.LogChannelTable[42 + remote].Value, m.PolledOpPoint[remote]);
  }
  Model.ChipRevision = 0;
  ReadMeasurementGroup(3);
  EXPECT_EQ(m.PwmPercent[1], std::lround((0xFF - held(0xAB)) / 2.55)) << "revision 0 reports its duty inverted";
}

constexpr std::int32_t kClock = 90000;

TEST(TemperatureLimits, AreWholeDegreesFrom64BelowZero) {
  for (const auto& [degrees, raw] :
       {std::pair{25.5, 90}, {24.5, 88}, {-0.5, 64}, {-1.5, 62}, {-64.5, 0}, {191.5, 255}, {300.0, 255}, {-100.0, 0}}) {
    EXPECT_EQ(TemperatureLimitFromDegrees(degrees), raw) << degrees;
  }
  for (int raw = 0; raw <= 255; ++raw) {
    EXPECT_EQ(TemperatureLimitFromDegrees(DegreesFromByte(static_cast<std::uint8_t>(raw))), raw);
  }
}

TEST(VoltageLimits, ShowTwoDecimalsOfTheNominalVoltageAt192) {
  for (const auto& [nominal, raw, volts] : std::initializer_list<std::tuple<float, int, double>>{
           {12, 0, 0},         {12, 1, 0.06},    {12, 192, 12},     {12, 254, 15.88},
           {12, 255, 15.94},   {12, 2, 0.12},    {12, 6, 0.38},  // 0.125 and 0.375 round to the even digit
           {3.3F, 255, 4.38},  {3.3F, 192, 3.3}, {4, 192, 4},       {4, 255, 5.31},
           {2.13F, 192, 2.13}, {0.9F, 1, 0},     {0.9F, 255, 1.2},  {1.25F, 254, 1.65},
           {5, 24, 0.62},      {1.5F, 16, 0.12}, {1.2F, 255, 1.59}, {1.8F, 255, 2.39},
       }) {
    EXPECT_DOUBLE_EQ(VoltageRawToVolts(static_cast<std::uint8_t>(raw), nominal), volts) << nominal << " V, raw " << raw;
  }
}

TEST(VoltageLimits, UseTheNearestCodeOfAVoltage) {
  // Half a code rounds to the even one.
  for (const auto& [volts, raw] : {std::pair{15.94, 255}, {0.03125, 0}, {0.09375, 2}, {99.0, 255}, {-1.0, 0}}) {
    EXPECT_EQ(VoltsToVoltageRaw(volts, 12), raw) << volts;
  }
  for (const float nominal : {12.0F, 5.0F, 4.0F, 3.3F, 2.5F, 2.13F, 1.8F, 1.5F, 1.25F, 1.2F, 0.9F}) {
    for (int raw = 0; raw <= 255; ++raw) {
      const int back = VoltsToVoltageRaw(VoltageRawToVolts(static_cast<std::uint8_t>(raw), nominal), nominal);
      // Two decimals identify each code of a channel whose codes are more than a hundredth of a volt apart.
      EXPECT_LE(std::abs(back - raw), nominal > 1.92F ? 0 : 1) << nominal << " V, raw " << raw;
    }
  }
}

TEST(FanLimits, ShowTheSpeedOfTheUpperByte) {
  const std::pair<std::uint8_t, double> rows[]{{0, 12000},   {1, 10567.5}, {2, 7040.4}, {21, 959}, {192, 109.3},
                                               {209, 100.4}, {210, 0},     {254, 0},    {255, 0}};
  for (const auto& [raw, rpm] : rows) EXPECT_NEAR(static_cast<double>(TachLimitToRpm(raw, kClock)), rpm, 0.1) << raw;
  EXPECT_FLOAT_EQ(TachLimitToRpm(1, 2 * kClock), 21135.03F) << "the clock counts";
}

TEST(FanLimits, ConvertTheSpeedByTheSameFormula) {
  for (const auto& [rpm, raw] : {std::pair{0, 255}, {1, 255}, {50, 255}, {82, 254}, {1000, 21}, {12000, 2}}) {
    EXPECT_EQ(RpmToTachLimit(rpm, kClock), raw) << rpm;
  }
  // A limit that is shown and written back moves by one at most: up for fast fans, down for slow ones.
  for (int raw = 3; raw <= 208; ++raw) {
    const auto rpm = static_cast<double>(TachLimitToRpm(static_cast<std::uint8_t>(raw), kClock));
    const int moved = RpmToTachLimit(rpm, kClock) - raw;
    EXPECT_TRUE(raw < 100 ? moved == 1 : (raw > 180 ? moved == -1 : std::abs(moved) <= 1)) << raw << " by " << moved;
  }
}

TEST(ThermTimerLimits, ArePercentsIn255ths) {
  for (const auto& [raw, percent] : {std::pair{0, 0}, {1, 0}, {2, 1}, {128, 50}, {192, 75}, {254, 100}, {255, 100}}) {
    EXPECT_EQ(PercentFromByte(static_cast<std::uint8_t>(raw)), percent) << raw;
  }
  // 25.5 rounds to the even code; 50 percent is just below 127.5.
  for (const auto& [percent, raw] : {std::pair{100, 255}, {10, 26}, {50, 127}, {101, 255}}) {
    EXPECT_EQ(ByteFromPercent(percent), raw) << percent;
  }
  for (int percent = 0; percent <= 100; ++percent) EXPECT_EQ(PercentFromByte(ByteFromPercent(percent)), percent);
}

}  // namespace
}  // namespace zth::testing

#include <cmath>

#include <gtest/gtest.h>

#include "chip/Conversions.h"
#include "chip/Limits.h"

namespace zth::chip {
namespace {

constexpr std::int32_t kClock = 90000;

TEST(TemperatureLimits, HoldWholeDegreesAbove64BelowZero) {
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
           {12, 255, 15.94},   {12, 2, 0.12},    {12, 6, 0.38},  // 0.125 and 0.375: to the even digit
           {3.3F, 255, 4.38},  {3.3F, 192, 3.3}, {4, 192, 4},       {4, 255, 5.31},
           {2.13F, 192, 2.13}, {0.9F, 1, 0},     {0.9F, 255, 1.2},  {1.25F, 254, 1.65},
           {5, 24, 0.62},      {1.5F, 16, 0.12}, {1.2F, 255, 1.59}, {1.8F, 255, 2.39},
       }) {
    EXPECT_DOUBLE_EQ(VoltageRawToVolts(static_cast<std::uint8_t>(raw), nominal), volts) << nominal << " V, raw " << raw;
  }
}

TEST(VoltageLimits, TakeTheNearestCodeOfAVoltage) {
  // Half a code goes to the even one.
  for (const auto& [volts, raw] : {std::pair{15.94, 255}, {0.03125, 0}, {0.09375, 2}, {99.0, 255}, {-1.0, 0}}) {
    EXPECT_EQ(VoltsToVoltageRaw(volts, 12), raw) << volts;
  }
  for (const float nominal : {12.0F, 5.0F, 4.0F, 3.3F, 2.5F, 2.13F, 1.8F, 1.5F, 1.25F, 1.2F, 0.9F}) {
    for (int raw = 0; raw <= 255; ++raw) {
      const int back = VoltsToVoltageRaw(VoltageRawToVolts(static_cast<std::uint8_t>(raw), nominal), nominal);
      // Two decimals hold each code of a channel whose codes lie more than a hundredth of a volt apart.
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

TEST(FanLimits, TakeTheSpeedThroughTheSameExpression) {
  for (const auto& [rpm, raw] : {std::pair{0, 255}, {1, 255}, {50, 255}, {82, 254}, {1000, 21}, {12000, 2}}) {
    EXPECT_EQ(RpmToTachLimit(rpm, kClock), raw) << rpm;
  }
  // A limit that is shown and written back moves by one at most: up where fans are fast, down where they are slow.
  for (int raw = 3; raw <= 208; ++raw) {
    const auto rpm = static_cast<double>(TachLimitToRpm(static_cast<std::uint8_t>(raw), kClock));
    const int moved = RpmToTachLimit(rpm, kClock) - raw;
    EXPECT_TRUE(raw < 100 ? moved == 1 : (raw > 180 ? moved == -1 : std::abs(moved) <= 1)) << raw << " by " << moved;
  }
}

TEST(ThermTimerLimits, HoldPercentsIn255ths) {
  for (const auto& [raw, percent] : {std::pair{0, 0}, {1, 0}, {2, 1}, {128, 50}, {192, 75}, {254, 100}, {255, 100}}) {
    EXPECT_EQ(ThermLimitToPercent(static_cast<std::uint8_t>(raw)), percent) << raw;
  }
  // 25.5 goes to the even code, 50 percent are just below 127.5.
  for (const auto& [percent, raw] : {std::pair{100, 255}, {10, 26}, {50, 127}, {101, 255}}) {
    EXPECT_EQ(PercentToThermLimit(percent), raw) << percent;
  }
  for (int percent = 0; percent <= 100; ++percent)
    EXPECT_EQ(ThermLimitToPercent(PercentToThermLimit(percent)), percent);
}

}  // namespace
}  // namespace zth::chip

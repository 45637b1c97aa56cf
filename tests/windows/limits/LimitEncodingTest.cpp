#include <cmath>

#include <gtest/gtest.h>

#include "chip/Conversions.h"
#include "chip/Limits.h"

namespace zth::chip {
namespace {

constexpr std::int32_t kClock = 90000;

TEST(TemperatureLimits, HoldWholeDegreesAbove64BelowZero) {
  struct Case {
    double degrees;
    int raw;
  };
  for (const Case& row : {Case{-64, 0}, Case{-63, 1}, Case{0, 64}, Case{128, 192}, Case{190, 254}, Case{191, 255},
                          Case{25.5, 90}, Case{24.5, 88}, Case{-0.5, 64}, Case{-1.5, 62}, Case{-64.5, 0},
                          Case{191.5, 255}, Case{300, 255}, Case{-100, 0}}) {
    EXPECT_EQ(TemperatureLimitFromDegrees(row.degrees), row.raw) << row.degrees;
  }
  for (int raw = 0; raw <= 255; ++raw) {
    EXPECT_EQ(TemperatureLimitFromDegrees(DegreesFromByte(static_cast<std::uint8_t>(raw))), raw);
  }
}

TEST(VoltageLimits, ShowTwoDecimalsOfTheNominalVoltageAt192) {
  struct Case {
    float nominal;
    int raw;
    double volts;
  };
  for (const Case& row : {
           Case{12, 0, 0},         Case{12, 1, 0.06},    Case{12, 192, 12},     Case{12, 254, 15.88},
           Case{12, 255, 15.94},   Case{12, 2, 0.12},    Case{12, 6, 0.38},  // 0.125 and 0.375: to the even digit
           Case{3.3F, 255, 4.38},  Case{3.3F, 192, 3.3}, Case{4, 192, 4},       Case{4, 255, 5.31},
           Case{2.13F, 192, 2.13}, Case{0.9F, 1, 0},     Case{0.9F, 255, 1.2},  Case{1.25F, 254, 1.65},
           Case{5, 24, 0.62},      Case{1.5F, 16, 0.12}, Case{1.2F, 255, 1.59}, Case{1.8F, 255, 2.39},
       }) {
    EXPECT_DOUBLE_EQ(VoltageRawToVolts(static_cast<std::uint8_t>(row.raw), row.nominal), row.volts)
        << row.nominal << " V, raw " << row.raw;
  }
}

TEST(VoltageLimits, TakeTheNearestCodeOfAVoltage) {
  EXPECT_EQ(VoltsToVoltageRaw(15.94, 12), 255);
  EXPECT_EQ(VoltsToVoltageRaw(0.03125, 12), 0) << "half a code, to the even one";
  EXPECT_EQ(VoltsToVoltageRaw(0.09375, 12), 2);
  EXPECT_EQ(VoltsToVoltageRaw(99, 12), 255);
  EXPECT_EQ(VoltsToVoltageRaw(-1, 12), 0);
  for (const float nominal : {12.0F, 5.0F, 4.0F, 3.3F, 2.5F, 2.13F, 1.8F, 1.5F, 1.25F, 1.2F, 0.9F}) {
    for (int raw = 0; raw <= 255; ++raw) {
      const int back = VoltsToVoltageRaw(VoltageRawToVolts(static_cast<std::uint8_t>(raw), nominal), nominal);
      // Two decimals hold each code of a channel whose codes lie more than a hundredth of a volt apart.
      const int slack = nominal > 1.92F ? 0 : 1;
      EXPECT_LE(std::abs(back - raw), slack) << nominal << " V, raw " << raw;
    }
  }
}

TEST(FanLimits, ShowTheSpeedOfTheUpperByte) {
  struct Case {
    int raw;
    double rpm;
  };
  for (const Case& row : {Case{0, 12000}, Case{1, 10567.5}, Case{2, 7040.4}, Case{21, 959.0}, Case{192, 109.3},
                          Case{209, 100.4}, Case{210, 0}, Case{254, 0}, Case{255, 0}}) {
    EXPECT_NEAR(static_cast<double>(TachLimitToRpm(static_cast<std::uint8_t>(row.raw), kClock)), row.rpm, 0.1)
        << row.raw;
  }
  EXPECT_FLOAT_EQ(TachLimitToRpm(1, 2 * kClock), 21135.03F) << "the clock counts";
}

TEST(FanLimits, TakeTheSpeedThroughTheSameExpression) {
  struct Case {
    double rpm;
    int raw;
  };
  for (const Case& row : {Case{0, 255}, Case{1, 255}, Case{50, 255}, Case{82, 254}, Case{1000, 21}, Case{12000, 2}}) {
    EXPECT_EQ(RpmToTachLimit(row.rpm, kClock), row.raw) << row.rpm;
  }
  // A limit that is shown and written back moves by one at most: up where fans are fast, down where they are slow.
  for (int raw = 3; raw <= 208; ++raw) {
    const auto rpm = static_cast<double>(TachLimitToRpm(static_cast<std::uint8_t>(raw), kClock));
    const int moved = RpmToTachLimit(rpm, kClock) - raw;
    EXPECT_TRUE(raw < 100 ? moved == 1 : (raw > 180 ? moved == -1 : std::abs(moved) <= 1)) << raw << " by " << moved;
  }
}

TEST(FanLimits, HaveAStepThatLeadsToAGreaterSpeed) {
  for (int raw = 3; raw <= 255; ++raw) {
    const auto rpm = static_cast<double>(TachLimitToRpm(static_cast<std::uint8_t>(raw), kClock));
    const double up = rpm + TachLimitStepUp(rpm, kClock);
    EXPECT_NEAR(std::remainder(up, 10), 0, 1e-6) << raw;
    EXPECT_GT(static_cast<double>(TachLimitToRpm(RpmToTachLimit(up, kClock), kClock)), rpm) << raw;
  }
  EXPECT_EQ(TachLimitStepUp(12000, kClock), 0);
}

TEST(ThermTimerLimits, HoldPercentsIn255ths) {
  struct Case {
    int raw;
    int percent;
  };
  for (const Case& row :
       {Case{0, 0}, Case{1, 0}, Case{2, 1}, Case{128, 50}, Case{192, 75}, Case{254, 100}, Case{255, 100}}) {
    EXPECT_EQ(ThermLimitToPercent(static_cast<std::uint8_t>(row.raw)), row.percent) << row.raw;
  }
  EXPECT_EQ(PercentToThermLimit(100), 255);
  EXPECT_EQ(PercentToThermLimit(10), 26) << "25.5, to the even code";
  EXPECT_EQ(PercentToThermLimit(50), 127) << "just below 127.5";
  EXPECT_EQ(PercentToThermLimit(101), 255);
  for (int percent = 0; percent <= 100; ++percent) {
    EXPECT_EQ(ThermLimitToPercent(PercentToThermLimit(percent)), percent);
  }
}

}  // namespace
}  // namespace zth::chip

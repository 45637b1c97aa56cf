#include <algorithm>
#include <chrono>
#include <cstdint>
#include <random>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "simulator/Board.h"

namespace zth::simulator {
namespace {

using namespace std::chrono_literals;

double Celsius(Board& board, int channel) {
  const auto low = static_cast<std::uint8_t>(0x88 + 2 * channel);
  return board.TheChip().Peek(low + 1) - 64 + 0.25 * (board.TheChip().Peek(low) >> 6);
}

int Rpm(Board& board, int fan) {
  const auto low = static_cast<std::uint8_t>((fan < 5 ? 0x98 : 0x9A) + 2 * (fan - 1));
  const int count = board.TheChip().Peek(low) | board.TheChip().Peek(static_cast<std::uint8_t>(low + 1)) << 8;
  return count == 0xFFFF ? 0 : 5400000 / count;
}

std::vector<std::uint8_t> Everything(Board& board) {
  std::vector<std::uint8_t> bytes;
  for (int address = 0; address < 256; ++address)
    bytes.push_back(board.TheChip().Peek(static_cast<std::uint8_t>(address)));
  return bytes;
}

TEST(Board, LivesOutOfTheBox) {
  Board board;
  board.Advance(10s);
  for (int channel = 0; channel < 4; ++channel) {
    EXPECT_GT(Celsius(board, channel), 28);
    EXPECT_LT(Celsius(board, channel), 46);
  }
  for (const int reg : {0x90, 0x91, 0x92}) EXPECT_NEAR(board.TheChip().Peek(static_cast<std::uint8_t>(reg)), 192, 3);
  EXPECT_NEAR(board.TheChip().Peek(0x93) / 48.0, 3.05, 0.06) << "the battery";
  for (int pwm = 0; pwm < 4; ++pwm) EXPECT_EQ(board.TheChip().Duty(pwm), 0xC0);

  // What the first window does: option 1, tachs 1 to 4, setup complete, Max at 100 %.
  for (const auto& [reg, value] : {std::pair{0x14, 0x01}, {0x07, 0x0F}, {0x01, 0x21}, {0x2C, 0xFF}}) {
    board.TheChip().Write(static_cast<std::uint8_t>(reg), static_cast<std::uint8_t>(value));
  }
  board.Advance(10s);
  for (int fan = 1; fan <= 4; ++fan) EXPECT_GT(Rpm(board, fan), 2500);
  for (int fan = 5; fan <= 8; ++fan) EXPECT_EQ(Rpm(board, fan), 0);
  for (int address = 0xC0; address <= 0xC6; ++address) {
    if (address == 0xC5) continue;
    EXPECT_EQ(board.TheChip().Peek(static_cast<std::uint8_t>(address)), 0) << "no alarm on a sound board";
  }
}

TEST(Board, AHeaterWarmsItsDiodeInSecondsAndTheCurveAnswers) {
  for (const int heater : {1, 2}) {
    Board board;
    Chip& chip = board.TheChip();
    board.Advance(60s);
    const double before = Celsius(board, heater);
    const double neighbour = Celsius(board, 3 - heater);
    // The output that follows the diode: Tmin 35, Trange 20, Min 30 %, always on.
    chip.Write(static_cast<std::uint8_t>(0x5C + heater), 35 + 64);
    chip.Write(static_cast<std::uint8_t>(0x60 + heater), 0xA4);
    chip.Write(static_cast<std::uint8_t>(0x28 + heater), 77);
    chip.Write(static_cast<std::uint8_t>(0x25 + heater / 2), static_cast<std::uint8_t>(1 << heater % 2));
    board.Advance(30s);
    const int idleDuty = chip.Duty(heater);
    ASSERT_TRUE(board.SetHeater(heater, 100));
    EXPECT_EQ(board.HeaterState(heater), 200);
    board.Advance(10s);
    EXPECT_GT(Celsius(board, heater), before + 5);
    EXPECT_NEAR(Celsius(board, 3 - heater), neighbour, 2.5);
    board.Advance(60s);
    EXPECT_GT(chip.Duty(heater), idleDuty + 20);
  }
  Board board;
  EXPECT_FALSE(board.SetHeater(0, 10));
  EXPECT_FALSE(board.SetHeater(3, 10));
}

TEST(Board, TheSwitchesPartWhatHangsOnThem) {
  Board board({.diodeAtD2Connector = false});
  Chip& chip = board.TheChip();
  chip.Write(0x07, 0xFF);
  for (const int reg : {0x21, 0x22}) chip.Write(static_cast<std::uint8_t>(reg), 0x90);  // PWM1 and PWM2 off
  board.Advance(30s);
  EXPECT_EQ(Rpm(board, 1), 0);
  EXPECT_EQ(Rpm(board, 6), 0);

  ASSERT_TRUE(board.WritePort(0x4A, 0x0C));  // D2 and both PWMs parted
  ASSERT_TRUE(board.WritePort(0x48, 0x05));  // tach 2 and 4 and pins 23 to 26 parted
  board.Advance(30s);
  EXPECT_EQ(chip.Read(0xC0), 0x40) << "diode 2 is open";
  EXPECT_GT(Rpm(board, 1), 2500) << "a fan without a control signal runs at full speed";
  EXPECT_GT(Rpm(board, 6), 2500);
  EXPECT_EQ(Rpm(board, 2), 0);
  EXPECT_GT(Rpm(board, 3), 2000);
  EXPECT_EQ(Rpm(board, 4), 0);
  for (int reg = 0x90; reg <= 0x93; ++reg) EXPECT_EQ(chip.Read(static_cast<std::uint8_t>(reg)), 0);

  std::uint8_t port = 0;
  ASSERT_TRUE(board.ReadPort(0x4A, port));
  EXPECT_EQ(port, 0x0C);
  EXPECT_FALSE(board.ReadPort(0x49, port));
  EXPECT_FALSE(board.WritePort(0x4B, 0));
  ASSERT_TRUE(board.WritePort(0x4A, 0x3F));
  board.Advance(1s);
  chip.Read(0xC0);
  EXPECT_EQ(chip.Read(0xC0), 0);
}

TEST(Board, ADiodeAtTheConnectorTakesOverWhenD2IsParted) {
  Board board;
  board.Advance(1s);
  board.WritePort(0x4A, 0x3C);
  board.SetHeater(2, 100);
  const double before = board.ThePlant().TemperatureC(2);
  board.Advance(20s);
  EXPECT_EQ(board.TheChip().Read(0xC0), 0x40) << "the change-over is an open diode for a moment";
  EXPECT_EQ(board.TheChip().Read(0xC0), 0);
  EXPECT_GT(Celsius(board, 2), before + 3);
}

TEST(Board, TheDynamicTminDemoIsAShow) {
  Board board;
  Chip& chip = board.TheChip();
  const auto write = [&chip](int reg, int value) {
    chip.Write(static_cast<std::uint8_t>(reg), static_cast<std::uint8_t>(value));
  };
  const auto tmin = [&chip] { return chip.Peek(0x5E) - 64; };
  board.Advance(120s);
  board.WritePort(0x4A, 0x3C);
  for (const int pwm : {0, 1, 2, 3}) write(0x21 + pwm, 0x51);
  for (const auto& [reg, value] : {std::pair{0x0D, 0x02},
                                   {0x2C, 0xFF},
                                   {0x02, 0x40},
                                   {0x07, 0x0F},
                                   {0x0B, 0x22},
                                   {0x64, 0x20},
                                   {0x62, 0xB2},
                                   {0x52, 0x9A},
                                   {0x5B, 0x95},
                                   {0x5E, 0x68},
                                   {0x46, 0x5F},
                                   {0x4A, 0x6D},
                                   {0x01, 0x21}}) {
    write(reg, value);
  }
  // Far below the operating point, Tmin goes up to the high limit, the fans stop and Remote 2 warms past 35 degrees.
  ASSERT_LT(Celsius(board, 2), 35);
  int seconds = 0;
  for (; Celsius(board, 2) < 35 && seconds < 120; ++seconds) board.Advance(1s);
  EXPECT_LT(seconds, 60);
  EXPECT_GT(tmin(), 40);
  EXPECT_EQ(chip.Duty(2), 0);

  // The forced THERM2 event loads the operating point; Tmin comes down and the fans answer.
  write(0x52, 0x40);
  board.Advance(500ms);
  write(0x52, 0x9A);
  EXPECT_EQ(chip.Peek(0x5B), 64 + 35);
  int lowest = tmin(), highestDuty = 0;
  double hottest = 0;
  for (int i = 0; i < 180; ++i) {
    board.Advance(1s);
    lowest = std::min(lowest, tmin());
    highestDuty = std::max<int>(highestDuty, chip.Duty(2));
    if (i > 60) hottest = std::max(hottest, Celsius(board, 2));
  }
  EXPECT_LT(lowest, 36);
  EXPECT_GE(lowest, 31);
  EXPECT_GE(highestDuty, 0x80);
  EXPECT_LT(hottest, 38) << "held near the operating point";
}

TEST(Board, TheSameSeedAndTimeGiveTheSameBytesHoweverTheTimeIsCut) {
  const auto run = [](std::uint64_t seed, auto cut) {
    Board board({.chip = {.seed = seed}, .plant = {.seed = seed}});
    board.TheChip().Write(0x07, 0xFF);
    board.SetHeater(1, 60);
    for (std::chrono::nanoseconds left = 40s; left.count() > 0;) {
      const std::chrono::nanoseconds piece = std::min<std::chrono::nanoseconds>(left, cut());
      board.Advance(piece);
      left -= piece;
    }
    return Everything(board);
  };
  const auto whole = [] { return 40s; };
  std::mt19937 random(2);
  const auto pieces = [&random] { return std::chrono::nanoseconds(1 + random() % 77'000'000); };
  EXPECT_EQ(run(9, whole), run(9, pieces));
  EXPECT_NE(run(9, whole), run(10, whole));
}

TEST(Board, SettlesWhereItsOwnEquationsSay) {
  Board board({.chip = {.noise = 0}, .plant = {.spread = 0, .ripple = 0}});
  Chip& chip = board.TheChip();
  for (int pwm = 0; pwm < 4; ++pwm) {
    chip.Write(static_cast<std::uint8_t>(0x21 + pwm), 0xF1);
    chip.Write(static_cast<std::uint8_t>(0xAA + pwm), 153);  // 60 %
  }
  chip.Write(0x02, 0x40);
  chip.Write(0x07, 0xFF);
  board.SetHeater(1, 50);
  board.Advance(300s);
  const double flow = 0.1 + 0.9 * 0.6;
  for (int fan = 1; fan <= 8; ++fan) EXPECT_NEAR(Rpm(board, fan), 4800 * flow, 48 * flow);
  const double lift = (1.4 + 0.88 * 3) / (0.08 + 0.22 * flow);
  EXPECT_NEAR(Celsius(board, 1) - 25, lift, 0.01 * lift + 0.125);
}

}  // namespace
}  // namespace zth::simulator

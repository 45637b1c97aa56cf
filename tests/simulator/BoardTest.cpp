#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <random>

#include <gtest/gtest.h>

#include "simulator/Board.h"
#include "tests/simulator/ChipOnBench.h"

namespace zth::simulator {
namespace {

using namespace std::chrono_literals;

struct BoardOnBench : Board {
  explicit BoardOnBench(const BoardOptions& options = {}) : Board(options) {}

  int Read(int address) { return TheChip().Read(static_cast<std::uint8_t>(address)); }
  int Peek(int address) const { return TheChip().Peek(static_cast<std::uint8_t>(address)); }
  void Write(Writes registers) {
    for (const auto& [address, value] : registers) {
      TheChip().Write(static_cast<std::uint8_t>(address), static_cast<std::uint8_t>(value));
    }
  }
  double Celsius(int channel) const { return Peek(0x89 + 2 * channel) - 64 + 0.25 * (Peek(0x88 + 2 * channel) >> 6); }
  int Rpm(int fan) const {
    const int low = (fan < 5 ? 0x98 : 0x9A) + 2 * (fan - 1);
    const int count = Peek(low) | Peek(low + 1) << 8;
    return count == 0xFFFF ? 0 : 5400000 / count;
  }
};

TEST(Board, IsSoundOutOfTheBox) {
  BoardOnBench board;
  // What the first window does: option 1, tachs 1 to 4, setup complete, Max at 100 %.
  board.Write({{0x14, 0x01}, {0x07, 0x0F}, {0x01, 0x21}, {0x2C, 0xFF}});
  board.Advance(10s);
  for (int channel = 0; channel < 4; ++channel) EXPECT_NEAR(board.Celsius(channel), 37, 9);
  for (const int reg : {0x90, 0x91, 0x92}) EXPECT_NEAR(board.Peek(reg), 192, 3);
  EXPECT_NEAR(board.Peek(0x93) / 48.0, 3.05, 0.06) << "the battery";
  for (int fan = 1; fan <= 4; ++fan) EXPECT_GT(board.Rpm(fan), 2500);
  for (int fan = 5; fan <= 8; ++fan) EXPECT_EQ(board.Rpm(fan), 0);
  for (const int status : {0xC0, 0xC1, 0xC2, 0xC3, 0xC4, 0xC6}) EXPECT_EQ(board.Peek(status), 0) << "no alarm";
}

TEST(Board, AHeaterWarmsItsDiodeInSecondsAndTheCurveAnswers) {
  for (const int heater : {1, 2}) {
    BoardOnBench board;
    board.Advance(60s);
    const double before = board.Celsius(heater);
    const double neighbour = board.Celsius(3 - heater);
    // The output that follows the diode: Tmin 35, Trange 20, Min 30 %, always on.
    board.Write({{0x5C + heater, Degrees(35)}, {0x60 + heater, 0xA4}, {0x28 + heater, 77}});
    board.Write({{0x25 + heater / 2, 1 << heater % 2}});
    board.Advance(30s);
    const int idleDuty = board.TheChip().Duty(heater);
    ASSERT_TRUE(board.SetHeater(heater, 100));
    EXPECT_EQ(board.HeaterState(heater), 200);
    board.Advance(10s);
    EXPECT_GT(board.Celsius(heater), before + 5);
    EXPECT_NEAR(board.Celsius(3 - heater), neighbour, 2.5);
    board.Advance(60s);
    EXPECT_GT(board.TheChip().Duty(heater), idleDuty + 20);
    EXPECT_FALSE(board.SetHeater(3 * (heater - 1), 10)) << "there is neither a heater 0 nor a heater 3";
  }
}

TEST(Board, TheSwitchesPartWhatHangsOnThem) {
  BoardOnBench board({.diodeAtD2Connector = false});
  board.Write({{0x07, 0xFF}, {0x21, 0x90}, {0x22, 0x90}});  // PWM1 and PWM2 off
  board.Advance(30s);
  for (const int fan : {1, 2, 5, 6}) EXPECT_EQ(board.Rpm(fan), 0);

  ASSERT_TRUE(board.WritePort(0x4A, 0x0C));  // D2 and both PWMs parted
  ASSERT_TRUE(board.WritePort(0x48, 0x05));  // tach 2 and 4 and pins 23 to 26 parted
  board.Advance(30s);
  EXPECT_EQ(board.Read(0xC0), 0x40) << "diode 2 is open";
  for (const int fan : {1, 6}) EXPECT_GT(board.Rpm(fan), 2500) << "a fan without a control signal runs at full speed";
  EXPECT_GT(board.Rpm(3), 2000);
  for (const int fan : {2, 4}) EXPECT_EQ(board.Rpm(fan), 0);
  for (int reg = 0x90; reg <= 0x93; ++reg) EXPECT_EQ(board.Read(reg), 0);

  std::uint8_t port = 0;
  ASSERT_TRUE(board.ReadPort(0x4A, port));
  EXPECT_EQ(port, 0x0C);
  EXPECT_FALSE(board.ReadPort(0x49, port) || board.WritePort(0x4B, 0));
  ASSERT_TRUE(board.WritePort(0x4A, 0x3F));
  board.Advance(1s);
  board.Read(0xC0);
  EXPECT_EQ(board.Read(0xC0), 0);
}

TEST(Board, ADiodeAtTheConnectorTakesOverWhenD2IsParted) {
  BoardOnBench board;
  board.Advance(1s);
  board.WritePort(0x4A, 0x3C);
  board.SetHeater(2, 100);
  const double before = board.ThePlant().TemperatureC(2);
  board.Advance(20s);
  EXPECT_EQ(board.Read(0xC0), 0x40) << "the change-over is an open diode for a moment";
  EXPECT_EQ(board.Read(0xC0), 0);
  EXPECT_GT(board.Celsius(2), before + 3);
}

TEST(Board, TheSameSeedAndTimeGiveTheSameBytesHoweverTheTimeIsCut) {
  const auto run = [](std::uint64_t seed, auto cut) {
    BoardOnBench board({.chip = {.seed = seed}, .plant = {.seed = seed}});
    board.Write({{0x07, 0xFF}});
    board.SetHeater(1, 60);
    for (std::chrono::nanoseconds left = 40s, piece; left.count() > 0; left -= piece) {
      board.Advance(piece = std::min<std::chrono::nanoseconds>(left, cut()));
    }
    std::array<int, 256> bytes{};
    for (int address = 0; address < 256; ++address) bytes[static_cast<std::size_t>(address)] = board.Peek(address);
    return bytes;
  };
  const auto whole = [] { return 40s; };
  std::mt19937 random(2);
  EXPECT_EQ(run(9, whole), run(9, [&random] { return std::chrono::nanoseconds(1 + random() % 77'000'000); }));
  EXPECT_NE(run(9, whole), run(10, whole));
}

}  // namespace
}  // namespace zth::simulator

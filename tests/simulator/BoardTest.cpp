#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "simulator/Board.h"
#include "tests/simulator/Play.h"

namespace zth::simulator {
namespace {

using namespace std::chrono_literals;

struct BoardOnBench : Board {
  explicit BoardOnBench(const BoardOptions& options = {}) : Board(options) {}

  /// Steps with p a port, r a fan's speed in RPM.
  void Play(const std::string& steps) { simulator::Play(*this, steps); }
  void Run(double seconds) { Advance(std::chrono::milliseconds(std::lround(seconds * 1000))); }
  int Peek(int address) const { return TheChip().Peek(static_cast<std::uint8_t>(address)); }
  void Set(char what, int n, double value) {
    const auto address = static_cast<std::uint8_t>(n), byte = static_cast<std::uint8_t>(value);
    if (what != 'p') return TheChip().Write(address, byte);
    EXPECT_TRUE(WritePort(address, byte));
  }
  double Get(char what, int n) {
    const auto address = static_cast<std::uint8_t>(n);
    std::uint8_t port = 0;
    if (what == 'p') return ReadPort(address, port) ? port : -1;
    return what == 'r' ? Rpm(n) : TheChip().Read(address);
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
  board.Play("14=01 07=0F 01=21 2C=FF ~10");
  for (int channel = 0; channel < 4; ++channel) EXPECT_NEAR(board.Celsius(channel), 37, 9);
  for (const int reg : {0x90, 0x91, 0x92}) EXPECT_NEAR(board.Peek(reg), 192, 3);
  EXPECT_NEAR(board.Peek(0x93) / 48.0, 3.05, 0.06) << "the battery";
  for (int fan = 1; fan <= 4; ++fan) EXPECT_GT(board.Rpm(fan), 2500);
  board.Play("r5:0 r6:0 r7:0 r8:0 C0:00 C1:00 C2:00 C3:00 C4:00 C6:00");  // no alarm
}

TEST(Board, AHeaterWarmsItsDiodeInSecondsAndTheCurveAnswers) {
  for (const int heater : {1, 2}) {
    BoardOnBench board;
    board.Advance(60s);
    const double before = board.Celsius(heater);
    const double neighbour = board.Celsius(3 - heater);
    // The output that follows the diode: Tmin 35, Trange 20, Min 30 %, always on.
    board.Play(heater == 1 ? "5D=63 61=A4 29=4D 25=02 ~30" : "5E=63 62=A4 2A=4D 26=01 ~30");
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
  board.Play("07=FF 21=90 22=90 ~30 r1:0 r2:0 r5:0 r6:0");  // PWM1 and PWM2 off
  board.Play("p4A=0C p48=25 ~30");                          // D2 and both PWMs, tach 2 and 4, pins 23, 25 and 26 parted
  board.Play("C0:40 r2:0 r4:0 90:00 92:00 93:00 p4A:0C p49:-1");
  for (const int fan : {1, 6}) EXPECT_GT(board.Rpm(fan), 2500) << "a fan without a control signal runs at full speed";
  EXPECT_GT(board.Rpm(3), 2000);
  EXPECT_GT(board.Peek(0x91), 180);
  EXPECT_FALSE(board.WritePort(0x4B, 0));
  board.Play("p4A=3F ~1 C0 C0:00");
}

TEST(Board, ADiodeAtTheConnectorTakesOverWhenD2IsParted) {
  BoardOnBench board;
  board.Play("~1 p4A=3C");
  board.SetHeater(2, 100);
  const double before = board.ThePlant().TemperatureC(2);
  board.Play("~20 C0:40 C0:00");  // the change-over is an open diode for a moment
  EXPECT_GT(board.Celsius(2), before + 3);
}

TEST(Board, TheSameSeedAndTimeGiveTheSameBytesHoweverTheTimeIsCut) {
  const auto run = [](std::uint64_t seed, auto cut) {
    BoardOnBench board({.chip = {.seed = seed}, .plant = {.seed = seed}});
    board.Play("07=FF");
    board.SetHeater(1, 60);
    for (std::chrono::nanoseconds left = 40s, piece; left.count() > 0; left -= piece) {
      board.Advance(piece = std::min<std::chrono::nanoseconds>(left, cut()));
    }
    std::vector<int> bytes;
    for (int address = 0; address < 256; ++address) bytes.push_back(board.Peek(address));
    return bytes;
  };
  const auto whole = [] { return 40s; };
  std::mt19937 random(2);
  EXPECT_EQ(run(9, whole), run(9, [&random] { return std::chrono::nanoseconds(1 + random() % 77'000'000); }));
  EXPECT_NE(run(9, whole), run(10, whole));
}

}  // namespace
}  // namespace zth::simulator

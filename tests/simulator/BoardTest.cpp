#include <algorithm>
#include <cstdint>
#include <random>
#include <vector>

#include "simulator/Board.h"
#include "simulator/Plant.h"
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
  // What Easy Setup does: option 1, tachs 1 to 4, setup complete, Max at 100 %.
  board.Play("14=01 07=0F 01=21 2C=FF ~10");
  for (int channel = 0; channel < 4; ++channel) EXPECT_NEAR(board.Celsius(channel), 37, 9);
  for (const int reg : {0x90, 0x91, 0x92}) EXPECT_NEAR(board.Peek(reg), 192, 3);
  EXPECT_NEAR(board.Peek(0x93) / 48.0, 3.05, 0.06) << "the battery";
  for (int fan = 1; fan <= 4; ++fan) EXPECT_GT(board.Rpm(fan), 2500);
  board.Play("r5:0 r6:0 r7:0 r8:0 C0:00 C1:00 C2:00 C3:00 C4:00 C6:00");  // no alarm
}

TEST(Board, TheSwitchesDisconnectWhatIsBehindThem) {
  BoardOnBench board({.diodeAtD2Connector = false});
  board.Play("07=FF 21=90 22=90 ~30 r1:0 r2:0 r5:0 r6:0");  // PWM1 and PWM2 off
  board.Play("p4A=0C p48=25 ~30");  // D2 and both PWMs, tach 2 and 4, pins 23, 25 and 26 disconnected
  board.Play("C0:40 r2:0 r4:0 90:00 92:00 93:00 p4A:0C p49:-1");
  for (const int fan : {1, 6}) EXPECT_GT(board.Rpm(fan), 2500) << "a fan without a control signal runs at full speed";
  EXPECT_GT(board.Rpm(3), 2000);
  EXPECT_GT(board.Peek(0x91), 180);
  EXPECT_FALSE(board.WritePort(0x4B, 0));
  board.Play("p4A=3F ~1 C0 C0:00");
}

TEST(Board, ADiodeAtTheConnectorTakesOverWhenD2IsDisconnected) {
  BoardOnBench board;
  board.Play("~1 p4A=3C");
  board.SetHeater(2, 100);
  const double before = board.ThePlant().TemperatureC(2);
  board.Play("~20 C0:40 C0:00");  // during the change-over the diode is open for a moment
  EXPECT_GT(board.Celsius(2), before + 3);
}

TEST(Board, TheSameSeedAndTimeGiveTheSameBytesHoweverTheTimeIsDivided) {
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

TEST(Plant, SettlesAtTheClosedFormTemperaturesForEveryDriveOfFansAndHeaters) {
  for (const double fanDrive : {0.0, 0.4, 1.0}) {
    for (const double heater : {0.0, 0.5, 1.0}) {
      Plant plant({.spread = 0, .ripple = 0});
      for (int fan = 0; fan < kTachs; ++fan) plant.SetFanDrive(fan, fanDrive);
      plant.SetHeater(0, heater);
      plant.SetHeater(1, heater / 2);
      plant.Step(1000);

      // With all fans alike, the flow is the fraction of full speed, and the rise is watts divided by watts per kelvin.
      const double flow = fanDrive == 0 ? 0 : 0.1 + 0.9 * fanDrive;
      const double watts[] = {0.55 + 0.12 * 6 * 1.5 * heater, 1.4 + 0.88 * 6 * heater, 1.6 + 0.88 * 3 * heater, 1.3};
      const double still[] = {0.09, 0.08, 0.08, 0.08};
      const double moving[] = {0.08, 0.22, 0.22, 0.22};
      for (int i = 0; i < kTemperatures; ++i) {
        const double lift = watts[i] / (still[i] + moving[i] * flow);
        EXPECT_NEAR(plant.TemperatureC(i) - 25, lift, lift * 0.01) << i;
      }
      for (int fan = 0; fan < kTachs; ++fan) EXPECT_NEAR(plant.Rpm(fan), 4800 * flow, 1);
    }
  }
}

TEST(Plant, WarmsExponentiallyWithItsHeatCapacityHoweverTheTimeIsDivided) {
  Plant whole({.spread = 0, .ripple = 0});
  whole.SetFanDrive(7, 0.5);
  whole.Step(20);
  for (const double step : {20.0, 1.0, 0.01, 1.0 / 1024}) {
    Plant still({.spread = 0, .ripple = 0}), blown = still;
    const double start = still.TemperatureC(1);
    still.SetHeater(0, 1);
    blown.SetFanDrive(7, 0.5);
    for (double left = 20; left > step / 2; left -= step) still.Step(step), blown.Step(step);
    // 5.28 W more over 0.08 W/K, with a heat capacity of 4 J/K.
    EXPECT_NEAR(still.TemperatureC(1) - start, 66 * (1 - std::exp(-20 * 0.08 / 4)), 0.01) << step;
    EXPECT_NEAR(blown.TemperatureC(1), whole.TemperatureC(1), 0.01) << step;
    EXPECT_NEAR(blown.Rpm(7), whole.Rpm(7), 0.001 * whole.Rpm(7)) << step;
  }
}

TEST(Plant, AFanStartsAtItsStartThresholdAndKeepsTurningDownToItsStallThreshold) {
  Plant plant({.spread = 0});
  for (const auto& [duty, turns] : {std::pair{0.27, 0}, {0.29, 1}, {0.16, 1}, {0.14, 0}, {0.16, 0}, {1.0, 1}}) {
    plant.SetFanDrive(0, duty);
    plant.Step(30);
    EXPECT_NEAR(plant.Rpm(0), turns * 4800 * (0.1 + 0.9 * duty), 1) << duty;
  }
  const double turning = plant.Rpm(0);
  plant.SetFanDrive(0, 0.5);
  plant.Step(0.8);
  EXPECT_NEAR(plant.Rpm(0), 2640 + (turning - 2640) * std::exp(-0.5), 15) << "it coasts more slowly than it spins up";
  plant.SetFanBlocked(0, true);
  plant.Step(0.01);
  EXPECT_EQ(plant.Rpm(0), 0);
}

TEST(Plant, SuppliesStayWithinAPercentOfNominalAndMove) {
  Plant plant;
  double low = 2, high = 0;
  for (int i = 0; i < 2000; ++i) {
    plant.Step(0.05);
    for (int pin = 0; pin < kVoltagePins; ++pin)
      EXPECT_NEAR(plant.SupplyRatio(static_cast<VoltagePin>(pin)), 1, 0.0101);
    low = std::min(low, plant.SupplyRatio(VoltagePin::P23));
    high = std::max(high, plant.SupplyRatio(VoltagePin::P23));
  }
  EXPECT_NEAR(high - low, 0.008, 0.0005);
}

}  // namespace
}  // namespace zth::simulator

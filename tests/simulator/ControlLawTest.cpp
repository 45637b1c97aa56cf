#include <algorithm>
#include <array>
#include <cstdint>
#include <random>

#include <gtest/gtest.h>

#include "tests/simulator/ChipOnBench.h"

namespace zth::simulator {
namespace {

// A prediction of the duty by other means than the chip's: from readings in degrees and the settings as a person says
// them, with the curve as a fraction in lowest terms and its own memory of what is on.

struct Fraction {
  long long over, under;
};

constexpr std::array<Fraction, 16> kTrange{{{2, 1},
                                            {5, 2},
                                            {10, 3},
                                            {4, 1},
                                            {5, 1},
                                            {20, 3},
                                            {8, 1},
                                            {10, 1},
                                            {40, 3},
                                            {16, 1},
                                            {20, 1},
                                            {80, 3},
                                            {32, 1},
                                            {40, 1},
                                            {160, 3},
                                            {80, 1}}};

struct Channel {
  int tmin, hysteresis, trange, therm[2], thermHysteresis;
  bool letThrough[2];
};

struct Settings {
  std::array<Channel, 4> channels;
  std::array<int, 4> behaviour, min;
  std::array<bool, 4> alwaysOn;
  int max;
  bool boost[2];
};

class Predictor {
 public:
  explicit Predictor(const Settings& settings) : s_(settings) {}

  void See(const std::array<double, 4>& t) {
    for (std::size_t c = 0; c < 4; ++c) {
      const Channel& channel = s_.channels[c];
      t_[c] = t[c];
      if (t[c] >= channel.tmin) on_[c] = true;
      if (t[c] < channel.tmin - channel.hysteresis) on_[c] = false;
      for (std::size_t i = 0; i < 2; ++i) {
        if (t[c] > channel.therm[i]) hot_[i][c] = true;
        if (t[c] <= channel.therm[i] - channel.thermHysteresis) hot_[i][c] = false;
      }
    }
  }

  int Duty(std::size_t pwm) const {
    const int behaviour = s_.behaviour[pwm];
    if (behaviour == 4) return 0;
    for (std::size_t i = 0; i < 2; ++i) {
      for (std::size_t c = 0; c < 4; ++c) {
        if (s_.boost[i] && s_.channels[c].letThrough[i] && hot_[i][c]) return 255;
      }
    }
    int best = s_.alwaysOn[pwm] ? s_.min[pwm] : 0;
    for (std::size_t c = 0; c < 4; ++c) {
      const bool source = behaviour == 6 || (behaviour == 5 && (c == 0 || c == 3)) || behaviour == static_cast<int>(c);
      if (source && on_[c]) best = std::max(best, s_.min[pwm] + Rise(c));
    }
    return std::min(best, s_.max);
  }

 private:
  int Rise(std::size_t c) const {
    const double degrees = t_[c] - s_.channels[c].tmin;
    if (degrees <= 0) return 0;
    // 64 hundredths of 255 over Trange; degrees are whole quarters.
    const Fraction trange = kTrange[static_cast<std::size_t>(s_.channels[c].trange)];
    const long long over = 64 * 255 * static_cast<long long>(degrees * 4) * trange.under;
    const long long under = 100 * 4 * trange.over;
    long long whole = over / under;
    const long long rest = over - whole * under;
    if (rest * 2 > under || (rest * 2 == under && (whole & 1) != 0)) ++whole;
    return static_cast<int>(whole);
  }

  Settings s_;
  std::array<double, 4> t_{};
  std::array<bool, 4> on_{};
  std::array<std::array<bool, 4>, 2> hot_{};
};

Settings RandomSettings(std::mt19937& random) {
  const auto from = [&](int low, int high) { return std::uniform_int_distribution(low, high)(random); };
  Settings s{};
  for (Channel& c : s.channels) {
    c = {from(10, 70), from(0, 15),
         from(0, 15),  {from(40, 130), from(40, 130)},
         from(0, 15),  {from(0, 3) > 0, from(0, 3) > 0}};
  }
  for (std::size_t pwm = 0; pwm < 4; ++pwm) {
    s.behaviour[pwm] = from(0, 6);
    s.min[pwm] = from(0, 255);
    s.alwaysOn[pwm] = from(0, 1) == 1;
  }
  s.max = from(0, 3) == 0 ? 255 : from(0, 255);
  for (bool& boost : s.boost) boost = from(0, 1) == 1;
  return s;
}

void Put(ChipOnBench& bench, const Settings& s) {
  int therm[2] = {1, 1};
  for (int c = 0; c < 4; ++c) {
    const Channel& channel = s.channels[static_cast<std::size_t>(c)];
    bench.Write(0x5C + c, Degrees(channel.tmin));
    bench.Write(0x60 + c, channel.trange << 4 | channel.hysteresis);
    for (int i = 0; i < 2; ++i) {
      bench.Write(0x4C + 4 * i + c, Degrees(channel.therm[i]));
      therm[i] |= channel.letThrough[i] << (1 + c);
    }
  }
  for (int i = 0; i < 2; ++i) {
    const auto hyst = [&](int c) { return s.channels[static_cast<std::size_t>(c)].thermHysteresis; };
    bench.Write(0x54 + i, hyst(2 * i + 1) << 4 | hyst(2 * i));
    bench.Write(0x0E + i, therm[i]);
  }
  int hold[2] = {0x90, 0x90};
  for (int pwm = 0; pwm < 4; ++pwm) {
    const auto p = static_cast<std::size_t>(pwm);
    bench.Write(0x21 + pwm, s.behaviour[p] << 5 | 0x10);  // no spin-up
    bench.Write(0x28 + pwm, s.min[p]);
    hold[pwm / 2] |= s.alwaysOn[p] << pwm % 2;
  }
  bench.Write({{0x25, hold[0]}, {0x26, hold[1]}, {0x2C, s.max}, {0x0D, (s.boost[0] ? 0 : 1) | (s.boost[1] ? 0 : 2)}});
}

TEST(ControlLaw, DutyIsThePredictedOneToTheLastBitUpAndDown) {
  std::mt19937 random(4718);
  for (int set = 0; set < 1000; ++set) {
    const Settings settings = RandomSettings(random);
    ChipOnBench bench(static_cast<std::uint8_t>(set % 2));
    Put(bench, settings);
    Predictor predictor(settings);
    for (int step = 0; step <= 40; ++step) {
      // Up for one half and down for the other, each channel on a way of its own, in quarter degrees.
      std::array<double, 4> t{};
      for (std::size_t c = 0; c < 4; ++c) {
        const int height = 20 - std::abs(step - 20);
        t[c] =
            0.25 * static_cast<double>(20 + height * (16 + 5 * static_cast<int>(c)) + static_cast<int>(random() % 5));
      }
      bench.pins.temperatureC = t;
      bench.Run(kConversionSeconds);
      predictor.See(t);
      for (int pwm = 0; pwm < 4; ++pwm) {
        const int raw = bench.Read(0xAA + pwm);
        const int duty = set % 2 == 0 ? 255 - raw : raw;
        ASSERT_EQ(duty, predictor.Duty(static_cast<std::size_t>(pwm)))
            << "set " << set << " step " << step << " PWM" << pwm + 1 << " behaviour "
            << settings.behaviour[static_cast<std::size_t>(pwm)];
      }
    }
  }
}

TEST(ControlLaw, TheCurveGoesThroughThePointsThatTheWindowDraws) {
  struct Row {
    double celsius;
    int duty;
  };
  // Tmin 30, Trange 20, Min 25 %, Max 100 %, hysteresis 4.
  ChipOnBench bench;
  bench.Write({{0x21, 0x10}, {0x28, 64}, {0x2C, 255}, {0x5C, Degrees(30)}, {0x60, 0xA4}});
  for (const Row& row : {Row{29.75, 0}, Row{30, 64}, Row{50, 227}, Row{53.5, 255}, Row{60, 255}, Row{50, 227},
                         Row{29, 64}, Row{26, 64}, Row{25.75, 0}, Row{29.75, 0}}) {
    bench.pins.temperatureC[0] = row.celsius;
    bench.Run(kConversionSeconds);
    EXPECT_EQ(bench.chip.Duty(0), row.duty) << row.celsius;
  }
}

TEST(ControlLaw, AnOutputThatNobodySetUpRunsAtMaxAndOneThatIsSetUpFollowsItsCurve) {
  ChipOnBench bench;
  bench.Run(1);
  for (int pwm = 0; pwm < 4; ++pwm) EXPECT_EQ(bench.chip.Duty(pwm), 0xC0);
  bench.Write(0x2C, 0xFF);
  bench.Write(0x5D, Degrees(90));  // Tmin of Remote 1 sets up PWM2, which follows it
  bench.Run(1);
  EXPECT_EQ(bench.chip.Duty(0), 0xFF);
  EXPECT_EQ(bench.chip.Duty(1), 0);
  EXPECT_EQ(bench.chip.Duty(2), 0xFF);
}

TEST(ControlLaw, AnOutputIsSetUpByWhateverShapesItsOwnDuty) {
  struct Row {
    int address, value;
    int setUp;  // a bit an output; at power-up they follow Local and Remote 1 to 3 in order
  };
  for (const Row& row :
       {Row{0x21, 0x10, 1}, Row{0x24, 0x70, 8}, Row{0x25, 0x90, 3}, Row{0x26, 0x90, 12}, Row{0x28, 0x80, 1},
        Row{0x2B, 0x80, 8}, Row{0x5C, 0x9A, 1}, Row{0x5E, 0x9A, 4}, Row{0x5F, 0x9A, 8}, Row{0x60, 0xC4, 1},
        Row{0x63, 0xC4, 8}, Row{0x0B, 0x01, 2}, Row{0x0B, 0x02, 4}, Row{0x0B, 0x3C, 0}, Row{0x2C, 0xC0, 0},
        Row{0x01, 0x21, 0}, Row{0x4C, 0xA4, 0}, Row{0x00, 0x80, 0}}) {
    ChipOnBench bench;
    bench.Write(row.address, row.value);
    bench.Run(0.2);
    for (int pwm = 0; pwm < 4; ++pwm) {
      EXPECT_EQ(bench.chip.Duty(pwm) == 0, (row.setUp >> pwm & 1) != 0) << std::hex << row.address << " PWM" << pwm + 1;
    }
  }

  ChipOnBench bench;
  bench.Write({{0x21, 0xD1}, {0x00, 0x80}});
  bench.Run(0.2);
  EXPECT_EQ(bench.chip.Duty(0), 0xC0) << "a reset forgets what was set up";
}

TEST(ControlLaw, FullSpeedAndShutdownGoBeforeEveryBehaviour) {
  ChipOnBench bench;
  bench.Write({{0x21, 0x90}, {0x22, 0xF0}, {0xAB, 40}, {0x02, 0xA0}});
  bench.Run(0.1);
  for (int pwm = 0; pwm < 4; ++pwm) EXPECT_EQ(bench.chip.Duty(pwm), 255);
  bench.Write(0x02, 0xA2);
  bench.Run(0.1);
  for (int pwm = 0; pwm < 4; ++pwm) EXPECT_EQ(bench.chip.Duty(pwm), 0);
}

}  // namespace
}  // namespace zth::simulator

#include <algorithm>
#include <array>
#include <random>
#include <sstream>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "tests/simulator/ChipOnBench.h"

namespace zth::simulator {
namespace {

// A prediction of the duty by other means than the chip's: from readings in degrees and the settings as a person says
// them, with the curve as a fraction in lowest terms and its own memory of what is on.

// Degrees of each Trange field, as fractions.
constexpr int kTrangeOver[] = {2, 5, 10, 4, 5, 20, 8, 10, 40, 16, 20, 80, 32, 40, 160, 80};
constexpr int kTrangeUnder[] = {1, 2, 3, 1, 1, 3, 1, 1, 3, 1, 1, 3, 1, 1, 3, 1};

struct Channel {
  int tmin, hysteresis, trange, therm[2], thermHysteresis;
  bool letThrough[2];
};

struct Output {
  int behaviour, min;
  bool alwaysOn;
};

struct Settings {
  std::array<Channel, 4> channels{};
  std::array<Output, 4> outputs{};
  int max;
  bool boost[2];
};

class Predictor {
 public:
  explicit Predictor(const Settings& settings) : s_(settings) {}

  void See(const std::array<double, 4>& t) {
    t_ = t;
    for (std::size_t c = 0; c < 4; ++c) {
      const Channel& channel = s_.channels[c];
      if (t[c] >= channel.tmin) on_[c] = true;
      if (t[c] < channel.tmin - channel.hysteresis) on_[c] = false;
      for (std::size_t i = 0; i < 2; ++i) {
        if (t[c] > channel.therm[i]) hot_[i][c] = true;
        if (t[c] <= channel.therm[i] - channel.thermHysteresis) hot_[i][c] = false;
      }
    }
  }

  int Duty(std::size_t pwm) const {
    const Output& output = s_.outputs[pwm];
    if (output.behaviour == 4) return 0;
    int best = output.alwaysOn ? output.min : 0;
    for (std::size_t c = 0; c < 4; ++c) {
      for (std::size_t i = 0; i < 2; ++i) {
        if (s_.boost[i] && s_.channels[c].letThrough[i] && hot_[i][c]) return 255;
      }
      const bool source = output.behaviour == 6 || (output.behaviour == 5 && (c == 0 || c == 3)) ||
                          output.behaviour == static_cast<int>(c);
      if (source && on_[c]) best = std::max(best, output.min + Rise(c));
    }
    return std::min(best, s_.max);
  }

 private:
  int Rise(std::size_t c) const {
    const Channel& channel = s_.channels[c];
    const double degrees = t_[c] - channel.tmin;
    if (degrees <= 0) return 0;
    // 64 hundredths of 255 over Trange; degrees are whole quarters.
    const long long over = 64 * 255 * static_cast<long long>(degrees * 4) * kTrangeUnder[channel.trange];
    const long long under = 100 * 4 * kTrangeOver[channel.trange];
    const long long whole = over / under, rest = over % under;
    return static_cast<int>(rest * 2 > under || (rest * 2 == under && whole % 2 != 0) ? whole + 1 : whole);
  }

  Settings s_;
  std::array<double, 4> t_{};
  std::array<bool, 4> on_{};
  std::array<std::array<bool, 4>, 2> hot_{};
};

/// Settings by chance, written to the chip.
Settings PutRandomSettings(ChipOnBench& bench, std::mt19937& random) {
  const auto from = [&](int low, int high) { return std::uniform_int_distribution(low, high)(random); };
  Settings s{.max = from(0, 3) == 0 ? 255 : from(0, 255), .boost = {from(0, 1) == 1, from(0, 1) == 1}};
  int enabled[] = {1, 1}, hysteresis[] = {0, 0}, hold[] = {0x90, 0x90};
  for (int i = 0; i < 4; ++i) {
    Channel& c = s.channels[static_cast<std::size_t>(i)];
    c = {from(10, 70), from(0, 15),
         from(0, 15),  {from(40, 130), from(40, 130)},
         from(0, 15),  {from(0, 3) > 0, from(0, 3) > 0}};
    bench.Write({{0x5C + i, Degrees(c.tmin)}, {0x60 + i, c.trange << 4 | c.hysteresis}});
    bench.Write({{0x4C + i, Degrees(c.therm[0])}, {0x50 + i, Degrees(c.therm[1])}});
    for (int therm = 0; therm < 2; ++therm) enabled[therm] |= c.letThrough[therm] << (1 + i);
    hysteresis[i / 2] |= c.thermHysteresis << 4 * (i % 2);

    Output& o = s.outputs[static_cast<std::size_t>(i)];
    o = {from(0, 6), from(0, 255), from(0, 1) == 1};
    bench.Write({{0x21 + i, o.behaviour << 5 | 0x10}, {0x28 + i, o.min}});  // no spin-up
    hold[i / 2] |= o.alwaysOn << i % 2;
  }
  bench.Write({{0x0E, enabled[0]}, {0x0F, enabled[1]}, {0x54, hysteresis[0]}, {0x55, hysteresis[1]}});
  bench.Write({{0x25, hold[0]}, {0x26, hold[1]}, {0x2C, s.max}, {0x0D, (s.boost[0] ? 0 : 1) | (s.boost[1] ? 0 : 2)}});
  return s;
}

TEST(ControlLaw, DutyIsThePredictedOneToTheLastBitUpAndDown) {
  std::mt19937 random(4718);
  for (int set = 0; set < 1000; ++set) {
    ChipOnBench bench(set % 2);
    Predictor predictor(PutRandomSettings(bench, random));
    for (int step = 0; step <= 40; ++step) {
      // Up for one half and down for the other, each channel on a way of its own, in quarter degrees.
      for (int c = 0; c < 4; ++c) {
        const int height = 20 - std::abs(step - 20);
        bench.Celsius(c) = 0.25 * (20 + height * (16 + 5 * c) + static_cast<int>(random() % 5));
      }
      bench.Run(kConversionSeconds);
      predictor.See(bench.pins.temperatureC);
      for (int pwm = 0; pwm < 4; ++pwm) {
        const int raw = bench.Read(0xAA + pwm);
        ASSERT_EQ(set % 2 == 0 ? 255 - raw : raw, predictor.Duty(static_cast<std::size_t>(pwm)))
            << "set " << set << " step " << step << " PWM" << pwm + 1;
      }
    }
  }
}

TEST(ControlLaw, TheCurveGoesThroughThePointsThatTheWindowDraws) {
  // Tmin 30, Trange 20, Min 25 %, Max 100 %, hysteresis 4.
  ChipOnBench("21=10 28=40 2C=FF 5C=5E 60=A4")
      .Play(
          "t0=29.75 ~ d0:0 t0=30 ~ d0:64 t0=50 ~ d0:227 t0=53.5 ~ d0:255 t0=60 ~ d0:255 "
          "t0=29 ~ d0:64 t0=26 ~ d0:64 t0=25.75 ~ d0:0 t0=29.75 ~ d0:0");
}

TEST(ControlLaw, AnOutputRunsAtMaxUntilWhateverShapesItsOwnDutySetsItUp) {
  // Each write for itself; the outputs follow Local and Remote 1 to 3 in order. What is put back, by whatever way, and
  // what is written as it was sets up nothing: a saved configuration brings the fans back as they were.
  for (const auto& [writes, duties] :
       {std::pair{"21=10;28=81;5C=9B;60=C5", " d0:0 d1:192 d2:192 d3:192"},
        {"5D=9B;0B=01", " d0:192 d1:0 d2:192 d3:192"},
        {"5E=9B;0B=02", " d0:192 d1:192 d2:0 d3:192"},
        {"24=70;2B=81;5F=9B;63=C5", " d0:192 d1:192 d2:192 d3:0"},
        {"25=A0", " d0:0 d1:0 d2:192 d3:192"},
        {"26=A0", " d0:192 d1:192 d2:0 d3:0"},
        {"2C=FF", " d0:255 d1:255 d2:255 d3:255"},
        {"0B=3C;01=21;4C=A4;00=80;21=D1 00=80;21=11 25=90 28=80 5D=9A 63=C4 0B=00;28=81 ~1 28=80",
         " d0:192 d1:192 d2:192 d3:192"}}) {
    std::istringstream rest(writes);
    for (std::string write; std::getline(rest, write, ';');) ChipOnBench().Play(write + " ~0.2" + duties);
  }
}

}  // namespace
}  // namespace zth::simulator

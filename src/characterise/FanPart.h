#pragma once

#include <array>
#include <string>
#include <vector>

#include "characterise/Bench.h"
#include "characterise/Settling.h"

namespace zth::characterise {

/// Measures the speeds of the fans of the chosen PWMs together: full duty, down to 0, up again, and from standstill to
/// full duty. Each duty is kept until all tachs have settled.
class FanPart final : public Part {
 public:
  explicit FanPart(const Settings& settings);

  Phase Which() const override { return Phase::Fans; }
  bool Tick(Bench& bench) override;
  double Done() const override;
  double Expected() const override;
  std::string Words() const override;

 private:
  enum class Kind : std::uint8_t { Measure, Stand, SpinUp };
  struct Step {
    Kind kind = Kind::Measure;
    Direction direction = Direction::Down;
    double duty = 0;
  };

  void Prepare(Bench& bench);
  void Begin(Bench& bench);
  void Listen(Bench& bench);
  bool HasSettled(double now) const;
  void Finish(Bench& bench);
  void Conclude(Bench& bench);

  Settings settings_;
  std::vector<Step> steps_;
  std::size_t step_ = 0;
  enum class State : std::uint8_t { New, Prepared, Begun, Listening } state_ = State::New;
  double began_ = 0;
  std::array<Settling, kTachs> tachs_;
};

/// The registers that make a PWM manual without a spin-up of the chip's own, and let its tachs be counted fast.
void MakeManual(Bench& bench, int pwm);
void CountFast(Bench& bench);

}  // namespace zth::characterise

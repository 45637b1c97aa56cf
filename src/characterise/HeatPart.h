#pragma once

#include <string>
#include <vector>

#include "characterise/Bench.h"
#include "characterise/Fits.h"

namespace zth::characterise {

/// Steps a heater up at each of some duties of the fans and fits the temperature that follows. PWMs that were not
/// chosen and follow a temperature are held at their duty, so that the air flow changes with nothing else.
class HeatPart final : public Part {
 public:
  explicit HeatPart(const Settings& settings) : settings_(settings) {}

  Phase Which() const override { return Phase::Heat; }
  bool Tick(Bench& bench) override;
  double Done() const override;
  double Expected() const override;
  std::string Words() const override;

 private:
  enum class State : std::uint8_t { New, Held, Blowing, Resting, Heating, Cooling };

  void Prepare(Bench& bench);
  void BeginDuty(Bench& bench);
  bool Rests(double now) const;
  bool IsHeated(Bench& bench);
  void FinishDuty(Bench& bench);
  int Channel() const { return settings_.heater; }

  Settings settings_;
  State state_ = State::New;
  std::size_t duty_ = 0;
  double began_ = 0;
  double heatedFrom_ = 0;
  double checked_ = 0;
  std::string trouble_;
  std::vector<Datum> rest_;
  std::vector<Datum> heated_;
};

}  // namespace zth::characterise

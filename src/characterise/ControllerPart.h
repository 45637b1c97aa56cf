#pragma once

#include <string>
#include <vector>

#include "characterise/Bench.h"

namespace zth::characterise {

/// Lets the chip control its fans against a profile of the heater: off, the full step, half of it. It runs as the chip
/// is set, or with the proposal.
class ControllerPart final : public Part {
 public:
  explicit ControllerPart(const Settings& settings);

  Phase Which() const override { return Phase::Controller; }
  bool Tick(Bench& bench) override;
  double Done() const override;
  double Expected() const override;
  std::string Words() const override;

 private:
  enum class State : std::uint8_t { New, Set, Begun, Holding };

  /// False if the chip does not control the chosen PWMs.
  bool Prepare(Bench& bench);

  Settings settings_;
  std::vector<double> profile_;
  State state_ = State::New;
  std::size_t step_ = 0;
  double now_ = 0;
  double began_ = 0;
};

/// What the points of a part of the profile say. Pure.
void AnalyseControl(ProfileStep& step, const std::vector<Point>& points, int channel, const Settings& settings);

}  // namespace zth::characterise

#pragma once

#include <vector>

/// When a fan's speed counts as settled.
namespace zth::characterise {

struct Speed {
  double time = 0;
  double rpm = 0;
};

/// What has been read of one tach since its duty changed.
class Settling {
 public:
  /// Nothing is settled earlier than this after the change, seconds: a fan may hesitate to start.
  static constexpr double kShortest = 4.5;
  /// The stretch that is looked at, seconds.
  static constexpr double kWindow = 4;
  /// How far its halves may lie apart, as a share of the speed.
  static constexpr double kTolerance = 0.0025;

  /// The duty has changed.
  void Begin(double time);
  void Add(double time, double rpm);

  /// Settled: the means of the two halves of the last kWindow differ by at most kTolerance, or by at most twice what
  /// the scatter of the readings explains.
  bool IsSettled(double now) const;

  /// Of the later half of the window.
  double Rpm() const;
  /// The standard deviation of the readings in the window, rpm.
  double Noise() const;
  const std::vector<Speed>& Speeds() const { return speeds_; }

 private:
  std::vector<double> Between(double from, double to) const;

  double began_ = 0;
  std::vector<Speed> speeds_;
};

}  // namespace zth::characterise

#pragma once

#include <cstddef>
#include <vector>

#include "widgets/StripSetup.h"

namespace zth::widgets {

/// The visible part of a chart's data: the X window, live or held, and each Y axis' range and zone. Arithmetic only.
class StripView {
 public:
  struct Axis {
    double min, max;
    double areaTop, areaBottom;  ///< fractions of the chart's height
  };

  explicit StripView(const StripSetup& setup = {});

  double XEnd() const { return xEnd_; }
  double XSpan() const { return xSpan_; }
  double XBegin() const { return xEnd_ - xSpan_; }
  std::size_t AxisCount() const { return axes_.size(); }
  const Axis& At(std::size_t axis) const { return axes_[axis]; }

  /// True if a time chart's window stays in place while samples arrive, because it was moved off the live edge.
  bool Held() const { return held_; }
  /// Sets the newest sample's x: a live window follows it once it has reached the right edge.
  void Advance(double newestX);
  /// Stops the window until GoLive, even when its right edge is at the newest sample.
  void Hold();
  /// Follows the newest sample again, with the present width; an X-Y chart returns to its start window.
  void GoLive();
  /// Returns to the start ranges, and live. Zones are kept.
  void Reset();
  /// The data are cleared: x counts from 0 again. Y ranges, zones and the width are kept.
  void Restart();

  /// Sets the X window. A right edge other than the live one holds it.
  void SetX(double end, double span);
  /// Scales the window by `factor` (below 1 zooms in) around `x`.
  void ZoomX(double x, double factor);
  void PanX(double distance);

  /// Sets an axis' range; ignored unless min is below max by a usable margin.
  void SetAxis(std::size_t axis, double min, double max);
  void ZoomY(std::size_t axis, double value, double factor);
  void PanY(std::size_t axis, double distance);

  /// Moves the border between zone `upper` and the next, keeping the gap: `fraction` is the new top of the lower zone.
  /// Neither zone becomes smaller than kLeastZone. True if it moved.
  bool MoveBorder(std::size_t upper, double fraction);

  static constexpr double kLeastZone = 0.1;

 private:
  double LiveEnd() const;

  StripMode mode_;
  double startEnd_;
  double startSpan_;
  std::vector<Axis> start_;
  std::vector<Axis> axes_;
  double xEnd_;
  double xSpan_;
  double newest_;
  bool held_ = false;
  bool pinned_ = false;  ///< held by Hold, not because it was moved
};

}  // namespace zth::widgets

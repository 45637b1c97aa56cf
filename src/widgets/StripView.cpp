#include "widgets/StripView.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace zth::widgets {
namespace {

// There is no detail below a millisecond, and no data are kept beyond two days.
constexpr double kLeastSeconds = 1e-3;
constexpr double kMostSeconds = 2.0 * 24 * 60 * 60;
// Limits of an axis' zoom: ticks must stay distinguishable in a double, and the range finite.
constexpr double kLeastRelative = 1e-9;
constexpr double kMost = 1e12;
// A window counts as live if its right edge is this close to the live one, as a fraction of its width.
constexpr double kLiveSlack = 1e-6;

double NoSample() {
  return -std::numeric_limits<double>::infinity();
}

bool Takeable(double min, double max) {
  const double size = std::max({std::abs(min), std::abs(max), 1e-3});
  return std::isfinite(min) && std::isfinite(max) && size <= kMost && max - min > size * kLeastRelative;
}

}  // namespace

StripView::StripView(const StripSetup& setup)
    : mode_(setup.mode), startEnd_(setup.xMax), startSpan_(setup.xMax - setup.xMin), newest_(NoSample()) {
  for (const StripAxis& axis : setup.axes) start_.push_back({axis.min, axis.max, axis.areaTop, axis.areaBottom});
  if (start_.empty()) start_.push_back({0, 1, 0, 1});
  axes_ = start_;
  xEnd_ = startEnd_;
  xSpan_ = startSpan_;
}

double StripView::LiveEnd() const {
  return mode_ == StripMode::Time ? std::max(startEnd_, newest_) : startEnd_;
}

void StripView::Advance(double newestX) {
  newest_ = std::max(newest_, newestX);
  if (!held_ && mode_ == StripMode::Time) xEnd_ = LiveEnd();
}

void StripView::Hold() {
  held_ = pinned_ = mode_ == StripMode::Time;
}

void StripView::GoLive() {
  held_ = pinned_ = false;
  xEnd_ = LiveEnd();
  if (mode_ == StripMode::XY) xSpan_ = startSpan_;
}

void StripView::Reset() {
  xSpan_ = startSpan_;
  GoLive();
  for (std::size_t i = 0; i < axes_.size(); ++i) {
    axes_[i].min = start_[i].min;
    axes_[i].max = start_[i].max;
  }
}

void StripView::Restart() {
  newest_ = NoSample();
  if (mode_ == StripMode::Time) GoLive();
}

void StripView::SetX(double end, double span) {
  if (!std::isfinite(end) || !std::isfinite(span) || span <= 0) return;
  if (mode_ == StripMode::Time) {
    span = std::clamp(span, kLeastSeconds, kMostSeconds);
    // Keeps part of the data, or of the room for future data, in sight.
    end = std::clamp(end, std::min(startEnd_ - startSpan_, 0.0) + span * 0.05, LiveEnd() + span * 0.95);
  }
  if (!Takeable(end - span, end)) return;
  xEnd_ = end;
  xSpan_ = span;
  held_ = mode_ == StripMode::Time && (pinned_ || std::abs(xEnd_ - LiveEnd()) > xSpan_ * kLiveSlack);
}

void StripView::ZoomX(double x, double factor) {
  SetX(x + (xEnd_ - x) * factor, xSpan_ * factor);
}

void StripView::PanX(double distance) {
  SetX(xEnd_ + distance, xSpan_);
}

void StripView::SetAxis(std::size_t axis, double min, double max) {
  if (axis >= axes_.size() || !Takeable(min, max)) return;
  axes_[axis].min = min;
  axes_[axis].max = max;
}

void StripView::ZoomY(std::size_t axis, double value, double factor) {
  if (axis >= axes_.size()) return;
  const Axis& now = axes_[axis];
  SetAxis(axis, value + (now.min - value) * factor, value + (now.max - value) * factor);
}

void StripView::PanY(std::size_t axis, double distance) {
  if (axis >= axes_.size()) return;
  SetAxis(axis, axes_[axis].min + distance, axes_[axis].max + distance);
}

bool StripView::MoveBorder(std::size_t upper, double fraction) {
  if (upper + 1 >= axes_.size() || !std::isfinite(fraction)) return false;
  Axis& above = axes_[upper];
  Axis& below = axes_[upper + 1];
  const double gap = below.areaTop - above.areaBottom;
  const double top = std::min(std::max(fraction, above.areaTop + kLeastZone + gap), below.areaBottom - kLeastZone);
  if (top == below.areaTop) return false;
  below.areaTop = top;
  above.areaBottom = top - gap;
  return true;
}

}  // namespace zth::widgets

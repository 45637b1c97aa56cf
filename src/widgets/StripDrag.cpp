#include "widgets/StripDrag.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace zth::widgets {
namespace {

using Part = StripPart::Kind;

constexpr int kDragPixels = 4;

/// The factor by which a scale of `length` pixels changes when the handle at one end is pulled to `left` pixels.
double ScaleFactor(double left, double length) {
  return length / std::max(left, length * 0.04);
}

}  // namespace

void StripDrag::Begin(QPoint at, Qt::MouseButton button) {
  button_ = button;
  press_ = at;
  part_ = layout_.PartAt(at, scene_.view.Held());
  end_ = scene_.view.XEnd();
  span_ = scene_.view.XSpan();
  axes_.clear();
  for (std::size_t i = 0; i < scene_.view.AxisCount(); ++i) axes_.push_back(scene_.view.At(i));
  kind_ = Kind::Pending;
}

std::optional<StripChange> StripDrag::To(QPoint at, Qt::KeyboardModifiers modifiers) {
  const QPoint by = at - press_;
  if (kind_ == Kind::Pending) {
    if (by.manhattanLength() < kDragPixels) return std::nullopt;
    Start();
  }
  if (kind_ == Kind::Handle) return PullHandle(by);
  if (kind_ == Kind::Pan) return Pan(by, modifiers);
  if (kind_ == Kind::Box) scene_.overlay.box = QRect(press_, at).normalized().intersected(Zone());
  return std::nullopt;
}

void StripDrag::Start() {
  const bool handle = part_.kind == Part::XLow || part_.kind == Part::XHigh || part_.kind == Part::YLow ||
                      part_.kind == Part::YHigh || part_.kind == Part::Border;
  if (button_ == Qt::LeftButton && handle) kind_ = Kind::Handle;
  if (button_ == Qt::LeftButton && part_.kind == Part::Plot) kind_ = Kind::Pan;
  if (button_ == Qt::RightButton && part_.kind == Part::Plot) kind_ = Kind::Box;
}

// A direction counts only after the pointer has moved far enough in it, so that a drag along X leaves Y unchanged.
// Shift or Control limits the drag to X or Y, as with the wheel.
std::optional<StripChange> StripDrag::Pan(QPoint by, Qt::KeyboardModifiers modifiers) {
  const bool x = std::abs(by.x()) >= kDragPixels && !(modifiers & Qt::ControlModifier);
  const bool y = std::abs(by.y()) >= 2 * kDragPixels && !(modifiers & Qt::ShiftModifier);
  if (x) scene_.view.SetX(end_ - by.x() * span_ / layout_.plot.width(), span_);
  if (y) {
    const auto zone = static_cast<std::size_t>(part_.index);
    const StripView::Axis& axis = axes_[zone];
    const double distance = by.y() * (axis.max - axis.min) / Zone().height();
    scene_.view.SetAxis(zone, axis.min + distance, axis.max + distance);
  }
  return x || y ? std::optional(StripChange::View) : std::nullopt;
}

// The value at the edge stays under the pointer: pulling inwards shows a larger range, pushing outwards a smaller one.
std::optional<StripChange> StripDrag::PullHandle(QPoint by) {
  if (part_.kind == Part::Border) {
    const auto upper = static_cast<std::size_t>(part_.index);
    const double top = axes_[upper + 1].areaTop + static_cast<double>(by.y()) / layout_.plot.height();
    return scene_.view.MoveBorder(upper, top) ? std::optional(StripChange::Zones) : std::nullopt;
  }
  if (part_.kind == Part::XLow || part_.kind == Part::XHigh) {
    PullX(by.x());
  } else {
    PullY(by.y());
  }
  return StripChange::View;
}

void StripDrag::PullX(int by) {
  const double width = layout_.plot.width();
  if (part_.kind == Part::XLow) {
    scene_.view.SetX(end_, span_ * ScaleFactor(width - by, width));
  } else {
    const double span = span_ * ScaleFactor(width + by, width);
    scene_.view.SetX(end_ - span_ + span, span);
  }
}

void StripDrag::PullY(int by) {
  const auto zone = static_cast<std::size_t>(part_.index);
  const StripView::Axis& axis = axes_[zone];
  const double height = Zone().height();
  const double span = axis.max - axis.min;
  if (part_.kind == Part::YHigh) {
    scene_.view.SetAxis(zone, axis.min, axis.min + span * ScaleFactor(height - by, height));
  } else {
    scene_.view.SetAxis(zone, axis.max - span * ScaleFactor(height + by, height), axis.max);
  }
}

StripDrag::Kind StripDrag::Finish() {
  const Kind was = std::exchange(kind_, Kind::None);
  if (was == Kind::Box) TakeBox();
  return was;
}

void StripDrag::TakeBox() {
  const QRect box = std::exchange(scene_.overlay.box, QRect());
  if (box.width() < kDragPixels || box.height() < kDragPixels) return;
  const auto zone = static_cast<std::size_t>(part_.index);
  const StripView::Axis axis = scene_.view.At(zone);
  const double x0 = layout_.XOfPixel(box.left());
  const double x1 = layout_.XOfPixel(box.right() + 1);
  scene_.view.SetX(x1, x1 - x0);
  scene_.view.SetAxis(zone, layout_.YOfPixel(axis, zone, box.bottom() + 1), layout_.YOfPixel(axis, zone, box.top()));
}

}  // namespace zth::widgets

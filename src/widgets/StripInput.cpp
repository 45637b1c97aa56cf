#include "widgets/StripInput.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace zth::widgets {
namespace {

using Kind = StripPart::Kind;

constexpr int kDragPixels = 4;
constexpr int kMarkPixels = 5;
constexpr double kWheelFactor = 0.8;
constexpr double kKeyFactor = 0.75;
constexpr double kKeyPan = 0.1;

/// How much of its length a scale keeps when the grip at one end is pulled to `left` of `length` pixels.
double ScaleFactor(double left, double length) {
  return length / std::max(left, length * 0.04);
}

}  // namespace

StripInput::StripInput(StripScene& scene, const StripLayout& layout, std::function<void(Change)> changed)
    : scene_(scene), layout_(layout), changed_(std::move(changed)) {}

QRect StripInput::ZoneOfPress() const {
  return layout_.zones[static_cast<std::size_t>(part_.index)];
}

void StripInput::Press(QPoint at, Qt::MouseButton button) {
  if (drag_ != Drag::None) return;
  scene_.overlay.notice.clear();
  button_ = button;
  press_ = at;
  part_ = layout_.PartAt(at, scene_.view.Held());
  pressEnd_ = scene_.view.XEnd();
  pressSpan_ = scene_.view.XSpan();
  pressAxes_.clear();
  for (std::size_t i = 0; i < scene_.view.AxisCount(); ++i) pressAxes_.push_back(scene_.view.At(i));
  drag_ = Drag::Pending;
  if (button == Qt::LeftButton && part_.kind == Kind::Sign) GoLive();
  changed_(Change::View);
}

void StripInput::Move(QPoint at, Qt::MouseButtons buttons, Qt::KeyboardModifiers modifiers) {
  const StripPart over = layout_.PartAt(at, scene_.view.Held());
  if ((buttons & button_) && drag_ != Drag::None) {
    DragTo(at, modifiers);
  } else {
    drag_ = Drag::None;
    scene_.overlay.hovered = over;
  }
  const bool reading = over.kind == Kind::Plot && drag_ != Drag::Pan && drag_ != Drag::Handle;
  scene_.overlay.cursor = reading ? std::optional<QPointF>(at) : std::nullopt;
  changed_(Change::View);
}

void StripInput::DragTo(QPoint at, Qt::KeyboardModifiers modifiers) {
  if (drag_ == Drag::Pending) {
    if ((at - press_).manhattanLength() < kDragPixels) return;
    const bool handle = part_.kind == Kind::XLow || part_.kind == Kind::XHigh || part_.kind == Kind::YLow ||
                        part_.kind == Kind::YHigh || part_.kind == Kind::Border;
    if (button_ == Qt::LeftButton && handle) drag_ = Drag::Handle;
    if (button_ == Qt::LeftButton && part_.kind == Kind::Plot) drag_ = Drag::Pan;
    if (button_ == Qt::RightButton && part_.kind == Kind::Plot) drag_ = Drag::Box;
  }
  if (drag_ == Drag::Handle) DragHandle(at);
  if (drag_ == Drag::Pan) PanFrom(at, modifiers);
  if (drag_ == Drag::Box) scene_.overlay.box = QRect(press_, at).normalized().intersected(ZoneOfPress());
}

// A direction counts once the pointer has left its start in it, so that a drag along X leaves Y alone; with Shift or
// Control held it is X or Y alone, as with the wheel.
void StripInput::PanFrom(QPoint at, Qt::KeyboardModifiers modifiers) {
  const QPoint by = at - press_;
  const bool x = std::abs(by.x()) >= kDragPixels && !(modifiers & Qt::ControlModifier);
  const bool y = std::abs(by.y()) >= 2 * kDragPixels && !(modifiers & Qt::ShiftModifier);
  if (x) scene_.view.SetX(pressEnd_ - by.x() * pressSpan_ / layout_.plot.width(), pressSpan_);
  if (y) {
    const auto zone = static_cast<std::size_t>(part_.index);
    const StripView::Axis& axis = pressAxes_[zone];
    const double distance = by.y() * (axis.max - axis.min) / ZoneOfPress().height();
    scene_.view.SetAxis(zone, axis.min + distance, axis.max + distance);
  }
  if (x || y) changed_(Change::View);
}

// What was at the edge stays under the pointer: pulled inwards the scale takes in more, pushed outwards less.
void StripInput::DragHandle(QPoint at) {
  const QPoint by = at - press_;
  const auto index = static_cast<std::size_t>(part_.index);
  const double begin = pressEnd_ - pressSpan_;
  const double width = layout_.plot.width();
  if (part_.kind == Kind::XLow) {
    scene_.view.SetX(pressEnd_, pressSpan_ * ScaleFactor(width - by.x(), width));
  } else if (part_.kind == Kind::XHigh) {
    const double span = pressSpan_ * ScaleFactor(width + by.x(), width);
    scene_.view.SetX(begin + span, span);
  } else if (part_.kind == Kind::Border) {
    const double top = pressAxes_[index + 1].areaTop + static_cast<double>(by.y()) / layout_.plot.height();
    if (scene_.view.MoveBorder(index, top)) changed_(Change::Zones);
    return;
  } else {
    const StripView::Axis& axis = pressAxes_[index];
    const double height = ZoneOfPress().height();
    const double span = axis.max - axis.min;
    if (part_.kind == Kind::YHigh) {
      scene_.view.SetAxis(index, axis.min, axis.min + span * ScaleFactor(height - by.y(), height));
    } else {
      scene_.view.SetAxis(index, axis.max - span * ScaleFactor(height + by.y(), height), axis.max);
    }
  }
  changed_(Change::View);
}

bool StripInput::Release(QPoint at, Qt::MouseButton button) {
  if (button != button_ || drag_ == Drag::None) return false;
  const Drag was = std::exchange(drag_, Drag::None);
  if (was == Drag::Box) TakeBox();
  const bool click = was == Drag::Pending;
  if (click && button == Qt::LeftButton && part_.kind == Kind::LegendRow) {
    ToggleTrace(scene_.labels[static_cast<std::size_t>(part_.index)].trace);
  }
  if (click && button == Qt::LeftButton && part_.kind == Kind::Plot) {
    markBefore_ = scene_.overlay.mark;
    ToggleMark(layout_.XOfPixel(at.x()));
  }
  scene_.overlay.hovered = layout_.PartAt(at, scene_.view.Held());
  changed_(Change::View);
  return click && button == Qt::RightButton;
}

void StripInput::TakeBox() {
  const QRect box = std::exchange(scene_.overlay.box, QRect());
  if (box.width() < kDragPixels || box.height() < kDragPixels) return;
  const auto zone = static_cast<std::size_t>(part_.index);
  const StripView::Axis axis = scene_.view.At(zone);
  const double x0 = layout_.XOfPixel(box.left());
  const double x1 = layout_.XOfPixel(box.right() + 1);
  scene_.view.SetX(x1, x1 - x0);
  scene_.view.SetAxis(zone, layout_.YOfPixel(axis, zone, box.bottom() + 1), layout_.YOfPixel(axis, zone, box.top()));
  changed_(Change::View);
}

void StripInput::ToggleMark(double x) {
  std::optional<double>& mark = scene_.overlay.mark;
  const bool same = mark && std::abs(layout_.PixelOfX(*mark) - layout_.PixelOfX(x)) <= kMarkPixels;
  mark = same ? std::nullopt : std::optional<double>(x);
}

void StripInput::DoubleClick(QPoint at) {
  const StripPart part = layout_.PartAt(at, scene_.view.Held());
  if (part.kind == Kind::LegendRow) {
    ToggleTrace(scene_.labels[static_cast<std::size_t>(part.index)].trace);
    return;
  }
  if (part.kind == Kind::Border) {
    const auto below = static_cast<std::size_t>(part.index) + 1;
    if (scene_.view.MoveBorder(below - 1, scene_.setup.axes[below].areaTop)) changed_(Change::Zones);
    return;
  }
  if (part.kind == Kind::Plot) scene_.overlay.mark = markBefore_;
  Reset();
}

void StripInput::Leave() {
  scene_.overlay.cursor.reset();
  scene_.overlay.hovered = {};
  changed_(Change::View);
}

void StripInput::Wheel(QPoint at, double steps, Qt::KeyboardModifiers modifiers) {
  const QRect& plot = layout_.plot;
  // Beside the plot the wheel means the axis that it turns over.
  const bool x = !(modifiers & Qt::ControlModifier) && at.x() >= plot.left();
  const bool y = !(modifiers & Qt::ShiftModifier) && at.y() <= plot.bottom();
  const double factor = std::pow(kWheelFactor, steps);
  if (x) scene_.view.ZoomX(layout_.XOfPixel(std::clamp(at.x(), plot.left(), plot.right())), factor);
  for (std::size_t i = 0; y && i < layout_.zones.size(); ++i) {
    const QRect& zone = layout_.zones[i];
    if (at.y() < zone.top() || at.y() > zone.bottom()) continue;
    scene_.view.ZoomY(i, layout_.YOfPixel(scene_.view.At(i), i, at.y()), factor);
  }
  changed_(Change::View);
}

void StripInput::ZoomAll(double factor, bool x, bool y) {
  const StripView& view = scene_.view;
  // A live chart stays live: its right edge is what stands still.
  const bool live = !scene_.IsXY() && !view.Held();
  if (x) scene_.view.ZoomX(live ? view.XEnd() : view.XEnd() - view.XSpan() / 2, factor);
  for (std::size_t i = 0; y && i < view.AxisCount(); ++i) {
    scene_.view.ZoomY(i, (view.At(i).min + view.At(i).max) / 2, factor);
  }
  changed_(Change::View);
}

bool StripInput::CursorKey(int key, Qt::KeyboardModifiers modifiers) {
  const QRect& plot = layout_.plot;
  QPointF at = scene_.overlay.cursor.value_or(QPointF(plot.center()));
  if (key == Qt::Key_Space || key == Qt::Key_Return || key == Qt::Key_Enter) {
    if (scene_.overlay.cursor) ToggleMark(layout_.XOfPixel(at.x()));
  } else if (scene_.overlay.cursor) {
    const int step = modifiers & Qt::ShiftModifier ? 20 : 1;
    at.rx() = std::clamp(at.x() + (key == Qt::Key_Left ? -step : step), double(plot.left()), double(plot.right()));
  }
  scene_.overlay.cursor = at;
  changed_(Change::View);
  return true;
}

bool StripInput::Key(int key, Qt::KeyboardModifiers modifiers) {
  scene_.overlay.notice.clear();
  const bool alt = modifiers & Qt::AltModifier;
  const bool shift = modifiers & Qt::ShiftModifier;
  const bool control = modifiers & Qt::ControlModifier;
  StripView& view = scene_.view;
  switch (key) {
    case Qt::Key_Left:
    case Qt::Key_Right:
      if (alt) return CursorKey(key, modifiers);
      view.PanX((key == Qt::Key_Left ? -kKeyPan : kKeyPan) * view.XSpan() * (shift ? 5 : 1));
      break;
    case Qt::Key_Up:
    case Qt::Key_Down:
      for (std::size_t i = 0; i < view.AxisCount(); ++i) {
        view.PanY(i, (key == Qt::Key_Up ? kKeyPan : -kKeyPan) * (view.At(i).max - view.At(i).min));
      }
      break;
    case Qt::Key_Plus:
    case Qt::Key_Equal:
    case Qt::Key_Minus:
    case Qt::Key_Underscore: {
      const bool in = key == Qt::Key_Plus || key == Qt::Key_Equal;
      // On many keyboards a plus needs Shift: there it says nothing about X. Alt does on all of them.
      const bool xOnly = alt || (shift && (key != Qt::Key_Plus || (modifiers & Qt::KeypadModifier)));
      ZoomAll(in ? kKeyFactor : 1 / kKeyFactor, !control, !xOnly);
      return true;
    }
    case Qt::Key_Home:
      Reset();
      return true;
    case Qt::Key_End:
      GoLive();
      return true;
    case Qt::Key_A:
      FitAll();
      return true;
    case Qt::Key_Space:
    case Qt::Key_Return:
    case Qt::Key_Enter:
      return CursorKey(key, modifiers);
    case Qt::Key_Escape:
      if (!scene_.overlay.mark && !scene_.overlay.cursor && drag_ == Drag::None) return false;
      scene_.overlay.mark.reset();
      scene_.overlay.cursor.reset();
      scene_.overlay.box = {};
      drag_ = Drag::None;
      changed_(Change::View);
      return true;
    default:
      return false;
  }
  changed_(Change::View);
  return true;
}

void StripInput::ToggleTrace(int trace) {
  if (!scene_.HasTrace(trace)) return;
  scene_.TraceAt(trace).visible = !scene_.TraceAt(trace).visible;
  changed_(Change::View);
}

void StripInput::Fit(std::size_t axis) {
  const auto fit = scene_.FitOf(axis);
  if (!fit) return;
  scene_.view.SetAxis(axis, fit->first, fit->second);
  changed_(Change::View);
}

void StripInput::FitAll() {
  for (std::size_t i = 0; i < scene_.view.AxisCount(); ++i) Fit(i);
}

void StripInput::Reset() {
  scene_.view.Reset();
  changed_(Change::View);
}

void StripInput::GoLive() {
  scene_.view.GoLive();
  changed_(Change::View);
}

Qt::CursorShape StripInput::Shape() const {
  if (drag_ == Drag::Pan) return Qt::ClosedHandCursor;
  switch (drag_ == Drag::Handle ? part_.kind : scene_.overlay.hovered.kind) {
    case Kind::Plot:
      return Qt::CrossCursor;
    case Kind::XLow:
    case Kind::XHigh:
      return Qt::SizeHorCursor;
    case Kind::YLow:
    case Kind::YHigh:
      return Qt::SizeVerCursor;
    case Kind::Border:
      return Qt::SplitVCursor;
    case Kind::Sign:
      return Qt::PointingHandCursor;
    case Kind::LegendRow: {
      const int trace = scene_.labels[static_cast<std::size_t>(scene_.overlay.hovered.index)].trace;
      return scene_.HasTrace(trace) ? Qt::PointingHandCursor : Qt::ArrowCursor;
    }
    default:
      return Qt::ArrowCursor;
  }
}

}  // namespace zth::widgets

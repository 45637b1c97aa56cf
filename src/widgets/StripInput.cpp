#include "widgets/StripInput.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace zth::widgets {
namespace {

using Kind = StripPart::Kind;
using Drag = StripDrag::Kind;

constexpr int kMarkPixels = 5;
constexpr double kWheelFactor = 0.8;
constexpr double kKeyFactor = 0.75;
constexpr double kKeyPan = 0.1;

}  // namespace

StripInput::StripInput(StripScene& scene, const StripLayout& layout, std::function<void(StripChange)> changed)
    : scene_(scene), layout_(layout), changed_(std::move(changed)), drag_(scene, layout) {}

void StripInput::Press(QPoint at, Qt::MouseButton button) {
  if (drag_.What() != Drag::None) return;
  scene_.overlay.notice.clear();
  drag_.Begin(at, button);
  if (button == Qt::LeftButton && drag_.Pressed().kind == Kind::Sign) GoLive();
  changed_(StripChange::View);
}

void StripInput::Move(QPoint at, Qt::MouseButtons buttons, Qt::KeyboardModifiers modifiers) {
  const StripPart over = layout_.PartAt(at, scene_.view.Held());
  if ((buttons & drag_.Button()) && drag_.What() != Drag::None) {
    if (const auto change = drag_.To(at, modifiers)) changed_(*change);
  } else {
    drag_.Drop();
    scene_.overlay.hovered = over;
  }
  const bool reading = over.kind == Kind::Plot && drag_.What() != Drag::Pan && drag_.What() != Drag::Handle;
  scene_.overlay.cursor = reading ? std::optional<QPointF>(at) : std::nullopt;
  changed_(StripChange::View);
}

bool StripInput::Release(QPoint at, Qt::MouseButton button) {
  if (button != drag_.Button() || drag_.What() == Drag::None) return false;
  const bool click = drag_.Finish() == Drag::Pending;
  const StripPart& part = drag_.Pressed();
  if (click && button == Qt::LeftButton && part.kind == Kind::LegendRow) {
    ToggleTrace(scene_.labels[static_cast<std::size_t>(part.index)].trace);
  }
  if (click && button == Qt::LeftButton && part.kind == Kind::Plot) {
    markBefore_ = scene_.overlay.mark;
    ToggleMark(layout_.XOfPixel(at.x()));
  }
  scene_.overlay.hovered = layout_.PartAt(at, scene_.view.Held());
  changed_(StripChange::View);
  return click && button == Qt::RightButton;
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
    if (scene_.view.MoveBorder(below - 1, scene_.setup.axes[below].areaTop)) changed_(StripChange::Zones);
    return;
  }
  if (part.kind == Kind::Plot) scene_.overlay.mark = markBefore_;
  Reset();
}

void StripInput::Leave() {
  scene_.overlay.cursor.reset();
  scene_.overlay.hovered = {};
  changed_(StripChange::View);
}

void StripInput::Wheel(QPoint at, double steps, Qt::KeyboardModifiers modifiers) {
  const QRect& plot = layout_.plot;
  // Beside the plot, the wheel affects only the axis under the pointer.
  const bool x = !(modifiers & Qt::ControlModifier) && at.x() >= plot.left();
  const bool y = !(modifiers & Qt::ShiftModifier) && at.y() <= plot.bottom();
  const double factor = std::pow(kWheelFactor, steps);
  if (x) scene_.view.ZoomX(layout_.XOfPixel(std::clamp(at.x(), plot.left(), plot.right())), factor);
  for (std::size_t i = 0; y && i < layout_.zones.size(); ++i) {
    const QRect& zone = layout_.zones[i];
    if (at.y() < zone.top() || at.y() > zone.bottom()) continue;
    scene_.view.ZoomY(i, layout_.YOfPixel(scene_.view.At(i), i, at.y()), factor);
  }
  changed_(StripChange::View);
}

void StripInput::ZoomAll(double factor, bool x, bool y) {
  const StripView& view = scene_.view;
  // A live chart stays live: it zooms about its right edge.
  const bool live = !scene_.IsXY() && !view.Held();
  if (x) scene_.view.ZoomX(live ? view.XEnd() : view.XEnd() - view.XSpan() / 2, factor);
  for (std::size_t i = 0; y && i < view.AxisCount(); ++i) {
    scene_.view.ZoomY(i, (view.At(i).min + view.At(i).max) / 2, factor);
  }
  changed_(StripChange::View);
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
  changed_(StripChange::View);
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
      // On many keyboards, plus needs Shift, so Shift does not mean X only there. Alt does on every keyboard.
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
    case Qt::Key_H:
      if (scene_.IsXY()) return false;
      ToggleHold();
      return true;
    case Qt::Key_A:
      FitAll();
      return true;
    case Qt::Key_Space:
    case Qt::Key_Return:
    case Qt::Key_Enter:
      return CursorKey(key, modifiers);
    case Qt::Key_Escape:
      if (!scene_.overlay.mark && !scene_.overlay.cursor && drag_.What() == Drag::None) return false;
      scene_.overlay.mark.reset();
      scene_.overlay.cursor.reset();
      scene_.overlay.box = {};
      drag_.Drop();
      changed_(StripChange::View);
      return true;
    default:
      return false;
  }
  changed_(StripChange::View);
  return true;
}

void StripInput::ToggleTrace(int trace) {
  if (!scene_.HasTrace(trace)) return;
  scene_.TraceAt(trace).visible = !scene_.TraceAt(trace).visible;
  changed_(StripChange::View);
}

void StripInput::Fit(std::size_t axis) {
  const auto fit = scene_.FitOf(axis);
  if (!fit) return;
  scene_.view.SetAxis(axis, fit->first, fit->second);
  changed_(StripChange::View);
}

void StripInput::FitAll() {
  for (std::size_t i = 0; i < scene_.view.AxisCount(); ++i) Fit(i);
}

void StripInput::Reset() {
  scene_.view.Reset();
  changed_(StripChange::View);
}

void StripInput::GoLive() {
  scene_.view.GoLive();
  changed_(StripChange::View);
}

void StripInput::ToggleHold() {
  if (scene_.view.Held()) return GoLive();
  scene_.view.Hold();
  changed_(StripChange::View);
}

Qt::CursorShape StripInput::Shape() const {
  if (drag_.What() == Drag::Pan) return Qt::ClosedHandCursor;
  switch (drag_.What() == Drag::Handle ? drag_.Pressed().kind : scene_.overlay.hovered.kind) {
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

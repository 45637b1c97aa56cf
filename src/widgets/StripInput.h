#pragma once

#include <functional>
#include <optional>

#include <QPoint>
#include <Qt>

#include "widgets/StripDrag.h"
#include "widgets/StripLayout.h"
#include "widgets/StripScene.h"

namespace zth::widgets {

/// What the user does to a chart by mouse and keys, as changes of its scene. Positions are logical pixels of the
/// widget.
class StripInput {
 public:
  /// `changed` is told after every change. The scene and the layout outlive this.
  StripInput(StripScene& scene, const StripLayout& layout, std::function<void(StripChange)> changed);

  void Press(QPoint at, Qt::MouseButton button);
  void Move(QPoint at, Qt::MouseButtons buttons, Qt::KeyboardModifiers modifiers);
  /// True when it asks for the context menu: a right click without a drag.
  bool Release(QPoint at, Qt::MouseButton button);
  void DoubleClick(QPoint at);
  void Leave();
  /// `steps` of the wheel, positive away from the user.
  void Wheel(QPoint at, double steps, Qt::KeyboardModifiers modifiers);
  /// True when the key means something to a chart.
  bool Key(int key, Qt::KeyboardModifiers modifiers);

  void ToggleTrace(int trace);
  /// Sets an axis to the values of its shown traces.
  void Fit(std::size_t axis);
  void FitAll();
  void Reset();
  void GoLive();
  /// Holds a time chart's window where it is, and lets it go live again.
  void ToggleHold();

  Qt::CursorShape Shape() const;

 private:
  void ToggleMark(double x);
  void ZoomAll(double factor, bool x, bool y);
  bool CursorKey(int key, Qt::KeyboardModifiers modifiers);

  StripScene& scene_;
  const StripLayout& layout_;
  std::function<void(StripChange)> changed_;
  StripDrag drag_;
  std::optional<double> markBefore_;  ///< what a double click's first click has to give back
};

}  // namespace zth::widgets

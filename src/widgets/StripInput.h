#pragma once

#include <functional>
#include <optional>

#include <QPoint>
#include <Qt>

#include "widgets/StripDrag.h"
#include "widgets/StripLayout.h"
#include "widgets/StripScene.h"

namespace zth::widgets {

/// Turns mouse and keyboard input to a chart into changes of its scene. Positions are logical pixels of the widget.
class StripInput {
 public:
  /// `changed` is called after every change. The scene and the layout must outlive this.
  StripInput(StripScene& scene, const StripLayout& layout, std::function<void(StripChange)> changed);

  void Press(QPoint at, Qt::MouseButton button);
  void Move(QPoint at, Qt::MouseButtons buttons, Qt::KeyboardModifiers modifiers);
  /// True if the context menu should open: after a right click without a drag.
  bool Release(QPoint at, Qt::MouseButton button);
  void DoubleClick(QPoint at);
  void Leave();
  /// `steps` of the wheel, positive for away from the user.
  void Wheel(QPoint at, double steps, Qt::KeyboardModifiers modifiers);
  /// True if the chart uses the key.
  bool Key(int key, Qt::KeyboardModifiers modifiers);

  void ToggleTrace(int trace);
  /// Fits an axis to the values of its shown traces.
  void Fit(std::size_t axis);
  void FitAll();
  void Reset();
  void GoLive();
  /// Stops a time chart's window where it is, or makes it live again.
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
  std::optional<double> markBefore_;  ///< the mark before a double click's first click, to be restored
};

}  // namespace zth::widgets

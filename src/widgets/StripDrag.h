#pragma once

#include <optional>
#include <vector>

#include <QPoint>
#include <QRect>
#include <Qt>

#include "widgets/StripLayout.h"
#include "widgets/StripScene.h"

namespace zth::widgets {

/// One press of a mouse button on a chart and the drag that follows: a pan, a moved handle, or a zoom box. Everything
/// is computed relative to the state at the press.
class StripDrag {
 public:
  /// The scene and the layout must outlive this.
  StripDrag(StripScene& scene, const StripLayout& layout) : scene_(scene), layout_(layout) {}

  enum class Kind { None, Pending, Pan, Handle, Box };
  Kind What() const { return kind_; }
  Qt::MouseButton Button() const { return button_; }
  /// The part pressed now or last.
  const StripPart& Pressed() const { return part_; }

  void Begin(QPoint at, Qt::MouseButton button);
  /// Moves the drag to a point and returns what changed, apart from the zoom box.
  std::optional<StripChange> To(QPoint at, Qt::KeyboardModifiers modifiers);
  /// Ends the drag, applies a zoom box, and returns the kind of drag.
  Kind Finish();
  /// Ends the drag and applies nothing.
  void Drop() { kind_ = Kind::None; }

 private:
  void Start();
  std::optional<StripChange> Pan(QPoint by, Qt::KeyboardModifiers modifiers);
  std::optional<StripChange> PullHandle(QPoint by);
  void PullX(int by);
  void PullY(int by);
  void TakeBox();
  QRect Zone() const { return layout_.zones[static_cast<std::size_t>(part_.index)]; }

  StripScene& scene_;
  const StripLayout& layout_;
  Kind kind_ = Kind::None;
  Qt::MouseButton button_ = Qt::NoButton;
  QPoint press_;
  StripPart part_;
  double end_ = 0;
  double span_ = 1;
  std::vector<StripView::Axis> axes_;
};

}  // namespace zth::widgets

#pragma once

#include <functional>
#include <optional>

#include "widgets/Strip.h"
#include "widgets/StripInput.h"
#include "widgets/StripPainter.h"
#include "widgets/StripScene.h"

namespace zth::widgets {

/// What a Strip consists of; shared by its sources alone.
struct Strip::Private {
  Private(Strip& owner, std::function<double()> time);

  /// The chosen label slot, made when it is not there yet.
  StripLabel& ChosenLabel(int slot);
  const StripView::Axis& ChosenAxis(int axis) const { return scene.view.At(static_cast<std::size_t>(axis)); }
  /// The layout for the widget's present size, for hit tests between two pictures.
  void LayOut(const QWidget& widget) { painter.LayOut(scene, widget.size(), widget.devicePixelRatioF()); }
  void Changed(StripInput::Change change);

  Strip& strip;
  std::function<double()> clock;
  StripScene scene;
  StripPainter painter;
  StripInput input;
  std::optional<double> origin;    ///< the clock at the first sample
  std::optional<double> instantX;  ///< x of the feed that is coming in
  double tellNext = 0;             ///< when a reader is told of new values again, by the clock
  bool waiting = false;            ///< something has changed since the last frame
  bool held = false;               ///< as last told by HeldChanged
};

}  // namespace zth::widgets

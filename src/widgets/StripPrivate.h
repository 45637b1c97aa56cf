#pragma once

#include <functional>

#include "widgets/Strip.h"
#include "widgets/StripBar.h"
#include "widgets/StripFeed.h"
#include "widgets/StripInput.h"
#include "widgets/StripPainter.h"

namespace zth::widgets {

/// What a Strip consists of; shared by its sources alone.
struct Strip::Private {
  Private(Strip& owner, std::function<double()> time);

  /// The layout for the widget's present size, for hit tests between two pictures.
  void LayOut() { painter.LayOut(strip.scene_, strip.size(), strip.devicePixelRatioF()); }

  Strip& strip;
  std::function<double()> clock;
  StripPainter painter;
  StripInput input;
  StripFeed feed;
  StripBar* bar = nullptr;  ///< a child of the strip
  double tellNext = 0;      ///< when a reader is told of new values again, by the clock
  bool waiting = false;     ///< something has changed since the last frame
};

}  // namespace zth::widgets

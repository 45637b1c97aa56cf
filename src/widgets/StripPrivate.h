#pragma once

#include <functional>

#include <QElapsedTimer>

#include "widgets/Strip.h"
#include "widgets/StripBar.h"
#include "widgets/StripFeed.h"
#include "widgets/StripInput.h"
#include "widgets/StripPainter.h"

namespace zth::widgets {

/// The parts of a Strip, used only by its sources.
struct Strip::Private {
  Private(Strip& owner, std::function<double()> time);

  /// Makes the layout for the widget's present size, for hit tests between two redraws.
  void LayOut() { painter.LayOut(strip.scene_, strip.size(), strip.devicePixelRatioF()); }

  Strip& strip;
  std::function<double()> clock;
  std::function<QDateTime()> wallClock;  ///< empty if the chart has none
  StripPainter painter;
  StripInput input;
  StripFeed feed;
  StripBar* bar = nullptr;  ///< owned by the strip, as its child
  int titleEnd = 0;         ///< where the title ended when the bar was placed
  double notedX = 0;        ///< of the sample that brought the time of day last
  double tellNext = 0;      ///< clock time of the next report to a screen reader
  bool waiting = false;     ///< something changed since the last frame
  QElapsedTimer frame;      ///< since the last redraw for new samples

  /// Milliseconds until the next redraw for new samples; 0 or less if it is due.
  int FrameLeft() const;
};

}  // namespace zth::widgets

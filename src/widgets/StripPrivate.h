#pragma once

#include <functional>

#include <QTimer>

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
  QTimer frame;             ///< runs until the next redraw for new samples may follow

  /// Milliseconds until the next redraw for new samples; 0 if it is due.
  int FrameLeft() const { return frame.isActive() ? frame.remainingTime() : 0; }
  /// Starts the time until the next one.
  void BeginFrame();
};

}  // namespace zth::widgets

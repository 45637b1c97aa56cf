#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include <QPointF>
#include <QRect>

#include "widgets/StripDayTime.h"
#include "widgets/StripSetup.h"
#include "widgets/StripView.h"
#include "widgets/TraceHistory.h"

namespace zth::widgets {

/// The part of a chart that changed. Changes of values wait for the next frame.
enum class StripChange { Values, View, Zones };

/// A part of the chart that the pointer can be over.
struct StripPart {
  enum class Kind { None, Plot, XLow, XHigh, YLow, YHigh, Border, LegendRow, Sign };
  Kind kind = Kind::None;
  int index = 0;  ///< the zone for Plot and Y handles, the upper zone for Border, the label for LegendRow
  bool operator==(const StripPart&) const = default;
};

/// Everything that a chart's picture depends on except its size and palette. Knows no widget.
struct StripScene {
  struct Trace {
    StripTrace style;
    TraceHistory history;         ///< time charts
    std::vector<QPointF> points;  ///< X-Y charts, in the order added
    bool visible = true;
  };
  /// Temporary items over the chart. Positions are logical pixels of the widget.
  struct Overlay {
    std::optional<QPointF> cursor;  ///< within the plot
    std::optional<double> mark;     ///< x of the second cursor
    QRect box;                      ///< the zoom box being drawn; empty if none
    StripPart hovered;
    QString notice;  ///< the message of a completed or failed export
    bool focus = false;
  };

  explicit StripScene(StripSetup given = {});

  bool IsXY() const { return setup.mode == StripMode::XY; }
  bool HasTrace(int trace) const { return trace >= 0 && trace < static_cast<int>(traces.size()); }
  Trace& TraceAt(int trace) { return traces[static_cast<std::size_t>(trace)]; }
  const Trace& TraceAt(int trace) const { return traces[static_cast<std::size_t>(trace)]; }
  /// True if neither the trace itself nor the trace whose legend entry it shares is hidden.
  bool Shown(int trace) const;
  bool HasData(int trace) const;
  /// The zone of a trace; always an existing one.
  std::size_t AxisOf(int trace) const;
  /// The trace's own name, or else its label's text up to an equals sign, or else "Trace 3".
  QString NameOf(int trace) const;
  /// True if the label's legend row shows its trace's line.
  bool HasSample(const StripLabel& label) const;
  /// The slot's label; null if there is none.
  StripLabel* Label(int slot);
  const StripLabel* Label(int slot) const;

  /// Adds a point to an X-Y trace; drops the oldest in case the owner never clears.
  void AddPoint(int trace, QPointF point);
  void ClearData();
  /// True if the time axis shows the time of day. Without samples there is none to show.
  bool ShowsDayTime() const { return dayTimeWanted && dayTime.Known(); }
  /// The range of the values that the shown traces of an axis have in the window, with a margin of a tenth; nothing
  /// without data.
  std::optional<std::pair<double, double>> FitOf(std::size_t axis) const;

  StripSetup setup;
  std::vector<Trace> traces;
  std::vector<StripLabel> labels;  ///< slot 0 first
  StripView view;
  StripDayTime dayTime;        ///< of a time chart's samples
  bool dayTimeWanted = false;  ///< instead of the seconds since the first sample
  Overlay overlay;
};

}  // namespace zth::widgets

#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include <QPointF>
#include <QRect>

#include "widgets/StripSetup.h"
#include "widgets/StripView.h"
#include "widgets/TraceHistory.h"

namespace zth::widgets {

/// What of a chart has changed. Values wait for the next frame.
enum class StripChange { Values, View, Zones };

/// A place of the chart that the pointer can be over.
struct StripPart {
  enum class Kind { None, Plot, XLow, XHigh, YLow, YHigh, Border, LegendRow, Sign };
  Kind kind = Kind::None;
  int index = 0;  ///< the zone of Plot and of Y handles, the upper zone of Border, the label of LegendRow
  bool operator==(const StripPart&) const = default;
};

/// Everything that a picture of the chart depends on but its size and its palette. Knows no widget.
struct StripScene {
  struct Trace {
    StripTrace style;
    TraceHistory history;         ///< time charts
    std::vector<QPointF> points;  ///< X-Y charts, in the order of adding
    bool visible = true;
  };
  /// What the user has over the chart at the moment. Positions are logical pixels of the widget.
  struct Overlay {
    std::optional<QPointF> cursor;  ///< within the plot
    std::optional<double> mark;     ///< x of the second cursor
    QRect box;                      ///< the box being drawn for a zoom; empty for none
    StripPart hovered;
    QString notice;  ///< what a failed or done export tells
    bool focus = false;
  };

  explicit StripScene(StripSetup given = {});

  bool IsXY() const { return setup.mode == StripMode::XY; }
  bool HasTrace(int trace) const { return trace >= 0 && trace < static_cast<int>(traces.size()); }
  Trace& TraceAt(int trace) { return traces[static_cast<std::size_t>(trace)]; }
  const Trace& TraceAt(int trace) const { return traces[static_cast<std::size_t>(trace)]; }
  /// Shown by itself and by the trace whose legend entry it shares.
  bool Shown(int trace) const;
  bool HasData(int trace) const;
  /// The zone of a trace, always one that exists.
  std::size_t AxisOf(int trace) const;
  /// The trace's own name, else its label's text up to an equals sign, else "Trace 3".
  QString NameOf(int trace) const;
  /// The slot's label; null when there is none.
  StripLabel* Label(int slot);
  const StripLabel* Label(int slot) const;

  /// Adds a point to an X-Y trace, dropping the oldest when an owner forgets to clear.
  void AddPoint(int trace, QPointF point);
  void ClearData();
  /// The least and the greatest value that the shown traces of an axis take in the window, a tenth of air about them;
  /// nothing without data.
  std::optional<std::pair<double, double>> FitOf(std::size_t axis) const;

  StripSetup setup;
  std::vector<Trace> traces;
  std::vector<StripLabel> labels;  ///< slot 0 first
  StripView view;
  Overlay overlay;
};

}  // namespace zth::widgets

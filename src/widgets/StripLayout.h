#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include <QRect>
#include <QSize>

#include "widgets/StripScene.h"
#include "widgets/StripText.h"
#include "widgets/StripTicks.h"

namespace zth::widgets {

/// The position of everything in a chart, in logical pixels, and the conversion between pixels and data.
class StripLayout {
 public:
  struct LegendRow {
    int label;  ///< index into StripScene::labels; -1 for a row that shows cursor values only
    int trace;  ///< -1 for none
    QRect rect;
  };
  struct Handle {
    StripPart part;
    QRect rect;
  };
  /// Column widths that only grow, so that the plot does not move while the numbers beside it change.
  struct Columns {
    int values = 0;
    int legend = 0;
    bool operator==(const Columns&) const = default;
  };

  StripLayout() = default;
  /// `ratio` is device pixels per logical pixel. `columns` is grown to what this layout needs.
  StripLayout(const StripScene& scene, QSize size, double ratio, StripText& text, Columns& columns);

  QRect plot;
  QRect title;
  QRect xLabels;             ///< the row of labels under the plot
  int xReach = 18;           ///< space between the plot's ends and the handles under it: clears half a label
  QRect sign;                ///< the sign "held"; has its place even if hidden
  std::vector<QRect> zones;  ///< one per axis
  std::vector<LegendRow> legend;
  std::vector<Handle> handles;
  std::vector<std::vector<Tick>> yTicks;  ///< one list per axis
  std::vector<Tick> xTicks;

  /// The part of the chart at a point; `held` tells whether the sign is shown.
  StripPart PartAt(QPoint point, bool held) const;

  /// The plot's columns of device pixels, and the x of each: column c covers (FirstColumn() + c) * ColumnWidth().
  /// Borders are at multiples of the width, so that a scrolling chart moves by whole columns.
  int ColumnCount() const { return columnCount_; }
  double ColumnWidth() const { return columnWidth_; }
  std::int64_t FirstColumn() const { return firstColumn_; }

  double PixelOfX(double x) const;
  double XOfPixel(double pixel) const;
  double PixelOfY(const StripView::Axis& axis, std::size_t zone, double value) const;
  double YOfPixel(const StripView::Axis& axis, std::size_t zone, double pixel) const;

 private:
  void PlaceZones(const StripScene& scene);
  void PlaceLegend(const StripScene& scene, StripText& text, std::span<const int> beside, int left, int width);
  void PlaceHandles(const StripScene& scene);

  int columnCount_ = 1;
  double columnWidth_ = 1;
  std::int64_t firstColumn_ = 0;
  double ratio_ = 1;
};

/// Space for the line sample between a legend row's left edge and its text.
inline constexpr int kLegendSample = 30;
/// Least space between a name and the cursor's value in a legend row.
inline constexpr int kReadingGap = 10;
inline constexpr int kStripHandle = 12;

}  // namespace zth::widgets

#pragma once

#include <vector>

#include <QRectF>
#include <QSize>
#include <QString>

#include "widgets/StripSheet.h"

namespace zth::widgets {

/// Draws everything around the traces: title, headings, paper, horizontal grid lines, scales, handles, legend, labels.
class StripFurniture {
 public:
  explicit StripFurniture(const StripSheet& sheet);

  /// Draws what changes only with the ranges and the legend's rows, on a widget of that size. With `paper` it also
  /// draws the zones' background and the horizontal grid.
  void Still(QSize size, bool handles, bool paper);
  /// Redraws the part of that which changes with the Y ranges: the numbers beside the zones.
  void Scales();
  void XLabels();
  /// Draws the legend's texts; their line samples are part of Still. While there is a cursor, a trace's row shows its
  /// name and the value under the cursor, aligned to the row's right end.
  void Legend();
  void FreeLabels();

 private:
  void Heading(QRect rect, const QString& text);
  void Paper();
  void Frames();
  void Numbers();
  void Handles();
  std::vector<QRectF> FreePlaces();
  void Samples();
  QRectF SampleRect(const QRect& row) const;
  void Reading(const StripLayout::LegendRow& row);
  void Sample(QRectF rect, const StripTrace& style, bool shown);

  QPainter& painter_;
  const StripScene& scene_;
  const StripLayout& layout_;
  const StripColours& colours_;
  StripText& text_;
  StripText& bold_;
  const StripReadout* readout_;
  QRect tag_;  ///< the cursor's tag among the texts below the plot
};

}  // namespace zth::widgets

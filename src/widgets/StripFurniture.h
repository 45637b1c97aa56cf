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

  /// What changes with the ranges and the legend's rows alone, on a widget of that size; `paper` with what lies on the
  /// zones: their ground and the grid across.
  void Still(QSize size, bool handles, bool paper);
  /// Of that what changes with the Y ranges, anew: the numbers beside the zones, and the handles there.
  void Scales();
  void XLabels();
  /// The legend's texts; their line samples stand still. While there is a cursor a trace's row tells its name and the
  /// value under the cursor, at the row's right end, whatever the digits.
  void Legend();
  void FreeLabels();

  /// True if a legend row shows its trace's line.
  static bool HasSample(const StripScene& scene, const StripLabel& label);

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
  QRect tag_;  ///< what the cursor takes of the texts under the plot
};

}  // namespace zth::widgets

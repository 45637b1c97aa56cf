#pragma once

#include <cstdint>
#include <utility>
#include <vector>

#include <QColor>
#include <QFont>
#include <QImage>
#include <QPalette>

#include "widgets/StripLayout.h"
#include "widgets/StripRaster.h"
#include "widgets/StripReadout.h"
#include "widgets/StripScene.h"
#include "widgets/StripText.h"

class QPainter;

namespace zth::widgets {

/// The colours of a chart about its traces. The plot is light paper in a dark palette too: on any other ground some of
/// the prescribed trace colours, black and navy on one side, lime on the other, would be lost.
struct StripColours {
  explicit StripColours(const QPalette& palette);
  QColor window, text, faint, paper, grid, ink, frame, accent;
};

/// Draws a scene. What stands still (texts of the axes, grid, frame) is kept as an image and drawn anew when something
/// about it has changed; the traces go straight into the pixels of a copy.
class StripPainter {
 public:
  explicit StripPainter(const QFont& font);

  /// Lays out and draws the whole widget.
  void Paint(QPainter& painter, const StripScene& scene, QSize size, double ratio, const QPalette& palette);
  /// The same, as lines and texts that scale: for drawings and paper. No cursor, no handles.
  void PaintVector(QPainter& painter, const StripScene& scene, QSize size, const QPalette& palette);
  /// Makes the layout that Paint would use, for hit tests.
  void LayOut(const StripScene& scene, QSize size, double ratio);

  /// The layout last made.
  const StripLayout& Layout() const { return layout_; }

  void SetFont(const QFont& font);
  /// The data are others than those last drawn: nothing of the picture is kept.
  void Forget() { drawn_.valid = false; }
  /// Forgets how wide the texts beside the plot have been.
  void ResetColumns() { columns_ = {}; }

 private:
  /// All that the still image shows.
  struct StillKey {
    QSize size;
    double ratio = 0;
    qint64 palette = 0;
    StripPart hovered;
    bool focus = false;
    StripLayout::Columns columns;
    QStringList texts;
    std::vector<double> ranges;
    std::vector<int> legend;
    bool operator==(const StillKey&) const = default;
  };
  /// What the canvas shows of the traces, so that a scrolling chart need only draw what has come in.
  struct Drawn {
    bool valid = false;
    std::int64_t first = 0;
    double width = 0;
    std::pair<double, double> grid;  ///< step and phase of the x grid
    struct Trace {
      std::uint64_t revision;
      bool shown;
      double newest;  ///< NaN without data
    };
    std::vector<Trace> traces;
  };
  StillKey KeyOf(const StripScene& scene, QSize size, double ratio, const QPalette& palette) const;

  void PaintStill(QPainter& painter, const StripScene& scene, const StripColours& colours, bool handles);
  void PaintHeading(QPainter& painter, QRect rect, const QString& text, const StripColours& colours);
  void PaintHandles(QPainter& painter, const StripScene& scene, const StripColours& colours);
  void PaintColumns(const StripScene& scene, const StripColours& colours);
  Drawn ToDraw(const StripScene& scene) const;
  int FirstStale(const Drawn& next, int reach) const;
  void PaintGround(const StripScene& scene, std::size_t zone, const RasterArea& area, int from,
                   const StripColours& colours);
  void PaintTrace(const StripScene& scene, int trace, const RasterArea& area, int from, int reach);
  void PaintPaths(QPainter& painter, const StripScene& scene, const StripColours& colours);
  void PaintVectorTraces(QPainter& painter, const StripScene& scene);
  void PaintXLabels(QPainter& painter, const StripScene& scene, const StripColours& colours);
  /// Whether a legend row shows its trace's line.
  static bool HasSample(const StripScene& scene, const StripLabel& label);
  void PaintSamples(QPainter& painter, const StripScene& scene, const StripColours& colours);
  void PaintLegend(QPainter& painter, const StripScene& scene, const StripColours& colours);
  void PaintFreeLabels(QPainter& painter, const StripScene& scene, const StripColours& colours);
  void PaintSample(QPainter& painter, QRectF rect, const StripTrace& style, bool shown, const StripColours& colours);
  void PaintOverlay(QPainter& painter, const StripScene& scene, const StripColours& colours);
  void PaintReadout(QPainter& painter, const StripScene& scene, const StripColours& colours);
  RasterArea ZoneArea(std::size_t zone);

  StripText text_;
  StripText bold_;
  StripLayout layout_;
  StripLayout::Columns columns_;
  StillKey key_;
  Drawn drawn_;
  QImage still_;
  QImage canvas_;
  QSize size_;
  double ratio_ = 1;
  std::vector<TraceHistory::Column> scratch_;
};

}  // namespace zth::widgets

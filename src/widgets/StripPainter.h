#pragma once

#include <cstdint>
#include <utility>
#include <vector>

#include <QFont>
#include <QImage>
#include <QPalette>

#include "widgets/StripLayout.h"
#include "widgets/StripRaster.h"
#include "widgets/StripScene.h"
#include "widgets/StripSheet.h"
#include "widgets/StripText.h"
#include "widgets/TraceColumns.h"

class QPainter;

namespace zth::widgets {

/// Draws a scene. The static parts (axis texts, legend lines, frame) are kept as an image, which is redrawn when one of
/// them changes. A time chart's traces and grid go straight into the image's pixels, an X-Y chart's paths onto a copy.
class StripPainter {
 public:
  explicit StripPainter(const QFont& font);

  /// Lays out and draws the whole widget.
  void Paint(QPainter& painter, const StripScene& scene, QSize size, double ratio, const QPalette& palette);
  /// The same as scalable lines and texts, for drawings and printing. Without handles, and without a cursor unless
  /// `overlay`.
  void PaintVector(QPainter& painter, const StripScene& scene, QSize size, const QPalette& palette, bool overlay);
  /// Makes the layout that Paint would use, for hit tests.
  void LayOut(const StripScene& scene, QSize size, double ratio);

  /// Where the title ends, in the latest layout.
  int TitleEnd(const StripScene& scene);
  /// The layout made last.
  const StripLayout& Layout() const { return layout_; }

  void SetFont(const QFont& font);
  /// The data have been replaced: discards the cached picture.
  void Forget();
  /// Forgets how wide the texts beside the plot were, and drops the image with them.
  void ResetColumns() {
    columns_ = {};
    key_ = {};
  }

 private:
  /// Everything that the cached image depends on.
  struct StillKey {
    QSize size;
    double ratio = 0;
    qint64 palette = 0;
    StripPart hovered;
    bool focus = false;
    StripLayout::Columns columns;
    QStringList texts;
    std::vector<double> zones;
    std::vector<int> legend;
    bool operator==(const StillKey&) const = default;
  };
  using Ranges = std::vector<std::pair<double, double>>;
  /// The traces drawn on the canvas, so that a scrolling chart needs to draw only new data.
  struct Drawn {
    bool valid = false;
    std::int64_t first = 0;
    double width = 0;
    std::pair<double, double> grid;  ///< step and phase of the x grid
    std::size_t stretches = 0;       ///< of the time of day, each with a grid of its own
    struct Trace {
      std::uint64_t revision;
      bool shown;
      double newest;  ///< NaN without data
    };
    std::vector<Trace> traces;
  };
  StillKey KeyOf(const StripScene& scene, QSize size, double ratio, const QPalette& palette) const;

  static Ranges RangesOf(const StripScene& scene);

  /// Brings the image of the static parts up to date.
  void PaintStill(const StripScene& scene, QSize size, double ratio, const QPalette& palette,
                  const StripColours& colours);
  void MarkEdges(const StripSheet& sheet) const;
  void PaintLive(const StripSheet& sheet, bool overlay);
  StripSheet SheetOf(QPainter& painter, const StripScene& scene, const StripColours& colours);
  void PaintColumns(const StripScene& scene, const StripColours& colours);
  Drawn ToDraw(const StripScene& scene) const;
  int FirstStale(const Drawn& next, int reach) const;
  void PaintGround(const StripScene& scene, std::size_t zone, const RasterArea& area, int from,
                   const StripColours& colours);
  void PaintTrace(const StripScene& scene, int trace, const RasterArea& area, int from, int reach,
                  const StripColours& colours);
  RasterLine LineOf(const StripTrace& style, int from, int reach) const;
  RasterArea ZoneArea(std::size_t zone);

  StripText text_;
  StripText bold_;
  StripLayout layout_;
  StripLayout::Columns columns_;
  StillKey key_;
  Ranges ranges_;
  Drawn drawn_;
  QImage canvas_;
  QImage paths_;
  QSize size_;
  double ratio_ = 1;
  std::vector<TraceColumns> kept_;  ///< one for each trace
  std::vector<QRgb> row_;           ///< the background: paper and the lines of the x grid
};

}  // namespace zth::widgets

#pragma once

#include <vector>

#include <QColor>
#include <QString>
#include <Qt>

/// The description of a chart that a window passes to Strip::SetUp.
namespace zth::widgets {

enum class StripMode {
  Time,  ///< traces run along the clock; use PlotValue
  XY,    ///< traces join points in the order added; use PlotXY
};

struct StripTrace {
  QColor colour = Qt::black;
  int width = 1;                       ///< logical pixels
  Qt::PenStyle style = Qt::SolidLine;  ///< SolidLine, DashLine or DotLine
  int axis = 0;                        ///< index into StripSetup::axes
  bool dots = false;                   ///< X-Y: draws every point as a round dot of diameter `width` instead of a line
  bool hollow = false;                 ///< the dots are rings
  int shownWith = -1;                  ///< the trace whose legend entry also hides and shows this one; -1 for its own
  QString name = {};                   ///< for read-outs and exports; if empty, the text of its label
};

struct StripAxis {
  double min = 0;      ///< value at the zone's bottom
  double max = 1;      ///< value at its top; must be above min
  double areaTop = 0;  ///< the zone as fractions of the chart's height, from the top
  double areaBottom = 1;
  int divisions = 0;  ///< grid divisions over the start range; 0 for round values
  QString unit = {};  ///< follows values in read-outs; includes a leading blank if wanted
};

enum class StripPlace {
  Legend,   ///< a row beside the chart, next to the zone of its trace, in the order of the set-up
  Free,     ///< over the plot, at `left` and `top`
  Heading,  ///< above the zone of `axis`
};

/// A numbered text slot. Slot 0 is the chart's title.
struct StripLabel {
  int slot = 0;
  QString text = {};
  StripPlace place = StripPlace::Legend;
  int trace = -1;    ///< the trace whose colour it uses; -1 for none
  bool line = true;  ///< if shown: draws its trace's line before the text
  int axis = 0;      ///< for a heading, or a legend row without a trace
  double left = 0;   ///< for a free label: its left edge (right edge if `alignRight`), as a fraction of the width
  double top = 0;    ///< for a free label: its top edge, as a fraction of the chart's height
  bool alignRight = false;
};

struct StripSetup {
  StripMode mode = StripMode::Time;
  int index = 0;  ///< the chart's index in its control array, passed by Strip2_LayoutChanged
  QString title = {};
  double xMin = -90;  ///< seconds since the first sample in a time chart
  double xMax = 10;
  int xDivisions = 0;  ///< as StripAxis::divisions
  QString xUnit = {};  ///< X-Y charts; a time chart has its own format
  std::vector<StripAxis> axes = {StripAxis{}};
  std::vector<StripTrace> traces = {};
  std::vector<StripLabel> labels = {};
  QString widestLegend = {};  ///< the widest text expected in a row, so that live values do not move the plot
};

}  // namespace zth::widgets

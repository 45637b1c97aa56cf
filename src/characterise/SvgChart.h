#pragma once

#include <string>
#include <utility>
#include <vector>

/// Charts of the report, as SVG without colours of their own: classes "s0" to "s7" of the page's style draw them in
/// light and dark.
namespace zth::characterise {

struct SvgSeries {
  enum class Look { Line, Dashed, Points };

  std::string name;
  int colour = 0;  ///< 0 to 7
  Look look = Look::Line;
  std::vector<std::pair<double, double>> points;  ///< x, y; a y that is no number ends a piece of the line
  std::vector<double> errors = {};                ///< of y, for each point; may be empty
};

struct SvgPlot {
  std::string title;  ///< read out by screen readers
  std::string xUnit;
  std::string yUnit;
  std::vector<SvgSeries> series;
  bool fromZero = true;  ///< whether the y axis begins at 0 although no value is near
};

/// An <svg> element, as wide as its holder. Long lines are thinned to what can be seen, their extremes kept.
std::string SvgOf(const SvgPlot& plot);

}  // namespace zth::characterise

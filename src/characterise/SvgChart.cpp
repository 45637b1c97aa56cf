#include "characterise/SvgChart.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "characterise/Markup.h"

namespace zth::characterise {
namespace {

// Of the drawing, in its own units; the page scales it.
constexpr double kWidth = 720;
constexpr double kHeight = 300;
constexpr double kLeft = 60;
constexpr double kRight = 16;
constexpr double kTop = 30;
constexpr double kBottom = 44;
constexpr int kTicks = 6;
constexpr std::size_t kColumns = 700;  // no more are seen

using Points = std::vector<std::pair<double, double>>;

struct Axis {
  double low = 0;
  double high = 1;
  double step = 1;
  int digits = 0;
};

/// Round numbers around the values.
Axis AxisOf(double low, double high, bool fromZero) {
  if (!(low <= high)) return {0, 1, 1, 0};
  if (fromZero) low = std::min(low, 0.0);
  if (high - low < 1e-9) high = low + 1;
  const double rough = (high - low) / kTicks;
  const double power = std::pow(10.0, std::floor(std::log10(rough)));
  const double part = rough / power;
  const double step = (part <= 1 ? 1 : part <= 2 ? 2 : part <= 5 ? 5 : 10) * power;
  return {std::floor(low / step + 1e-9) * step, std::ceil(high / step - 1e-9) * step, step,
          std::max(0, -static_cast<int>(std::floor(std::log10(step) + 1e-9)))};
}

class Drawing {
 public:
  explicit Drawing(const SvgPlot& plot) : plot_(plot) {
    double xLow = std::numeric_limits<double>::infinity();
    double xHigh = -xLow;
    double yLow = xLow;
    double yHigh = -xLow;
    for (const SvgSeries& series : plot.series) {
      for (const auto& [x, y] : series.points) {
        if (!std::isfinite(x) || !std::isfinite(y)) continue;
        xLow = std::min(xLow, x);
        xHigh = std::max(xHigh, x);
        yLow = std::min(yLow, y);
        yHigh = std::max(yHigh, y);
      }
    }
    x_ = AxisOf(xLow, xHigh, false);
    y_ = AxisOf(yLow, yHigh, plot.fromZero);
  }

  std::string Text() const {
    std::string svg = "<svg class=\"chart\" viewBox=\"0 0 720 300\" role=\"img\" aria-label=\"" + Escaped(plot_.title) +
                      "\" xmlns=\"http://www.w3.org/2000/svg\">\n<title>" + Escaped(plot_.title) + "</title>\n";
    svg += Grid() + Legend();
    for (const SvgSeries& series : plot_.series) svg += Line(series);
    return svg + "</svg>\n";
  }

 private:
  double X(double x) const { return kLeft + (x - x_.low) / (x_.high - x_.low) * (kWidth - kLeft - kRight); }
  double Y(double y) const {
    return kHeight - kBottom - (y - y_.low) / (y_.high - y_.low) * (kHeight - kTop - kBottom);
  }

  static std::string Label(double x, double y, const char* anchor, const std::string& text) {
    return "<text x=\"" + Fixed(x, 1) + "\" y=\"" + Fixed(y, 1) + "\" text-anchor=\"" + anchor + "\">" + Escaped(text) +
           "</text>\n";
  }
  static std::string Stroke(const std::string& style, double x1, double y1, double x2, double y2) {
    return "<line class=\"" + style + "\" x1=\"" + Fixed(x1, 1) + "\" y1=\"" + Fixed(y1, 1) + "\" x2=\"" +
           Fixed(x2, 1) + "\" y2=\"" + Fixed(y2, 1) + "\"/>\n";
  }

  std::string Grid() const {
    std::string svg;
    const double foot = kHeight - kBottom;
    for (int i = 0; x_.low + i * x_.step <= x_.high + x_.step / 2; ++i) {
      const double x = x_.low + i * x_.step;
      svg += Stroke("grid", X(x), kTop, X(x), foot) + Label(X(x), foot + 16, "middle", Fixed(x, x_.digits));
    }
    for (int i = 0; y_.low + i * y_.step <= y_.high + y_.step / 2; ++i) {
      const double y = y_.low + i * y_.step;
      svg +=
          Stroke("grid", kLeft, Y(y), kWidth - kRight, Y(y)) + Label(kLeft - 6, Y(y) + 4, "end", Fixed(y, y_.digits));
    }
    svg += Label((kLeft + kWidth - kRight) / 2, kHeight - 8, "middle", plot_.xUnit);
    return svg + Label(kLeft - 6, 14, "end", plot_.yUnit);
  }

  std::string Legend() const {
    std::string svg;
    double x = kLeft + 8;
    for (const SvgSeries& series : plot_.series) {
      if (series.name.empty()) continue;
      svg +=
          series.look == SvgSeries::Look::Points ? Dot(series, x + 11, 10) : Stroke(StyleOf(series), x, 10, x + 22, 10);
      svg += Label(x + 28, 14, "start", series.name);
      x += 44 + 6.4 * static_cast<double>(series.name.size());
    }
    return svg;
  }

  static std::string StyleOf(const SvgSeries& series) {
    return "line s" + std::to_string(series.colour % 8) + (series.look == SvgSeries::Look::Dashed ? " dashed" : "");
  }
  static std::string Dot(const SvgSeries& series, double x, double y) {
    return "<circle class=\"dot s" + std::to_string(series.colour % 8) + "\" cx=\"" + Fixed(x, 1) + "\" cy=\"" +
           Fixed(y, 1) + "\" r=\"3\"/>\n";
  }

  /// The first, lowest, highest and last point of each column.
  static Points Thinned(const Points& points, const Axis& axis) {
    if (points.size() <= 4 * kColumns) return points;
    Points kept;
    const auto columnOf = [&](const auto& point) {
      return std::floor((point.first - axis.low) / (axis.high - axis.low) * static_cast<double>(kColumns));
    };
    for (auto from = points.begin(); from != points.end();) {
      const auto to =
          std::find_if(from, points.end(), [&](const auto& one) { return columnOf(one) != columnOf(*from); });
      const auto less = [](const auto& a, const auto& b) { return a.second < b.second; };
      const auto [low, high] = std::minmax_element(from, to, less);
      std::vector<Points::const_iterator> shown{from, std::min(low, high), std::max(low, high), to - 1};
      shown.erase(std::unique(shown.begin(), shown.end()), shown.end());
      for (const auto at : shown) kept.push_back(*at);
      from = to;
    }
    return kept;
  }

  std::string Line(const SvgSeries& series) const {
    std::string svg = ErrorBars(series);
    if (series.look == SvgSeries::Look::Points) {
      for (const auto& [x, y] : series.points) {
        if (std::isfinite(y)) svg += Dot(series, X(x), Y(y));
      }
      return svg;
    }
    std::string piece;
    const auto end = [&] {
      if (!piece.empty()) svg += "<polyline class=\"" + StyleOf(series) + "\" points=\"" + piece + "\"/>\n";
      piece.clear();
    };
    for (const auto& [x, y] : Thinned(series.points, x_)) {
      if (std::isfinite(y)) {
        piece += (piece.empty() ? "" : " ") + Fixed(X(x), 1) + "," + Fixed(Y(y), 1);
      } else {
        end();
      }
    }
    end();
    return svg;
  }

  std::string ErrorBars(const SvgSeries& series) const {
    std::string svg;
    for (std::size_t i = 0; i < std::min(series.points.size(), series.errors.size()); ++i) {
      const auto& [x, y] = series.points[i];
      const double error = series.errors[i];
      if (!std::isfinite(y) || !(error > 0)) continue;
      svg += Stroke("line s" + std::to_string(series.colour % 8), X(x), Y(std::max(y - error, y_.low)), X(x),
                    Y(std::min(y + error, y_.high)));
    }
    return svg;
  }

  const SvgPlot& plot_;
  Axis x_;
  Axis y_;
};

}  // namespace

std::string SvgOf(const SvgPlot& plot) {
  return Drawing(plot).Text();
}

}  // namespace zth::characterise

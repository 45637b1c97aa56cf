#include "widgets/StripReadout.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include <QStringList>

#include "base/NumberText.h"
#include "widgets/StripLayout.h"
#include "widgets/StripTicks.h"

namespace zth::widgets {
namespace {

struct Span {
  double lo = 0;
  double hi = 0;
};

std::optional<Span> TimeSpanAt(const StripScene& scene, int trace, double x) {
  const auto reading = scene.TraceAt(trace).history.At(x);
  if (!reading || std::isnan(reading->lo)) return std::nullopt;
  return Span{reading->lo, reading->hi};
}

/// The range of values of an X-Y trace at x; at a step it covers the whole step.
std::optional<Span> PathSpanAt(const StripScene& scene, int trace, double x, double tolerance) {
  const std::vector<QPointF>& points = scene.TraceAt(trace).points;
  std::optional<Span> span;
  const auto take = [&](double y) { span = span ? Span{std::min(span->lo, y), std::max(span->hi, y)} : Span{y, y}; };
  for (std::size_t i = 0; i < points.size(); ++i) {
    if (std::abs(points[i].x() - x) <= tolerance) take(points[i].y());
    if (i == 0 || scene.TraceAt(trace).style.dots) continue;
    const QPointF& a = points[i - 1];
    const QPointF& b = points[i];
    if (a.x() == b.x() || x < std::min(a.x(), b.x()) || x > std::max(a.x(), b.x())) continue;
    take(a.y() + (b.y() - a.y()) * (x - a.x()) / (b.x() - a.x()));
  }
  return span;
}

std::optional<Span> SpanAt(const StripScene& scene, int trace, double x, double perPixel) {
  return scene.IsXY() ? PathSpanAt(scene, trace, x, 2 * perPixel) : TimeSpanAt(scene, trace, x);
}

QString Signed(const QString& text, double value) {
  return value >= 0 ? QLatin1Char('+') + text : text;
}

QString ExactText(double value) {
  return QString::fromStdString(base::GeneralText(static_cast<float>(value)));
}

// Height in pixels to which the start range is scaled for the number of decimals: the finest that the legend has room
// for.
constexpr int kUsualZone = 400;

int DecimalsOf(double perPixel) {
  return perPixel >= 1 ? 0 : std::min(DecimalsFor(perPixel) + 1, 6);
}

const StripAxis& StartOf(const StripScene& scene, std::size_t axis) {
  static const StripAxis none;
  return axis < scene.setup.axes.size() ? scene.setup.axes[axis] : none;
}

/// A value of an axis with its unit, with decimals that match the value of a pixel in its zone.
QString ValueText(const StripScene& scene, std::size_t axis, double value, double perPixel) {
  const StripAxis& start = StartOf(scene, axis);
  const int finest = DecimalsOf((start.max - start.min) / kUsualZone);
  return PlainText(value, std::min(DecimalsOf(perPixel), finest)) + start.unit;
}

}  // namespace

const StripReadout::Line* StripReadout::Of(int trace) const {
  const auto found =
      std::find_if(lines.begin(), lines.end(), [trace](const Line& line) { return line.trace == trace; });
  return found != lines.end() ? &*found : nullptr;
}

QString WidestReading(const StripScene& scene, std::size_t axis) {
  const StripAxis& start = StartOf(scene, axis);
  const QString low = ValueText(scene, axis, start.min, 0);
  const QString high = ValueText(scene, axis, start.max, 0);
  return low.size() > high.size() ? low : high;
}

StripReadout ReadUnderCursor(const StripScene& scene, const StripLayout& layout) {
  StripReadout readout;
  const double perPixelX = layout.ColumnWidth();
  const double x = layout.XOfPixel(scene.overlay.cursor->x());
  const auto xText = [&](double value) {
    return scene.IsXY() ? PlainText(value, DecimalsFor(perPixelX)) + scene.setup.xUnit : TimeText(value, perPixelX);
  };
  readout.heading = scene.ShowsDayTime() ? DayText(scene.dayTime.LocalAt(x), perPixelX) : xText(x);
  const std::optional<double> mark = scene.overlay.mark;
  if (mark) readout.headingDifference = QStringLiteral("Δ ") + Signed(xText(x - *mark), x - *mark);
  for (int t = 0; t < static_cast<int>(scene.traces.size()); ++t) {
    const StripTrace& style = scene.TraceAt(t).style;
    if (!scene.Shown(t) || (style.shownWith >= 0 && style.name.isEmpty())) continue;
    const auto here = SpanAt(scene, t, x, perPixelX);
    if (!here) continue;
    const std::size_t zone = scene.AxisOf(t);
    const StripView::Axis& axis = scene.view.At(zone);
    const double perPixel = (axis.max - axis.min) / std::max(1, layout.zones[zone].height());
    const auto text = [&](double value) { return ValueText(scene, zone, value, perPixel); };
    StripReadout::Line line{t, scene.NameOf(t), text(here->lo), {}};
    if (here->hi != here->lo) line.value = text(here->lo) + QStringLiteral(" … ") + text(here->hi);
    if (mark) {
      const auto there = SpanAt(scene, t, *mark, perPixelX);
      // The difference of two summaries is a range, not a number.
      if (there && there->lo == there->hi && here->lo == here->hi) {
        line.difference = QStringLiteral("Δ ") + Signed(text(here->lo - there->lo), here->lo - there->lo);
      }
    }
    readout.lines.push_back(line);
  }
  return readout;
}

QString StripSummary(const StripScene& scene) {
  QStringList values;
  for (int t = 0; t < static_cast<int>(scene.traces.size()); ++t) {
    if (!scene.Shown(t) || !scene.HasData(t)) continue;
    const StripScene::Trace& trace = scene.TraceAt(t);
    if (scene.IsXY()) {
      const QPointF& point = trace.points.back();
      values << QStringLiteral("%1 %2 at %3").arg(scene.NameOf(t), ExactText(point.y()), ExactText(point.x()));
    } else {
      const double value = trace.history.Newest().y;
      values << scene.NameOf(t) + QLatin1Char(' ') +
                    (std::isnan(value) ? QStringLiteral("no value") : ExactText(value));
    }
  }
  const StripLabel* title = scene.Label(0);
  const QString head = title != nullptr ? title->text : QString();
  const QString body = values.isEmpty() ? QStringLiteral("no data yet") : values.join(QStringLiteral(", "));
  return head.isEmpty() ? body : head + QStringLiteral(": ") + body;
}

}  // namespace zth::widgets

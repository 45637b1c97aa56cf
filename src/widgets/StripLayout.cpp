#include "widgets/StripLayout.h"

#include <algorithm>
#include <cmath>

#include "widgets/StripReadout.h"

namespace zth::widgets {
namespace {

constexpr int kMargin = 6;
constexpr int kRightMargin = 32;  // half the last x label and a handle
constexpr int kLegendGap = 14;
constexpr int kGrip = 5;  // pixels around a handle where a press still hits it
constexpr double kMostLegend = 0.42;

bool InLegend(const StripLabel& label) {
  return label.slot != 0 && label.place == StripPlace::Legend;
}

/// The traces with a name but without a row in the legend: they get a row for the cursor's values.
std::vector<int> TracesBeside(const StripScene& scene) {
  std::vector<int> traces;
  for (int t = 0; t < static_cast<int>(scene.traces.size()); ++t) {
    const StripTrace& style = scene.TraceAt(t).style;
    const bool named = style.shownWith < 0 || !style.name.isEmpty();
    const bool row = std::any_of(scene.labels.begin(), scene.labels.end(),
                                 [t](const StripLabel& label) { return InLegend(label) && label.trace == t; });
    if (named && !row) traces.push_back(t);
  }
  return traces;
}

/// The width that the legend needs whatever it shows: every name that the set-up gives has room beside its value, so
/// that the plot does not depend on which of the names have been painted.
int LegendWidthFor(const StripScene& scene, StripText& text, std::span<const int> beside, int widgetWidth) {
  int widest = 0;
  int reading = 0;
  bool any = false;
  std::vector<int> values;
  for (std::size_t i = 0; i < scene.view.AxisCount(); ++i) values.push_back(text.Width(WidestReading(scene, i)));
  const auto read = [&](const QString& name, int trace) {
    reading = std::max(reading, text.Width(name) + kReadingGap + values[scene.AxisOf(trace)]);
  };
  for (const StripLabel& label : scene.setup.labels) {
    if (InLegend(label) && scene.HasTrace(label.trace)) read(label.text, label.trace);
  }
  for (const StripLabel& label : scene.labels) {
    if (!InLegend(label)) continue;
    any = true;
    widest = std::max(widest, text.Width(label.text));
    if (scene.HasSample(label)) read(scene.NameOf(label.trace), label.trace);
  }
  if (!any) return 0;
  for (const int trace : beside) read(scene.NameOf(trace), trace);
  // If a window gives the expected widest text, the plot keeps its size. A text that is a little longer gets its room,
  // a much longer one wraps.
  if (!scene.setup.widestLegend.isEmpty()) {
    const int expected = text.Width(scene.setup.widestLegend);
    widest = widest > expected * 5 / 4 ? expected : std::max(widest, expected);
  }
  widest = std::max(widest, reading);
  return std::min(widest + kLegendSample + kMargin, static_cast<int>(widgetWidth * kMostLegend));
}

int ZoneOf(const StripScene& scene, const StripLabel& label) {
  const int axis = scene.HasTrace(label.trace) ? static_cast<int>(scene.AxisOf(label.trace)) : label.axis;
  return std::clamp(axis, 0, static_cast<int>(scene.view.AxisCount()) - 1);
}

}  // namespace

StripLayout::StripLayout(const StripScene& scene, QSize size, double ratio, StripText& text, Columns& columns)
    : ratio_(ratio) {
  const int line = text.Height();
  const int top = kMargin + line + kMargin;
  // The lowest text beside the plot extends half a line below it; the texts under the plot must not touch it.
  const int under = std::max(kMargin, line * 2 / 3 - 4);
  const int bottom = size.height() - line - under - kMargin;
  plot = QRect(0, top, size.width(), std::max(bottom - top, 2 * line));
  PlaceZones(scene);
  for (std::size_t i = 0; i < zones.size(); ++i) {
    const StripView::Axis& axis = scene.view.At(i);
    const StripAxis& given = scene.setup.axes[std::min(i, scene.setup.axes.size() - 1)];
    const bool asGiven = given.divisions > 0 && axis.min == given.min && axis.max == given.max;
    yTicks.push_back(asGiven ? EvenTicks(axis.min, axis.max, given.divisions)
                             : RoundTicks(axis.min, axis.max, std::max(2, zones[i].height() / (line * 2))));
    for (const Tick& tick : yTicks.back()) {
      columns.values = std::max(columns.values, text.Width(tick.text));
    }
  }
  const std::vector<int> named = TracesBeside(scene);
  columns.legend = std::max(columns.legend, LegendWidthFor(scene, text, named, size.width()));
  const int left = kMargin + kStripHandle + columns.values + 2 * kMargin;
  xReach = std::max(xReach, text.Width(QStringLiteral("-000")) / 2 + 4);
  const int beside = std::min(columns.legend, static_cast<int>(size.width() * kMostLegend));
  const int right = size.width() - (beside > 0 ? beside + kLegendGap : std::max(kRightMargin, xReach + kStripHandle));
  plot.setLeft(left);
  plot.setWidth(std::max(right - left, 40));
  PlaceZones(scene);
  title = QRect(plot.left(), kMargin - 1, size.width() - plot.left() - kMargin, line + 2);
  xLabels = QRect(0, plot.bottom() + under, size.width(), line);
  columnCount_ = std::max(1, static_cast<int>(std::lround(plot.width() * ratio)));
  columnWidth_ = scene.view.XSpan() / columnCount_;
  firstColumn_ = std::llround(scene.view.XBegin() / columnWidth_);
  const int most = std::max(2, plot.width() / (text.Width(QStringLiteral("-00:00:00")) + 10));
  const StripSetup& given = scene.setup;
  if (given.xDivisions > 0 && scene.view.XEnd() == given.xMax && scene.view.XBegin() == given.xMin) {
    xTicks = EvenTicks(given.xMin, given.xMax, given.xDivisions);
  } else if (scene.IsXY()) {
    xTicks = RoundTicks(scene.view.XBegin(), scene.view.XEnd(), std::max(2, plot.width() / 64));
  } else if (scene.ShowsDayTime()) {
    xTicks = DayTicks(scene.view.XBegin(), scene.view.XEnd(), most, scene.dayTime);
  } else {
    xTicks = TimeTicks(scene.view.XBegin(), scene.view.XEnd(), std::max(most, std::min(11, plot.width() / 48)));
  }
  if (beside > 0) PlaceLegend(scene, text, named, plot.right() + 1 + kLegendGap, beside - kMargin);
  PlaceHandles(scene);
  const int signWidth = text.Width(QStringLiteral("Held: click for live")) + 34;
  sign = QRect(plot.right() - signWidth - 7, plot.top() + 8, signWidth, line + 8);
}

void StripLayout::PlaceZones(const StripScene& scene) {
  zones.clear();
  for (std::size_t i = 0; i < scene.view.AxisCount(); ++i) {
    const StripView::Axis& axis = scene.view.At(i);
    const int top = plot.top() + static_cast<int>(std::lround(axis.areaTop * plot.height()));
    const int bottom = plot.top() + static_cast<int>(std::lround(axis.areaBottom * plot.height()));
    zones.emplace_back(plot.left(), top, plot.width(), std::max(bottom - top, 2));
  }
}

// Rows are placed next to the zone of their trace, in the order of the set-up. In low zones they move as close together
// as the texts allow, and they move up if they would leave the chart.
void StripLayout::PlaceLegend(const StripScene& scene, StripText& text, std::span<const int> beside, int left,
                              int width) {
  struct Entry {
    int label, trace, zone, height;
  };
  std::vector<Entry> entries;
  int total = 0;
  for (int zone = 0; zone < static_cast<int>(zones.size()); ++zone) {
    for (const int trace : beside) {
      if (static_cast<int>(scene.AxisOf(trace)) != zone) continue;
      entries.push_back({-1, trace, zone, text.Height()});
      total += text.Height();
    }
    for (std::size_t i = 0; i < scene.labels.size(); ++i) {
      const StripLabel& label = scene.labels[i];
      if (!InLegend(label) || ZoneOf(scene, label) != zone) continue;
      const QRect room(0, 0, width - kLegendSample, 1000);
      const int height = text.Width(label.text) <= room.width()
                             ? text.Height()
                             : text.Metrics().boundingRect(room, Qt::TextWordWrap, label.text).height();
      entries.push_back({static_cast<int>(i), label.trace, zone, height});
      total += entries.back().height;
    }
  }
  if (entries.empty()) return;
  const int spare = plot.height() - total;
  const int air = std::clamp(spare / static_cast<int>(entries.size()), 0, text.Height() / 2);
  // From the end: the lowest position of each row that leaves room for the rest.
  std::vector<int> latest(entries.size());
  int bottom = plot.bottom() + 1;
  for (std::size_t i = entries.size(); i-- > 0;) latest[i] = bottom -= entries[i].height + air;
  int y = plot.top();
  for (std::size_t i = 0; i < entries.size(); ++i) {
    if (i == 0 || entries[i].zone != entries[i - 1].zone) {
      y = std::max(y, zones[static_cast<std::size_t>(entries[i].zone)].top());
    }
    y = std::max(std::min(y, latest[i]), i == 0 ? plot.top() : legend.back().rect.bottom() + 1);
    legend.push_back({entries[i].label, entries[i].trace, QRect(left, y, width, entries[i].height + air)});
    y += entries[i].height + air;
  }
}

void StripLayout::PlaceHandles(const StripScene& scene) {
  using Kind = StripPart::Kind;
  const int middle = xLabels.center().y() - kStripHandle / 2;
  handles.push_back({{Kind::XLow, 0}, QRect(plot.left() - xReach - kStripHandle, middle, kStripHandle, kStripHandle)});
  handles.push_back({{Kind::XHigh, 0}, QRect(plot.right() + xReach, middle, kStripHandle, kStripHandle)});
  for (int i = 0; i < static_cast<int>(zones.size()); ++i) {
    const QRect& zone = zones[static_cast<std::size_t>(i)];
    handles.push_back({{Kind::YHigh, i}, QRect(kMargin - 2, zone.top(), kStripHandle, kStripHandle)});
    handles.push_back(
        {{Kind::YLow, i}, QRect(kMargin - 2, zone.bottom() + 1 - kStripHandle, kStripHandle, kStripHandle)});
    if (i + 1 == static_cast<int>(scene.view.AxisCount())) continue;
    const int below = zones[static_cast<std::size_t>(i) + 1].top();
    const int centre = (zone.bottom() + 1 + below) / 2;
    handles.push_back({{Kind::Border, i}, QRect(plot.center().x() - 14, centre - 4, 28, 8)});
  }
}

StripPart StripLayout::PartAt(QPoint point, bool held) const {
  using Kind = StripPart::Kind;
  if (held && sign.contains(point)) return {Kind::Sign, 0};
  for (const Handle& handle : handles) {
    if (handle.part.kind == Kind::Border) {
      // The handle is the whole gap between the zones.
      const auto upper = static_cast<std::size_t>(handle.part.index);
      const QRect gap(QPoint(plot.left(), zones[upper].bottom() + 1), QPoint(plot.right(), zones[upper + 1].top() - 1));
      if (gap.united(handle.rect).contains(point)) return handle.part;
    } else if (handle.rect.adjusted(-kGrip, -kGrip, kGrip, kGrip).contains(point)) {
      return handle.part;
    }
  }
  for (std::size_t i = 0; i < zones.size(); ++i) {
    if (zones[i].contains(point)) return {Kind::Plot, static_cast<int>(i)};
  }
  for (const LegendRow& row : legend) {
    if (row.label >= 0 && row.rect.contains(point)) return {Kind::LegendRow, row.label};
  }
  return {};
}

double StripLayout::PixelOfX(double x) const {
  return plot.left() + (x / columnWidth_ - static_cast<double>(firstColumn_)) / ratio_;
}

double StripLayout::XOfPixel(double pixel) const {
  return ((pixel - plot.left()) * ratio_ + static_cast<double>(firstColumn_)) * columnWidth_;
}

// The lowest value is in the middle of the zone's last device row, the highest in the middle of its first.
double StripLayout::PixelOfY(const StripView::Axis& axis, std::size_t zone, double value) const {
  const double rows = zones[zone].height() - 1 / ratio_;
  return zones[zone].top() + 0.5 / ratio_ + (axis.max - value) / (axis.max - axis.min) * rows;
}

double StripLayout::YOfPixel(const StripView::Axis& axis, std::size_t zone, double pixel) const {
  const double rows = zones[zone].height() - 1 / ratio_;
  return axis.max - (pixel - zones[zone].top() - 0.5 / ratio_) / rows * (axis.max - axis.min);
}

}  // namespace zth::widgets

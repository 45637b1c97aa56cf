#include "widgets/StripScene.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace zth::widgets {
namespace {

constexpr std::size_t kMostPoints = 100000;
constexpr std::size_t kFitColumns = 1024;
constexpr double kFitAir = 0.1;

}  // namespace

StripScene::StripScene(StripSetup given) : setup(std::move(given)), view(setup) {
  for (const StripTrace& style : setup.traces) {
    traces.emplace_back();
    traces.back().style = style;
  }
  labels = setup.labels;
  if (Label(0) == nullptr) labels.insert(labels.begin(), StripLabel{.slot = 0, .text = setup.title});
}

bool StripScene::Shown(int trace) const {
  if (!HasTrace(trace) || !TraceAt(trace).visible) return false;
  const int leader = TraceAt(trace).style.shownWith;
  return !HasTrace(leader) || TraceAt(leader).visible;
}

bool StripScene::HasData(int trace) const {
  if (!HasTrace(trace)) return false;
  return IsXY() ? !TraceAt(trace).points.empty() : !TraceAt(trace).history.Empty();
}

std::size_t StripScene::AxisOf(int trace) const {
  const int axis = HasTrace(trace) ? TraceAt(trace).style.axis : 0;
  return std::min(static_cast<std::size_t>(std::max(axis, 0)), view.AxisCount() - 1);
}

QString StripScene::NameOf(int trace) const {
  if (!HasTrace(trace)) return {};
  if (!TraceAt(trace).style.name.isEmpty()) return TraceAt(trace).style.name;
  for (const StripLabel& label : labels) {
    if (label.slot == 0 || label.trace != trace || label.text.isEmpty()) continue;
    const auto end = label.text.indexOf(QLatin1Char('='));
    return (end < 0 ? label.text : label.text.left(end)).trimmed();
  }
  return QStringLiteral("Trace %1").arg(trace);
}

bool StripScene::HasSample(const StripLabel& label) const {
  return HasTrace(label.trace) && label.line && !label.text.isEmpty() && (!IsXY() || HasData(label.trace));
}

const StripLabel* StripScene::Label(int slot) const {
  const auto found = std::find_if(labels.begin(), labels.end(), [&](const StripLabel& l) { return l.slot == slot; });
  return found != labels.end() ? &*found : nullptr;
}

StripLabel* StripScene::Label(int slot) {
  return const_cast<StripLabel*>(std::as_const(*this).Label(slot));
}

void StripScene::AddPoint(int trace, QPointF point) {
  std::vector<QPointF>& points = TraceAt(trace).points;
  if (points.size() >= kMostPoints) points.erase(points.begin(), points.begin() + kMostPoints / 2);
  points.push_back(point);
}

void StripScene::ClearData() {
  for (Trace& trace : traces) {
    trace.history.Clear();
    trace.points.clear();
  }
  dayTime.Clear();
  if (!IsXY()) overlay.mark.reset();
  view.Restart();
}

std::optional<std::pair<double, double>> StripScene::FitOf(std::size_t axis) const {
  double low = std::numeric_limits<double>::infinity();
  double high = -low;
  const auto take = [&](double lo, double hi) {
    if (!std::isfinite(lo) || !std::isfinite(hi)) return;
    low = std::min(low, lo);
    high = std::max(high, hi);
  };
  std::vector<TraceHistory::Column> columns(kFitColumns);
  const double width = view.XSpan() / kFitColumns;
  for (int t = 0; t < static_cast<int>(traces.size()); ++t) {
    if (!Shown(t) || AxisOf(t) != axis) continue;
    for (const QPointF& point : TraceAt(t).points) {
      if (point.x() >= view.XBegin() && point.x() <= view.XEnd()) take(point.y(), point.y());
    }
    TraceAt(t).history.Columns(static_cast<std::int64_t>(std::floor(view.XBegin() / width)), width, columns);
    for (const TraceHistory::Column& column : columns) {
      if (!column.Empty()) take(column.lo, column.hi);
    }
  }
  if (!(low <= high)) return std::nullopt;
  // A flat trace gets a range around its value.
  const double air = high > low ? (high - low) * kFitAir : std::max(std::abs(high) * kFitAir, 1.0);
  return std::pair{low - air, high + air};
}

}  // namespace zth::widgets

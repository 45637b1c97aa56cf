#include "shell/Layout.h"

#include <algorithm>
#include <cmath>

#include <QJsonArray>
#include <QJsonDocument>
#include <QMdiArea>
#include <QMdiSubWindow>

#include "widgets/Strip.h"

namespace zth::shell {
namespace {

constexpr char kWanted[] = "RestoreWindows";
constexpr char kLayout[] = "WindowLayout";
constexpr char kStartRanges[] = "startRanges";
constexpr qsizetype kLongest = 64 * 1024;  // characters; anything longer was not written by this program
constexpr int kFarthest = 20'000;          // pixels

QJsonObject RangesOf(widgets::Strip& chart) {
  QJsonObject ranges{{"XSpan", chart.XSpan()}};
  // The X axis of a time chart counts from its own first sample, so its end would mean another time after a restart.
  if (chart.IsXY()) ranges["XEnd"] = chart.XEnd();
  if (chart.TimeOfDay()) ranges["TimeOfDay"] = true;
  const int chosen = chart.AxisIndex();
  QJsonArray axes;
  for (int axis = 0; axis < chart.AxisCount(); ++axis) {
    chart.SetAxisIndex(axis);
    axes.append(QJsonArray{chart.AxisMin(), chart.AxisMax()});
  }
  chart.SetAxisIndex(chosen);
  ranges["Axes"] = axes;
  return ranges;
}

QJsonObject ZoomedCharts(const QWidget& window) {
  QJsonObject charts;
  for (auto* chart : window.findChildren<widgets::Strip*>()) {
    const QJsonObject ranges = RangesOf(*chart);
    if (ranges != chart->property(kStartRanges).toJsonObject()) charts[chart->objectName()] = ranges;
  }
  return charts;
}

bool IsNumber(const QJsonValue& value) {
  return value.isDouble() && std::isfinite(value.toDouble());
}

/// Sets first the end that keeps the range valid: a minimum above the maximum is rejected.
void PutAxis(widgets::Strip& chart, const QJsonArray& range) {
  if (range.size() != 2 || !IsNumber(range[0]) || !IsNumber(range[1])) return;
  const double min = range[0].toDouble();
  const double max = range[1].toDouble();
  if (min >= max) return;
  if (min < chart.AxisMax()) {
    chart.SetAxisMin(min);
    chart.SetAxisMax(max);
  } else {
    chart.SetAxisMax(max);
    chart.SetAxisMin(min);
  }
}

/// The rectangle of four numbers; invalid for anything that is not the place of a window.
QRect PlaceOf(const QJsonArray& numbers) {
  if (numbers.size() != 4) return {};
  for (const QJsonValue& number : numbers) {
    if (!IsNumber(number) || std::abs(number.toDouble()) > kFarthest) return {};
  }
  return {numbers[0].toInt(), numbers[1].toInt(), numbers[2].toInt(), numbers[3].toInt()};
}

std::optional<KeptWindow> WindowOf(const QJsonObject& kept) {
  KeptWindow window{kept["Name"].toString(), PlaceOf(kept["Place"].toArray()), Shown::Normal, {}};
  if (window.name.isEmpty()) return std::nullopt;
  const QString shown = kept["Shown"].toString();
  if (shown == "Maximised") window.shown = Shown::Maximised;
  if (shown == "Minimised") window.shown = Shown::Minimised;
  window.charts = kept["Charts"].toObject();
  return window;
}

QJsonObject Kept(const QMdiSubWindow& frame) {
  const QRect place = frame.geometry();
  QJsonObject kept{{"Name", frame.widget()->objectName()}};
  if (frame.isMaximized()) {
    kept["Shown"] = "Maximised";
  } else if (frame.isMinimized()) {
    kept["Shown"] = "Minimised";
  } else {
    kept["Place"] = QJsonArray{place.x(), place.y(), place.width(), place.height()};
  }
  const QJsonObject charts = ZoomedCharts(*frame.widget());
  if (!charts.isEmpty()) kept["Charts"] = charts;
  return kept;
}

}  // namespace

bool RestoresWindows(const platform::Settings& settings) {
  return settings.Get(kWanted, "False").trimmed().compare("True", Qt::CaseInsensitive) == 0;
}

void PutRestoresWindows(platform::Settings& settings, bool on) {
  settings.Put(kWanted, on ? "True" : "False");
}

void StoreLayout(const QMdiArea& desk, platform::Settings& settings) {
  QJsonArray windows;
  for (const QMdiSubWindow* frame : desk.subWindowList(QMdiArea::CreationOrder)) {
    if (frame->widget() != nullptr && !frame->isHidden()) windows.append(Kept(*frame));
  }
  const QMdiSubWindow* active = desk.currentSubWindow();
  const QString name = active != nullptr && active->widget() != nullptr ? active->widget()->objectName() : QString();
  const QJsonObject layout{{"Windows", windows}, {"Active", name}};
  settings.Put(kLayout, QString::fromUtf8(QJsonDocument(layout).toJson(QJsonDocument::Compact)));
}

std::optional<KeptLayout> StoredLayout(const platform::Settings& settings) {
  const QString text = settings.Get(kLayout, {});
  if (text.size() > kLongest) return std::nullopt;
  const QJsonDocument document = QJsonDocument::fromJson(text.toUtf8());
  if (!document.isObject() || !document["Windows"].isArray()) return std::nullopt;
  KeptLayout layout{{}, document["Active"].toString()};
  for (const QJsonValue& each : document["Windows"].toArray()) {
    const std::optional<KeptWindow> window = WindowOf(each.toObject());
    if (window && std::ranges::count(layout.windows, window->name, &KeptWindow::name) == 0) {
      layout.windows.push_back(*window);
    }
  }
  return layout;
}

void NoteStartRanges(const QWidget& window) {
  for (auto* chart : window.findChildren<widgets::Strip*>()) chart->setProperty(kStartRanges, RangesOf(*chart));
}

void RestoreCharts(const QWidget& window, const QJsonObject& charts) {
  for (auto* chart : window.findChildren<widgets::Strip*>()) {
    const QJsonObject ranges = charts[chart->objectName()].toObject();
    if (ranges.isEmpty()) continue;
    const int chosen = chart->AxisIndex();
    const QJsonArray axes = ranges["Axes"].toArray();
    for (int axis = 0; axis < std::min<int>(chart->AxisCount(), static_cast<int>(axes.size())); ++axis) {
      chart->SetAxisIndex(axis);
      PutAxis(*chart, axes[axis].toArray());
    }
    chart->SetAxisIndex(chosen);
    chart->SetTimeOfDay(ranges["TimeOfDay"].toBool());
    if (IsNumber(ranges["XSpan"])) chart->SetXSpan(ranges["XSpan"].toDouble());
    if (chart->IsXY() && IsNumber(ranges["XEnd"])) chart->SetXEnd(ranges["XEnd"].toDouble());
  }
}

}  // namespace zth::shell

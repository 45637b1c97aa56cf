#include "widgets/StripExport.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include <QDateTime>
#include <QLocale>

namespace zth::widgets {
namespace {

QString Number(double value) {
  return std::isfinite(value) ? QString::number(value, 'g', QLocale::FloatingPointShortest) : QString();
}

QString Field(QString text) {
  if (!text.contains(QLatin1Char(',')) && !text.contains(QLatin1Char('"')) && !text.contains(QLatin1Char('\n'))) {
    return text;
  }
  return QLatin1Char('"') + text.replace(QLatin1Char('"'), QStringLiteral("\"\"")) + QLatin1Char('"');
}

/// A date and time that spreadsheets understand: "2026-11-23 14:05:30.250".
QString LocalText(double local) {
  const QDateTime time = QDateTime::fromMSecsSinceEpoch(std::llround(local * 1000), Qt::UTC);
  return time.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss.zzz"));
}

QString PathsCsv(const StripScene& scene) {
  QString csv = QStringLiteral("Trace,X,Y\n");
  for (int t = 0; t < static_cast<int>(scene.traces.size()); ++t) {
    if (!scene.Shown(t)) continue;
    for (const QPointF& point : scene.TraceAt(t).points) {
      if (point.x() < scene.view.XBegin() || point.x() > scene.view.XEnd()) continue;
      csv += Field(scene.NameOf(t)) + QLatin1Char(',') + Number(point.x()) + QLatin1Char(',') + Number(point.y()) +
             QLatin1Char('\n');
    }
  }
  return csv;
}

}  // namespace

QString StripCsv(const StripScene& scene) {
  if (scene.IsXY()) return PathsCsv(scene);
  struct Source {
    std::vector<TraceHistory::Point> points;
    std::size_t next = 0;
  };
  std::vector<Source> sources;
  const bool dayTime = scene.ShowsDayTime();
  QString csv = QStringLiteral("Time (s)");
  if (dayTime) csv += QLatin1Char(',') + QStringLiteral("Local time");
  for (int t = 0; t < static_cast<int>(scene.traces.size()); ++t) {
    if (!scene.Shown(t) || !scene.HasData(t)) continue;
    sources.push_back({scene.TraceAt(t).history.Points(scene.view.XBegin(), scene.view.XEnd())});
    csv += QLatin1Char(',') + Field(scene.NameOf(t));
  }
  csv += QLatin1Char('\n');
  for (;;) {
    double x = std::numeric_limits<double>::infinity();
    for (const Source& source : sources) {
      if (source.next < source.points.size()) x = std::min(x, source.points[source.next].x);
    }
    if (!std::isfinite(x)) return csv;
    csv += QString::number(x, 'f', 3);
    if (dayTime) csv += QLatin1Char(',') + LocalText(scene.dayTime.LocalAt(x));
    for (Source& source : sources) {
      csv += QLatin1Char(',');
      if (source.next < source.points.size() && source.points[source.next].x == x) {
        csv += Number(source.points[source.next++].y);
      }
    }
    csv += QLatin1Char('\n');
  }
}

}  // namespace zth::widgets

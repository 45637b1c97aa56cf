#pragma once

#include <vector>

#include <QString>

#include "widgets/StripScene.h"

namespace zth::widgets {

class StripLayout;

/// What the cursor reads: where it stands, and a line for every shown trace under it.
struct StripReadout {
  struct Line {
    int trace;
    QString name;
    QString value;
    QString difference;  ///< to the second cursor; empty if there is none
  };
  QString heading;
  QString headingDifference;
  std::vector<Line> lines;

  /// Null when nothing is read of that trace.
  const Line* Of(int trace) const;
};

/// Reads the scene at its cursor, which must exist.
StripReadout ReadUnderCursor(const StripScene& scene, const StripLayout& layout);

/// As long a value as the trace's start range has, as the cursor would show it.
QString WidestReading(const StripScene& scene, int trace);

/// The latest values in one sentence, for users who cannot see the picture: "Temperature (°C): Local 25.25, Remote1
/// 31".
QString StripSummary(const StripScene& scene);

}  // namespace zth::widgets

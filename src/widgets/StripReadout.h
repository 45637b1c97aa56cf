#pragma once

#include <vector>

#include <QString>

#include "widgets/StripScene.h"

namespace zth::widgets {

class StripLayout;

/// The cursor's reading: its position, and a line for each visible trace at that position.
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

  /// Null when the trace has no reading.
  const Line* Of(int trace) const;
};

/// Reads the scene at its cursor, which must exist.
StripReadout ReadUnderCursor(const StripScene& scene, const StripLayout& layout);

/// The longest value in the axis' start range, as the cursor would show it.
QString WidestReading(const StripScene& scene, std::size_t axis);

/// The latest values in one sentence, for users who cannot see the picture: "Temperature (°C): Local 25.25, Remote1
/// 31".
QString StripSummary(const StripScene& scene);

}  // namespace zth::widgets

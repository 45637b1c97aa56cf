#pragma once

#include <vector>

#include <QString>

#include "widgets/StripLayout.h"
#include "widgets/StripScene.h"

namespace zth::widgets {

/// What the cursor reads: a heading and a line for every shown trace under it.
struct StripReadout {
  struct Line {
    int trace;
    QString name;
    QString value;
    QString difference;  ///< to the second cursor; empty without one
  };
  QString heading;
  QString headingDifference;
  std::vector<Line> lines;
};

/// Reads the scene under its cursor, which is there.
StripReadout ReadUnderCursor(const StripScene& scene, const StripLayout& layout);

/// The latest values in one sentence, for those who cannot see the picture: "Temperature (°C): Local 25.25, Remote1
/// 31".
QString StripSummary(const StripScene& scene);

}  // namespace zth::widgets

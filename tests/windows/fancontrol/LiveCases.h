#pragma once

#include "tests/support/Steps.h"
#include "widgets/Strip.h"

/// One change of a control of a live window, and what it sends: the same ground for all of them.
namespace zth::testing {

/// Cases "steps: transfers" apart by ", ", each on a fresh program whose chip holds `before` in every register, on
/// either link: what it sends, in order.
inline void RunLiveCases(const char* name, std::uint8_t before, const QString& cases) {
  for (const QString& row : cases.split(", ")) {
    SCOPED_TRACE(row.toStdString());
    for (const auto buses : {Desk::Buses::Smbus, Desk::Buses::Usb}) {
      WindowDesk desk(name, buses, [&](Desk& each) { each.board.Chip().fill(before); });
      EXPECT_EQ(desk.Sent(row.section(": ", 0, 0)), T(row.section(": ", 1).toStdString()));
    }
  }
}

using Points = std::vector<std::pair<double, double>>;

inline Points PointsOf(const widgets::Strip& chart, int trace) {
  Points points;
  for (const QVariant& pair : chart.TracePoints(trace)) {
    points.emplace_back(pair.toList()[0].toDouble(), pair.toList()[1].toDouble());
  }
  return points;
}

/// The captions of a chart's label slots from the first to the last, apart by "|".
inline std::string Captions(widgets::Strip& chart, int first, int last) {
  QStringList captions;
  for (int slot = first; slot <= last; ++slot) {
    chart.SetLabelIndex(slot);
    captions << chart.Caption();
  }
  return captions.join('|').toStdString();
}

}  // namespace zth::testing

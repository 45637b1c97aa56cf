#pragma once

#include "platform/Services.h"
#include "tests/support/Steps.h"
#include "widgets/Strip.h"

/// One change of a control of a live window, and what it sends: the same ground for all of them.
namespace zth::testing {

struct LiveCase {
  const char* steps;
  const char* transfers;
  const char* what = "";

  void act(const QWidget& window) const { Do(window, steps); }
  Traffic sends() const { return T(transfers); }
};

/// Each case on a fresh program whose chip holds `before` in every register, on either link: what it sends, in order.
inline void RunLiveCases(const char* name, std::uint8_t before, const std::vector<LiveCase>& cases) {
  for (const LiveCase& row : cases) {
    SCOPED_TRACE(std::string(row.steps) + " " + row.what);
    for (const auto buses : {Desk::Buses::Smbus, Desk::Buses::Usb}) {
      Desk desk(buses);
      desk.Start();
      desk.board.Chip().fill(before);
      auto& window = desk.Open(name);
      desk.board.TakeTraffic();
      row.act(window);
      EXPECT_EQ(desk.board.TakeTraffic(), row.sends());
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

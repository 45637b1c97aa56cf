#include "windows/fancontrol/Charts.h"

#include <array>

#include "chip/ChannelNames.h"
#include "windows/fancontrol/DotTrail.h"

namespace zth::windows {
namespace {

using widgets::StripPlace;
using widgets::StripTrace;

const QColor kRed(255, 0, 0);
const QColor kBlue(0, 0, 255);
const QColor kGreen(0, 128, 0);
const QColor kMagenta(255, 0, 255);
const QColor kLime(0, 255, 0);
const QColor kOrange(255, 128, 0);
const QColor kBlack(0, 0, 0);

/// The colour depends on the position of a source, not on its channel.
const std::array kSourceColours{kRed, kBlue, kGreen, kMagenta};

QColor Faded(QColor colour, int age) {
  constexpr std::array kAlpha{120, 80, 50, 26};
  colour.setAlpha(kAlpha[static_cast<std::size_t>(age)]);
  return colour;
}

}  // namespace

widgets::StripSetup CurveChart() {
  widgets::StripSetup setup;
  setup.mode = widgets::StripMode::XY;
  setup.title = "PWM";
  setup.xMin = -40;
  setup.xMax = 120;
  setup.xDivisions = 10;
  setup.xUnit = QStringLiteral("°C");
  setup.axes = {{.min = 0, .max = 110, .divisions = 10, .unit = "%"}};
  for (const QColor& colour : kSourceColours) setup.traces.push_back({.colour = colour, .width = 2});
  // A dot and its trail are read out with their curve.
  const auto add = [&setup](int source, StripTrace trace) {
    trace.shownWith = source;
    setup.traces.push_back(trace);
  };
  for (int s = 0; s < 4; ++s) {
    add(s, {.colour = kSourceColours[static_cast<std::size_t>(s)], .width = 8, .dots = true});
  }
  for (int s = 0; s < 4; ++s) {
    add(s, {.colour = kSourceColours[static_cast<std::size_t>(s)], .width = 1, .style = Qt::DashLine});
  }
  for (int age = 0; age < DotTrail::kAges; ++age) {
    for (int s = 0; s < 4; ++s) {
      add(s, {.colour = Faded(kSourceColours[static_cast<std::size_t>(s)], age), .width = 5, .dots = true});
    }
  }
  for (int s = 0; s < 4; ++s) {
    add(s, {.colour = kSourceColours[static_cast<std::size_t>(s)], .width = 7, .dots = true, .hollow = true});
  }
  setup.labels.push_back({.slot = 5, .text = "Controlled By:", .line = false});
  for (int s = 0; s < 4; ++s) {
    setup.labels.push_back({.slot = s + 1, .text = chip::kTemperatureNames[static_cast<std::size_t>(s)], .trace = s});
  }
  // The unit of the vertical axis, in the corner, as in the other charts.
  setup.labels.push_back({.slot = kCurveUnitSlot,
                          .text = "Duty, %",
                          .place = StripPlace::Free,
                          .line = false,
                          .left = 0.005,
                          .top = 0.005});
  setup.widestLegend = "under automatic";
  return setup;
}

widgets::StripSetup DynTminChart(int index) {
  widgets::StripSetup setup;
  setup.index = index;
  setup.title = index == 0 ? "Remote1" : "Remote2";
  setup.xMin = -90;
  setup.xMax = 10;
  setup.axes = {
      {.min = index == 0 ? -10.0 : 20.0, .max = index == 0 ? 110.0 : 70.0, .areaTop = 0, .areaBottom = 0.59},
      {.min = 0, .max = 110, .areaTop = 0.62, .areaBottom = 1},
  };
  setup.axes[0].unit = QStringLiteral("°C");
  setup.axes[1].unit = "%";
  for (const QColor& colour : {kLime, kBlue, kMagenta, kRed, kOrange}) setup.traces.push_back({.colour = colour});
  for (const QColor& colour : {kBlue, kRed, kGreen, kBlack}) setup.traces.push_back({.colour = colour, .axis = 1});
  setup.traces.push_back({.colour = kBlue, .style = Qt::DotLine, .shownWith = 1, .name = "Op-Point less Hyst"});

  // The names move with their traces, each in its own column.
  const auto name = [&setup](int slot, const char* text, double left) {
    setup.labels.push_back({.slot = slot, .text = text, .place = StripPlace::Free, .trace = slot - 1, .left = left});
  };
  name(1, "Temp", 0.92);
  name(2, "Op-Point", 0.58);
  name(3, "Tmin", 0.77);
  name(4, "High Limit", 0.23);
  name(5, "Low Limit", 0.42);
  // Beside the chart, because over it four rows would overlap.
  for (int row = 0; row < 4; ++row) {
    setup.labels.push_back({.slot = DutySlot(row), .text = "x", .trace = kFirstDutyTrace + row});
  }
  setup.widestLegend = "controlled by Remote2";
  // The units are in the corners of their zones: above the zones is the title, and there is not enough room.
  const auto unit = [&setup](int slot, const QString& text, double top) {
    setup.labels.push_back(
        {.slot = slot, .text = text, .place = StripPlace::Free, .line = false, .left = 0.005, .top = top});
  };
  unit(kUnitSlot, QStringLiteral("°C"), 0.005);
  unit(kDutyUnitSlot, "% Duty", setup.axes[1].areaTop + 0.005);
  return setup;
}

}  // namespace zth::windows

#include "windows/data/GraphCharts.h"

#include <algorithm>
#include <span>

#include <QColor>

#include "chip/ChannelNames.h"

namespace zth::windows {
namespace {

using widgets::StripPlace;
using widgets::StripSetup;

struct Rgb {
  int red, green, blue;
};

constexpr Rgb kNavy{0, 0, 128};
// Blue, red, green, black; the last four are for tachs 5 to 8: magenta, orange, lime, maroon.
constexpr std::array<Rgb, 8> kColours{
    {{0, 0, 255}, {255, 0, 0}, {0, 128, 0}, {0, 0, 0}, {255, 0, 255}, {255, 128, 0}, {0, 255, 0}, {128, 0, 0}}};

constexpr std::array kTachs{"Tach1", "Tach2", "Tach3", "Tach4", "Tach5", "Tach6", "Tach7", "Tach8"};
constexpr std::array kPwms{"PWM1", "PWM2", "PWM3", "PWM4"};
constexpr std::array kVoltages{"Pin15",     "Pin19", "Pin23", "Pin24", "Pin25", "Pin26", "1.5V(3GIO)",
                               "1.5V(ICH)", "3.3V",  "12V1",  "12V2",  "5V",    "12V3"};
constexpr std::array kTherms{"THERM1", "THERM2"};

constexpr char kTemperatureTitle[] = "Temperature (\u00B0C)";
constexpr char kTachTitle[] = "Fan Speed (RPM)";
constexpr char kPwmTitle[] = "PWM Drive (% Duty)";
constexpr char kDegrees[] = "\u00B0C";

/// Traces with a legend row each; the first row's slot is `slot`.
void AddTraces(StripSetup& setup, std::span<const char* const> names, int axis, int slot) {
  for (std::size_t i = 0; i < names.size(); ++i) {
    const Rgb colour = kColours.at(i);
    setup.traces.push_back({.colour = QColor(colour.red, colour.green, colour.blue), .axis = axis});
    setup.labels.push_back({.slot = slot + static_cast<int>(i),
                            .text = QString::fromUtf8(names[i]),
                            .trace = static_cast<int>(setup.traces.size()) - 1});
  }
}

/// One quantity on the whole height.
StripSetup OneZone(const char* title, double max, const char* unit, const char* widest) {
  StripSetup setup{.title = QString::fromUtf8(title), .axes = {{.max = max, .unit = QString::fromUtf8(unit)}}};
  setup.widestLegend = QString::fromUtf8(widest);
  return setup;
}

/// Temperatures above a second quantity, whose title stands at its zone's top.
StripSetup TwoZones(const char* title, double max, const char* unit) {
  StripSetup setup = OneZone(kTemperatureTitle, 60, kDegrees, "Remote1 = -63.75\u00B0C");
  setup.axes[0].areaBottom = 0.47;
  setup.axes.push_back({.max = max, .areaTop = 0.53, .unit = QString::fromUtf8(unit)});
  AddTraces(setup, chip::kTemperatureNames, 0, kFirstSlot);
  setup.labels.push_back(
      {.slot = kHeadingSlot, .text = QString::fromUtf8(title), .place = StripPlace::Heading, .line = false, .axis = 1});
  return setup;
}

StripSetup VoltageSetup(int voltages) {
  StripSetup setup = OneZone("Voltage", 6, " V", "1.25V(P20)");
  for (int i = 0; i < std::max(kVoltageTraces, voltages); ++i) {
    const auto at = static_cast<std::size_t>(i);
    const Rgb colour = i < 4 ? kColours.at(at) : kNavy;
    setup.traces.push_back({.colour = QColor(colour.red, colour.green, colour.blue)});
    setup.labels.push_back(
        {.slot = kFirstSlot + i, .text = at < kVoltages.size() ? QString(kVoltages.at(at)) : QString(), .trace = i});
  }
  return setup;
}

}  // namespace

StripSetup GraphSetup(int index, int voltages) {
  StripSetup setup;
  switch (index) {
    case kTemperatureGraph:
      setup = OneZone(kTemperatureTitle, 60, kDegrees, "Remote1 = -63.75\u00B0C");
      AddTraces(setup, chip::kTemperatureNames, 0, kFirstSlot);
      break;
    case kTachGraph:
      setup = OneZone(kTachTitle, 12000, " RPM", "Tach1=200000");
      AddTraces(setup, kTachs, 0, kFirstSlot);
      break;
    case kPwmGraph:
      setup = OneZone(kPwmTitle, 105, "%", "PWM1=100%");
      AddTraces(setup, kPwms, 0, kFirstSlot);
      break;
    case kTemperatureTachGraph:
      setup = TwoZones(kTachTitle, 12000, " RPM");
      AddTraces(setup, kTachs, 1, kSecondSlot);
      break;
    case kTemperaturePwmGraph:
      setup = TwoZones(kPwmTitle, 105, "%");
      AddTraces(setup, kPwms, 1, kSecondSlot);
      break;
    case kVoltageGraph:
      setup = VoltageSetup(voltages);
      break;
    default:
      setup = OneZone("THERM Timer %", 105, "%", "THERM1");
      AddTraces(setup, kTherms, 0, kFirstSlot);
      break;
  }
  setup.index = index;
  return setup;
}

}  // namespace zth::windows

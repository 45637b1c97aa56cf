#include "windows/data/GraphSubs.h"

#include <cmath>
#include <initializer_list>

#include <QString>

#include "base/NumberText.h"
#include "chip/ChannelNames.h"
#include "chip/ChipState.h"
#include "chip/Measurements.h"
#include "chip/PinModel.h"
#include "widgets/Strip.h"

namespace zth::windows {
namespace {

void Write(widgets::Strip& chart, int slot, const QString& text) {
  chart.SetLabelIndex(slot);
  chart.SetCaption(text);
}

/// The value to add to a chart: a stale one becomes a gap in the line.
double Fed(int group, double value) {
  return chip::IsStale(group) ? std::nan("") : value;
}

/// The text of a value in a legend. For a stale value only its age: there is no room for both.
QString Shown(int group, const QString& value) {
  return chip::IsStale(group) ? chip::AgeText(group) : value;
}

void FeedTemperatures(const Graphs& charts) {
  for (int i = 0; i < 4; ++i) {
    const auto at = static_cast<std::size_t>(i);
    const float value = chip::Model.Measurements.Temperature.at(at);
    const QString degrees = QString("%1\u00B0C").arg(base::GeneralText(value).c_str());
    const QString text =
        QString("%1 = %2").arg(chip::kTemperatureNames.at(at), Shown(chip::kTemperatureGroup, degrees));
    for (const Graph graph : {kTemperatureGraph, kTemperatureTachGraph, kTemperaturePwmGraph}) {
      charts[graph]->PlotValue(i, Fed(chip::kTemperatureGroup, static_cast<double>(value)));
      Write(*charts[graph], kFirstSlot + i, text);
    }
  }
}

/// Feeds one quantity to its own chart and to the second zone of a shared one.
void FeedPair(widgets::Strip& own, widgets::Strip& shared, int index, double value, const QString& text) {
  own.PlotValue(index, value);
  shared.PlotValue(kSecondTrace + index, value);
  Write(own, kFirstSlot + index, text);
  Write(shared, kSecondSlot + index, text);
}

void FeedTachs(const Graphs& charts) {
  for (int i = 0; i < 8; ++i) {
    const std::int32_t rpm = chip::Model.Measurements.TachRpm.at(static_cast<std::size_t>(i));
    const QString text = QString("Tach%1=%2").arg(i + 1).arg(Shown(chip::kTachGroup, QString::number(rpm)));
    FeedPair(*charts[kTachGraph], *charts[kTemperatureTachGraph], i, Fed(chip::kTachGroup, rpm), text);
  }
}

void FeedPwms(const Graphs& charts) {
  for (int i = 0; i < 4; ++i) {
    const std::int16_t percent = chip::Model.Measurements.PwmPercent.at(static_cast<std::size_t>(i));
    const QString text = QString("PWM%1=%2").arg(i + 1).arg(Shown(chip::kPwmGroup, QString("%1%").arg(percent)));
    FeedPair(*charts[kPwmGraph], *charts[kTemperaturePwmGraph], i, Fed(chip::kPwmGroup, percent), text);
  }
}

void FeedVoltages(const Graphs& charts) {
  int trace = 0;
  for (std::size_t channel = 0; channel < chip::Model.VoltagePresent.size(); ++channel) {
    if (!chip::Model.VoltagePresent[channel]) continue;
    const auto volts = static_cast<double>(chip::Model.Measurements.Voltage[channel]);
    charts[kVoltageGraph]->PlotValue(trace++, Fed(chip::kVoltageGroup, volts));
  }
}

}  // namespace

void FeedGraphs(const Graphs& stpGraph) {
  FeedTemperatures(stpGraph);
  FeedTachs(stpGraph);
  FeedPwms(stpGraph);
  FeedVoltages(stpGraph);
  for (int i = 0; i < 2; ++i) {
    const float percent = chip::Model.Measurements.ThermPercent.at(static_cast<std::size_t>(i));
    stpGraph[kThermGraph]->PlotValue(i, Fed(chip::kThermGroup, static_cast<double>(percent)));
  }
}

}  // namespace zth::windows

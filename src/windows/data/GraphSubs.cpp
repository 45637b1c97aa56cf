#include "windows/data/GraphSubs.h"

#include <cmath>
#include <initializer_list>

#include <QString>

#include "base/NumberText.h"
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

/// What a chart is fed: an old value is a gap in the line.
double Fed(int group, double value) {
  return chip::IsStale(group) ? std::nan("") : value;
}

/// What a legend shows in the place of a value; an old one is told by its age alone, for which there is room.
QString Shown(int group, const QString& value) {
  return chip::IsStale(group) ? chip::AgeText(group) : value;
}

void FeedTemperatures(const Graphs& charts) {
  static constexpr std::array kChannels{"Local", "Remote1", "Remote2", "Remote3"};
  for (int i = 0; i < 4; ++i) {
    const auto at = static_cast<std::size_t>(i);
    const float value = chip::Model.Measurements.Temperature.at(at);
    const QString degrees = QString("%1\u00B0C").arg(base::GeneralText(value).c_str());
    const QString text = QString("%1 = %2").arg(kChannels.at(at), Shown(chip::kTemperatureGroup, degrees));
    const double fed = Fed(chip::kTemperatureGroup, static_cast<double>(value));
    for (const std::size_t chart : {0U, 3U, 4U}) charts.at(chart)->PlotValue(i, fed);
    for (const std::size_t chart : {0U, 3U, 4U}) Write(*charts.at(chart), i + 1, text);
  }
}

/// One quantity on a chart of its own and in the second zone of another, where traces begin at 4 and slots at 6.
void FeedPair(widgets::Strip& own, widgets::Strip& shared, int index, double value, const QString& text) {
  own.PlotValue(index, value);
  shared.PlotValue(index + 4, value);
  Write(own, index + 1, text);
  Write(shared, index + 6, text);
}

void FeedTachs(const Graphs& charts) {
  for (int i = 0; i < 8; ++i) {
    const std::int32_t rpm = chip::Model.Measurements.TachRpm.at(static_cast<std::size_t>(i));
    const QString text = QString("Tach%1=%2").arg(i + 1).arg(Shown(chip::kTachGroup, QString::number(rpm)));
    FeedPair(*charts[1], *charts[3], i, Fed(chip::kTachGroup, rpm), text);
  }
}

void FeedPwms(const Graphs& charts) {
  for (int i = 0; i < 4; ++i) {
    const std::int16_t percent = chip::Model.Measurements.PwmPercent.at(static_cast<std::size_t>(i));
    const QString text = QString("PWM%1=%2").arg(i + 1).arg(Shown(chip::kPwmGroup, QString("%1%").arg(percent)));
    FeedPair(*charts[2], *charts[4], i, Fed(chip::kPwmGroup, percent), text);
  }
}

void FeedVoltages(const Graphs& charts) {
  int trace = 0;
  for (std::size_t channel = 0; channel < chip::Model.VoltagePresent.size(); ++channel) {
    if (!chip::Model.VoltagePresent[channel]) continue;
    const auto volts = static_cast<double>(chip::Model.Measurements.Voltage[channel]);
    charts[5]->PlotValue(trace++, Fed(chip::kVoltageGroup, volts));
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
    stpGraph[6]->PlotValue(i, Fed(chip::kThermGroup, static_cast<double>(percent)));
  }
}

}  // namespace zth::windows

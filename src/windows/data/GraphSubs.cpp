#include "windows/data/GraphSubs.h"

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

void FeedTemperatures(const Graphs& charts) {
  static constexpr std::array kChannels{"Local", "Remote1", "Remote2", "Remote3"};
  for (int i = 0; i < 4; ++i) {
    const auto at = static_cast<std::size_t>(i);
    const float value = chip::Model.Measurements.Temperature.at(at);
    const QString text = QString("%1 = %2\u00B0C").arg(kChannels.at(at), base::GeneralText(value).c_str());
    for (const std::size_t chart : {0U, 3U, 4U}) charts.at(chart)->PlotValue(i, static_cast<double>(value));
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
    FeedPair(*charts[1], *charts[3], i, rpm, QString("Tach%1=%2").arg(i + 1).arg(rpm));
  }
}

void FeedPwms(const Graphs& charts) {
  for (int i = 0; i < 4; ++i) {
    const std::int16_t percent = chip::Model.Measurements.PwmPercent.at(static_cast<std::size_t>(i));
    FeedPair(*charts[2], *charts[4], i, percent, QString("PWM%1=%2%").arg(i + 1).arg(percent));
  }
}

void FeedVoltages(const Graphs& charts) {
  int trace = 0;
  for (std::size_t channel = 0; channel < chip::Model.VoltagePresent.size(); ++channel) {
    if (!chip::Model.VoltagePresent[channel]) continue;
    charts[5]->PlotValue(trace++, static_cast<double>(chip::Model.Measurements.Voltage[channel]));
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
    stpGraph[6]->PlotValue(i, static_cast<double>(percent));
  }
}

}  // namespace zth::windows

#include "windows/data/GraphSubs.h"

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

void FeedTemperatures(const Graphs& charts) {
  for (int i = 0; i < 4; ++i) {
    const auto at = static_cast<std::size_t>(i);
    const float value = chip::Model.Measurements.Temperature.at(at);
    const QString text =
        QString("%1 = %2\u00B0C").arg(chip::kTemperatureNames.at(at), base::GeneralText(value).c_str());
    for (const Graph graph : {kTemperatureGraph, kTemperatureTachGraph, kTemperaturePwmGraph}) {
      charts[graph]->PlotValue(i, static_cast<double>(value));
      Write(*charts[graph], kFirstSlot + i, text);
    }
  }
}

/// One quantity on a chart of its own and in the second zone of another.
void FeedPair(widgets::Strip& own, widgets::Strip& shared, int index, double value, const QString& text) {
  own.PlotValue(index, value);
  shared.PlotValue(kSecondTrace + index, value);
  Write(own, kFirstSlot + index, text);
  Write(shared, kSecondSlot + index, text);
}

void FeedTachs(const Graphs& charts) {
  for (int i = 0; i < 8; ++i) {
    const std::int32_t rpm = chip::Model.Measurements.TachRpm.at(static_cast<std::size_t>(i));
    FeedPair(*charts[kTachGraph], *charts[kTemperatureTachGraph], i, rpm, QString("Tach%1=%2").arg(i + 1).arg(rpm));
  }
}

void FeedPwms(const Graphs& charts) {
  for (int i = 0; i < 4; ++i) {
    const std::int16_t percent = chip::Model.Measurements.PwmPercent.at(static_cast<std::size_t>(i));
    FeedPair(*charts[kPwmGraph], *charts[kTemperaturePwmGraph], i, percent,
             QString("PWM%1=%2%").arg(i + 1).arg(percent));
  }
}

void FeedVoltages(const Graphs& charts) {
  int trace = 0;
  for (std::size_t channel = 0; channel < chip::Model.VoltagePresent.size(); ++channel) {
    if (!chip::Model.VoltagePresent[channel]) continue;
    charts[kVoltageGraph]->PlotValue(trace++, static_cast<double>(chip::Model.Measurements.Voltage[channel]));
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
    stpGraph[kThermGraph]->PlotValue(i, static_cast<double>(percent));
  }
}

}  // namespace zth::windows

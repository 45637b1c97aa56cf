#include "windows/fancontrol/frmDynamicTmin.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include <QPushButton>
#include <QTabWidget>

#include "base/NumberText.h"
#include "base/Rounding.h"
#include "chip/ChipState.h"
#include "chip/Measurements.h"
#include "chip/PinModel.h"
#include "chip/RegisterNames.h"
#include "link/Declarations.h"
#include "link/Transfers.h"
#include "link/USBStuff.h"
#include "widgets/Strip.h"
#include "windows/SharedState.h"
#include "windows/fancontrol/Charts.h"
#include "windows/fancontrol/Demo.h"
#include "windows/fancontrol/DynTminModel.h"

namespace zth::windows {

void frmDynamicTmin::Form_Load() {
  LoadControls();
  ShowRemote1Available(chip::Model.PinFunctions.D1);
  if (Shared.DemoRunning) cmdDemo_->setText("&Stop...");
  SetReady(true);
  Shared.DynTminOpen = true;
}

void frmDynamicTmin::Form_Unload() {
  SetReady(false);
  Shared.DynTminOpen = false;
}

void frmDynamicTmin::ShowRemote1Available(bool available) {
  // This runs again in an open window: if Remote1 has become available again, it is as usable as when the window opens.
  if (!available) SSTab1_->setCurrentIndex(1);
  SSTab1_->setTabEnabled(0, available);
  SSTab1_->setTabText(0, available ? "Remote1" : "R1 not enabled");
  SSTab1_Click();
}

void frmDynamicTmin::UpdateDynTminGraph() {
  RefreshHints();
  for (int channel = 0; channel < kRemotes; ++channel) PlotChannel(channel);
  SetDutyLegend();
}

void frmDynamicTmin::PlotChannel(int channel) {
  const chip::MeasurementSet& live = chip::Model.Measurements;
  const auto remote = static_cast<std::size_t>(channel + 1);
  widgets::Strip& strip = *Strip2_[static_cast<std::size_t>(channel)];
  const double opPoint = live.PolledOpPoint[remote];
  const std::array values{
      static_cast<double>(live.Temperature[remote]), opPoint, static_cast<double>(live.PolledTmin[remote]),
      static_cast<double>(live.PolledHighLimit[remote]), static_cast<double>(live.PolledLowLimit[remote])};
  for (int trace = 0; trace < static_cast<int>(values.size()); ++trace) {
    const int group = trace == 0 ? chip::kTemperatureGroup : chip::kDynamicTminGroup;
    strip.PlotValue(trace, chip::IsStale(group) ? std::nan("") : values[static_cast<std::size_t>(trace)]);
    PlaceTraceLabel(strip, trace, values[static_cast<std::size_t>(trace)]);
  }
  const double floor = opPoint - base::LeadingDecimal(Controls().TextOf("txtOpPointHyst"));
  strip.PlotValue(kHysteresisFloorTrace, chip::IsStale(chip::kDynamicTminGroup) ? std::nan("") : floor);
  ShowAges(strip, channel);
}

void frmDynamicTmin::ShowAges(widgets::Strip& strip, int channel) {
  QStringList ages;
  for (const auto& [group, name] : {std::pair{chip::kTemperatureGroup, "temperature"},
                                    {chip::kDynamicTminGroup, "Tmin and limits"},
                                    {chip::kPwmGroup, "duties"}}) {
    if (chip::IsStale(group)) ages << QString(name) + ' ' + chip::AgeText(group);
  }
  strip.SetLabelIndex(0);
  strip.SetCaption(QString("Remote%1").arg(channel + 1) + (ages.isEmpty() ? "" : ": " + ages.join(", ")));
}

void frmDynamicTmin::PlaceTraceLabel(widgets::Strip& strip, int label, double value) {
  strip.SetAxisIndex(0);
  const TraceZone zone{static_cast<float>(strip.AxisAreaBottom()), static_cast<float>(strip.AxisMin()),
                       static_cast<float>(strip.AxisMax())};
  strip.SetLabelIndex(label + 1);
  strip.SetLabelTop(TraceLabelTop(zone, base::RoundToInt(value)));
}

void frmDynamicTmin::SetDutyLegend() {
  const link::FailureWatch watch;
  const auto configs = link::ReadBlock<4>("PWM1 Config"_reg);
  // After a failed transfer the list stays: 0xFF would mean that no fan is under control.
  if (!watch.Failed()) configs_ = configs;
  const auto lists = ListDutyTraces(configs_);
  for (int channel = 0; channel < kRemotes; ++channel) {
    const DutyTraceList& list = lists[static_cast<std::size_t>(channel)];
    widgets::Strip& strip = *Strip2_[static_cast<std::size_t>(channel)];
    for (int k = 0; k < 4; ++k) {
      const auto place = static_cast<std::size_t>(k);
      const bool used = k < list.Count;
      strip.SetLabelIndex(DutySlot(k));
      strip.SetCaption(used ? list.Name[place] : QString());
      strip.SetLabelTrace(kFirstDutyTrace + k);
      strip.SetLabelLine(used);
      const auto pwm = static_cast<std::size_t>(list.Pwm[place]);
      const double duty = used ? chip::Model.Measurements.PwmPercent[pwm] : 0;
      strip.PlotValue(kFirstDutyTrace + k, used && chip::IsStale(chip::kPwmGroup) ? std::nan("") : duty);
    }
    if (list.Count > 0) continue;
    strip.SetLabelIndex(DutySlot(0));
    strip.SetCaption(QString("No fans controlled by Remote%1").arg(channel + 1));
  }
}

void frmDynamicTmin::SSTab1_Click() {
  const int shown = SSTab1_->currentIndex();
  for (int channel = 0; channel < kRemotes; ++channel) {
    if (channel != shown) Strip2_[static_cast<std::size_t>(channel)]->hide();
  }
  Strip2_[static_cast<std::size_t>(shown)]->show();
}

void frmDynamicTmin::Strip2_LayoutChanged(int index) {
  widgets::Strip& strip = *Strip2_[static_cast<std::size_t>(index)];
  strip.SetAxisIndex(1);
  constexpr std::array kBelowTop{0.04, 0.06, 0.08, 0.1};
  for (int k = 0; k < 4; ++k) {
    strip.SetLabelIndex(DutySlot(k));
    strip.SetLabelTop(static_cast<float>(strip.AxisAreaTop() + kBelowTop[static_cast<std::size_t>(k)]));
  }
  strip.SetLabelIndex(kDutyUnitSlot);
  strip.SetLabelTop(static_cast<float>(strip.AxisAreaTop() + 0.005));
}

void frmDynamicTmin::cmdCancel_Click() {
  Unload();
}

void frmDynamicTmin::cmdDemo_Click() {
  if (Shared.DemoRunning) {
    cmdDemo_->setText("&Run Demo");
    Shared.DemoRunning = false;
    return;
  }
  SetUpDemo();
  cmdDemo_->setText("&Stop...");
  Load();
  SSTab1_->setCurrentIndex(1);
  Strip2_[1]->ClearData();
  Shared.DemoRunning = true;
}

}  // namespace zth::windows

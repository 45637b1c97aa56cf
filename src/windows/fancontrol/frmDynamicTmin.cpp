#include "windows/fancontrol/frmDynamicTmin.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>

#include "base/NumberText.h"
#include "base/Rounding.h"
#include "chip/DegreesText.h"
#include "chip/Measurements.h"
#include "chip/PinModel.h"
#include "widgets/Strip.h"
#include "windows/SharedState.h"
#include "windows/fancontrol/Charts.h"
#include "windows/fancontrol/Demo.h"
#include "windows/fancontrol/DynTminChecks.h"
#include "windows/fancontrol/DynTminModel.h"

namespace zth::windows {
namespace {

constexpr std::array<base::BitField, kRemotes> kCycles{chip::Field("Tmin_Cal2", "CYR1"),
                                                       chip::Field("Tmin_Cal2", "CYR2")};
constexpr base::BitField kOpPointHyst = chip::Field("Operating Point Hyst", "Hys");

QString DegreesDigits(std::uint8_t raw) {
  return QString::fromStdString(chip::DegreesText(raw));
}

double NumberIn(const QLineEdit& box) {
  return base::LeadingDecimal(box.text().toStdString());
}

}  // namespace

void frmDynamicTmin::Form_Load() {
  ShowChecks(ReadBytes<2>("Tmin_Cal1"_reg));
  const auto show = [](std::int32_t first, QLineEdit* box0, QLineEdit* box1) {
    const auto bytes = ReadBytes<2>(first);
    box0->setText(DegreesDigits(bytes[0]));
    box1->setText(DegreesDigits(bytes[1]));
  };
  show(reg::kRemote1OpPoint, channels_[0].txtOpPoint, channels_[1].txtOpPoint);
  show(reg::kRemote1Tmin, channels_[0].txtTmin, channels_[1].txtTmin);
  show(reg::kRemote1LowLimit, channels_[0].txtLowLim, channels_[1].txtLowLim);
  show(reg::kRemote1HighLimit, channels_[0].txtHighLim, channels_[1].txtHighLim);
  const auto hysteresis = ReadBytes<1>("Operating Point Hyst"_reg);
  txtOpPointHyst_->setText(QString::number(base::GetField(hysteresis[0], kOpPointHyst)));
  for (ChipHint& hint : hints_) hint.Settle();
  ShowRemote1Available(chip::PinFunctions.D1);
  if (DemoRunning) cmdDemo_->setText("S&top...");
  SetReady(true);
  DynTminOpen = true;
}

void frmDynamicTmin::Form_Unload() {
  SetReady(false);
  DynTminOpen = false;
}

void frmDynamicTmin::ShowChecks(const std::array<std::uint8_t, 2>& bytes) {
  for (std::size_t i = 0; i < checks_.size(); ++i) {
    const DynTminCheck& row = kDynTminChecks[i];
    const std::uint8_t byte = bytes[static_cast<std::size_t>(row.number - "Tmin_Cal1"_reg)];
    checks_[i]->setChecked(base::GetBit(byte, row.bit) != row.inverted);
  }
  for (std::size_t i = 0; i < channels_.size(); ++i) {
    channels_[i].cmbCycle->setCurrentIndex(static_cast<int>(base::GetField(bytes[1], kCycles[i])));
  }
}

void frmDynamicTmin::ShowRemote1Available(bool available) {
  // A window that runs this again finds a Remote1 that has come back as usable as at its opening.
  if (!available) SSTab1_->setCurrentIndex(1);
  SSTab1_->setTabEnabled(0, available);
  SSTab1_->setTabText(0, available ? "Remote1" : "R1 not enabled");
  SSTab1_Click();
}

// ---- The charts

void frmDynamicTmin::UpdateDynTminGraph() {
  for (ChipHint& hint : hints_) hint.Refresh(IsOfOtherChip());
  for (int channel = 0; channel < kRemotes; ++channel) PlotChannel(channel);
  SetDutyLegend();
}

void frmDynamicTmin::PlotChannel(int channel) {
  const chip::MeasurementSet& live = chip::Measurements;
  const auto remote = static_cast<std::size_t>(channel + 1);
  widgets::Strip& strip = *Strip2_[static_cast<std::size_t>(channel)];
  const double opPoint = live.PolledOpPoint[remote];
  const std::array values{
      static_cast<double>(live.Temperature[remote]), opPoint, static_cast<double>(live.PolledTmin[remote]),
      static_cast<double>(live.PolledHighLimit[remote]), static_cast<double>(live.PolledLowLimit[remote])};
  for (int trace = 0; trace < static_cast<int>(values.size()); ++trace) {
    strip.PlotValue(trace, values[static_cast<std::size_t>(trace)]);
    PlaceTraceLabel(strip, trace, values[static_cast<std::size_t>(trace)]);
  }
  strip.PlotValue(kHysteresisFloorTrace, opPoint - NumberIn(*txtOpPointHyst_));
}

void frmDynamicTmin::PlaceTraceLabel(widgets::Strip& strip, int label, double value) {
  strip.SetAxisIndex(0);
  const TraceZone zone{static_cast<float>(strip.AxisAreaBottom()), static_cast<float>(strip.AxisMin()),
                       static_cast<float>(strip.AxisMax())};
  strip.SetLabelIndex(label + 1);
  strip.SetLabelTop(TraceLabelTop(zone, base::RoundToInt(value)));
}

void frmDynamicTmin::SetDutyLegend() {
  const auto lists = ListDutyTraces(ReadBytes<4>(reg::kPwmConfig));
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
      strip.PlotValue(kFirstDutyTrace + k, used ? chip::Measurements.PwmPercent[pwm] : 0);
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

// ---- The handlers

void frmDynamicTmin::cmdCancel_Click() {
  Unload();
}

void frmDynamicTmin::cmdDemo_Click() {
  if (DemoRunning) {
    cmdDemo_->setText("&Run Demo");
    DemoRunning = false;
    return;
  }
  SetUpDemo();
  cmdDemo_->setText("S&top...");
  Load();
  SSTab1_->setCurrentIndex(1);
  Strip2_[1]->ClearData();
  DemoRunning = true;
}

void frmDynamicTmin::Check_Click(int check) {
  const DynTminCheck& row = kDynTminChecks[static_cast<std::size_t>(check)];
  const bool ticked = checks_[static_cast<std::size_t>(check)]->isChecked();
  const auto before = static_cast<unsigned>(link::ReadRegister(link::DeviceAddress, row.number));
  link::WriteRegisterValue(link::DeviceAddress, row.number, base::PutBit(before, row.bit, ticked != row.inverted));
}

void frmDynamicTmin::cmbCycle_Click(int channel) {
  const base::BitField field = kCycles[static_cast<std::size_t>(channel)];
  const QComboBox& list = *channels_[static_cast<std::size_t>(channel)].cmbCycle;
  ModifyRegister("Tmin_Cal2"_reg, reg::Without(field), list.findText(list.currentText()) << field.shift);
}

void frmDynamicTmin::Degrees_Change(std::int32_t number, const QLineEdit& box) {
  link::WriteRegisterValue(link::DeviceAddress, number, chip::DegreesByte(box.text().toStdString()));
}

void frmDynamicTmin::txtOpPointHyst_Change() {
  const auto degrees = static_cast<unsigned>(base::RoundToInt(NumberIn(*txtOpPointHyst_)));
  link::WriteRegisterValue(link::DeviceAddress, "Operating Point Hyst"_reg, base::PutField(0, kOpPointHyst, degrees));
}

}  // namespace zth::windows

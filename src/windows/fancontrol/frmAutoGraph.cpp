#include "windows/fancontrol/frmAutoGraph.h"

#include <utility>

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QTabWidget>

#include "base/BitField.h"
#include "base/NumberText.h"
#include "base/Rounding.h"
#include "chip/DegreesText.h"
#include "chip/FieldTexts.h"
#include "chip/Measurements.h"
#include "widgets/Strip.h"
#include "windows/SharedState.h"
#include "windows/fancontrol/Charts.h"
#include "windows/fancontrol/Registers.h"

namespace zth::windows {
namespace {

QString Digits(unsigned number) {
  return QString::number(number);
}

QString DutyDigits(std::uint8_t raw) {
  return QString::fromStdString(chip::DutyText(raw));
}

QString DegreesDigits(std::uint8_t raw) {
  return QString::fromStdString(chip::DegreesText(raw));
}

int PickedPosition(const QComboBox& list) {
  return list.findText(list.currentText());
}

void WriteByte(std::int32_t number, std::int32_t value) {
  link::WriteRegisterValue(link::DeviceAddress, number, value);
}

}  // namespace

void frmAutoGraph::Form_Load() {
  FillThermOptions();
  FillPwmControls();
  FillTemperatureControls();
  for (ChipHint& hint : hints_) hint.Settle();
  BuildModel();
  SetReady(true);
  tbPWM_Click();
  AutoGraphOpen = true;
}

void frmAutoGraph::Reread() {
  const int channel = tbTemp_->currentIndex();
  LiveWindow::Reread();
  tbTemp_->setCurrentIndex(channel);
}

void frmAutoGraph::Form_Unload() {
  SetReady(false);
  AutoGraphOpen = false;
}

void frmAutoGraph::FillThermOptions() {
  const auto therm = static_cast<unsigned>(link::ReadRegister(link::DeviceAddress, "THERM Configuration"_reg));
  chkThermFS1_->setChecked(!base::GetBit(therm, 0));
  chkThermFS2_->setChecked(!base::GetBit(therm, 1));
  const std::int16_t max = link::ReadRegister(link::DeviceAddress, "PWM 1-4 Max"_reg);
  txtMaxPWM_->setText(DutyDigits(static_cast<std::uint8_t>(max)));
}

void frmAutoGraph::FillPwmControls() {
  const auto configs = ReadBytes<kPwms>(reg::kPwmConfig);
  for (std::size_t i = 0; i < pwms_.size(); ++i) {
    pwms_[i].cmbControl->setCurrentIndex(static_cast<int>(base::GetField(configs[i], chip::kBehaviour)));
  }
  const auto frequencies = ReadBytes<2>(reg::kPwmFrequency);
  for (std::size_t i = 0; i < pwms_.size(); ++i) {
    pwms_[i].chkMinSpeed->setChecked(base::GetBit(frequencies[i / 2], static_cast<int>(i % 2)));
  }
  const auto mins = ReadBytes<kPwms>(reg::kPwmMin);
  for (std::size_t i = 0; i < pwms_.size(); ++i) pwms_[i].txtMinPWM->setText(DutyDigits(mins[i]));
}

void frmAutoGraph::FillTemperatureControls() {
  const auto tmins = ReadBytes<kChannels>(reg::kTmin);
  for (std::size_t i = 0; i < tmins.size(); ++i) temperatures_[i].txtTmin->setText(DegreesDigits(tmins[i]));
  const auto ranges = ReadBytes<kChannels>(reg::kTrangeHyst);
  for (std::size_t i = 0; i < ranges.size(); ++i) {
    temperatures_[i].cmbTrange->setCurrentIndex(static_cast<int>(base::GetField(ranges[i], chip::kTrange)));
    temperatures_[i].txtTminHyst->setText(Digits(base::GetField(ranges[i], chip::kTminHyst)));
  }
  const auto hysts = ReadBytes<2>(reg::kThermHyst);
  for (std::size_t i = 0; i < temperatures_.size(); ++i) {
    temperatures_[i].txtHyst->setText(
        Digits(base::GetField(hysts[i / 2], i % 2 == 0 ? reg::kEvenHyst : reg::kOddHyst)));
  }
  const auto limits = ReadBytes<std::size_t{2} * kChannels>(reg::kTherm1Limit);
  for (std::size_t i = 0; i < temperatures_.size(); ++i) {
    temperatures_[i].txtTH1->setText(DegreesDigits(limits[i]));
    temperatures_[i].txtTH2->setText(DegreesDigits(limits[i + kChannels]));
  }
}

// ---- The curve

void frmAutoGraph::BuildModel() {
  CurveTexts texts;
  texts.maxPwm = txtMaxPWM_->text().toStdString();
  texts.thermFS1 = chkThermFS1_->isChecked();
  texts.thermFS2 = chkThermFS2_->isChecked();
  for (std::size_t i = 0; i < pwms_.size(); ++i) {
    texts.pwms[i] = {pwms_[i].cmbControl->currentText().toStdString(), pwms_[i].txtMinPWM->text().toStdString(),
                     pwms_[i].chkMinSpeed->isChecked()};
  }
  for (std::size_t i = 0; i < temperatures_.size(); ++i) {
    const TemperatureControls& from = temperatures_[i];
    texts.channels[i] = {from.txtTmin->text().toStdString(), from.cmbTrange->currentText().toStdString(),
                         from.txtTminHyst->text().toStdString(), from.txtTH1->text().toStdString(),
                         from.txtTH2->text().toStdString()};
  }
  texts.polledTmin = chip::Measurements.PolledTmin;
  model_ = BuildCurveModel(texts);
}

void frmAutoGraph::SetCurveLegend(int pwm) {
  const PwmCurve& curve = model_.Pwm[static_cast<std::size_t>(pwm)];
  const auto caption = [this](int slot, const QString& text) {
    stpGraph_->SetLabelIndex(slot);
    stpGraph_->SetCaption(text);
  };
  for (int slot = 1; slot <= kChannels; ++slot) caption(slot, "");
  for (int s = 0; s < curve.SourceCount; ++s) {
    caption(s + 1, QString::fromStdString(curve.Sources[static_cast<std::size_t>(s)].Name));
  }
  if (curve.SourceCount > 0) return;
  stpGraph_->SetLabelIndex(0);
  caption(1, stpGraph_->Caption() + " is not under automatic control");
}

void frmAutoGraph::DrawCurve() {
  const int pwm = tbPWM_->currentIndex();
  SetCurveLegend(pwm);
  stpGraph_->ClearData();
  std::vector<CurvePaths> paths;
  if (Ready()) {
    for (int s = 0; s < model_.Pwm[static_cast<std::size_t>(pwm)].SourceCount; ++s) {
      paths.push_back(BuildCurvePaths(model_, pwm, s, {stpGraph_->XSpan(), stpGraph_->XEnd()}));
    }
  }
  PlotPaths(paths);
  if (Ready()) PlotTrail();
}

void frmAutoGraph::PlotPaths(const std::vector<CurvePaths>& paths) {
  const auto plot = [this](int trace, const DrawPath& path) {
    for (const CurvePoint& point : path) stpGraph_->PlotXY(trace, point.x, point.y);
  };
  const int sources = static_cast<int>(paths.size());
  for (int s = 0; s < sources; ++s) {
    plot(s, VisibleMain(paths[static_cast<std::size_t>(s)].main, stpGraph_->XEnd()));
  }
  for (int s = 0; s < sources; ++s) {
    plot(s + kHysteresisTrace, VisibleHysteresis(paths[static_cast<std::size_t>(s)].hysteresis, stpGraph_->XEnd()));
  }
}

void frmAutoGraph::PlotAFCTemps() {
  for (ChipHint& hint : hints_) hint.Refresh(IsOfOtherChip());
  const int pwm = tbPWM_->currentIndex();
  stpGraph_->ClearData();
  BuildModel();
  RecordDots(pwm);
  DrawCurve();
  const PwmCurve& curve = model_.Pwm[static_cast<std::size_t>(pwm)];
  for (int s = 0; s < curve.SourceCount; ++s) {
    const auto channel = static_cast<std::size_t>(curve.Sources[static_cast<std::size_t>(s)].Channel - 1);
    const double degrees = static_cast<double>(chip::Measurements.Temperature[channel]);
    const double duty = chip::Measurements.PwmPercent[static_cast<std::size_t>(pwm)];
    stpGraph_->PlotXY(s + kDotTrace, degrees, duty);
    stpGraph_->PlotXY(s + kDotTrace, degrees, duty);
  }
}

std::vector<int> frmAutoGraph::SourcesShown() const {
  const int pwm = tbPWM_->currentIndex();
  const PwmCurve& curve = model_.Pwm[static_cast<std::size_t>(pwm)];
  std::vector<int> shown{link::InterfaceMode, link::DeviceAddress, pwm};
  for (int s = 0; s < curve.SourceCount; ++s) shown.push_back(curve.Sources[static_cast<std::size_t>(s)].Channel);
  return shown;
}

void frmAutoGraph::RecordDots(int pwm) {
  const PwmCurve& curve = model_.Pwm[static_cast<std::size_t>(pwm)];
  const double now = Services().clock.Now();
  const std::vector<int> of = SourcesShown();
  // A trail tells of one PWM and its sources; of others it would tell lies.
  if (std::exchange(trailOf_, of) != of) trail_.Clear();
  trail_.Expire(now);
  for (int s = 0; s < curve.SourceCount; ++s) {
    const auto channel = static_cast<std::size_t>(curve.Sources[static_cast<std::size_t>(s)].Channel - 1);
    trail_.Add({s, static_cast<double>(chip::Measurements.Temperature[channel]),
                static_cast<double>(chip::Measurements.PwmPercent[static_cast<std::size_t>(pwm)]), now});
  }
}

void frmAutoGraph::PlotTrail() {
  // Behind a change of the PWM or of its sources the trail is another curve's until the next dots.
  if (SourcesShown() != trailOf_) return;
  const double now = Services().clock.Now();
  for (const DotTrail::Dot& dot : trail_.Dots()) {
    stpGraph_->PlotXY(kTrailTrace + DotTrail::AgeOf(dot, now) * kChannels + dot.source, dot.x, dot.y);
  }
}

// ---- The handlers

void frmAutoGraph::tbPWM_Click() {
  const int pwm = tbPWM_->currentIndex();
  const PwmCurve& curve = model_.Pwm[static_cast<std::size_t>(pwm)];
  if (curve.SourceCount > 0) tbTemp_->setCurrentIndex(curve.Sources[0].Channel - 1);
  stpGraph_->SetLabelIndex(0);
  stpGraph_->SetCaption(tbPWM_->tabText(pwm));
  DrawCurve();
}

void frmAutoGraph::cmdCancel_Click() {
  Unload();
}

void frmAutoGraph::Redraw() {
  BuildModel();
  DrawCurve();
}

void frmAutoGraph::ThermOption(int bit, bool ticked) {
  const auto before = static_cast<unsigned>(link::ReadRegister(link::DeviceAddress, "THERM Configuration"_reg));
  WriteByte("THERM Configuration"_reg, base::PutBit(before, bit, !ticked));
  Redraw();
}

void frmAutoGraph::Degrees(std::int32_t number, const QLineEdit& box) {
  WriteByte(number, chip::DegreesByte(box.text().toStdString()));
  Redraw();
}

void frmAutoGraph::cmbControl_Click(int pwm) {
  const int position = PickedPosition(*pwms_[static_cast<std::size_t>(pwm)].cmbControl);
  ModifyRegister(reg::kPwmConfig + pwm, reg::Without(chip::kBehaviour), position << chip::kBehaviour.shift);
  Redraw();
  tbPWM_Click();
}

void frmAutoGraph::txtMinPWM_Change(int pwm) {
  const QLineEdit& box = *pwms_[static_cast<std::size_t>(pwm)].txtMinPWM;
  WriteByte(reg::kPwmMin + pwm, chip::DutyByte(box.text().toStdString()));
  BuildModel();
  tbPWM_Click();
}

void frmAutoGraph::chkMinSpeed_Click(int pwm) {
  const std::int32_t frequency = reg::kPwmFrequency + pwm / 2;
  const auto before = static_cast<unsigned>(link::ReadRegister(link::DeviceAddress, frequency));
  WriteByte(frequency, base::PutBit(before, pwm % 2, pwms_[static_cast<std::size_t>(pwm)].chkMinSpeed->isChecked()));
  Redraw();
}

void frmAutoGraph::cmbTrange_Click(int channel) {
  const int position = PickedPosition(*temperatures_[static_cast<std::size_t>(channel)].cmbTrange);
  ModifyRegister(reg::kTrangeHyst + channel, reg::Without(chip::kTrange), position << chip::kTrange.shift);
  Redraw();
}

void frmAutoGraph::txtTminHyst_Change(int channel) {
  const QLineEdit& box = *temperatures_[static_cast<std::size_t>(channel)].txtTminHyst;
  const std::int32_t degrees = base::RoundToInt(base::LeadingDecimal(box.text().toStdString()));
  ModifyRegister(reg::kTrangeHyst + channel, reg::Without(chip::kTminHyst),
                 degrees & static_cast<std::int32_t>(base::Mask(chip::kTminHyst)));
  Redraw();
}

void frmAutoGraph::txtHyst_Change(int channel) {
  const QLineEdit& box = *temperatures_[static_cast<std::size_t>(channel)].txtHyst;
  const base::BitField field = channel % 2 == 0 ? reg::kEvenHyst : reg::kOddHyst;
  // Not cut to its four bits: a number too great for them reaches the neighbour's.
  ModifyRegister(reg::kThermHyst + channel / 2, reg::Without(field),
                 chip::WholeByte(box.text().toStdString(), field.shift));
  Redraw();
}

}  // namespace zth::windows

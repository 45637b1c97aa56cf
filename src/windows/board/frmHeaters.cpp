#include "windows/board/frmHeaters.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

#include "base/NumberText.h"
#include "base/Rounding.h"
#include "chip/ChipState.h"
#include "chip/Measurements.h"
#include "link/Declarations.h"
#include "link/USBStuff.h"
#include "widgets/GSlider.h"
#include "widgets/Named.h"
#include "widgets/Pale.h"
#include "windows/Handlers.h"
#include "windows/SharedState.h"
#include "windows/SliderHandlers.h"

namespace zth::windows {
namespace {

constexpr int kHeaters = 2;

/// The adapter reports twice the percentage.
constexpr double kDriveScale = 2.0;

/// Heater 1 belongs to Remote1, heater 2 to Remote2.
QString TemperatureCaption(int heater) {
  return QString("Remote%1 = ").arg(heater + 1);
}

}  // namespace

frmHeaters::frmHeaters(const Context& context) : ChildWindow("frmHeaters", "Heater Control", context, kShowsBoard) {
  auto* column = new QVBoxLayout(this);
  for (int heater = 0; heater < kHeaters; ++heater) column->addWidget(MakeFrame(heater));
  lblNoAdapter_ = widgets::Named<QLabel>("lblNoAdapter", "The heaters can be reached over USB only.", this);
  column->addWidget(lblNoAdapter_);

  auto* cmdClose = widgets::Named<QPushButton>("cmdClose", "Clo&se", this);
  OnClick(*cmdClose, [this] { cmdClose_Click(); });
  SetCancelButton(*cmdClose);
  column->addStretch();
  column->addWidget(cmdClose, 0, Qt::AlignRight);
  // Not the first slider: the user has not chosen it, and a stray wheel or arrow key would switch on the heat.
  cmdClose->setFocus();
}

QFrame* frmHeaters::MakeFrame(int heater) {
  const auto index = static_cast<std::size_t>(heater);
  auto* frame = widgets::Named<QFrame>(QString("Frame%1").arg(heater + 1), this);
  frame->setFrameShape(QFrame::StyledPanel);
  auto* label =
      widgets::Named<QLabel>(QString("Label%1").arg(heater + 1), QString("Heater&%1 PWM").arg(heater + 1), frame);

  widgets::GSlider*& slider = sldHeater_[index];
  slider = widgets::Named<widgets::GSlider>(QString("sldHeater(%1)").arg(heater), frame);
  slider->SetIndex(heater);
  slider->setToolTip("Drive of the heater; acts at once");
  slider->setMinimumWidth(slider->fontMetrics().height() * 14);
  label->setBuddy(slider);
  OnSlide(*slider, {.mouseDown = {}, .change = [this, heater] { sldHeater_Change(heater); }, .mouseUp = {}},
          Services().clock);

  QLabel*& temperature = lblTemp_[index];
  temperature = widgets::Named<QLabel>(QString("lblTemp(%1)").arg(heater), TemperatureCaption(heater), frame);
  // Reserve room for the widest reading, so that nothing moves as the temperature changes.
  temperature->setMinimumWidth(temperature->fontMetrics().horizontalAdvance(TemperatureCaption(heater) + "-88.75°C"));

  auto* row = new QHBoxLayout(frame);
  row->addWidget(label);
  row->addWidget(slider, 1);
  row->addSpacing(12);
  row->addWidget(temperature);
  return frame;
}

void frmHeaters::Form_Load() {
  lblNoAdapter_->setVisible(link::Bus.InterfaceMode != link::kModeUsb);
  link::ReadHeaterState();
  for (std::size_t heater = 0; heater < sldHeater_.size(); ++heater) {
    sldHeater_[heater]->SetValue(link::Bus.ReadBuffer[heater] / kDriveScale);
  }
  Shared.HeatersOpen = true;
}

void frmHeaters::Form_Unload() {
  Shared.HeatersOpen = false;
}

void frmHeaters::RefreshTemperatures() {
  for (int heater = 0; heater < kHeaters; ++heater) {
    const float degrees = chip::Model.Measurements.Temperature[static_cast<std::size_t>(heater + 1)];
    QLabel& label = *lblTemp_[static_cast<std::size_t>(heater)];
    label.setText(TemperatureCaption(heater) + QString::fromStdString(base::GeneralText(degrees)) + "°C" +
                  chip::AgeSuffix(chip::kTemperatureGroup));
    widgets::MakePale(label, chip::IsStale(chip::kTemperatureGroup));
  }
}

void frmHeaters::cmdClose_Click() {
  Unload();
}

void frmHeaters::sldHeater_Change(int index) {
  std::int32_t percent = base::RoundToInt(sldHeater_[static_cast<std::size_t>(index)]->Value());
  link::SetHeater(index + 1, percent);
}

}  // namespace zth::windows

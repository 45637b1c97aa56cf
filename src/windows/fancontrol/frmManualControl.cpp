#include "windows/fancontrol/frmManualControl.h"

#include <algorithm>

#include <QEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QPainter>
#include <QPushButton>

#include "chip/ChipState.h"
#include "chip/Conversions.h"
#include "chip/Measurements.h"
#include "chip/PwmModes.h"
#include "chip/RegisterNames.h"
#include "link/Declarations.h"
#include "link/USBStuff.h"
#include "widgets/GSlider.h"
#include "widgets/Named.h"
#include "windows/Handlers.h"
#include "windows/SharedState.h"
#include "windows/SliderHandlers.h"

namespace zth::windows {
namespace {

constexpr std::size_t kDutyGroup = 3;

/// A label on a rounded ground of its palette's window colour.
class Badge final : public QLabel {
 public:
  using QLabel::QLabel;

 protected:
  void paintEvent(QPaintEvent* event) override {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(palette().color(QPalette::Window));
    painter.drawRoundedRect(rect(), height() / 4.0, height() / 4.0);
    painter.end();
    QLabel::paintEvent(event);
  }
};

/// The state in its colour. The red can be read on a nearly black ground alone, the green on a light one.
void ShowState(QLabel& label, bool manual) {
  label.setText(manual ? "Enabled" : "Disabled");
  QPalette colours;
  colours.setColor(QPalette::WindowText, manual ? QColor(0, 127, 0) : QColor(255, 0, 0));
  colours.setColor(QPalette::Window, manual ? QColor(245, 245, 245) : QColor(20, 20, 20));
  label.setPalette(colours);
}

}  // namespace

frmManualControl::frmManualControl(const Context& context)
    : ChildWindow("frmManualControl", "Manual Fan Control", context, kShowsManual | kShowsDuties | kFollowsModel) {
  auto* cmdClose = widgets::Named<QPushButton>("cmdClose", "Clo&se", this);
  OnClick(*cmdClose, [this] { cmdClose_Click(); });
  SetCancelButton(*cmdClose);

  auto* column = new QVBoxLayout(this);
  column->addWidget(MakeFrame());
  column->addStretch();
  column->addWidget(cmdClose, 0, Qt::AlignRight);
}

QGroupBox* frmManualControl::MakeFrame() {
  auto* frame = widgets::Named<QGroupBox>("Frame1", "Set Fan PWM", this);
  auto* grid = new QGridLayout(frame);
  grid->setHorizontalSpacing(12);
  grid->setColumnStretch(1, 1);
  for (int pwm = 0; pwm < chip::kPwmChannels; ++pwm) {
    const auto index = static_cast<std::size_t>(pwm);
    auto* label = widgets::Named<QLabel>(QString("Label1(%1)").arg(pwm), QString("PWM&%1").arg(pwm + 1), frame);
    widgets::GSlider*& slider = sldManual_[index];
    slider = widgets::Named<widgets::GSlider>(QString("sldManual(%1)").arg(pwm), frame);
    slider->SetIndex(pwm);
    slider->setMinimumWidth(slider->fontMetrics().height() * 16);
    label->setBuddy(slider);
    OnSlide(*slider,
            {.mouseDown = [this] { sldManual_MouseDown(); },
             .change = [this, pwm] { sldManual_Change(pwm); },
             .mouseUp = [this] { sldManual_MouseUp(); }},
            Services().clock);
    QLabel*& state = lblManual_[index];
    state = widgets::Named<Badge>(QString("lblManual(%1)").arg(pwm), "Disabled", frame);
    state->setAlignment(Qt::AlignCenter);
    state->setMargin(4);
    grid->addWidget(label, pwm, 0);
    grid->addWidget(slider, pwm, 1);
    grid->addWidget(state, pwm, 2);
  }
  return frame;
}

void frmManualControl::Form_Load() {
  RefreshManualControlStates();
  RefreshManualControlSliders();
  Shared.ManualOpen = true;
}

void frmManualControl::Form_Unload() {
  Shared.ManualOpen = false;
  Shared.ManualSliderHeld = false;  // a window closed by key under a held slider gets no report of its release
}

void frmManualControl::RefreshManualControlStates() {
  for (std::size_t pwm = 0; pwm < chip::kPwmChannels; ++pwm) {
    const bool manual = chip::Model.PwmManual[pwm + 1];
    ShowState(*lblManual_[pwm], manual);
    sldManual_[pwm]->setEnabled(manual);
    // A slider that cannot be moved shows the chip's duty all the same, and that has to be read.
    QPalette readable;
    readable.setColor(QPalette::Disabled, QPalette::WindowText,
                      palette().color(QPalette::Active, QPalette::WindowText));
    sldManual_[pwm]->setPalette(readable);
    sldManual_[pwm]->setToolTip(manual ? "Duty of the PWM; acts at once"
                                       : "Follows the chip: the PWM is not in manual mode");
  }
}

void frmManualControl::RefreshManualControlSliders() {
  for (std::size_t pwm = 0; pwm < chip::kPwmChannels; ++pwm) {
    // A duty that was read before the last write would turn the slider back, and the next step of a key would take the
    // fan there.
    if (writtenAfter_[pwm] == chip::Model.Measurements.Reads[kDutyGroup]) continue;
    writtenAfter_[pwm].reset();
    sldManual_[pwm]->SetValue(std::min<int>(chip::Model.Measurements.PwmPercent[pwm], 100));
  }
}

void frmManualControl::changeEvent(QEvent* event) {
  ChildWindow::changeEvent(event);
  if (event->type() == QEvent::PaletteChange && Shared.ManualOpen) RefreshManualControlStates();
}

void frmManualControl::cmdClose_Click() {
  Unload();
}

void frmManualControl::sldManual_MouseDown() {
  Shared.ManualSliderHeld = true;
}

void frmManualControl::sldManual_MouseUp() {
  Shared.ManualSliderHeld = false;
}

void frmManualControl::sldManual_Change(int index) {
  const auto pwm = static_cast<std::size_t>(index);
  const double percent = sldManual_[pwm]->Value();
  writtenAfter_[pwm] = chip::Model.Measurements.Reads[kDutyGroup];
  link::WriteRegisterValue(link::Bus.DeviceAddress, "PWM 1 Value"_reg + index, chip::ByteFromPercent(percent));
}

}  // namespace zth::windows

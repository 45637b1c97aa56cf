#include "windows/limits/frmLimits.h"

#include <memory>
#include <vector>

#include <QCheckBox>
#include <QEvent>
#include <QFrame>
#include <QHBoxLayout>
#include <QPushButton>
#include <QSignalBlocker>
#include <QTabWidget>
#include <QVBoxLayout>

#include "chip/ReadEffects.h"
#include "widgets/Named.h"
#include "windows/Handlers.h"
#include "windows/SharedState.h"
#include "windows/limits/AlertList.h"
#include "windows/limits/AlertMarks.h"
#include "windows/limits/AlertTable.h"
#include "windows/limits/LimitPanel.h"

namespace zth::windows {

frmLimits::frmLimits(const Context& context)
    : ChildWindow("frmLimits", "Limits / Interrupts", context, kShowsChip | kShowsPins) {
  auto* SSTab1 = widgets::Named<QTabWidget>("SSTab1", this);
  OnTab(*SSTab1);
  SSTab1->setUsesScrollButtons(false);  // all six tabs stay visible
  form_.temperature = new LimitPanel(kTemperatureGauge, this);
  form_.fan = new LimitPanel(kFanGauge, this);
  form_.voltage = new LimitPanel(kVoltageGauge, this);
  form_.thermTimer = new LimitPanel(kThermTimerGauge, this);
  form_.thermPin = new LimitPanel(kThermPinGauge, this);
  form_.thermPin->FillList();  // fixed: does not depend on the pins
  form_.temperatureAlerts = new AlertTable(kTemperatureAlerts, this);
  form_.fanAlerts = new AlertTable(kFanAlerts, this);
  form_.voltageAlerts = new AlertTable(kVoltageAlerts, this);
  form_.thermAlerts = new AlertTable(kThermAlerts, this);
  form_.thermPinAlerts = new AlertTable(kThermPinAlerts, this);
  form_.digitalAlerts = new AlertTable(kDigitalAlerts, this);
  for (int row = 0; row < static_cast<int>(kVoltageAlerts.rows.size()); ++row) {
    form_.voltageAlerts->EnableLabel(row, false);
  }

  AddTab(*SSTab1, "Temperature", "Frame3", form_.temperature, form_.temperatureAlerts);
  AddTab(*SSTab1, "Fans", "Frame4", form_.fan, form_.fanAlerts);
  AddTab(*SSTab1, "Voltage", "Frame5", form_.voltage, form_.voltageAlerts);
  AddTab(*SSTab1, "THERM Timer", "Frame1", form_.thermTimer, form_.thermAlerts);
  AddTab(*SSTab1, "THERM Limits", nullptr, form_.thermPin, form_.thermPinAlerts);
  AddTab(*SSTab1, "Digital/VRD", nullptr, nullptr, form_.digitalAlerts);

  events_ = new AlertList(context, this);

  auto* cmdClose = widgets::Named<QPushButton>("cmdClose", "C&lose", this);
  OnClick(*cmdClose, [this] { Unload(); });
  SetCancelButton(*cmdClose);

  marks_ = std::make_unique<AlertMarks>(*SSTab1, context.desktop, objectName());
  for (const LimitForm::Page& page : form_.Pages()) {
    connect(page.alerts, &AlertTable::LampTurned, this,
            [this, page](int row, bool alert) { NoteTurn(page, row, alert); });
  }

  auto* column = new QVBoxLayout(this);
  roomForMarks_ = new QSpacerItem(marks_->Fit(), 0);
  column->addSpacerItem(roomForMarks_);
  column->addWidget(SSTab1, 2);
  column->addWidget(events_, 1);
  column->addWidget(cmdClose, 0, Qt::AlignRight);
}

frmLimits::~frmLimits() = default;

void frmLimits::AddTab(QTabWidget& tabs, const char* caption, const char* frame, LimitPanel* gauge,
                       AlertTable* alerts) {
  auto* page = new QFrame(&tabs);
  page->setFrameStyle(QFrame::NoFrame);
  QFrame* holder = page;
  if (frame != nullptr) {
    holder = widgets::Named<QFrame>(frame, page);
    auto* whole = new QVBoxLayout(page);
    whole->setContentsMargins(0, 0, 0, 0);
    whole->addWidget(holder);
  }
  auto* row = new QHBoxLayout(holder);
  const int gap = fontMetrics().height();
  row->setContentsMargins(gap, gap, gap, gap);
  row->setSpacing(2 * gap);
  if (gauge != nullptr) {
    row->addWidget(gauge, 1);
    row->addWidget(alerts);
  } else {
    row->addWidget(alerts);
    row->addStretch();
  }
  tabs.addTab(page, caption);
}

void frmLimits::Form_Load() {
  LookAtChip();
  InitTemperatureTab(form_);
  InitFanTab(form_);
  InitVoltageTab(form_);
  InitThermTimerTab(form_);
  InitThermPinTab(form_);
  InitDigitalTab(form_);
  Shared.LimitsOpen = true;
}

void frmLimits::Reread() {
  // A box that changes would write back what was just read.
  std::vector<std::unique_ptr<QSignalBlocker>> quiet;
  for (QCheckBox* mask : findChildren<QCheckBox*>()) quiet.push_back(std::make_unique<QSignalBlocker>(mask));
  for (const LimitForm::Page& page : form_.Pages()) {
    if (page.gauge != nullptr) page.gauge->KeepSelection();
  }
  Load();
}

void frmLimits::Form_Unload() {
  Shared.LimitsOpen = false;
  marks_->Leave();
}

void frmLimits::changeEvent(QEvent* event) {
  ChildWindow::changeEvent(event);
  if (event->type() != QEvent::FontChange || roomForMarks_ == nullptr) return;
  roomForMarks_->changeSize(marks_->Fit(), 0);
  layout()->invalidate();
}

void frmLimits::Refresh() {
  RefreshTemperatureGauge(form_);
  RefreshFanGauge(form_);
  RefreshVoltageGauge(form_);
  RefreshThermTimerGauge(form_);
  RefreshThermPinGauge(form_);
  // Each refresh reads the lamps of all tabs. The chip holds an alert until it has been read, so one read is enough to
  // record it, here or in another window (NoteStatusRead). Only an alert that a program running next to this one reads
  // first is lost.
  TurnLamps([this] { RefreshAlertToggles(form_); });
}

void frmLimits::TakeStatus(std::int32_t reg, int value) {
  TurnLamps([&] { ShowStatus(form_, reg, value); });
}

template <typename Show>
void frmLimits::TurnLamps(Show show) {
  LookAtChip();
  turnedRed_ = false;
  show();
  std::vector<QStringList> red;
  for (const LimitForm::Page& page : form_.Pages()) red.push_back(page.alerts->Alerts());
  marks_->Show(red);
  if (turnedRed_) events_->Sound();
}

void frmLimits::LookAtChip() {
  const link::ChipId inUse = link::ChipInUse();
  if (inUse == polled_) return;
  polled_ = inUse;
  for (const LimitForm::Page& page : form_.Pages()) {
    page.alerts->ForgetStatus();
    if (page.gauge != nullptr) page.gauge->ForgetLimits();
  }
}

void frmLimits::NoteTurn(const LimitForm::Page& page, int row, bool alert) {
  const ChannelFacts facts = page.gauge != nullptr ? page.gauge->FactsOf(row) : ChannelFacts();
  events_->Add(
      {Services().clock.WallTime(), link::TextOf(polled_), page.alerts->Channel(row), facts.value, facts.limit, alert});
  turnedRed_ = turnedRed_ || alert;
}

void NoteStatusRead(const Desktop& desktop, std::int32_t reg, int value) {
  if (!chip::ReadClears(reg) || !Shared.LimitsOpen) return;
  if (auto* limits = qobject_cast<frmLimits*>(desktop.FindWindow("frmLimits"))) limits->TakeStatus(reg, value);
}

}  // namespace zth::windows

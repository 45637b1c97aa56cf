#include "windows/limits/frmLimits.h"

#include <memory>
#include <vector>

#include <QCheckBox>
#include <QFrame>
#include <QHBoxLayout>
#include <QPushButton>
#include <QSignalBlocker>
#include <QTabWidget>
#include <QVBoxLayout>

#include "widgets/Named.h"
#include "windows/Handlers.h"
#include "windows/SharedState.h"
#include "windows/limits/AlertTable.h"
#include "windows/limits/LimitPanel.h"

namespace zth::windows {

frmLimits::frmLimits(const Context& context)
    : ChildWindow("frmLimits", "Limits / Interrupts", context, kShowsChip | kShowsPins) {
  auto* SSTab1 = widgets::Named<QTabWidget>("SSTab1", this);
  OnTab(*SSTab1);
  SSTab1->setUsesScrollButtons(false);  // all six tabs are in sight
  form_.temperature = new LimitPanel(kTemperatureGauge, this);
  form_.fan = new LimitPanel(kFanGauge, this);
  form_.voltage = new LimitPanel(kVoltageGauge, this);
  form_.thermTimer = new LimitPanel(kThermTimerGauge, this);
  form_.thermPin = new LimitPanel(kThermPinGauge, this);
  form_.thermPin->FillList();  // fixed: it does not follow the pins
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

  auto* cmdClose = widgets::Named<QPushButton>("cmdClose", "C&lose", this);
  OnClick(*cmdClose, [this] { Unload(); });
  SetCancelButton(*cmdClose);

  auto* column = new QVBoxLayout(this);
  column->addWidget(SSTab1, 1);
  column->addWidget(cmdClose, 0, Qt::AlignRight);
}

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
  InitTemperatureTab(form_);
  InitFanTab(form_);
  InitVoltageTab(form_);
  InitThermTimerTab(form_);
  InitThermPinTab(form_);
  InitDigitalTab(form_);
  Shared.LimitsOpen = true;
}

void frmLimits::Reread() {
  // A box that changes would write back what has just been read.
  std::vector<std::unique_ptr<QSignalBlocker>> quiet;
  for (QCheckBox* mask : findChildren<QCheckBox*>()) quiet.push_back(std::make_unique<QSignalBlocker>(mask));
  for (LimitPanel* gauge : {form_.temperature, form_.fan, form_.voltage, form_.thermTimer, form_.thermPin}) {
    gauge->KeepSelection();
  }
  Load();
}

void frmLimits::Form_Unload() {
  Shared.LimitsOpen = false;
}

void frmLimits::Refresh() {
  RefreshTemperatureGauge(form_);
  RefreshFanGauge(form_);
  RefreshVoltageGauge(form_);
  RefreshThermTimerGauge(form_);
  RefreshThermPinGauge(form_);
  RefreshAlertToggles(form_);
}

}  // namespace zth::windows

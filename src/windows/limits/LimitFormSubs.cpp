#include "windows/limits/LimitFormSubs.h"

#include <array>
#include <optional>

#include "base/BitField.h"
#include "chip/ChipState.h"
#include "chip/PinModel.h"
#include "chip/RegisterNames.h"
#include "link/Declarations.h"
#include "link/Transfers.h"
#include "link/USBStuff.h"
#include "windows/limits/AlertTable.h"
#include "windows/limits/LimitPanel.h"

namespace zth::windows {
namespace {

// The BMC's copies, since reading the host's would clear them for other programs; the THERM limits have only the
// host's.
constexpr std::array kStatusRegisters{
    "Thermal Status 1,BMC"_reg, "Thermal Status 2,BMC"_reg, "Thermal Status 3,Host"_reg, "Voltage Status 1,BMC"_reg,
    "Voltage Status 2,BMC"_reg, "Fan Status,BMC"_reg,       "Digital Status,BMC"_reg};

/// Nothing when the transfer failed, as far as the link's library reports failures.
std::optional<int> Read(int reg) {
  const link::FailureWatch watch;
  const int value = link::ReadRegister(link::Bus.DeviceAddress, reg);
  return watch.Failed() ? std::nullopt : std::optional(value);
}

/// Shows the masks; a box that changes writes its mask. After a failed read nothing is shown, because 0xFF would tick
/// every box.
void ShowMasks(AlertTable& alerts, int reg, std::optional<int> masks) {
  if (masks) alerts.ShowMasks(reg, *masks);
}

/// Refills the list, selects its start item and shows its limits, even if there is nothing to select.
void InitGauge(LimitPanel& panel) {
  panel.FillList();
  panel.SelectStart();
  panel.ShowLimits();
}

/// A row is named after its pin's current channel; pins that never change keep their name.
void NameVoltageRow(AlertTable& alerts, const LimitChannel& channel) {
  static constexpr std::array kRowsOfPinsWithChoices{3, 4, 7, 8, 9, 10};
  alerts.EnableLabel(channel.row, true);
  for (const int row : kRowsOfPinsWithChoices) {
    if (row == channel.row) alerts.SetCaption(row, channel.item);
  }
}

}  // namespace

void InitTemperatureTab(const LimitForm& form) {
  InitGauge(*form.temperature);
  ShowMasks(*form.temperatureAlerts, "Thermal Mask 1"_reg, Read("Thermal Mask 1"_reg));
  form.temperatureAlerts->SetLiveByPins();
}

void InitFanTab(const LimitForm& form) {
  InitGauge(*form.fan);
  ShowMasks(*form.fanAlerts, "Fan Mask"_reg, Read("Fan Mask"_reg));
  const int tachEnable = Read("Tach Enable"_reg).value_or(0xFF);
  const int rows = static_cast<int>(form.fanAlerts->Tab().rows.size());
  for (int row = 0; row < rows; ++row) UpdateFanRow(form, row, tachEnable);
}

void UpdateFanRow(const LimitForm& form, int row, int tachEnable) {
  const AlertRow& fan = form.fanAlerts->Tab().rows[static_cast<std::size_t>(row)];
  const bool enabled = base::GetBit(static_cast<unsigned>(tachEnable), fan.bit);
  form.fanAlerts->SetLive(row, enabled && fan.live(chip::Model.PinFunctions));
}

void InitVoltageTab(const LimitForm& form) {
  // Only the labels follow the pins here, and once enabled they stay enabled: a mask can be set for a channel that is
  // not present.
  form.voltage->FillList();
  for (const LimitChannel& channel : form.voltage->Tab().channels) {
    if (form.voltage->Lists(channel)) NameVoltageRow(*form.voltageAlerts, channel);
  }
  form.voltage->SelectStart();
  form.voltage->ShowLimits();
  for (const int reg : {"Voltage Mask 1"_reg, "Voltage Mask 2"_reg}) ShowMasks(*form.voltageAlerts, reg, Read(reg));
}

void InitThermTimerTab(const LimitForm& form) {
  form.thermTimer->FillList();
  form.thermTimer->EnableList(form.thermTimer->Count() > 0);
  form.thermTimer->SelectStart();
  form.thermTimer->ShowLimits();
  const auto masks = Read("Thermal Mask 2"_reg);
  ShowMasks(*form.thermAlerts, "Thermal Mask 2"_reg, masks);
  ShowMasks(*form.digitalAlerts, "Thermal Mask 2"_reg, masks);
}

void InitThermPinTab(const LimitForm& form) {
  form.thermPin->SelectStart();
  form.thermPin->ShowLimits();
}

void InitDigitalTab(const LimitForm& form) {
  ShowMasks(*form.digitalAlerts, "Digital Mask"_reg, Read("Digital Mask"_reg));
}

void RefreshTemperatureGauge(const LimitForm& form) {
  form.temperature->RefreshGauge();
}
void RefreshFanGauge(const LimitForm& form) {
  form.fan->RefreshGauge();
}
void RefreshVoltageGauge(const LimitForm& form) {
  form.voltage->RefreshGauge();
}
void RefreshThermTimerGauge(const LimitForm& form) {
  form.thermTimer->RefreshGauge();
}
void RefreshThermPinGauge(const LimitForm& form) {
  form.thermPin->RefreshGauge();
}

void RefreshAlertToggles(const LimitForm& form) {
  for (const int reg : kStatusRegisters) ShowStatus(form, reg, Read(reg));
}

void ShowStatus(const LimitForm& form, int reg, std::optional<int> status) {
  for (const LimitForm::Page& page : form.Pages()) page.alerts->ShowStatus(reg, status);
}

}  // namespace zth::windows

#pragma once

#include <array>
#include <optional>

namespace zth::windows {

class AlertTable;
class LimitPanel;

/// The controls of a loaded frmLimits, tab by tab.
struct LimitForm {
  LimitPanel* temperature = nullptr;
  LimitPanel* fan = nullptr;
  LimitPanel* voltage = nullptr;
  LimitPanel* thermTimer = nullptr;
  LimitPanel* thermPin = nullptr;
  AlertTable* temperatureAlerts = nullptr;
  AlertTable* fanAlerts = nullptr;
  AlertTable* voltageAlerts = nullptr;
  AlertTable* thermAlerts = nullptr;
  AlertTable* thermPinAlerts = nullptr;
  AlertTable* digitalAlerts = nullptr;

  /// The parts of a tab; the last tab has no gauge.
  struct Page {
    LimitPanel* gauge;
    AlertTable* alerts;
  };
  /// All tabs, in order.
  std::array<Page, 6> Pages() const {
    return {{{temperature, temperatureAlerts},
             {fan, fanAlerts},
             {voltage, voltageAlerts},
             {thermTimer, thermAlerts},
             {thermPin, thermPinAlerts},
             {nullptr, digitalAlerts}}};
  }
};

// Loading, tab by tab: each updates its list, its masks and its rows from the chip and the pins.
void InitTemperatureTab(const LimitForm& form);
void InitFanTab(const LimitForm& form);
void InitVoltageTab(const LimitForm& form);
void InitThermTimerTab(const LimitForm& form);
void InitThermPinTab(const LimitForm& form);
/// InitThermTimerTab sets its rows of "Thermal Mask 2".
void InitDigitalTab(const LimitForm& form);

/// A fan's row is live if its pin is a tach input and its bit of `tachEnable`, register "Tach Enable", is set.
void UpdateFanRow(const LimitForm& form, int row, int tachEnable);

// Called by the master timer while the window is open. None of them changes a slider, a check box or a list.
void RefreshTemperatureGauge(const LimitForm& form);
void RefreshFanGauge(const LimitForm& form);
void RefreshVoltageGauge(const LimitForm& form);
void RefreshThermTimerGauge(const LimitForm& form);
void RefreshThermPinGauge(const LimitForm& form);
/// Reads the seven status registers and sets the lamps of all tabs.
void RefreshAlertToggles(const LimitForm& form);
/// Sets the lamps of a status register, as AlertTable::ShowStatus does, on all tabs.
void ShowStatus(const LimitForm& form, int reg, std::optional<int> status);

}  // namespace zth::windows

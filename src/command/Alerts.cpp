#include "command/Alerts.h"

#include <algorithm>
#include <utility>

#include "chip/ChipState.h"
#include "chip/RegisterNames.h"

namespace zth::command {
namespace {

constexpr std::array kTabs{&tasks::kTemperatureAlerts, &tasks::kFanAlerts,      &tasks::kVoltageAlerts,
                           &tasks::kThermAlerts,       &tasks::kThermPinAlerts, &tasks::kDigitalAlerts};

constexpr std::array kHost{"Thermal Status 1,Host"_reg, "Thermal Status 2,Host"_reg, "Thermal Status 3,Host"_reg,
                           "Voltage Status 1,Host"_reg, "Voltage Status 2,Host"_reg, "Fan Status,Host"_reg,
                           "Digital Status,Host"_reg};

/// In the order of kHost; of the third there is only one.
constexpr std::array kOthers{"Thermal Status 1,BMC"_reg, "Thermal Status 2,BMC"_reg, "Thermal Status 3,Host"_reg,
                             "Voltage Status 1,BMC"_reg, "Voltage Status 2,BMC"_reg, "Fan Status,BMC"_reg,
                             "Digital Status,BMC"_reg};

}  // namespace

std::span<const tasks::AlertTab* const> AlertTabs() {
  return kTabs;
}

bool IsListed(tasks::PinCondition condition) {
  return condition == nullptr || condition(chip::Model.PinFunctions);
}

bool IsLive(const tasks::AlertTab& tab, std::size_t row) {
  if (&tab != &tasks::kVoltageAlerts) return IsListed(tab.rows[row].live);
  return std::ranges::any_of(tasks::kVoltageGauge.channels, [row](const tasks::LimitChannel& channel) {
    return channel.row == static_cast<int>(row) && IsListed(channel.listed);
  });
}

std::span<const std::uint8_t> HostStatusRegisters() {
  return kHost;
}

std::uint8_t HostCopyOf(int statusRegister) {
  const auto at = std::ranges::find(kOthers, statusRegister) - kOthers.begin();
  return kHost.at(static_cast<std::size_t>(at));
}

}  // namespace zth::command

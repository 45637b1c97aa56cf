#pragma once

#include "tasks/LimitTables.h"

/// The contents of the limits window's tabs.
namespace zth::windows {

using tasks::AlertHeading;
using tasks::AlertRow;
using tasks::AlertTab;
using tasks::GaugeTab;
using tasks::kDigitalAlerts;
using tasks::kFanAlerts;
using tasks::kFanGauge;
using tasks::kNoRegister;
using tasks::kTemperatureAlerts;
using tasks::kTemperatureGauge;
using tasks::kThermAlerts;
using tasks::kThermPinAlerts;
using tasks::kThermPinGauge;
using tasks::kThermTimerGauge;
using tasks::kVoltageAlerts;
using tasks::kVoltageGauge;
using tasks::LimitChannel;
using tasks::PinCondition;

}  // namespace zth::windows

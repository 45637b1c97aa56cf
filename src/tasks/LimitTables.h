#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "chip/PinModel.h"

/// The contents of the limits window's tabs: channels of the gauges and rows of the alerts.
namespace zth::tasks {

/// Whether a channel or a row exists with these pins; null means always.
using PinCondition = bool (*)(const chip::PinFunctionFlags& pins);

inline constexpr int kNoRegister = -1;

/// An item of a gauge's list.
struct LimitChannel {
  const char* item;
  PinCondition listed;
  int index;        ///< in the array of Measurements that the gauge shows
  int lowRegister;  ///< kNoRegister if there is only one limit
  int highRegister;
  float nominal;  ///< volts at code 192; for voltage channels only
  int row;        ///< in the tab's alerts: the row of this channel while it is listed
};

/// A tab's gauge: its list, its scale, and how its registers are shown and written.
struct GaugeTab {
  const char* list = "";     ///< objectName, for example "cmbTemp"
  const char* gauge = "";    ///< objectName, for example "ggeTemp"
  const char* subject = "";  ///< for assistive technology, for example "Temperature"
  double scaleMin = 0;
  double scaleMax = 0;
  bool lowAndHigh = false;           ///< uses sliders 2 and 3; otherwise only slider 3
  bool scaleFollowsChannel = false;  ///< 0 to the channel's value at code 255
  int startItem = 0;                 ///< position selected when loading
  std::span<const LimitChannel> channels;
  double (*show)(std::uint8_t raw, const LimitChannel& channel) = nullptr;
  std::uint8_t (*encode)(double value, const LimitChannel& channel) = nullptr;
  float (*reading)(std::size_t index) = nullptr;
  int group = 0;  ///< the measurement group of the readings
  const char* unit = "";
  const char* emptyCaption = nullptr;  ///< if the list is empty; null: the reading of index 0
};

/// One row of alerts. It uses the same bit in the mask and status registers.
struct AlertRow {
  const char* label;
  int maskRegister;  ///< kNoRegister for a row without a mask
  int statusRegister;
  int bit;
  PinCondition live;  ///< null if the row's state does not depend on the pins alone
};

/// A heading label.
struct AlertHeading {
  int index;  ///< in the array Label3
  const char* caption;
};

/// A tab's alerts.
struct AlertTab {
  const char* label;  ///< name of the label array, for example "lblTemp"
  int firstLabel;     ///< index of the first row's label
  const char* mask;   ///< name of the check box array; null if there are no masks
  const char* lamp;   ///< name of the toggle array
  AlertHeading channel;
  AlertHeading maskHeading;
  AlertHeading status;
  std::span<const AlertRow> rows;
};

extern const GaugeTab kTemperatureGauge;
extern const GaugeTab kFanGauge;
extern const GaugeTab kVoltageGauge;
extern const GaugeTab kThermTimerGauge;
extern const GaugeTab kThermPinGauge;

extern const AlertTab kTemperatureAlerts;
extern const AlertTab kFanAlerts;
extern const AlertTab kVoltageAlerts;
extern const AlertTab kThermAlerts;
extern const AlertTab kThermPinAlerts;
extern const AlertTab kDigitalAlerts;

}  // namespace zth::tasks

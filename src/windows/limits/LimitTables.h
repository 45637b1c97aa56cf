#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "chip/PinModel.h"

/// What the tabs of the limits window are made of: channels of the gauges and rows of the alerts.
namespace zth::windows {

/// Whether a channel or a row exists with these pins; null stands for always.
using PinCondition = bool (*)(const chip::PinFunctionFlags& pins);

inline constexpr int kNoRegister = -1;

/// One item of a gauge's list.
struct LimitChannel {
  const char* item;
  PinCondition listed;
  int index;        ///< in the array of Measurements that the gauge shows
  int lowRegister;  ///< kNoRegister where there is one limit only
  int highRegister;
  float nominal;  ///< volts at code 192; of voltage channels only
  int row;        ///< of the tab's alerts that tells of this channel while it is listed
};

/// A tab's gauge: its list, its scale, and how its registers are shown and written.
struct GaugeTab {
  const char* list = "";     ///< objectName, as "cmbTemp"
  const char* gauge = "";    ///< objectName, as "ggeTemp"
  const char* subject = "";  ///< for assistive technology, as "Temperature"
  double scaleMin = 0;
  double scaleMax = 0;
  bool lowAndHigh = false;           ///< sliders 2 and 3, else slider 3 alone
  bool scaleFollowsChannel = false;  ///< 0 to the channel's value at code 255
  int startItem = 0;                 ///< position selected by the load
  std::span<const LimitChannel> channels;
  double (*show)(std::uint8_t raw, const LimitChannel& channel) = nullptr;
  std::uint8_t (*encode)(double value, const LimitChannel& channel) = nullptr;
  float (*reading)(std::size_t index) = nullptr;
  int group = 0;  ///< of the measurements that it is taken from
  const char* unit = "";
  const char* emptyCaption = nullptr;  ///< with an empty list; null: the reading of index 0
};

/// One row of alerts. The bit is the same in the mask and in the status register.
struct AlertRow {
  const char* label;
  int maskRegister;  ///< kNoRegister for a row without a mask
  int statusRegister;
  int bit;
  PinCondition live;  ///< null where the row's state does not follow the pins alone
};

/// A heading label.
struct AlertHeading {
  int index;  ///< in the array Label3
  const char* caption;
};

/// A tab's alerts.
struct AlertTab {
  const char* label;  ///< name of the label array, as "lblTemp"
  int firstLabel;     ///< index of the first row's label
  const char* mask;   ///< name of the check box array; null without masks
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

}  // namespace zth::windows

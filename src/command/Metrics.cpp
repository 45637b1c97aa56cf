#include "command/Metrics.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>
#include <string_view>
#include <utility>

#include "base/BitField.h"
#include "base/Product.h"
#include "chip/ChannelNames.h"
#include "chip/ChipState.h"
#include "chip/Freshness.h"
#include "chip/Measurements.h"
#include "chip/RegisterFields.h"
#include "chip/RegisterNames.h"
#include "command/Alerts.h"
#include "command/Readings.h"
#include "tasks/LimitTables.h"

namespace zth::command {
namespace {

using tasks::MetricFamily;
using tasks::MetricType;

constexpr int kOk = 200;
constexpr int kUnavailable = 503;

/// The families of the readings, and how a reading's name says the sensor's.
struct ReadingKind {
  std::size_t end;  ///< behind the last row (Readings.h)
  const char* name;
  const char* unit;
  const char* help;
  std::string_view suffix;  ///< not part of the sensor's name
  double divisor;
};
constexpr std::array<ReadingKind, 7> kKinds{{
    {4, "zth4718_temperature_celsius", "celsius", "Measured temperature.", " Temp", 1},
    {12, "zth4718_fan_speed_rpm", "rpm", "Measured fan speed; 0 for a fan that stands still or is not measured.", "",
     1},
    {16, "zth4718_duty_ratio", "ratio", "Duty of a PWM output.", "%", 100},
    {39, "zth4718_voltage_volts", "volts", "Measured supply voltage.", "", 1},
    {43, "zth4718_tmin_celsius", "celsius", "Temperature at which the fans of a channel start.", " Tmin", 1},
    {45, "zth4718_operating_point_celsius", "celsius", "Operating point of the dynamic Tmin control.", " Op-Point", 1},
    {47, "zth4718_therm_on_time_ratio", "ratio", "Share of time that a THERM pin is asserted.", "%", 100},
}};
static_assert(kKinds.back().end == kReadings);

bool Answers(const PolledChip& chip) {
  return chip.readAt.isValid() && !chip.isLost;
}

using Labels = std::vector<std::pair<std::string, std::string>>;

Labels LabelsOf(const PolledChip& chip, std::string_view sensor) {
  Labels labels{{"device", chip.device}, {"board", chip.board}};
  if (!sensor.empty()) labels.emplace_back("sensor", sensor);
  return labels;
}

/// Whether the pins provide a reading; the readings' own table takes the THERM pins for granted.
bool IsThere(std::size_t row) {
  const std::size_t therms = kKinds[kKinds.size() - 2].end;
  return row < therms ? IsProvided(row) : IsListed(tasks::kThermTimerGauge.channels[row - therms].listed);
}

bool IsFresh(int group) {
  return !chip::IsStale(group) && chip::Model.Freshness.groups.at(static_cast<std::size_t>(group)).readAt.has_value();
}

MetricFamily Gauge(const char* name, const char* unit, const char* help) {
  return {name, MetricType::Gauge, unit, help, {}};
}

MetricFamily ReadingsOf(Monitor& monitor, const ReadingKind& kind, std::size_t first) {
  MetricFamily family = Gauge(kind.name, kind.unit, kind.help);
  monitor.Each([&](const PolledChip& chip) {
    for (std::size_t row = first; row < kind.end; ++row) {
      if (!IsFresh(MeasurementGroupOf(row)) || !IsThere(row)) continue;
      std::string_view sensor = NameOfReading(row);
      if (sensor.ends_with(kind.suffix)) sensor.remove_suffix(kind.suffix.size());
      family.samples.push_back({LabelsOf(chip, sensor), ValueOfReading(row) / kind.divisor});
    }
  });
  return family;
}

/// The monitor reads two channels' limits along with the state of dynamic Tmin.
MetricFamily LimitsOf(Monitor& monitor, const char* name, const char* help,
                      std::array<std::int16_t, 3> chip::MeasurementSet::*limits) {
  MetricFamily family = Gauge(name, "celsius", help);
  monitor.Each([&](const PolledChip& chip) {
    if (!IsFresh(chip::kDynamicTminGroup)) return;
    for (std::size_t channel = 1; channel <= 2; ++channel) {
      if (!IsListed(tasks::kTemperatureGauge.channels[channel].listed)) continue;
      family.samples.push_back({LabelsOf(chip, chip::kTemperatureNames.at(channel)),
                                static_cast<double>((chip::Model.Measurements.*limits).at(channel))});
    }
  });
  return family;
}

/// A row's text with single blanks.
std::string AlertName(std::string_view label) {
  std::string name;
  for (const char c : label) {
    if (c != ' ' || !name.ends_with(' ')) name += c;
  }
  return name;
}

/// The host's copies lack some bits of the others.
bool IsInHostCopy(std::uint8_t reg, int bit) {
  const auto fields = chip::FieldsOf(chip::RowAt(reg)->bitNames);
  return std::ranges::any_of(fields, [bit](const chip::NamedField& field) {
    return bit >= field.bits.shift && bit < field.bits.shift + field.bits.width;
  });
}

MetricFamily AlertsOf(Monitor& monitor) {
  MetricFamily family = Gauge("zth4718_alert", "", "1 while the host's status register holds this alert.");
  monitor.Each([&](const PolledChip& chip) {
    for (const tasks::AlertTab* tab : AlertTabs()) {
      for (std::size_t index = 0; index < tab->rows.size(); ++index) {
        const tasks::AlertRow& row = tab->rows[index];
        const std::uint8_t reg = HostCopyOf(row.statusRegister);
        const auto status = chip.status.find(reg);
        if (status == chip.status.end() || !IsLive(*tab, index) || !IsInHostCopy(reg, row.bit)) continue;
        family.samples.push_back(
            {LabelsOf(chip, AlertName(row.label)), base::GetBit(status->second, row.bit) ? 1.0 : 0.0});
      }
    }
  });
  return family;
}

/// What is known of each chip whether or not it answers.
std::vector<MetricFamily> WatchOf(const Monitor& monitor, bool isStuck) {
  MetricFamily up = Gauge("zth4718_up", "", "1 while the chip answers, 0 while its link fails.");
  MetricFamily readAt = Gauge("zth4718_last_read_timestamp_seconds", "seconds", "When the chip was last read.");
  MetricFamily transfers{"zth4718_transfers", MetricType::Counter, "", "Transfers with the chip.", {}};
  MetricFamily failures{"zth4718_failed_transfers", MetricType::Counter, "", "Transfers that failed.", {}};
  for (const PolledChip& chip : monitor.Chips()) {
    const Labels labels = LabelsOf(chip, "");
    up.samples.push_back({labels, Answers(chip) && !isStuck ? 1.0 : 0.0});
    if (chip.readAt.isValid()) {
      readAt.samples.push_back({labels, static_cast<double>(chip.readAt.toMSecsSinceEpoch()) / 1000});
    }
    transfers.samples.push_back({labels, static_cast<double>(chip.transfers)});
    if (chip.failures) failures.samples.push_back({labels, static_cast<double>(*chip.failures)});
  }
  MetricFamily build = Gauge("zth4718_build_info", "", "Always 1; the program's version.");
  build.samples.push_back({{{"version", base::kVersionText}}, 1});
  return {up, readAt, transfers, failures, build};
}

std::string TimeText(const QDateTime& time) {
  return time.toString(Qt::ISODate).toStdString();
}

/// A line for each chip.
std::string HealthText(const Monitor& monitor, bool isStuck) {
  std::string text = std::string("zth4718 ") + base::kVersionText + "\n";
  if (isStuck) text += "A transfer has not come back for a while.\n";
  for (const PolledChip& chip : monitor.Chips()) {
    text += chip.device + (chip.board.empty() ? "" : " (" + chip.board + ")") + ": " +
            (Answers(chip) ? "answers" : "does not answer") + "; polled since " + TimeText(chip.since) +
            ", last read " + (chip.readAt.isValid() ? TimeText(chip.readAt) : "never") + ", " +
            std::to_string(chip.transfers) + " transfers";
    text += chip.failures ? ", " + std::to_string(*chip.failures) + " failed\n" : ", failures not known\n";
  }
  return text;
}

std::vector<platform::Page> Pages(int status, const std::string& health, const std::vector<platform::PageForm>& metrics,
                                  int metricsStatus) {
  const platform::PageForm form{"text/plain; charset=utf-8", health};
  return {{"/metrics", metricsStatus, metrics}, {"/", status, {form}}, {"/healthz", status, {form}}};
}

std::vector<platform::Page> PagesWith(Monitor& monitor, bool isStuck) {
  const std::vector<MetricFamily> families = MetricsOf(monitor, isStuck);
  const bool isWell = !isStuck && std::ranges::all_of(monitor.Chips(), Answers);
  return Pages(isWell ? kOk : kUnavailable, HealthText(monitor, isStuck),
               {{tasks::kOpenMetricsType, tasks::OpenMetricsText(families)},
                {tasks::kPlainMetricsType, tasks::PlainMetricsText(families)}},
               kOk);
}

}  // namespace

std::vector<MetricFamily> MetricsOf(Monitor& monitor, bool isStuck) {
  std::vector<MetricFamily> families;
  if (!isStuck) {
    std::size_t first = 0;
    for (const ReadingKind& kind : kKinds) {
      families.push_back(ReadingsOf(monitor, kind, std::exchange(first, kind.end)));
    }
    families.push_back(LimitsOf(monitor, "zth4718_low_limit_celsius", "Low limit of a temperature.",
                                &chip::MeasurementSet::PolledLowLimit));
    families.push_back(LimitsOf(monitor, "zth4718_high_limit_celsius", "High limit of a temperature.",
                                &chip::MeasurementSet::PolledHighLimit));
    families.push_back(AlertsOf(monitor));
  }
  std::ranges::move(WatchOf(monitor, isStuck), std::back_inserter(families));
  return families;
}

std::vector<platform::Page> PagesOf(Monitor& monitor) {
  return PagesWith(monitor, false);
}

std::vector<platform::Page> StuckPagesOf(Monitor& monitor) {
  return PagesWith(monitor, true);
}

std::vector<platform::Page> StartingPages() {
  const std::string text = "The chips are being searched\n";
  return Pages(kUnavailable, text, {{"text/plain; charset=utf-8", text}}, kUnavailable);
}

}  // namespace zth::command

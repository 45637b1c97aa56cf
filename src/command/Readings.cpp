#include "command/Readings.h"

#include <algorithm>
#include <numeric>

#include "base/Rounding.h"
#include "chip/ChannelNames.h"
#include "chip/ChipState.h"
#include "chip/Freshness.h"
#include "chip/Measurements.h"
#include "chip/RegisterNames.h"
#include "command/Names.h"

namespace zth::command {
namespace {

/// The first row of each kind.
enum FirstRow : std::size_t { kTachs = 4, kDuties = 12, kVoltages = 16, kTmins = 39, kPoints = 43, kTherms = 45 };

constexpr std::array kThermNames{"THERM1%", "THERM2%"};

static_assert(kTherms == chip::kLogCaptions.size() && kTherms + kThermNames.size() == kReadings);

struct Group {
  std::string_view name;
  std::size_t first;
  std::size_t end;
};
constexpr std::array<Group, 7> kGroups{{{"temperatures", 0, kTachs},
                                        {"fans", kTachs, kDuties},
                                        {"duties", kDuties, kVoltages},
                                        {"voltages", kVoltages, kTmins},
                                        {"tmin", kTmins, kTherms},
                                        {"therm", kTherms, kReadings},
                                        {"all", 0, kReadings}}};

/// The registers of a value: the low byte's, if there is one, and the high byte's.
struct Bytes {
  std::optional<std::size_t> low;
  std::size_t high;
};

Bytes BytesOf(std::size_t row) {
  const auto pair = [](std::size_t first, std::size_t index) {
    return Bytes{first + 2 * index, first + 2 * index + 1};
  };
  if (row < kTachs) return pair("Local Temp LSBs"_reg, row);
  if (row < kTachs + 4) return pair("Tach 1 LSB's"_reg, row - kTachs);
  if (row < kDuties) return pair("Tach 5 LSB"_reg, row - kTachs - 4);
  if (row < kVoltages) return {std::nullopt, "PWM 1 Value"_reg + (row - kDuties)};
  if (row < kTmins) return {std::nullopt, chip::kVoltageInputs.at(row - kVoltages).reg};
  if (row < kPoints) return {std::nullopt, "Local Tmin"_reg + (row - kTmins)};
  if (row < kTherms) return {std::nullopt, "Remote 1 Operating Point"_reg + (row - kPoints)};
  return {std::nullopt, "THERM 1% Ontime"_reg + (row - kTherms)};
}

}  // namespace

std::string_view NameOfReading(std::size_t row) {
  return row < kTherms ? chip::kLogCaptions.at(row) : kThermNames.at(row - kTherms);
}

std::string_view UnitOfReading(std::size_t row) {
  if (row < kTachs || (row >= kTmins && row < kTherms)) return "°C";
  if (row < kDuties) return "rpm";
  return row < kVoltages || row >= kTherms ? "%" : "V";
}

int MeasurementGroupOf(std::size_t row) {
  return row < kTherms ? chip::GroupOfLogRow(row) : chip::kThermGroup;
}

double ValueOfReading(std::size_t row) {
  const float value = row < kTherms ? chip::Model.LogChannelTable.at(row).Value
                                    : chip::Model.Measurements.ThermPercent.at(row - kTherms);
  // No value has more than two decimals; the rest comes from single precision.
  return base::RoundHalfEven(static_cast<double>(value), 2);
}

unsigned RawOfReading(std::size_t row, const std::array<std::uint8_t, 256>& bytes) {
  const Bytes of = BytesOf(row);
  return of.low ? bytes.at(of.high) * 256U + bytes.at(*of.low) : bytes.at(of.high);
}

bool IsProvided(std::size_t row) {
  return row >= kTherms || chip::Model.LogChannelTable.at(row).Available == 1.0F;
}

std::optional<std::size_t> ReadingOfKey(std::string_view key) {
  for (std::size_t row = 0; row < kReadings; ++row) {
    const std::string of = KeyOf(NameOfReading(row));
    if (key == of || (row < kTachs && std::string(key) + "temp" == of)) return row;
  }
  return std::nullopt;
}

std::vector<std::size_t> GroupOfKey(std::string_view key) {
  const auto* const group = std::ranges::find(kGroups, key, &Group::name);
  if (group == kGroups.end()) return {};
  std::vector<std::size_t> rows(group->end - group->first);
  std::iota(rows.begin(), rows.end(), group->first);
  return rows;
}

std::string GroupNames() {
  std::string names;
  for (const Group& group : kGroups) names.append(names.empty() ? "" : ", ").append(group.name);
  return names;
}

}  // namespace zth::command

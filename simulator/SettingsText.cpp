#include "simulator/SettingsText.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "simulator/FaultText.h"
#include "simulator/Words.h"

namespace zth::simulator {
namespace {

using Problem = std::optional<std::string>;
using Values = std::vector<std::string>;

constexpr long long kLowestAddress = 0x08;  // below and above are the bus's reserved addresses
constexpr long long kHighestAddress = 0x77;

Problem Number(const Values& values, double low, double high, double& target) {
  double number = 0;
  if (values.size() == 1 && ParseDecimal(values[0], number) && number >= low && number <= high) {
    target = number;
    return std::nullopt;
  }
  const auto text = [](double limit) {
    std::string digits = std::to_string(limit);
    digits.erase(digits.find_last_not_of('0') + 1);
    if (digits.back() == '.') digits.pop_back();
    return digits;
  };
  return "expected a number from " + text(low) + " to " + text(high);
}

template <typename T>
Problem Whole(const Values& values, long long low, long long high, T& target) {
  long long number = 0;
  if (values.size() == 1 && ParseInteger(values[0], number) && number >= low && number <= high) {
    target = static_cast<T>(number);
    return std::nullopt;
  }
  return "expected a whole number from " + std::to_string(low) + " to " + std::to_string(high);
}

Problem Choice(const Values& values, const char* off, const char* on, bool& target) {
  if (values.size() == 1 && (values[0] == off || values[0] == on)) {
    target = values[0] == on;
    return std::nullopt;
  }
  return std::string("expected ") + off + " or " + on;
}

Problem Addresses(const Values& values, std::vector<std::uint8_t>& target) {
  target.clear();
  if (values.size() == 1 && values[0] == "none") return std::nullopt;
  if (values.empty()) return "expected bus addresses, or none";
  for (const std::string& word : values) {
    long long number = 0;
    if (!ParseInteger(word, number) || number < kLowestAddress || number > kHighestAddress) {
      return "'" + word + "' is no bus address from 0x08 to 0x77";
    }
    const auto address = static_cast<std::uint8_t>(number);
    if (std::find(target.begin(), target.end(), address) != target.end()) return "'" + word + "' stands there twice";
    target.push_back(address);
  }
  return std::nullopt;
}

Problem SetUp(const Values& values, std::vector<std::uint8_t>& target) {
  target.clear();
  for (const std::string& word : values) {
    long long number = 0;
    if (!ParseInteger(word, number) || number < 0 || number > 0xFF) return "'" + word + "' is not 0 to 0xFF";
    target.push_back(static_cast<std::uint8_t>(number));
  }
  if (target.empty() || target.size() % 2 != 0) return "expected registers and values in turn";
  return std::nullopt;
}

/// One number for all sensors, or one for each.
Problem OfSensors(const Values& values, double low, double high, std::array<double, kTemperatures>& target) {
  if (values.size() != 1 && values.size() != target.size()) return "expected one number, or one for each of 4 sensors";
  for (std::size_t sensor = 0; sensor < target.size(); ++sensor) {
    const std::string& word = values[values.size() == 1 ? 0 : sensor];
    if (const Problem problem = Number({word}, low, high, target[sensor])) return problem;
  }
  return std::nullopt;
}

/// A number that is given in percent.
Problem Percent(const Values& values, double low, double high, double& target) {
  double percent = 0;
  Problem problem = Number(values, low, high, percent);
  if (!problem) target = percent / 100;
  return problem;
}

/// The fans and the heat; nothing if the key is not among them.
std::optional<Problem> SetPlant(PlantOptions& plant, const std::string& key, const Values& values) {
  if (key == "fan-speed") return Number(values, 500, 20000, plant.fullRpm);
  if (key == "fan-idle") return Percent(values, 0, 90, plant.idleShare);
  if (key == "fan-stall") return Percent(values, 0, 90, plant.stallDuty);
  if (key == "fan-start") return Percent(values, 0, 95, plant.startDuty);
  if (key == "fan-rise") return Number(values, 0.05, 20, plant.spinUpSeconds);
  if (key == "fan-coast") return Number(values, 0.05, 20, plant.coastSeconds);
  if (key == "spread") return Number(values, 0, 2, plant.spread);
  if (key == "heater-power") return Number(values, 0, 100, plant.heaterWatts);
  if (key == "heater-to-local") return Percent(values, 0, 100, plant.heaterToLocal);
  if (key == "heat-capacity") return OfSensors(values, 0.1, 1000, plant.heatCapacity);
  if (key == "still-air") return OfSensors(values, 0.01, 10, plant.stillAir);
  if (key == "moving-air") return OfSensors(values, 0, 10, plant.movingAir);
  if (key == "standing-power") return OfSensors(values, 0, 100, plant.standingWatts);
  return std::nullopt;
}

Problem Set(Settings& settings, const std::string& key, const Values& values) {
  if (const auto problem = SetPlant(settings.plant, key, values)) return *problem;
  if (key == "seed") return Whole(values, 0, std::numeric_limits<long long>::max(), settings.seed);
  if (key == "ambient") return Number(values, -40, 100, settings.ambientC);
  if (key == "time-factor") return Number(values, 0.01, 1000, settings.timeFactor);
  if (key == "revision") return Whole(values, 0, 255, settings.revision);
  if (key == "fan-pulses") return Whole(values, 1, 4, settings.fanPulses);
  if (key == "noise") return Number(values, 0, 10, settings.noise);
  if (key == "d2-connector") return Choice(values, "open", "diode", settings.diodeAtD2Connector);
  if (key == "usb") return Addresses(values, settings.usbChips);
  if (key == "smbus") return Addresses(values, settings.smbusChips);
  if (key == "set-up") return SetUp(values, settings.setUp);
  if (key == "firmware") return Choice(values, "accepted", "refused", settings.firmwareRefused);
  if (key == "connect-at-try") return Whole(values, 1, 1000, settings.connectAtTry);
  return "'" + key + "' is no setting";
}

Problem ReadLine(Settings& settings, std::string_view line) {
  std::vector<std::string> words = Words(line.substr(0, line.find('#')));
  if (words.empty()) return std::nullopt;
  if (words[0] == "fault") {
    words.erase(words.begin());
    const auto fault = ParseFault(words);
    if (const auto* problem = std::get_if<std::string>(&fault)) return *problem;
    settings.faults.push_back(std::get<Fault>(fault));
    return std::nullopt;
  }
  if (words.size() < 2 || words[1] != "=") return "expected \"key = value\" or \"fault ...\"";
  return Set(settings, words[0], Values(words.begin() + 2, words.end()));
}

}  // namespace

std::variant<Settings, SettingsError> ParseSettings(std::string_view text) {
  Settings settings;
  for (int number = 1; !text.empty(); ++number) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    if (const Problem problem = ReadLine(settings, text.substr(0, end))) return SettingsError{number, *problem};
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return settings;
}

}  // namespace zth::simulator

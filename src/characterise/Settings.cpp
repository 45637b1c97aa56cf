#include "characterise/Settings.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "base/NumberText.h"
#include "link/Declarations.h"

namespace zth::characterise {
namespace {

struct Range {
  const char* name;
  double value;
  double low;
  double high;
};

std::string Number(double value) {
  return std::to_string(static_cast<long>(std::lround(value)));
}

std::string CheckRanges(const Settings& settings) {
  const std::array ranges{Range{"The step of the duty", static_cast<double>(settings.dutyStep), 1, 50},
                          Range{"The longest wait for a speed", settings.settleMost, 5, 120},
                          Range{"The number of tach pulses", static_cast<double>(settings.pulses), 0, 4},
                          Range{"The heater", static_cast<double>(settings.heater), 1, kHeaters},
                          Range{"The step of the heater", settings.heaterStep, 10, 100},
                          Range{"The heater's power", settings.heaterWatts, 0, 1000},
                          Range{"The longest wait for a temperature", settings.heatMost, 30, 1800},
                          Range{"The temperature to be kept", settings.keep, 30, 100},
                          Range{"The least duty of the proposal", static_cast<double>(settings.minDuty), 0, 100},
                          Range{"The length of a part of the profile", settings.profileHold, 20, 1800},
                          Range{"The limit of the temperature", settings.temperatureLimit, 30, 120},
                          Range{"The limit of the time", settings.timeLimit, 60, 86400}};
  for (const Range& range : ranges) {
    // Written so that it also refuses what is no number.
    if (range.value >= range.low && range.value <= range.high) continue;
    return std::string(range.name) + " must be from " + Number(range.low) + " to " + Number(range.high);
  }
  return {};
}

bool IsWithin(const std::vector<int>& numbers, int most) {
  std::vector<int> sorted = numbers;
  std::ranges::sort(sorted);
  const bool isTwice = std::ranges::adjacent_find(sorted) != sorted.end();
  return !isTwice && std::ranges::all_of(sorted, [most](int number) { return number >= 1 && number <= most; });
}

std::string CheckLists(const Settings& settings) {
  if (settings.pwms.empty()) return "No PWM is chosen; choose one";
  if (!IsWithin(settings.pwms, kPwms)) return "The PWMs must be from 1 to 4, each once";
  for (const auto& tachs : settings.tachs) {
    if (!IsWithin(tachs, kTachs)) return "The tachs of a PWM must be from 1 to 8, each once";
  }
  if (!settings.heat) return {};
  if (settings.heatDuties.empty()) return "Heat takes at least one duty";
  if (!std::ranges::all_of(settings.heatDuties, [](int duty) { return duty >= 0 && duty <= 100; })) {
    return "The duties of heat must be from 0 to 100";
  }
  return {};
}

}  // namespace

std::string CheckSettings(const Settings& settings) {
  if (!settings.fans && !settings.heat && !settings.controller)
    return "Nothing is chosen; choose fans, heat or controller";
  std::string why = CheckRanges(settings);
  if (why.empty()) why = CheckLists(settings);
  if (!why.empty()) return why;
  const bool heats = settings.heat || settings.controller;
  if (heats && settings.keep >= settings.temperatureLimit) {
    return "The temperature to be kept must lie below the limit of the temperature";
  }
  if (heats && link::Bus.InterfaceMode == link::kModeSmbus) {
    return "The heaters can be reached over USB only; choose fans alone";
  }
  return {};
}

}  // namespace zth::characterise

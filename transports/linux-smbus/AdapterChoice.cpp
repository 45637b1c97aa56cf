#include "linux-smbus/AdapterChoice.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <string_view>

#include "linux-smbus/Text.h"

namespace zth::smbus {

namespace {

std::optional<int> NumberIn(std::string_view wanted) {
  for (const std::string_view prefix : {"/dev/i2c-", "i2c-", ""}) {
    if (wanted.starts_with(prefix)) return WholeNumber(wanted.substr(prefix.size()));
  }
  return std::nullopt;
}

bool Matches(const Adapter& adapter, const std::string& wanted) {
  if (const std::optional<int> number = NumberIn(wanted)) return adapter.number == *number;
  return LowerCase(adapter.name).find(LowerCase(wanted)) != std::string::npos;
}

bool Holds(const std::vector<Adapter>& adapters, int number) {
  return std::any_of(adapters.begin(), adapters.end(),
                     [number](const Adapter& adapter) { return adapter.number == number; });
}

}  // namespace

bool IsSmbusHost(const Adapter& adapter) {
  return !adapter.isDisplay && (adapter.isHost || LowerCase(adapter.name).find("smbus") != std::string::npos);
}

AdapterChoice ChooseAdapters(const std::vector<Adapter>& present, const Settings& settings) {
  AdapterChoice choice;
  if (settings.adapters.empty()) {
    std::copy_if(present.begin(), present.end(), std::back_inserter(choice.chosen), IsSmbusHost);
    return choice;
  }
  for (const std::string& wanted : settings.adapters) {
    bool found = false;
    for (const Adapter& adapter : present) {
      if (!Matches(adapter, wanted)) continue;
      found = true;
      if (adapter.isDisplay) {
        choice.remarks.push_back(settings.origin + " names i2c-" + std::to_string(adapter.number) + " (" +
                                 adapter.name + "): a display's bus, not used.");
      } else if (!Holds(choice.chosen, adapter.number)) {
        choice.chosen.push_back(adapter);
      }
    }
    if (!found) choice.remarks.push_back(settings.origin + " names \"" + wanted + "\": there is no such adapter.");
  }
  return choice;
}

}  // namespace zth::smbus

#include "linux-smbus/Settings.h"

#include <algorithm>
#include <cstddef>
#include <fstream>
#include <system_error>
#include <utility>

#include "linux-smbus/Text.h"

namespace zth::smbus {

namespace fs = std::filesystem;

namespace {

/// An XDG base directory: the variable's value if it is an absolute path, otherwise the default below the home folder.
fs::path BaseDirectory(const Environment& environment, const char* variable, const char* belowHome) {
  const fs::path set = environment(variable);
  if (set.is_absolute()) return set;
  const fs::path home = environment("HOME");
  return home.is_absolute() ? home / belowHome : fs::path();
}

}  // namespace

UserPlaces PlacesOf(const Environment& environment) {
  UserPlaces places;
  const fs::path config = BaseDirectory(environment, "XDG_CONFIG_HOME", ".config");
  const fs::path state = BaseDirectory(environment, "XDG_STATE_HOME", ".local/state");
  if (!config.empty()) places.settingsFile = config / "zth4718" / "smbus.conf";
  if (!state.empty()) places.logFile = state / "zth4718" / "smbus.log";
  return places;
}

std::vector<std::string> ParseAdapterList(std::string_view text) {
  std::vector<std::string> parts;
  for (std::size_t start = 0; start <= text.size();) {
    const std::size_t comma = std::min(text.find(',', start), text.size());
    std::string part = Trimmed(text.substr(start, comma - start));
    if (!part.empty()) parts.push_back(std::move(part));
    start = comma + 1;
  }
  if (parts.size() == 1 && LowerCase(parts.front()) == "auto") parts.clear();
  return parts;
}

Settings ParseSettings(std::istream& lines, const std::string& origin) {
  Settings settings;
  std::string line;
  for (int number = 1; std::getline(lines, line); ++number) {
    const std::string text = Trimmed(std::string_view(line).substr(0, line.find('#')));
    if (text.empty()) continue;
    const std::size_t equals = text.find('=');
    if (equals == std::string::npos || Trimmed(text.substr(0, equals)) != "adapters") {
      settings.faults.push_back(origin + ":" + std::to_string(number) +
                                ": not understood, the only setting is \"adapters = ...\": " + text);
      continue;
    }
    settings.adapters = ParseAdapterList(std::string_view(text).substr(equals + 1));
    settings.origin = origin;
  }
  return settings;
}

Settings LoadSettings(const UserPlaces& places, const Environment& environment) {
  Settings settings;
  std::error_code error;
  if (!places.settingsFile.empty() && fs::exists(places.settingsFile, error)) {
    const std::string name = places.settingsFile.string();
    std::ifstream file(places.settingsFile);
    if (file) {
      settings = ParseSettings(file, name);
    } else {
      settings.faults.push_back(name + ": cannot be read, its settings do not count.");
    }
  }
  const std::string variable = environment(kAdaptersVariable);
  if (!Trimmed(variable).empty()) {
    settings.adapters = ParseAdapterList(variable);
    settings.origin = kAdaptersVariable;
  }
  return settings;
}

}  // namespace zth::smbus

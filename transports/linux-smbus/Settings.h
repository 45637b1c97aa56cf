#pragma once

#include <filesystem>
#include <functional>
#include <istream>
#include <string>
#include <string_view>
#include <vector>

namespace zth::smbus {

/// What the user has decided about this library.
struct Settings {
  /// Adapters to use and the order to search them in: numbers ("0", "i2c-0", "/dev/i2c-0") or parts of names. Empty:
  /// this library picks the PC's SMBus hosts.
  std::vector<std::string> adapters;
  /// Where `adapters` was set, for messages; empty when it was not.
  std::string origin;
  /// What could not be understood, each a sentence.
  std::vector<std::string> faults;
};

/// The files and the variables of one user, following the XDG base directories.
struct UserPlaces {
  std::filesystem::path settingsFile;  ///< empty when there is no home folder
  std::filesystem::path logFile;       ///< empty when there is no home folder
};

/// The value of an environment variable, empty when it is not set.
using Environment = std::function<std::string(const char* name)>;

/// The variable that goes before the settings file, for one run.
inline constexpr const char* kAdaptersVariable = "ZTH4718_SMBUS_ADAPTERS";

UserPlaces PlacesOf(const Environment& environment);

/// A list as "0, SMBus I801": parts between commas, without the blanks around them and without empty ones. "auto" as
/// the only part is the empty list.
std::vector<std::string> ParseAdapterList(std::string_view text);

/// Lines "key = value"; "#" starts a comment. The one key is "adapters"; the last line with it counts.
Settings ParseSettings(std::istream& lines, const std::string& origin);

/// Reads the file, then the variable, which wins. A file that is not there is no fault; one that cannot be read is.
Settings LoadSettings(const UserPlaces& places, const Environment& environment);

}  // namespace zth::smbus

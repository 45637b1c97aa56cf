#pragma once

#include <filesystem>
#include <functional>
#include <istream>
#include <string>
#include <string_view>
#include <vector>

namespace zth::smbus {

/// The user's settings for this library.
struct Settings {
  /// The adapters to use, in search order: numbers ("0", "i2c-0", "/dev/i2c-0") or parts of names. Empty: this library
  /// picks the PC's SMBus hosts.
  std::vector<std::string> adapters;
  /// Where `adapters` was set, for messages; empty if it was not.
  std::string origin;
  /// What could not be parsed, one sentence each.
  std::vector<std::string> faults;
};

/// A user's files, following the XDG base directories.
struct UserPlaces {
  std::filesystem::path settingsFile;  ///< empty if there is no home folder
  std::filesystem::path logFile;       ///< empty if there is no home folder
};

/// The value of an environment variable; empty if it is not set.
using Environment = std::function<std::string(const char* name)>;

/// This variable overrides the settings file, for one run.
inline constexpr const char* kAdaptersVariable = "ZTH4718_SMBUS_ADAPTERS";

UserPlaces PlacesOf(const Environment& environment);

/// Parses a list such as "0, SMBus I801": parts separated by commas, without surrounding blanks; empty parts are
/// dropped. "auto" as the only part gives the empty list.
std::vector<std::string> ParseAdapterList(std::string_view text);

/// Lines of "key = value"; "#" starts a comment. The only key is "adapters"; its last line counts.
Settings ParseSettings(std::istream& lines, const std::string& origin);

/// Reads the file and then the variable, which takes precedence. A missing file is not a fault; an unreadable one is.
Settings LoadSettings(const UserPlaces& places, const Environment& environment);

}  // namespace zth::smbus

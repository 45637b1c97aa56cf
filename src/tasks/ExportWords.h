#pragma once

#include <array>
#include <string_view>

/// What the exports begin and end with: by this they are recognised when they are read again.
namespace zth::tasks {

inline constexpr std::string_view kCHead = "/* ZTH4718 configuration: C table 1";
inline constexpr std::string_view kCTable = "const struct zth4718_write zth4718_writes[] = {";
inline constexpr std::string_view kScriptHead = "#!/bin/sh\n# ZTH4718 configuration: i2cset script 1";
inline constexpr std::string_view kScriptEnd = "# The end of the configuration";
inline constexpr std::string_view kCsvHead = "Address,Register,Value,Mask,Fields";
inline constexpr std::string_view kReportHead = "ZTH4718 configuration report";

/// Lines of a script around the calls. The user may change the defaults behind "-".
inline constexpr std::string_view kScriptSet = "set -eu";
inline constexpr std::string_view kScriptBus = "bus=${1:-";
inline constexpr std::string_view kScriptAddress = "address=${2:-";
inline constexpr std::string_view kScriptCheck =
    "command -v i2cset >/dev/null 2>&1 || { echo 'i2cset is missing: install i2c-tools.' >&2; exit 1; }";
inline constexpr std::string_view kBusWord = "\"$bus\"";
inline constexpr std::string_view kAddressWord = "\"$address\"";

}  // namespace zth::tasks

#pragma once

#include <array>
#include <cstdint>

#include <QString>

#include "platform/Services.h"

/// Passes the firmware file's path to the adapter's library; only the library opens the file.
namespace zth::tasks {

/// Writes the text to AnsiBuffer in the encoding of platform::PathBytes, with a terminating 0. False, with an empty
/// AnsiBuffer, if it does not fit.
bool StringToAnsiBuffer(const QString& text);

/// Passes the path to LoadFirmWare unchecked. Above 0 if the adapter is present and accepted the firmware; also 0 if
/// the library is not loaded.
std::int16_t LoadFirmwareFile(const platform::Process& process);

}  // namespace zth::tasks

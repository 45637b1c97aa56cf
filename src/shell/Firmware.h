#pragma once

#include <array>
#include <cstdint>

#include <QString>

#include "platform/Services.h"

/// The firmware file's way to the adapter's library, which alone opens it.
namespace zth::shell {

/// Writes the text to AnsiBuffer as platform::PathBytes has it, and a 0 behind it. False, with an empty AnsiBuffer,
/// when it does not fit.
bool StringToAnsiBuffer(const QString& text);

/// Hands the path to LoadFirmWare, whatever it is. Above 0 when the adapter is there and took the firmware; 0 also when
/// the library is not loaded.
std::int16_t LoadFirmwareFile(const platform::Process& process);

}  // namespace zth::shell

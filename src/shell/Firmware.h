#pragma once

#include <array>
#include <cstdint>

#include <QString>

#include "platform/Services.h"

/// The firmware file's way to the adapter's library, which alone opens it.
namespace zth::shell {

inline constexpr int kAnsiBufferSize = 513;

/// The program's folder and the file's name.
extern QString FirmwarePath;

/// FirmwarePath as NUL-terminated ANSI text.
extern std::array<char, kAnsiBufferSize> AnsiBuffer;

/// Writes the ANSI code of each character to AnsiBuffer and a 0 behind the last. False, with an empty AnsiBuffer, when
/// the text does not fit or holds a character that has no ANSI code.
bool StringToAnsiBuffer(const QString& text);

/// Hands the path to LoadFirmWare. Above 0 when the adapter is there and took the firmware; 0 also when the library is
/// not loaded or the path cannot be told in ANSI.
std::int16_t LoadFirmwareFile(const platform::Process& process);

}  // namespace zth::shell

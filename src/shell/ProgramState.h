#pragma once

#include <array>

#include <QString>

namespace zth::shell {

inline constexpr int kAnsiBufferSize = 513;

/// What the start knows. `Program = {}` is the state of a program that has not started.
struct ProgramState {
  /// The chip's part number as shown in messages.
  QString DeviceName;

  /// The firmware file: the program's folder and the file's name.
  QString FirmwarePath;

  /// FirmwarePath as the library takes it, NUL-terminated.
  std::array<char, kAnsiBufferSize> AnsiBuffer{};
};

extern ProgramState Program;

}  // namespace zth::shell

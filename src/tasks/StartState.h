#pragma once

#include <array>
#include <cstdint>

#include <QString>

namespace zth::tasks {

inline constexpr int kAnsiBufferSize = 513;

/// How far the search of a link has got.
enum class SearchStep { NotBegun, Connecting, Searching, Done };

/// Results of the start.
struct StartState {
  /// The chip's part number as shown in messages.
  QString DeviceName;

  /// The path of the firmware file: the program's folder and the file's name.
  QString FirmwarePath;

  /// FirmwarePath in the form that the library expects, NUL-terminated.
  std::array<char, kAnsiBufferSize> AnsiBuffer{};

  /// The result of the firmware's download.
  std::int16_t FirmwareResult = 0;

  SearchStep UsbSearch = SearchStep::NotBegun;
  SearchStep SmbusSearch = SearchStep::NotBegun;

  /// Chips found on each link.
  int UsbChips = 0;
  int SmbusChips = 0;
};

}  // namespace zth::tasks

#include "shell/Firmware.h"

#include <algorithm>

#include <QDir>

#include "link/Declarations.h"
#include "platform/PathBytes.h"

namespace zth::shell {

QString FirmwarePath;
std::array<char, kAnsiBufferSize> AnsiBuffer{};

bool StringToAnsiBuffer(const QString& text) {
  AnsiBuffer.fill(0);
  const QByteArray bytes = platform::PathBytes(text);
  if (bytes.size() >= kAnsiBufferSize) return false;
  std::copy(bytes.begin(), bytes.end(), AnsiBuffer.begin());
  return true;
}

std::int16_t LoadFirmwareFile(const platform::Process& process) {
  FirmwarePath = process.Folder() + QDir::separator() + "ZTH4718FW.Hex";
  if (link::UsbFunctions.LoadFirmWare == nullptr) return 0;
  if (StringToAnsiBuffer(FirmwarePath)) return link::UsbFunctions.LoadFirmWare(AnsiBuffer.data());
  // Too long for the buffer, and called all the same: what the library makes of a path is its own to say, and one that
  // finds the file, or needs none, gives the user a working adapter.
  return link::UsbFunctions.LoadFirmWare(platform::PathBytes(FirmwarePath).constData());
}

}  // namespace zth::shell

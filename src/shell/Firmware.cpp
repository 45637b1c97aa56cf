#include "shell/Firmware.h"

#include <algorithm>

#include <QDir>

#include "link/Declarations.h"
#include "platform/PathBytes.h"

namespace zth::shell {

QString FirmwarePath;
std::array<char, kAnsiBufferSize> AnsiBuffer{};

namespace {

bool ToAnsiBuffer(const QByteArray& bytes) {
  AnsiBuffer.fill(0);
  if (bytes.size() >= kAnsiBufferSize) return false;
  std::copy(bytes.begin(), bytes.end(), AnsiBuffer.begin());
  return true;
}

}  // namespace

bool StringToAnsiBuffer(const QString& text) {
  return ToAnsiBuffer(platform::PathBytes(text));
}

std::int16_t LoadFirmwareFile(const platform::Process& process) {
  const QString file = QDir::separator() + QString("ZTH4718FW.Hex");
  FirmwarePath = process.Folder() + file;
  if (link::UsbFunctions.LoadFirmWare == nullptr) return 0;
  const QByteArray bytes = process.Folder().isEmpty() ? platform::ProgramFolderBytes() + platform::PathBytes(file)
                                                      : platform::PathBytes(FirmwarePath);
  if (ToAnsiBuffer(bytes)) return link::UsbFunctions.LoadFirmWare(AnsiBuffer.data());
  // Too long for the buffer, and called all the same: what the library makes of a path is its own to say, and one that
  // finds the file, or needs none, gives the user a working adapter.
  return link::UsbFunctions.LoadFirmWare(bytes.constData());
}

}  // namespace zth::shell

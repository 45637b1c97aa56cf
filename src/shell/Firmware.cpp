#include "shell/Firmware.h"

#include <QDir>

#include "base/AnsiText.h"
#include "link/Declarations.h"

namespace zth::shell {

QString FirmwarePath;
std::array<char, kAnsiBufferSize> AnsiBuffer{};

bool StringToAnsiBuffer(const QString& text) {
  AnsiBuffer.fill(0);
  const auto characters = text.toStdU32String();
  if (characters.size() >= AnsiBuffer.size()) return false;
  for (std::size_t i = 0; i < characters.size(); ++i) {
    const auto code = base::AnsiCode(characters[i]);
    if (!code || *code == 0) {
      AnsiBuffer.fill(0);
      return false;
    }
    AnsiBuffer[i] = static_cast<char>(*code);
  }
  return true;
}

std::int16_t LoadFirmwareFile(const platform::Process& process) {
  FirmwarePath = process.Folder() + QDir::separator() + "ZTH4718FW.Hex";
  if (!StringToAnsiBuffer(FirmwarePath) || link::UsbFunctions.LoadFirmWare == nullptr) return 0;
  return link::UsbFunctions.LoadFirmWare(AnsiBuffer.data());
}

}  // namespace zth::shell

#include "platform/PathBytes.h"

#include <windows.h>

#include <QCoreApplication>

#include "base/AnsiText.h"

namespace zth::platform {

QByteArray PathBytes(const QString& path) {
  // Where the system heeds the program's manifest, this is what its functions take in the libraries too.
  if (::GetACP() == CP_UTF8) return path.toUtf8();
  QByteArray bytes;
  for (const char32_t character : path.toStdU32String()) {
    bytes += static_cast<char>(base::AnsiCode(character).value_or('?'));
  }
  return bytes;
}

QByteArray ProgramFolderBytes() {
  return PathBytes(QCoreApplication::applicationDirPath());
}

}  // namespace zth::platform

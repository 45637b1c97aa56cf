#include "platform/PathBytes.h"

#include <QFile>

#include "base/AnsiText.h"

namespace zth::platform {

QByteArray PathBytes(const QString& path) {
#if defined(_WIN32)
  QByteArray bytes;
  for (const char32_t character : path.toStdU32String()) {
    bytes += static_cast<char>(base::AnsiCode(character).value_or('?'));
  }
  return bytes;
#else
  return QFile::encodeName(path);
#endif
}

}  // namespace zth::platform

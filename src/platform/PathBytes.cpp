#include "platform/PathBytes.h"

#include <filesystem>

#include <QCoreApplication>
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

QByteArray ProgramFolderBytes() {
#if defined(__linux__)
  std::error_code error;
  const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", error);
  if (!error) return QByteArray::fromStdString(program.parent_path().native());
#endif
  return PathBytes(QCoreApplication::applicationDirPath());
}

}  // namespace zth::platform

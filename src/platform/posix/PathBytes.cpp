#include "platform/PathBytes.h"

#include <filesystem>

#include <QCoreApplication>
#include <QFile>

namespace zth::platform {

QByteArray PathBytes(const QString& path) {
  return QFile::encodeName(path);
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

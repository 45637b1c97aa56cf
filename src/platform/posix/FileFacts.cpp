#include "platform/FileFacts.h"

#include <cerrno>
#include <sys/stat.h>
#include <unistd.h>

#include <QFile>

namespace zth::platform {

std::optional<FileState> FactsOf(const QString& path) {
  struct stat found {};
  if (::stat(QFile::encodeName(path).constData(), &found) != 0 || !S_ISREG(found.st_mode)) return std::nullopt;
  return FileState{found.st_dev, found.st_ino, found.st_size};
}

std::optional<FileState> FactsOf(QFileDevice& file) {
  struct stat found {};
  if (::fstat(file.handle(), &found) != 0) return std::nullopt;
  return FileState{found.st_dev, found.st_ino, found.st_size};
}

bool ReachesDisk(QFileDevice& file) {
  return ::fsync(file.handle()) == 0 || errno == EINVAL || errno == ENOTSUP;
}

}  // namespace zth::platform

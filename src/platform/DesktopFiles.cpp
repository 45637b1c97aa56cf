#include <algorithm>
#include <cerrno>

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include "platform/DesktopParts.h"

#if !defined(_WIN32)
#include <unistd.h>
#endif

namespace zth::platform {
namespace {

/// A pipe would block until somebody reads from it, a device has no size.
bool IsSomethingElse(const QString& path) {
  const QFileInfo info(path);
  return info.exists() && !info.isFile();
}

/// False when the disk has refused what it seemed to have taken. QSaveFile flushes as well, but asks for no answer.
bool OnDisk([[maybe_unused]] QFileDevice& file) {
#if defined(_WIN32)
  return true;
#else
  return ::fsync(file.handle()) == 0 || errno == EINVAL || errno == ENOTSUP;
#endif
}

}  // namespace

FileAppend DesktopFiles::Append(const QString& path, const QByteArray& bytes) {
  if (IsSomethingElse(path)) return {};
  QFile file(path);
  // Without Qt's buffer, which would cut a long run of lines into writes of its own.
  if (!file.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered)) return {};
  FileAppend done{true, file.size(), 0};
  done.written = std::max<std::int64_t>(0, file.write(bytes));
  return done;
}

bool DesktopFiles::Cut(const QString& path, std::int64_t from, std::int64_t to) {
  const QFileInfo info(path);
  if (!info.isFile() || info.size() != from) return true;
  return QFile::resize(path, to);
}

bool DesktopFiles::Replace(const QString& path, const QByteArray& bytes) {
  if (IsSomethingElse(path)) return false;
  QSaveFile file(path);
  // Without a buffer: QSaveFile does not notice when the last of one does not fit the disk.
  return file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) && file.write(bytes) == bytes.size() && OnDisk(file) &&
         file.commit();
}

std::optional<QByteArray> DesktopFiles::Read(const QString& path, std::int64_t limit) {
  QFile file(path);
  if (IsSomethingElse(path) || !file.open(QIODevice::ReadOnly)) return std::nullopt;
  return file.read(std::min<std::int64_t>(limit, file.size()));
}

}  // namespace zth::platform

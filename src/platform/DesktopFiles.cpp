#include <algorithm>
#include <cerrno>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>
#include <QSaveFile>
#include <QStorageInfo>

#include "platform/DesktopParts.h"

#if !defined(_WIN32)
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace zth::platform {
namespace {

/// True for anything but a regular file: a pipe would block until somebody reads from it, and a device has no size.
bool IsSomethingElse(const QString& path) {
  const QFileInfo info(path);
  return info.exists() && !info.isFile();
}

/// False if the disk has reported a write error late. QSaveFile flushes too, but does not check the result.
bool OnDisk([[maybe_unused]] QFileDevice& file) {
#if defined(_WIN32)
  return true;
#else
  return ::fsync(file.handle()) == 0 || errno == EINVAL || errno == ENOTSUP;
#endif
}

#if defined(_WIN32)
/// Qt gives no file number on this platform, so the creation time identifies the file.
FileState StateOf(const QDateTime& birth, std::int64_t size) {
  return {0, birth.isValid() ? static_cast<std::uint64_t>(birth.toMSecsSinceEpoch()) : 0, size};
}
#endif

std::optional<FileState> StateOf(QFileDevice& file) {
#if defined(_WIN32)
  return StateOf(file.fileTime(QFileDevice::FileBirthTime), file.size());
#else
  struct stat found {};
  if (::fstat(file.handle(), &found) != 0) return std::nullopt;
  return FileState{found.st_dev, found.st_ino, found.st_size};
#endif
}

}  // namespace

std::optional<FileState> DesktopFiles::Look(const QString& path) {
#if defined(_WIN32)
  const QFileInfo info(path);
  if (!info.isFile()) return std::nullopt;
  return StateOf(info.birthTime(), info.size());
#else
  struct stat found {};
  if (::stat(QFile::encodeName(path).constData(), &found) != 0 || !S_ISREG(found.st_mode)) return std::nullopt;
  return FileState{found.st_dev, found.st_ino, found.st_size};
#endif
}

FileAppend DesktopFiles::Append(const QString& path, const std::optional<FileState>& seen, const QByteArray& bytes) {
  if (IsSomethingElse(path)) return {};
  QFile file(path);
  // Unbuffered: Qt's buffer would split a long run of lines into several writes.
  const QIODevice::OpenMode mode = QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered;
  if (!file.open(seen ? mode | QIODevice::ExistingOnly : mode)) return {};
  const auto before = StateOf(file);
  if (!before || (seen ? !before->SameFile(*seen) || before->size < seen->size : before->size > 0)) return {};
  FileAppend done{true, *before, 0};
  done.written = std::max<std::int64_t>(0, file.write(bytes));
  return done;
}

bool DesktopFiles::Cut(const QString& path, const FileState& seen, std::int64_t size) {
  QFile file(path);
  // Open for appending: write-only mode would truncate the file.
  if (IsSomethingElse(path) || !file.open(QIODevice::Append | QIODevice::ExistingOnly)) return false;
  const auto now = StateOf(file);
  return now && now->SameFile(seen) && now->size == seen.size && file.resize(size);
}

QString DesktopFiles::VolumeOf(const QString& path) {
  QFileInfo info(path);
  while (!info.exists() && !info.isRoot() && info.absolutePath() != info.absoluteFilePath()) {
    info.setFile(info.absolutePath());
  }
  return QStorageInfo(info.absoluteFilePath()).rootPath();
}

bool DesktopFiles::Replace(const QString& path, const QByteArray& bytes) {
  if (IsSomethingElse(path)) return false;
  QSaveFile file(path);
  // Unbuffered: QSaveFile does not notice if its last buffer does not fit on the disk.
  return file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) && file.write(bytes) == bytes.size() && OnDisk(file) &&
         file.commit();
}

std::optional<QByteArray> DesktopFiles::Read(const QString& path, std::int64_t limit) {
  QFile file(path);
  if (IsSomethingElse(path) || !file.open(QIODevice::ReadOnly)) return std::nullopt;
  return file.read(std::min<std::int64_t>(limit, file.size()));
}

std::optional<QByteArray> DesktopFiles::ReadAt(const QString& path, std::int64_t from, std::int64_t count) {
  QFile file(path);
  if (IsSomethingElse(path) || !file.open(QIODevice::ReadOnly) || !file.seek(from)) return std::nullopt;
  return file.read(count);
}

void DesktopFiles::Remove(const QString& path) {
  if (!IsSomethingElse(path)) QFile::remove(path);
}

QStringList DesktopFiles::List(const QString& folder) {
  return QDir(folder).entryList(QDir::Files | QDir::Hidden, QDir::Name);
}

bool DesktopFiles::MakeFolder(const QString& folder) {
  return QDir().mkpath(folder);
}

std::shared_ptr<void> DesktopFiles::Claim(const QString& path) {
  auto lock = std::make_shared<QLockFile>(path + ".lock");
  lock->setStaleLockTime(0);  // a session may last for weeks
  return lock->tryLock() ? lock : nullptr;
}

}  // namespace zth::platform

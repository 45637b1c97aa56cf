#include <algorithm>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>
#include <QSaveFile>
#include <QStorageInfo>

#include "platform/DesktopParts.h"
#include "platform/FileFacts.h"

namespace zth::platform {
namespace {

/// True for anything but a regular file: a pipe would block until somebody reads from it, and a device has no size.
bool IsSomethingElse(const QString& path) {
  const QFileInfo info(path);
  return info.exists() && !info.isFile();
}

}  // namespace

std::optional<FileState> DesktopFiles::Look(const QString& path) {
  return FactsOf(path);
}

FileAppend DesktopFiles::Append(const QString& path, const std::optional<FileState>& seen, const QByteArray& bytes) {
  if (IsSomethingElse(path)) return {};
  QFile file(path);
  // Unbuffered: Qt's buffer would split a long run of lines into several writes.
  const QIODevice::OpenMode mode = QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered;
  if (!file.open(seen ? mode | QIODevice::ExistingOnly : mode)) return {};
  const auto before = FactsOf(file);
  if (!before || (seen ? !before->SameFile(*seen) || before->size < seen->size : before->size > 0)) return {};
  FileAppend done{true, *before, 0};
  done.written = std::max<std::int64_t>(0, file.write(bytes));
  return done;
}

bool DesktopFiles::Cut(const QString& path, const FileState& seen, std::int64_t size) {
  QFile file(path);
  // Open for appending: write-only mode would truncate the file.
  if (IsSomethingElse(path) || !file.open(QIODevice::Append | QIODevice::ExistingOnly)) return false;
  const auto now = FactsOf(file);
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
  return file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) && file.write(bytes) == bytes.size() &&
         ReachesDisk(file) && file.commit();
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

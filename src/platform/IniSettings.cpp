#include <QFileInfo>
#include <QSettings>
#include <QStandardPaths>

#include "base/Product.h"
#include "platform/DesktopParts.h"

namespace zth::platform {
namespace {

bool IsFileOrNothing(const QString& path) {
  const QFileInfo info(path);
  return info.isFile() || (!info.exists() && !info.isSymLink());
}

/// A pipe in the place of the file would hold the start until somebody writes to it; a folder or a device has no keys.
bool CanBeOpened(const QString& file) {
  return QFileInfo(file).isFile() && QFileInfo(file).isReadable();
}

/// The store writes beside its file and renames, under a lock that it would wait for. What cannot be read must not be
/// replaced either: its other keys would be lost.
bool CanBeStored(const QString& file) {
  const QFileInfo folder(QFileInfo(file).absolutePath());
  return IsFileOrNothing(file) && IsFileOrNothing(file + ".lock") && (CanBeOpened(file) || !QFileInfo::exists(file)) &&
         (!folder.exists() || (folder.isDir() && folder.isWritable()));
}

}  // namespace

QString IniSettings::UserFile() {
#ifdef Q_OS_WIN
  const QString extension = QStringLiteral(".ini");
#else
  const QString extension = QStringLiteral(".conf");
#endif
  return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + '/' + base::kTitle + extension;
}

QString IniSettings::Get(const QString& key, const QString& fallback) const {
  if (!CanBeOpened(file_)) return fallback;
  // Opened anew each time, so that a change made by hand while the program runs is not lost.
  const QSettings store(file_, QSettings::IniFormat);
  const QVariant value = store.value("Settings/" + key);
  // A text with a comma in it, written by hand without quotes, arrives as a list.
  if (value.typeId() == QMetaType::QStringList) return value.toStringList().join(", ");
  return value.isValid() ? value.toString() : fallback;
}

void IniSettings::Put(const QString& key, const QString& text) {
  if (!CanBeStored(file_)) return;
  QSettings store(file_, QSettings::IniFormat);
  store.setValue("Settings/" + key, text);
  store.sync();
}

}  // namespace zth::platform

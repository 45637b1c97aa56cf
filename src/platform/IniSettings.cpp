#include <QFileInfo>
#include <QSettings>
#include <QStandardPaths>

#include "base/Product.h"
#include "platform/DesktopParts.h"
#include "platform/Surroundings.h"

namespace zth::platform {
namespace {

bool IsFileOrNothing(const QString& path) {
  const QFileInfo info(path);
  return info.isFile() || (!info.exists() && !info.isSymLink());
}

/// If the path is a pipe, opening it would block the start until somebody writes to it; folders and devices have no
/// keys.
bool CanBeOpened(const QString& file) {
  return QFileInfo(file).isFile() && QFileInfo(file).isReadable();
}

/// QSettings writes a temporary file beside the original, renames it, and waits for a lock. A file that cannot be read
/// must not be replaced either: its other keys would be lost.
bool CanBeStored(const QString& file) {
  const QFileInfo folder(QFileInfo(file).absolutePath());
  return IsFileOrNothing(file) && IsFileOrNothing(file + ".lock") && (CanBeOpened(file) || !QFileInfo::exists(file)) &&
         (!folder.exists() || (folder.isDir() && folder.isWritable()));
}

}  // namespace

QString IniSettings::UserFile() {
  return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + '/' + base::kTitle +
         SettingsEnding();
}

QString IniSettings::Get(const QString& key, const QString& fallback) const {
  if (!CanBeOpened(file_)) return fallback;
  // Reopened each time, so that manual edits made while the program runs are not lost.
  const QSettings store(file_, QSettings::IniFormat);
  const QVariant value = store.value("Settings/" + key);
  // An unquoted text with a comma, written by hand, is read as a list.
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

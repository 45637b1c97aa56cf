#include <QSettings>
#include <QStandardPaths>

#include "base/Product.h"
#include "platform/DesktopParts.h"

namespace zth::platform {

QString IniSettings::UserFile() {
#ifdef Q_OS_WIN
  const QString extension = QStringLiteral(".ini");
#else
  const QString extension = QStringLiteral(".conf");
#endif
  return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + '/' + base::kTitle + extension;
}

QString IniSettings::Get(const QString& key, const QString& fallback) const {
  // Opened anew each time, so that a change made by hand while the program runs is not lost.
  const QSettings store(file_, QSettings::IniFormat);
  const QVariant value = store.value("Settings/" + key);
  // A text with a comma in it, written by hand without quotes, arrives as a list.
  if (value.typeId() == QMetaType::QStringList) return value.toStringList().join(", ");
  return value.isValid() ? value.toString() : fallback;
}

void IniSettings::Put(const QString& key, const QString& text) {
  QSettings store(file_, QSettings::IniFormat);
  store.setValue("Settings/" + key, text);
  store.sync();
}

}  // namespace zth::platform

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include "platform/Machine.h"

namespace zth::platform {

QStringList LocalMachine::Names(const QString& folder) const {
  return QDir(root_ + folder).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
}

QString LocalMachine::FirstLine(const QString& file) const {
  constexpr int kMostBytes = 4096;
  const QFileInfo info(root_ + file);
  QFile opened(info.filePath());
  // Only what is a file: a pipe would block.
  if (!info.isFile() || !opened.open(QIODevice::ReadOnly)) return {};
  return QString::fromUtf8(opened.readLine(kMostBytes)).trimmed();
}

QString LocalMachine::Target(const QString& link) const {
  const QFileInfo info(root_ + link);
  return info.isSymbolicLink() ? QFileInfo(info.symLinkTarget()).fileName() : QString();
}

NodeAccess LocalMachine::Access(const QString& node) const {
  const QFileInfo info(root_ + node);
  if (!info.exists()) return {};
  const QString group = info.group();
  return {true, info.isReadable() && info.isWritable(), group.isEmpty() ? QString::number(info.groupId()) : group};
}

}  // namespace zth::platform

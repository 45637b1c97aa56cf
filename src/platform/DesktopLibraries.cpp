#include <QDir>
#include <QFileInfo>

#include "platform/DesktopParts.h"
#include "platform/LibraryFiles.h"

namespace zth::platform {

LoadedLibrary DesktopLibraries::Load(const QString& name) {
  const QString folder = taken_.isEmpty() ? folder_ : taken_;
  const QString beside = QDir(folder).filePath(LibraryFileName(name));
  // If the folder's name cannot be decoded, the folder is empty here. Do not mistake that for the working folder.
  const bool isBeside = !folder.isEmpty() && (QFileInfo::exists(beside) || !taken_.isEmpty());
  return LoadLibraryFile(isBeside ? beside : LibraryFileName(name));
}

QStringList DesktopLibraries::Places() const {
  if (!taken_.isEmpty()) return {taken_};
  return QStringList(folder_.isEmpty() ? "the program's folder" : folder_ + " (the program's folder)")
         << LoaderPlaces();
}

QString DesktopLibraries::BoardFolder(const QString& board) const {
  return QDir::isAbsolutePath(board) ? QDir::cleanPath(board) : QDir::cleanPath(folder_ + "/../boards/" + board);
}

QStringList DesktopLibraries::Boards() const {
  if (folder_.isEmpty()) return {};
  return QDir(BoardFolder(".")).entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
}

bool DesktopLibraries::HasBoard(const QString& board) const {
  const QDir folder(BoardFolder(board));
  if (folder_.isEmpty() || folder.path() == taken_) return false;
  return folder.exists(LibraryFileName("USBFunctions")) && folder.exists(LibraryFileName("smbus"));
}

}  // namespace zth::platform

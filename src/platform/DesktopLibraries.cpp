#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLibrary>

#include "platform/DesktopParts.h"

#ifdef Q_OS_LINUX
#include <dlfcn.h>
#include <link.h>
#endif

namespace zth::platform {
namespace {

class LoadedFile final : public Library {
 public:
  explicit LoadedFile(const QString& file) : library_(file) {
    // The entry points are used until the process ends, possibly after this object is destroyed.
    library_.setLoadHints(QLibrary::PreventUnloadHint);
  }

  bool Load() { return library_.load(); }
  QString Error() const { return library_.errorString(); }

  void* Symbol(const char* name) const override {
    return reinterpret_cast<void*>(const_cast<QLibrary&>(library_).resolve(name));
  }

 private:
  QLibrary library_;
};

QString FileName(const QString& name) {
#ifdef Q_OS_WIN
  return name + ".dll";
#else
  return "lib" + name + ".so";
#endif
}

/// The file that the loader found for a bare name, or the name itself when the loader does not say.
QString FoundFile(const QString& name) {
#ifdef Q_OS_LINUX
  void* const handle = ::dlopen(QFile::encodeName(name).constData(), RTLD_LAZY | RTLD_NOLOAD);
  if (handle == nullptr) return name;
  const link_map* map = nullptr;
  const bool told = ::dlinfo(handle, RTLD_DI_LINKMAP, &map) == 0 && map != nullptr;
  const QString file = told ? QFileInfo(QFile::decodeName(map->l_name)).absoluteFilePath() : name;
  ::dlclose(handle);
  return file;
#else
  return name;
#endif
}

}  // namespace

LoadedLibrary DesktopLibraries::Load(const QString& name) {
  const QString folder = taken_.isEmpty() ? folder_ : taken_;
  const QString beside = QDir(folder).filePath(FileName(name));
  // If the folder's name cannot be decoded, the folder is empty here. Do not mistake that for the working folder.
  const bool isThere = QFileInfo::exists(beside);
  const bool isBeside = !folder.isEmpty() && (isThere || !taken_.isEmpty());
  const QString named = isBeside ? beside : FileName(name);
  const auto file = std::make_shared<LoadedFile>(named);
  if (file->Load()) return {file, {}, FoundFile(named)};

  // The loader reports "libname.so: cannot open ..." if the file itself is missing, and names another file if one of
  // the library's dependencies is missing. Only the first case counts as absent.
  const QString why = file->Error();
  const bool absent = isBeside ? !isThere
                               : why.contains(FileName(name) + ": cannot open shared object file: No such file") ||
                                     why.contains("The specified module could not be found");
  return {nullptr, absent ? "File not found: " + FileName(name) + " (" + why + ")" : why, named};
}

QStringList DesktopLibraries::Places() const {
  if (!taken_.isEmpty()) return {taken_};
  QStringList places{folder_.isEmpty() ? "the program's folder" : folder_ + " (the program's folder)"};
#ifdef Q_OS_WIN
  const char* const variable = "PATH";
#else
  const char* const variable = "LD_LIBRARY_PATH";
#endif
  const QStringList folders = qEnvironmentVariable(variable).split(QDir::listSeparator(), Qt::SkipEmptyParts);
  for (const QString& folder : folders) places << folder + " (" + variable + ")";
  return places << "the system's own folders for libraries";
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
  return folder.exists(FileName("USBFunctions")) && folder.exists(FileName("smbus"));
}

}  // namespace zth::platform

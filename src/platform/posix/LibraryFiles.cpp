#include "platform/LibraryFiles.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLibrary>

#ifdef Q_OS_LINUX
#include <dlfcn.h>
#include <link.h>
#endif

namespace zth::platform {
namespace {

constexpr char kPathVariable[] = "LD_LIBRARY_PATH";

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

QString LibraryFileName(const QString& name) {
  return "lib" + name + ".so";
}

LoadedLibrary LoadLibraryFile(const QString& file) {
  const auto library = std::make_shared<LoadedFile>(file);
  if (library->Load()) return {library, {}, FoundFile(file)};

  // The loader reports "libname.so: cannot open ..." if the file itself is missing, and names another file if one of
  // the library's dependencies is missing. Only the first case counts as absent.
  const QString why = library->Error();
  const bool isPath = file.contains('/');
  const bool absent =
      isPath ? !QFileInfo::exists(file) : why.contains(file + ": cannot open shared object file: No such file");
  return {nullptr, absent ? "File not found: " + QFileInfo(file).fileName() + " (" + why + ")" : why, file};
}

QStringList LoaderPlaces() {
  QStringList places;
  const QStringList folders = qEnvironmentVariable(kPathVariable).split(QDir::listSeparator(), Qt::SkipEmptyParts);
  for (const QString& folder : folders) places << folder + " (" + kPathVariable + ")";
  return places << "the system's own folders for libraries";
}

}  // namespace zth::platform

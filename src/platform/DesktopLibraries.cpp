#include <QDir>
#include <QFileInfo>
#include <QLibrary>

#include "platform/DesktopParts.h"

namespace zth::platform {
namespace {

class LoadedFile final : public Library {
 public:
  explicit LoadedFile(const QString& file) : library_(file) {
    // The entry points are in use to the end of the process, past the point where this object may go.
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

}  // namespace

LoadedLibrary DesktopLibraries::Load(const QString& name) {
  const QString beside = QDir(folder_).filePath(FileName(name));
  // A folder whose name is no text is unknown here. It must not be taken for the working folder.
  const bool isBeside = !folder_.isEmpty() && QFileInfo::exists(beside);
  const auto file = std::make_shared<LoadedFile>(isBeside ? beside : FileName(name));
  if (file->Load()) return {file, {}};

  // The loader says "libname.so: cannot open ..." when that file itself is not there, and names another file when one
  // of the library's own needs is missing. Only the former counts as absent.
  const QString why = file->Error();
  const bool absent = !isBeside && (why.contains(FileName(name) + ": cannot open shared object file: No such file") ||
                                    why.contains("The specified module could not be found"));
  return {nullptr, absent ? "File not found: " + FileName(name) : why};
}

}  // namespace zth::platform

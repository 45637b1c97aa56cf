#include "platform/LibraryFiles.h"

#include <array>
#include <vector>
#include <windows.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include "platform/DllHeader.h"

namespace zth::platform {
namespace {

constexpr DllMachine kOwnMachine = sizeof(void*) == 8 ? DllMachine::X64 : DllMachine::X86;
constexpr qint64 kLargestLibrary = 256 << 20;
constexpr qint64 kBeginning = 4096;  // bytes of a file, enough to tell its machine

LPCWSTR Wide(const QString& text) {
  return reinterpret_cast<LPCWSTR>(text.utf16());
}

/// What a function of the system writes into a buffer; it returns the length, or the length that it needs.
template <typename Fill>
QString Filled(Fill fill) {
  std::vector<wchar_t> buffer(MAX_PATH);
  DWORD length = fill(buffer.data(), static_cast<DWORD>(buffer.size()));
  if (length >= buffer.size()) {
    buffer.resize(length + 1);
    length = fill(buffer.data(), static_cast<DWORD>(buffer.size()));
  }
  return length == 0 || length >= buffer.size()
             ? QString()
             : QString::fromWCharArray(buffer.data(), static_cast<qsizetype>(length));
}

QString SystemFolder() {
  return Filled([](wchar_t* buffer, DWORD size) { return ::GetSystemDirectoryW(buffer, size); });
}

/// The loader's own order, but without the working folder: a library that happens to lie where the user works is not
/// what was asked for.
QStringList SearchedFolders() {
  QStringList folders{SystemFolder(),
                      Filled([](wchar_t* buffer, DWORD size) { return ::GetWindowsDirectoryW(buffer, size); })};
  return folders << qEnvironmentVariable("PATH").split(QDir::listSeparator(), Qt::SkipEmptyParts);
}

QString Search(const QStringList& folders, const QString& name) {
  const QString path = folders.join(QDir::listSeparator());
  return Filled([&](wchar_t* buffer, DWORD size) {
    return ::SearchPathW(Wide(path), Wide(name), nullptr, size, buffer, nullptr);
  });
}

std::optional<DllHeader> ReadHeader(const QString& path, qint64 bytes = kLargestLibrary) {
  QFile file(path);
  return file.open(QIODevice::ReadOnly) ? ReadDllHeader(file.read(bytes)) : std::nullopt;
}

/// Whether the file says that it is for another machine. Asked first: a system that runs both kinds might map the file
/// and find no entries in it.
bool IsForeign(const QString& path) {
  const auto header = ReadHeader(path, kBeginning);
  return header && header->machine != kOwnMachine;
}

bool IsSystems(const QString& path) {
  return QDir::fromNativeSeparators(path).startsWith(QDir::fromNativeSeparators(SystemFolder()) + '/',
                                                     Qt::CaseInsensitive);
}

class LoadedFile final : public Library {
 public:
  explicit LoadedFile(HMODULE module) : module_(module) {}

  void* Symbol(const char* name) const override { return reinterpret_cast<void*>(::GetProcAddress(module_, name)); }

 private:
  HMODULE module_;  ///< never freed: the entry points are used until the process ends
};

/// Null if the system cannot load it; `error` is then its number of the reason.
HMODULE LoadModule(const QString& path, DWORD& error) {
  DWORD before = 0;
  // The system would show a box of its own and wait for the user.
  ::SetThreadErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX, &before);
  // What a library needs is looked for in its own folder first. Only then, with the program's folder in its place.
  HMODULE module = ::LoadLibraryExW(Wide(path), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
  if (module == nullptr && ::GetLastError() == ERROR_MOD_NOT_FOUND) module = ::LoadLibraryW(Wide(path));
  error = module == nullptr ? ::GetLastError() : 0;
  ::SetThreadErrorMode(before, nullptr);
  return module;
}

/// `error` is the system's number of the reason; 0 if it was not asked.
QString WhyNot(const QString& path, DWORD error) {
  QStringList folders{QDir::toNativeSeparators(QFileInfo(path).absolutePath())};
  folders << SearchedFolders();
  const DllSearch search{[&](const QString& name) { return Search(folders, name); },
                         [](const QString& needed) { return ReadHeader(needed); }, IsSystems};
  const QString trouble = DllTrouble(path, kOwnMachine, search);
  if (error == 0) return trouble;
  return (trouble.isEmpty() ? path + " cannot be loaded." : trouble) + " (" +
         qt_error_string(static_cast<int>(error)).trimmed() + ", error " + QString::number(error) + ')';
}

}  // namespace

QString LibraryFileName(const QString& name) {
  return name + ".dll";
}

LoadedLibrary LoadLibraryFile(const QString& file) {
  const bool isPath = QFileInfo(file).fileName() != file;
  const QString path =
      QDir::toNativeSeparators(isPath ? QFileInfo(file).absoluteFilePath() : Search(SearchedFolders(), file));
  // The system says the same of a file that is absent as of one that needs an absent one.
  if (path.isEmpty() || !QFileInfo::exists(path)) {
    return {nullptr, "File not found: " + QFileInfo(file).fileName() + " (it is in none of the folders searched)",
            file};
  }
  DWORD error = 0;
  const HMODULE module = IsForeign(path) ? nullptr : LoadModule(path, error);
  if (module != nullptr) return {std::make_shared<LoadedFile>(module), {}, path};
  return {nullptr, WhyNot(path, error), path};
}

QStringList LoaderPlaces() {
  QStringList places = SearchedFolders();
  for (qsizetype i = 2; i < places.size(); ++i) places[i] += " (PATH)";
  return places;
}

}  // namespace zth::platform

#include "platform/FileFacts.h"

#include <cerrno>
#include <io.h>
#include <windows.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace zth::platform {
namespace {

constexpr int kBitsOfAHalf = 32;

std::uint64_t Whole(DWORD high, DWORD low) {
  return (static_cast<std::uint64_t>(high) << kBitsOfAHalf) | low;
}

std::optional<FileState> FactsOf(HANDLE handle) {
  // A pipe or a device can have a name like a file's.
  BY_HANDLE_FILE_INFORMATION found{};
  if (::GetFileType(handle) != FILE_TYPE_DISK || !::GetFileInformationByHandle(handle, &found)) return std::nullopt;
  if ((found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0) return std::nullopt;
  return FileState{found.dwVolumeSerialNumber, Whole(found.nFileIndexHigh, found.nFileIndexLow),
                   static_cast<std::int64_t>(Whole(found.nFileSizeHigh, found.nFileSizeLow))};
}

}  // namespace

std::optional<FileState> FactsOf(const QString& path) {
  if (!QFileInfo(path).isFile()) return std::nullopt;
  // Asks for no right to the content, so that a file that another program holds open can be looked at too.
  const HANDLE handle =
      ::CreateFileW(reinterpret_cast<LPCWSTR>(QDir::toNativeSeparators(path).utf16()), FILE_READ_ATTRIBUTES,
                    FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING, 0, nullptr);
  if (handle == INVALID_HANDLE_VALUE) return std::nullopt;
  const auto facts = FactsOf(handle);
  ::CloseHandle(handle);
  return facts;
}

std::optional<FileState> FactsOf(QFileDevice& file) {
  return FactsOf(reinterpret_cast<HANDLE>(::_get_osfhandle(file.handle())));
}

bool ReachesDisk(QFileDevice& file) {
  return ::_commit(file.handle()) == 0 || errno == EINVAL;
}

}  // namespace zth::platform

#pragma once

#include <functional>
#include <optional>

#include <QByteArray>
#include <QString>
#include <QStringList>

/// Why Windows does not load a library. Its own words are in the user's language and name no file, so the library's
/// headers are asked. Reads bytes only, and works on any system.
namespace zth::platform {

enum class DllMachine { X86, X64, Arm64, Other };

struct DllHeader {
  DllMachine machine = DllMachine::Other;
  QStringList needs;  ///< the names of the libraries that it imports from ("KERNEL32.dll")
};

/// What the content of a file says of itself; nothing if it is no library for Windows.
std::optional<DllHeader> ReadDllHeader(const QByteArray& content);

/// How the diagnosis looks at the system.
struct DllSearch {
  std::function<QString(const QString& name)> find;  ///< the path of a library by its file name; empty: not found
  std::function<std::optional<DllHeader>(const QString& path)> read;
  /// Whether the path is one of the system's own libraries; what those need is there.
  std::function<bool(const QString& path)> isSystems;
};

/// Why a program for the machine `own` cannot load the file, as far as headers tell, in sentences; otherwise empty.
QString DllTrouble(const QString& file, DllMachine own, const DllSearch& search);

}  // namespace zth::platform

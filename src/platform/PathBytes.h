#pragma once

#include <QByteArray>
#include <QString>

namespace zth::platform {

/// A path as a C library expects it: the file system's bytes on POSIX, ANSI text on Windows with "?" for characters
/// that are not in the code page.
QByteArray PathBytes(const QString& path);

/// The folder of the executable, as PathBytes returns it. On POSIX this also works if the name is not valid in the file
/// system's encoding, so that no QString can hold it and Process::Folder() is empty.
QByteArray ProgramFolderBytes();

}  // namespace zth::platform

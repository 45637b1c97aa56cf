#pragma once

#include <QByteArray>
#include <QString>

namespace zth::platform {

/// A path as a C library expects it: the file system's bytes on POSIX, on Windows UTF-8 where that is the process's
/// code page, otherwise the text of code page 1252 with "?" for characters that it lacks.
QByteArray PathBytes(const QString& path);

/// The folder of the executable, as PathBytes returns it. On POSIX this also works if the name is not valid in the file
/// system's encoding, so that no QString can hold it and Process::Folder() is empty.
QByteArray ProgramFolderBytes();

}  // namespace zth::platform

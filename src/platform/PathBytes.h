#pragma once

#include <QByteArray>
#include <QString>

namespace zth::platform {

/// A path as a library of C takes it: on POSIX the file system's own bytes, on Windows ANSI text, with "?" for each
/// character that the code page does not have.
QByteArray PathBytes(const QString& path);

/// The folder of the executable, as PathBytes has it. Right on POSIX also where its name is no text in the file
/// system's encoding, which no QString can hold: Process::Folder() is empty then.
QByteArray ProgramFolderBytes();

}  // namespace zth::platform

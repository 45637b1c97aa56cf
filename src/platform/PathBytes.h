#pragma once

#include <QByteArray>
#include <QString>

namespace zth::platform {

/// A path as a library of C takes it: on POSIX the file system's own bytes, on Windows ANSI text, with "?" for each
/// character that the code page does not have.
QByteArray PathBytes(const QString& path);

}  // namespace zth::platform

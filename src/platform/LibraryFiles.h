#pragma once

#include <QString>
#include <QStringList>

#include "platform/Services.h"

/// The system's loader of libraries; posix/ and windows/ each have an implementation.
namespace zth::platform {

/// The name of a library's file: "libsmbus.so", "smbus.dll".
QString LibraryFileName(const QString& name);

/// Loads a library until the process ends. `file` is a path, or a bare file name that is looked for in LoaderPlaces.
LoadedLibrary LoadLibraryFile(const QString& file);

/// Where a bare file name is looked for, in this order; a last entry may describe what the system searches as well.
QStringList LoaderPlaces();

}  // namespace zth::platform

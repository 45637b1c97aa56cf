#pragma once

#include <optional>

#include <QString>

#include "platform/Services.h"

class QFileDevice;

/// What only the system itself knows about a file; posix/ and windows/ each have an implementation.
namespace zth::platform {

/// The state of a regular file by its name; nothing if there is none.
std::optional<FileState> FactsOf(const QString& path);

/// The state of an open file; nothing if the system does not tell.
std::optional<FileState> FactsOf(QFileDevice& file);

/// Waits until what was written is on the disk. False if the disk has reported a write error late. QSaveFile flushes
/// too, but does not check the result.
bool ReachesDisk(QFileDevice& file);

}  // namespace zth::platform

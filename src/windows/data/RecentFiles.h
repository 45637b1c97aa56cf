#pragma once

#include <functional>

#include <QString>
#include <QStringList>

#include "platform/Services.h"

class QMenu;
class QWidget;

/// The configuration files that were used last. The settings keep them from one session to the next.
namespace zth::windows {

inline constexpr int kMostRecentFiles = 10;

/// Their full paths, the last one first. Files that are gone are among them until they are used in vain.
QStringList RecentFiles(const platform::Settings& settings);

/// A file has been written or read.
void NoteRecentFile(platform::Settings& settings, const QString& path);

/// A file could not be read.
void ForgetRecentFile(platform::Settings& settings, const QString& path);

/// Adds an entry for each of them to a pop-up menu of `owner`; if there is none, an entry that says so.
void AddRecentFiles(QMenu& menu, QWidget& owner, const platform::Settings& settings,
                    const std::function<void(const QString& path)>& take);

/// A file's name for a list; with its folder's name if another one of `among` has the same name.
QString ShortName(const QString& path, const QStringList& among);

}  // namespace zth::windows

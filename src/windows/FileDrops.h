#pragma once

#include <functional>

#include <QPoint>
#include <QString>
#include <QStringList>

class QWidget;

namespace zth::windows {

/// Lets files of this computer be dropped on a window, at most `most` at a time. `take` gets their paths, and where
/// they were dropped in the window; it runs as an action of the user, after the drop has ended, so that it may ask.
void TakeFiles(QWidget& window, int most, std::function<void(const QStringList& paths, const QPoint& at)> take);

}  // namespace zth::windows

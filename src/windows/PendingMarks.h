#pragma once

#include <utility>
#include <vector>

#include <QColor>

class QPalette;
class QString;
class QWidget;

/// The look of a control whose value has not been written to the chip, or would be written as another value. Its text
/// does not change.
namespace zth::windows {

/// The accent colour for pending values, or the warning colour for odd ones, for text on the background of `palette`.
QColor MarkColour(const QPalette& palette, bool odd);

/// Bold in the accent colour if `pending`, in the warning colour if `odd`, plain if neither. The colours suit the
/// background of `window`, whose palette is the first to change.
void MarkControl(QWidget& control, const QWidget& window, bool pending, bool odd);

/// Raises a control's minimum width to fit its longest text in bold, so that marking it moves and clips nothing.
void KeepRoomForMark(QWidget& control, const QString& text);

/// Marks the tab of every page with a pending control, and unmarks the others.
void MarkTabs(const QWidget& window, const std::vector<std::pair<QWidget*, bool>>& pending);

}  // namespace zth::windows

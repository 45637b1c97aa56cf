#pragma once

#include <utility>
#include <vector>

#include <QColor>

class QPalette;
class QString;
class QWidget;

/// How a control looks whose value has not reached the chip, or would reach it as another one. Texts stay as they are.
namespace zth::windows {

/// The accent colour of what is pending, or the warning colour of what is odd, for texts on the ground of `palette`.
QColor MarkColour(const QPalette& palette, bool odd);

/// Bold in the accent colour while `pending`; in the warning colour while `odd`; plain when neither. The colours are
/// those for the ground of `window`, whose palette is the first to follow a change.
void MarkControl(QWidget& control, const QWidget& window, bool pending, bool odd);

/// Widens a control's minimum by what its longest text needs when it is bold, so that a mark moves and clips nothing.
void KeepRoomForMark(QWidget& control, const QString& text);

/// Marks the tab of each page on which one of the controls is pending, and unmarks the others.
void MarkTabs(const QWidget& window, const std::vector<std::pair<QWidget*, bool>>& pending);

}  // namespace zth::windows

#pragma once

class QLineEdit;
class QWidget;

namespace zth::windows {

/// Gives a search box the keys of a search: Escape empties it, and closes the window only once it is empty; Down goes
/// to what is searched. Without the view, Down does nothing of its own.
void AddSearchKeys(QLineEdit& box, QWidget& view);

/// Lets Ctrl+F go to a search box from anywhere in `window`, with its text selected.
void AddFindKey(QWidget& window, QLineEdit& box);

/// Makes a box wide enough for its placeholder text.
void KeepRoomForHint(QLineEdit& box);

}  // namespace zth::windows

#pragma once

#include <functional>

class QAbstractButton;
class QComboBox;
class QLineEdit;

/// How a control's handler hangs on the control. All handlers of all windows are connected here, so that a change by
/// code runs a handler just as one by the user does, and so that none lets the end of the process through to Qt.
namespace zth::windows {

using Handler = std::function<void()>;

/// A push button: each press.
void OnClick(QAbstractButton& button, Handler handler);

/// A check box or an option button: each change of its state.
void OnToggle(QAbstractButton& button, Handler handler);

/// A text box: each change of its text.
void OnChange(QLineEdit& box, Handler handler);

/// A drop-down list: once for each selection, also when the user picks the item that already shows.
void OnSelect(QComboBox& list, Handler handler);

}  // namespace zth::windows

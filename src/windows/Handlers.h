#pragma once

#include <functional>

class QAbstractButton;
class QComboBox;
class QLineEdit;
class QTabWidget;
class QWidget;

/// How a control's handler hangs on the control. All handlers of all windows are connected here, so that a change by
/// code runs a handler just as one by the user does, and so that none lets the end of the process through to Qt.
namespace zth::windows {

using Handler = std::function<void()>;

/// What the wheel may do to a control that the pointer stands over. Without the focus it never does anything: it is
/// meant for what scrolls behind the control. Never: with the focus neither.
enum class Wheel { Never, WithFocus };

/// Holds a control to that, and keeps it from taking the focus by the wheel.
void LimitWheel(QWidget& control, Wheel wheel);

/// `handler` as an action of the user in the window of `control`: says what he waits for where that takes long, and
/// lets no end of the process through.
Handler ByUser(QWidget& control, Handler handler);

/// A push button: each press.
void OnClick(QAbstractButton& button, Handler handler);

/// A check box or an option button: each change of its state.
void OnToggle(QAbstractButton& button, Handler handler);

/// A text box: each change of its text.
void OnChange(QLineEdit& box, Handler handler);

/// A drop-down list: once for each selection, also when the user picks the item that already shows. `wheel` is
/// WithFocus only where a selection reaches nothing outside its window: one notch too many must not write a register.
void OnSelect(QComboBox& list, Handler handler, Wheel wheel = Wheel::Never);

/// Tabs: each time when another one shows.
void OnTab(QTabWidget& tabs, Handler handler = {});

}  // namespace zth::windows

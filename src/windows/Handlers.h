#pragma once

#include <functional>

class QAbstractButton;
class QComboBox;
class QLineEdit;
class QTabWidget;
class QWidget;

/// Connects the handlers of all windows to their controls, so that a change by code runs a handler like a change by the
/// user, and so that the end of the process never propagates into Qt.
namespace zth::windows {

using Handler = std::function<void()>;

/// What the wheel may do to a control under the pointer. Without the focus it never does anything: it is meant to
/// scroll what is behind the control. Never: it does nothing with the focus either.
enum class Wheel { Never, WithFocus };

/// Applies that limit to a control, and prevents the wheel from giving it the focus.
void LimitWheel(QWidget& control, Wheel wheel);

/// Runs `handler` as an action of the user in the window of `control`: shows the signs of waiting when it takes long,
/// and keeps the exception that ends the process from leaving the handler.
Handler ByUser(QWidget& control, Handler handler);

/// A push button: every press.
void OnClick(QAbstractButton& button, Handler handler);

/// A check box or an option button: every change of its state.
void OnToggle(QAbstractButton& button, Handler handler);

/// A text box: every change of its text.
void OnChange(QLineEdit& box, Handler handler);

/// A drop-down list: once for each selection, even if the user picks the current item again. `wheel` is WithFocus only
/// if a selection affects nothing outside its window: one notch too many must not write a register.
void OnSelect(QComboBox& list, Handler handler, Wheel wheel = Wheel::Never);

/// Tabs: every change of the current tab.
void OnTab(QTabWidget& tabs, Handler handler = {});

}  // namespace zth::windows

#pragma once

#include <QString>
#include <QStringList>

#include "platform/Services.h"

namespace zth::windows {

class ChildWindow;

/// What a child window may request from the main window.
class Desktop {
 public:
  virtual ~Desktop() = default;

  /// Loads the window of that name ("frmLimits") if necessary, shows it and brings it to the front. Null if there is no
  /// such window.
  virtual ChildWindow* OpenWindow(const QString& name) = 0;

  /// The loaded window of that name, or null.
  virtual ChildWindow* FindWindow(const QString& name) const = 0;

  /// The items of the device list: "58h on USB", as link::TextOf names a chip.
  virtual QStringList Devices() const = 0;

  /// Sets the text of the status bar's first panel.
  virtual void SetStatus(const QString& text) = 0;

  /// Shows a temporary message over the status bar's first panel for some seconds.
  virtual void Tell(const QString& text) = 0;

  /// Marks a window's tool bar button with the number of red lamps in that window; 0 removes the mark.
  virtual void MarkAlerts(const QString& window, int count) = 0;

  /// Switches the master timer on or off. After the main window has closed, it stays off.
  virtual void EnableTimer(bool on) = 0;

  /// The window that child windows are placed relative to.
  virtual QWidget& Frame() = 0;
};

/// Passed to every child window. Both members outlive all windows.
struct Context {
  platform::Services& services;
  Desktop& desktop;
};

}  // namespace zth::windows

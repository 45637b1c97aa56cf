#pragma once

#include <QString>

#include "platform/Services.h"

namespace zth::windows {

class ChildWindow;

/// What a child window may ask of the main window.
class Desktop {
 public:
  virtual ~Desktop() = default;

  /// Loads the window of that name ("frmLimits") unless it is loaded, shows it and brings it to the front. Null when
  /// there is no such window.
  virtual ChildWindow* OpenWindow(const QString& name) = 0;

  /// The loaded window of that name, or null.
  virtual ChildWindow* FindWindow(const QString& name) const = 0;

  /// Text of the status bar's first panel.
  virtual void SetStatus(const QString& text) = 0;

  /// A message that passes: for some seconds it covers the status bar's first panel.
  virtual void Tell(const QString& text) = 0;

  /// Marks the tool bar's button of a window with how many red lamps that window has; 0 takes the mark away.
  virtual void MarkAlerts(const QString& window, int count) = 0;

  /// Switches the master timer off and on. Once the main window has closed it stays off.
  virtual void EnableTimer(bool on) = 0;

  /// The window whose handles a child's placement is told by.
  virtual QWidget& Frame() = 0;
};

/// What every child window is made with. Both outlive all windows.
struct Context {
  platform::Services& services;
  Desktop& desktop;
};

}  // namespace zth::windows

#pragma once

#include <QLabel>
#include <QMainWindow>
#include <QMdiSubWindow>
#include <QObject>
#include <QPointer>

namespace zth::windows {
class ChildWindow;
}

namespace zth::shell {

class MdiDesk;
class StatusBar;

/// What the main window shows while the user waits for transfers (link/Waiting.h): a busy pointer, in the status bar
/// what is waited for, and the frame of a window that is about to open. All of it is painted from here and at once. No
/// event may run between two transfers of a handler: neither a click nor a tick of the timer.
class WaitingSigns final : public QObject {
 public:
  WaitingSigns(QMainWindow& main, MdiDesk& area, StatusBar& status);
  ~WaitingSigns() override;
  WaitingSigns(const WaitingSigns&) = delete;
  WaitingSigns& operator=(const WaitingSigns&) = delete;

  /// Loads a new window, whose frame does not show yet. Over a slow link the frame comes first.
  void Load(windows::ChildWindow& window, QMdiSubWindow& frame);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void Show(const QString& text);
  void Hide();
  void ShowFrame();

  QMainWindow& main_;
  MdiDesk& area_;
  StatusBar& status_;
  QPointer<QMdiSubWindow> opening_;  ///< the frame of the window that loads and does not show yet
  QPointer<QLabel> veil_;            ///< over its controls, while it loads and shows already
  bool shows_ = false;
};

}  // namespace zth::shell

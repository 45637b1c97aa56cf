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

/// What the main window shows while the user waits for transfers (link/Waiting.h): a busy pointer, a message in the
/// status bar that names the work, and the frame of a window that is about to open. All of it is painted here, at once.
/// No event may run between two transfers of a handler: no click and no timer tick.
class WaitingSigns final : public QObject {
 public:
  WaitingSigns(QMainWindow& main, MdiDesk& area, StatusBar& status);
  ~WaitingSigns() override;
  WaitingSigns(const WaitingSigns&) = delete;
  WaitingSigns& operator=(const WaitingSigns&) = delete;

  /// Loads a new window whose frame is still hidden. Over a slow link the frame shows first.
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
  QPointer<QMdiSubWindow> opening_;  ///< the frame of a window that is loading and still hidden
  QPointer<QLabel> veil_;            ///< covers the window's controls when the window shows while it loads
  bool shows_ = false;
};

}  // namespace zth::shell

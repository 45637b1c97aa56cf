#pragma once

#include <QMdiArea>

namespace zth::shell {

/// The desktop of the child windows. It scrolls where a window is larger than it, and by itself to a control that gets
/// the focus out of sight. Its windows' title bars are as high as their font needs. Ctrl+W and Ctrl+F4 close the window
/// in use.
class MdiDesk final : public QMdiArea {
 public:
  explicit MdiDesk(QWidget* parent);
  ~MdiDesk() override;
  MdiDesk(const MdiDesk&) = delete;
  MdiDesk& operator=(const MdiDesk&) = delete;

  /// Puts a window into a frame of its own, which goes with it when it closes.
  QMdiSubWindow& AddFrame(QWidget& window);

  /// Moves a frame so that all of it is in sight; one that is larger than the desk stands at the top left of what
  /// shows.
  void BringInside(QMdiSubWindow& frame);

  /// Puts a frame where it stood before, inside of the desk as it is and, until the user moves it, as it will be: at
  /// the start a maximised main window has not got its size yet.
  void PutBack(QMdiSubWindow& frame, const QRect& place);

  /// Arranges all windows that are not minimised beside and above each other, none smaller than it can be.
  void Tile();

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  /// Nothing scrolls behind a maximised window: one that cannot become as small as the desktop goes back to its size.
  void RestoreTooLarge(QMdiSubWindow& frame);
  void CloseCurrent();
  void PutInside(QMdiSubWindow& frame, const QRect& place);
  void BringInSight(const QWidget* control);

  QStyle* titleBars_;
  QMetaObject::Connection focusWatch_;
};

}  // namespace zth::shell

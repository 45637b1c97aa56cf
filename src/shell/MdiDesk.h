#pragma once

#include <QMdiArea>

namespace zth::shell {

/// The desktop of the child windows. It has scroll bars if a window is larger than it, and scrolls to a control that
/// gets the focus out of sight. Title bars are as high as their font needs. Ctrl+W and Ctrl+F4 close the active window.
class MdiDesk final : public QMdiArea {
 public:
  explicit MdiDesk(QWidget* parent);
  ~MdiDesk() override;
  MdiDesk(const MdiDesk&) = delete;
  MdiDesk& operator=(const MdiDesk&) = delete;

  /// Puts a window into its own frame, which is deleted when it closes.
  QMdiSubWindow& AddFrame(QWidget& window);

  /// Moves a frame fully into sight; one that is larger than the desk is placed at the top left of the visible part.
  void BringInside(QMdiSubWindow& frame);

  /// Puts a frame back where it was, inside the desk at its current size. Until the user moves the frame, repeats that
  /// when the desk changes size: at the start a maximised main window does not have its size yet.
  void PutBack(QMdiSubWindow& frame, const QRect& place);

  /// Arranges all windows that are not minimised side by side and one above the other, none below its minimum size.
  void Tile();

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  /// A maximised window cannot be scrolled: one whose minimum size is larger than the desktop is restored.
  void RestoreTooLarge(QMdiSubWindow& frame);
  void CloseCurrent();
  void PutInside(QMdiSubWindow& frame, const QRect& place);
  void BringInSight(const QWidget* control);

  QStyle* titleBars_;
  QMetaObject::Connection focusWatch_;
};

}  // namespace zth::shell

#pragma once

#include <QString>
#include <QWidget>

#include "windows/Desktop.h"
#include "windows/Origin.h"

class QMdiSubWindow;
class QPushButton;

namespace zth::windows {

class OriginBar;

/// A property of a window's frame: true while the window was read from another chip than the one in use.
inline constexpr char kOtherChip[] = "otherChip";

/// One window of the program inside the main window. The constructor builds the controls; Form_Load fills them from the
/// chip; Form_Unload runs once when the window is closed, by whatever way, and the window is deleted after it.
class ChildWindow : public QWidget {
  Q_OBJECT

 public:
  /// `name` is the objectName and the key by which the window is opened ("frmTherm"), `caption` its title, `shows` what
  /// in it was read from a chip.
  ChildWindow(const QString& name, const QString& caption, const Context& context, unsigned shows = kShowsNothing);

  /// Reads what the window shows. May be called again while the window is open, where a window says so.
  virtual void Form_Load() = 0;
  virtual void Form_Unload() {}

  /// The title, without what stands behind it at times.
  QString Caption() const { return caption_.trimmed(); }

  /// Runs Form_Load and keeps which chip it has read.
  void Load();

  /// The user wants to see what the chip in use holds now: reads the window again, and before it what the program knows
  /// of the chip's pins and PWMs if that is another chip's. Asks first when changes would be lost. A window whose load
  /// step reads nothing does nothing, unless it shows another chip.
  void ReadAgain();

  /// Says in title and bar whether the window was read from another chip than the one in use; for whoever may have
  /// changed that. Touches no chip.
  void ShowOrigin();

  /// The size that its frame opens with on a desk of that size; invalid for its own.
  virtual QSize OpeningSize(const QSize& /*desk*/) const { return {}; }

  /// Closes the window.
  void Unload();

 signals:
  /// Form_Unload has run; the window will be deleted.
  void Unloaded(const QString& name);

 protected:
  /// The button that Enter presses, wherever the focus is but on another push button; for windows whose values wait for
  /// it. In one that writes at once Enter presses nothing.
  void SetDefaultButton(QPushButton& button);
  /// Without such a button Enter selects the text of the box that has the focus.
  void SelectOnEnter() { selectsOnEnter_ = true; }
  /// The button that Escape presses. Without it Escape closes the window.
  void SetCancelButton(QPushButton& button);

  /// Changes wait for Apply.
  virtual bool HoldsChanges() const { return false; }
  /// Load, with what the user has chosen to look at left as it is, and with nothing written by the controls that
  /// change.
  virtual void Reread() { Load(); }
  /// Something has just been read from the chip in use, past Load; `isUnread`: with a failed transfer.
  void NoteOrigin(bool isUnread = false);
  /// A transfer failed as the window was read last, as far as the link's library tells.
  bool IsUnread() const { return isUnread_; }
  bool IsOfOtherChip() const { return origin_.IsOther(); }
  /// For a window without a layout: puts the bar at its top and tells how much of its height that takes.
  int PlaceBar();
  /// The bar has come or gone.
  virtual void BarChanged() {}
  /// Another chip is in use than at the last look, or the window has been read.
  virtual void OriginChanged() {}
  /// What stands behind the title, " (read from 58h on USB)"; empty while all is of the chip in use and was read well.
  QString OriginNote() const {
    const QString note = origin_.TitleNote();
    return note.isEmpty() && isUnread_ ? " (not read in full)" : note;
  }

  platform::Services& Services() const { return context_.services; }
  Desktop& TheDesktop() const { return context_.desktop; }

  bool event(QEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;
  void changeEvent(QEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void WatchForEnter();
  void PressEnter();
  void PressEscape();
  /// Gives hints a colour between that of texts and their ground that can still be read.
  void DarkenHints();

  void ShowBar(bool on);
  /// Makes the frame larger by what bar and title need beyond what it has, and as small again.
  void Grow(QMdiSubWindow& frame, bool on);
  QMdiSubWindow* FrameOf() const;

  Context context_;
  Origin origin_;
  QString caption_;
  link::ChipId shownFor_;  ///< the chip in use when title and bar were last looked at
  OriginBar* bar_;
  QSize grown_{0, 0};  ///< what the frame has become larger by, for bar and title
  QPushButton* defaultButton_ = nullptr;
  QPushButton* cancelButton_ = nullptr;
  bool selectsOnEnter_ = false;
  bool unloaded_ = false;
  bool isUnread_ = false;
};

}  // namespace zth::windows

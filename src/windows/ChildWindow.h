#pragma once

#include <QString>
#include <QWidget>

#include "windows/Desktop.h"
#include "windows/Origin.h"

class QMdiSubWindow;
class QPushButton;

namespace zth::windows {

class OriginBar;

/// A property of a window's frame: true while the window shows a chip other than the one in use.
inline constexpr char kOtherChip[] = "otherChip";

/// A window inside the main window. The constructor creates the controls; Form_Load fills them from the chip;
/// Form_Unload runs once, however the window is closed, and the window is deleted after it.
class ChildWindow : public QWidget {
  Q_OBJECT

 public:
  /// `name` is the objectName and the key for opening the window ("frmTherm"), `caption` its title, and `shows` the
  /// parts of it that are read from a chip.
  ChildWindow(const QString& name, const QString& caption, const Context& context, unsigned shows = kShowsNothing);

  /// Reads what the window shows. Called again while the window is open only if the window says so.
  virtual void Form_Load() = 0;
  virtual void Form_Unload() {}

  /// The title, without notes appended to it.
  QString Caption() const { return caption_.trimmed(); }

  /// Runs Form_Load and records the chip that was read.
  void Load();

  /// The user wants to see the current state of the chip in use. Reads the window again; if the program's data about
  /// the chip's pins and PWMs are from another chip, reads those first. Asks first if changes would be lost. Does
  /// nothing for a window whose load step reads nothing, unless it shows another chip.
  void ReadAgain();

  /// Updates the title and bar, which tell whether the window shows a chip other than the one in use. Call it after
  /// anything that may change that. Does not access the chip.
  void ShowOrigin();

  /// The size with which its frame opens on a desk of that size; invalid for the window's own size.
  virtual QSize OpeningSize(const QSize& /*desk*/) const { return {}; }

  /// Closes the window.
  void Unload();

 signals:
  /// Form_Unload has run; the window will be deleted.
  void Unloaded(const QString& name);

 protected:
  /// The button that Enter presses, unless the focus is on another push button; for windows whose values wait for it.
  /// In a window that writes at once, Enter presses nothing.
  void SetDefaultButton(QPushButton& button);
  /// Without a default button, Enter selects the text of the focused box.
  void SelectOnEnter() { selectsOnEnter_ = true; }
  /// The button that Escape presses. Without one, Escape closes the window.
  void SetCancelButton(QPushButton& button);

  /// Changes the title, for example when another file is shown.
  void SetCaption(const QString& caption) {
    caption_ = caption;
    ShowOrigin();
  }

  /// True if changes wait for Apply.
  virtual bool HoldsChanges() const { return false; }
  /// Load, but keeps the user's choice of what to view, and controls that change write nothing.
  virtual void Reread() { Load(); }
  /// Records that something has just been read from the chip in use, outside Load. `isUnread`: a transfer failed.
  void NoteOrigin(bool isUnread = false);
  /// Whether a transfer failed in the latest read of the window, as far as the link's library reports failures.
  bool IsUnread() const { return isUnread_; }
  bool IsOfOtherChip() const { return origin_.IsOther(); }
  /// For a window without a layout: places the bar at the top and returns the height it takes.
  int PlaceBar();
  /// Called when the bar has appeared or disappeared.
  virtual void BarChanged() {}
  /// Called when another chip is in use than at the last check, or after the window has been read.
  virtual void OriginChanged() {}
  /// The note after the title, for example " (read from 58h on USB)"; empty when everything was read from the chip in
  /// use without a failure.
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
  /// Gives placeholder texts a readable colour between the text and its background.
  void DarkenHints();

  void ShowBar(bool on);
  /// Enlarges the frame by what the bar and title need, or shrinks it back.
  void Grow(QMdiSubWindow& frame, bool on);
  QMdiSubWindow* FrameOf() const;

  Context context_;
  Origin origin_;
  QString caption_;
  link::ChipId shownFor_;  ///< the chip in use when title and bar were last updated
  OriginBar* bar_;
  QSize grown_{0, 0};  ///< how much the frame was enlarged for bar and title
  QPushButton* defaultButton_ = nullptr;
  QPushButton* cancelButton_ = nullptr;
  bool selectsOnEnter_ = false;
  bool unloaded_ = false;
  bool isUnread_ = false;
};

}  // namespace zth::windows

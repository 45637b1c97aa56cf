#pragma once

#include <QString>
#include <QWidget>

#include "windows/Desktop.h"

class QPushButton;

namespace zth::windows {

/// One window of the program inside the main window. The constructor builds the controls; Form_Load fills them from the
/// chip; Form_Unload runs once when the window is closed, by whatever way, and the window is deleted after it.
class ChildWindow : public QWidget {
  Q_OBJECT

 public:
  /// `name` is the objectName and the key by which the window is opened ("frmTherm"), `caption` its title.
  ChildWindow(const QString& name, const QString& caption, const Context& context);

  /// Reads what the window shows. May be called again while the window is open, where a window says so.
  virtual void Form_Load() = 0;
  virtual void Form_Unload() {}

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

  Context context_;
  QPushButton* defaultButton_ = nullptr;
  QPushButton* cancelButton_ = nullptr;
  bool selectsOnEnter_ = false;
  bool unloaded_ = false;
};

}  // namespace zth::windows

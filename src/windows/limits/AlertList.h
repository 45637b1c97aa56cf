#pragma once

#include <QWidget>

#include "windows/Desktop.h"
#include "windows/limits/AlertLog.h"

class QCheckBox;
class QLabel;
class QToolButton;
class QTreeView;

namespace zth::windows {

/// A list of the lamps that have changed, which can be folded, with a sound for lamps that turn red. The user's choices
/// of folding and sound are saved as settings; the events are lost when the window closes.
class AlertList final : public QWidget {
  Q_OBJECT

 public:
  AlertList(const Context& context, QWidget* parent);

  /// Adds an event, and scrolls to it unless the user is looking at older ones.
  void Add(const AlertEvent& event);
  /// Plays the sound once, if the user has enabled it.
  void Sound() const;

 private:
  void MakeList();
  void MakeBar();
  void ShowNewest();
  void Fold(bool open);
  void cmdCopyEvents_Click();
  void cmdSaveEvents_Click();
  void cmdClearEvents_Click();

  Context context_;
  AlertLog* log_;
  QToolButton* cmdEvents_;
  QLabel* lblNewest_;
  QCheckBox* chkSound_;
  QTreeView* list_ = nullptr;
};

}  // namespace zth::windows

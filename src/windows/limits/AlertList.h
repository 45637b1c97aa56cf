#pragma once

#include <QWidget>

#include "windows/Desktop.h"
#include "windows/limits/AlertLog.h"

class QCheckBox;
class QLabel;
class QToolButton;
class QTreeView;

namespace zth::windows {

/// The lamps that have turned, in a list that folds away, with a sound for those that turn red. Whether it is folded
/// and whether it sounds is the user's setting; the events themselves go with the window.
class AlertList final : public QWidget {
  Q_OBJECT

 public:
  AlertList(const Context& context, QWidget* parent);

  /// Enters an event, in sight unless the user is looking at older ones.
  void Add(const AlertEvent& event);
  /// Sounds once, if the user wants that.
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

#pragma once

#include <memory>
#include <vector>

#include "tasks/PutBack.h"
#include "windows/ChildWindow.h"

class QLabel;
class QPushButton;
class QTimer;
class QTreeWidget;

namespace zth::windows {

/// What this session has changed in the chip in use, with two ways back: the last action, or all of them. Reads and
/// writes only when one of its buttons is pressed.
class frmChanges final : public ChildWindow {
  Q_OBJECT

 public:
  explicit frmChanges(const Context& context);

  void Form_Load() override;

  /// Puts back everything that has been changed in the chip in use.
  void PutBackAsFound();

 protected:
  void OriginChanged() override { ShowChanges(); }

 private:
  void MakeLists();
  void ShowChanges();
  void ShowActions();
  void ShowLeft();
  QString WhenOf(const tasks::Action& action) const;
  void cmdUndo_Click();

  QTreeWidget* trvActions_;
  QTreeWidget* lstLeft_;
  QPushButton* cmdUndo_;
  QPushButton* cmdPutBack_;
  QLabel* lblState_;
  QTimer* tmrShow_;
  std::vector<tasks::Left> left_;  ///< what the last put-back has not put back
  std::shared_ptr<void> listening_;
};

/// Undoes the last action on the chip in use, and says in the main window what has become of it.
void UndoLastAction(const Context& context);

}  // namespace zth::windows

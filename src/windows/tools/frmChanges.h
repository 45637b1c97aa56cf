#pragma once

#include <memory>
#include <string>
#include <vector>

#include "tasks/Journal.h"
#include "windows/ChildWindow.h"
#include "windows/tools/Undoing.h"

class QLabel;
class QPushButton;
class QTimer;
class QTreeWidget;

namespace zth::windows {

/// What this session has changed in the chip in use and its board, with two ways back: the last action, or all of them.
/// Reads and writes only when one of its buttons is pressed.
class frmChanges final : public ChildWindow {
  Q_OBJECT

 public:
  explicit frmChanges(const Context& context);

  void Form_Load() override;

  /// Puts back everything that has been changed in the chip in use, and asks first about heaters and switches.
  void PutBackAsFound();

 protected:
  void OriginChanged() override { ShowChanges(); }

 private:
  void MakeLists();
  void ShowChanges();
  void ShowActions();
  void ShowLeft();
  QString WhenOf(const tasks::Action& action) const;
  /// What has become of a put-back; nothing if it was not done.
  void Show(const Undone& undone, const QString& more = {});
  void cmdUndo_Click();

  QTreeWidget* trvActions_;
  QTreeWidget* lstLeft_;
  QPushButton* cmdUndo_;
  QPushButton* cmdPutBack_;
  QLabel* lblState_;
  QTimer* tmrShow_;
  std::vector<std::string> left_;  ///< what the last put-back has not put back
  std::shared_ptr<void> listening_;
};

}  // namespace zth::windows

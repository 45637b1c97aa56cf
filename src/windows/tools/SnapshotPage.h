#pragma once

#include <QString>
#include <QWidget>

#include "tasks/Snapshots.h"
#include "windows/Desktop.h"

class QLabel;
class QLineEdit;
class QPushButton;
class QTreeWidget;

namespace zth::windows {

/// The page of the snapshots: takes one of the chip in use, renames and deletes them.
class SnapshotPage final : public QWidget {
  Q_OBJECT

 public:
  SnapshotPage(const Context& context, QWidget* parent);

  /// Another chip is in use.
  void ShowChip();

 signals:
  /// There are other snapshots now.
  void Changed();

 private:
  void MakeList();
  void ShowList(const QString& current = {});
  void ShowButtons();
  QString Current() const;
  void cmdTake_Click();
  void cmdRename_Click();
  void cmdDelete_Click();

  Context context_;
  tasks::Snapshots snapshots_;
  bool canKeep_;
  QTreeWidget* lstSnapshots_;
  QLineEdit* txtName_;
  QPushButton* cmdTake_;
  QPushButton* cmdRename_;
  QPushButton* cmdDelete_;
  QLabel* lblSnapshot_;
};

}  // namespace zth::windows

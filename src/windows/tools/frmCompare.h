#pragma once

#include <string>
#include <vector>

#include "tasks/WriteImage.h"
#include "windows/ChildWindow.h"

class QCheckBox;
class QComboBox;
class QHBoxLayout;
class QLabel;
class QLineEdit;
class QPushButton;
class QTableView;
class QTabWidget;
class QTreeWidget;

namespace zth::windows {

class CompareColumns;
class CompareModel;
class SnapshotPage;

/// Configurations side by side: defaults, chips, files, snapshots. Reads and writes a chip only when a button is
/// pressed.
class frmCompare final : public ChildWindow {
  Q_OBJECT

 public:
  explicit frmCompare(const Context& context);

  void Form_Load() override {}

  QSize OpeningSize(const QSize& desk) const override;

 protected:
  void OriginChanged() override;
  void changeEvent(QEvent* event) override;

 private:
  QWidget* MakePage();
  QHBoxLayout* MakeFilters();
  void MakeTable();
  void MakeLeft();
  QHBoxLayout* MakeButtons();
  void ConnectControls();

  void ShowColumns();
  void ShowFilter();
  void ShowState();
  void ShowLeft(const std::vector<std::string>& left);
  void Tell(const QString& text);
  std::vector<tasks::Wanted> Selected() const;
  void CopyRows();

  void cmdRead_Click();
  void cmdWrite_Click();
  void cmdExport_Click();

  CompareModel* model_;
  CompareColumns* columns_ = nullptr;
  SnapshotPage* snapshots_ = nullptr;
  QTabWidget* tabPages_ = nullptr;
  QLineEdit* txtFilter_ = nullptr;
  QComboBox* cmbGroup_ = nullptr;
  QCheckBox* chkDifferences_ = nullptr;
  QCheckBox* chkFields_ = nullptr;
  QTableView* tblCompare_ = nullptr;
  QLabel* lblLeft_ = nullptr;
  QTreeWidget* lstLeft_ = nullptr;
  QPushButton* cmdRead_ = nullptr;
  QComboBox* cmbFrom_ = nullptr;
  QPushButton* cmdWrite_ = nullptr;
  QPushButton* cmdExport_ = nullptr;
  QLabel* lblTold_ = nullptr;
  QLabel* lblState_ = nullptr;
};

}  // namespace zth::windows

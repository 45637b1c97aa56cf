#pragma once

#include <memory>

#include "tasks/TrafficText.h"
#include "windows/ChildWindow.h"

class QCheckBox;
class QComboBox;
class QHBoxLayout;
class QLabel;
class QLineEdit;
class QMenu;
class QPushButton;
class QTableView;

namespace zth::tasks {
class Traffic;
}

namespace zth::windows {

class TrafficModel;

/// Every call of the link, as it is made, or those of a file. Makes no transfer and belongs to no chip.
class frmTraffic final : public ChildWindow {
  Q_OBJECT

 public:
  explicit frmTraffic(const Context& context);
  ~frmTraffic() override;
  frmTraffic(const frmTraffic&) = delete;
  frmTraffic& operator=(const frmTraffic&) = delete;

  void Form_Load() override;

  QSize OpeningSize(const QSize& desk) const override { return (desk * 2 / 3).expandedTo(sizeHint()).boundedTo(desk); }

 protected:
  void changeEvent(QEvent* event) override;

 private:
  enum class Copy { Text, I2cTools, C };

  QHBoxLayout* MakeFilters();
  void MakeTable();
  QHBoxLayout* MakeButtons();
  QPushButton* MakeButton(const char* name, const char* caption, const char* tip, void (frmTraffic::*click)());
  void AddCopies(QMenu& menu);
  void ConnectControls();

  void ShowFilter();
  void tmrTraffic_Timer();
  /// Shows what has been added, and follows it if the view is at its end.
  void Refresh();
  void ShowState();
  void ShowSources();
  void ShowLive();
  void ShowFile(const QString& path);
  void EnableLive();
  void CopyRows(Copy as);
  void Save(bool shownOnly);
  QString DateOf(double time) const;
  tasks::TrafficHead Head() const;

  void cmdHold_Click();
  void cmdClear_Click();
  void cmdMark_Click();
  void cmdCopy_Click();
  void cmdSave_Click();
  void cmdOpen_Click();

  TrafficModel* model_;
  std::unique_ptr<tasks::Traffic> file_;  ///< what an opened file holds; null while the live traffic is shown
  tasks::TrafficHead fileHead_;
  int looks_ = 0;  ///< since the last refresh
  QLineEdit* txtFilter_ = nullptr;
  QComboBox* cmbAsker_ = nullptr;
  QCheckBox* chkWrites_ = nullptr;
  QCheckBox* chkNoMonitor_ = nullptr;
  QCheckBox* chkFailures_ = nullptr;
  QTableView* tblTraffic_ = nullptr;
  QPushButton* cmdHold_ = nullptr;
  QPushButton* cmdClear_ = nullptr;
  QLineEdit* txtMark_ = nullptr;
  QPushButton* cmdMark_ = nullptr;
  QPushButton* cmdCopy_ = nullptr;
  QPushButton* cmdSave_ = nullptr;
  QPushButton* cmdLive_ = nullptr;
  QLabel* lblState_ = nullptr;
  QLabel* lblTold_ = nullptr;
};

}  // namespace zth::windows

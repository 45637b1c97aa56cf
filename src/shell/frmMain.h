#pragma once

#include <memory>

#include <QHash>
#include <QMainWindow>
#include <QPointer>

#include "chip/ChipModel.h"
#include "shell/ChangesFile.h"
#include "shell/Jobs.h"
#include "windows/Desktop.h"

class QComboBox;
class QMenu;
class QTimer;
class QToolBar;

namespace zth::shell {

class frmSplash;
class LinkPanel;
class MdiDesk;
class StatusBar;
class WaitingSigns;

/// The main window: menus, tool bar with the device list, status bar, child windows and master timer.
class frmMain final : public QMainWindow, public windows::Desktop {
  Q_OBJECT

 public:
  explicit frmMain(platform::Services& services);
  ~frmMain() override;
  frmMain(const frmMain&) = delete;
  frmMain& operator=(const frmMain&) = delete;

  /// Places the window and finds the chips, with the splash showing the progress. Ends the program when there is no
  /// chip, unless the user starts over.
  void Form_Load(frmSplash& splash);

  /// Stores the placement, unless the window is minimised. Runs once, however the program ends.
  void Form_Unload();

  /// What can be done before an end that may still be cancelled: writes waiting lines and stores the placement.
  void SaveForEnd();

  /// Reopens the windows that were open when the program last ended, in the order in which they were opened, if the
  /// user wants that. Skips windows whose menu entry is disabled or no longer exists.
  void RestoreWindows();

  /// True once the window has run its closing step.
  /// From now on keeps what the session changes on disk, and offers to put back what an earlier one has left.
  void KeepChanges();
  bool Unloaded() const { return unloaded_; }

  /// Closes every child window and then this one, each through its normal closing step.
  void CloseAllWindows();

  windows::ChildWindow* OpenWindow(const QString& name) override;
  windows::ChildWindow* FindWindow(const QString& name) const override;
  QStringList Devices() const override;
  void SetStatus(const QString& text) override;
  void Tell(const QString& text) override;
  void MarkAlerts(const QString& window, int count) override;
  void EnableTimer(bool on) override;
  QWidget& Frame() override { return *this; }

 signals:
  /// The user has closed the window: the program ends.
  void Closed();

 protected:
  void closeEvent(QCloseEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void BuildMenus();
  void BuildToolBar();
  void BuildTimer();
  void BuildWindowMenu();
  void KeepLayout();
  void FitToolBar();
  void AddDevices(QToolBar& bar);
  bool UserLeaves();
  /// True while the user drags something. It must be dropped with the same chip and values as when it was picked up.
  static bool IsDragging();
  /// Work that every orderly end must finish: closing, "Exit", a failed link.
  void FinishWork();
  void mnuExit_Click();
  /// Opens the guide at the section for the window in use.
  void OpenGuide();
  void tbToolBar_ButtonClick(const QString& key);
  void cmbDevices_Click();
  /// Makes every window show whether it belongs to the chip in use.
  void ShowOrigins();
  void ReadActiveWindowAgain();
  void tmrMaster_Timer();
  /// Updates what the status bar shows of the link, without a transfer.
  void ShowLink();

  platform::Services& services_;
  windows::Context context_;
  std::unique_ptr<ChangesFile> changes_;  ///< null before KeepChanges
  JobList jobs_;
  chip::ModelOrigin modelFrom_;  ///< as last reported to the windows
  MdiDesk* area_;
  StatusBar* status_;
  LinkPanel* link_;
  QString notice_;  ///< the link's notice, as the status bar shows it
  std::unique_ptr<WaitingSigns> waiting_;
  QMenu* mnuWindow_ = nullptr;
  QComboBox* cmbDevices_ = nullptr;
  QTimer* tmrMaster_ = nullptr;
  QHash<QString, QPointer<windows::ChildWindow>> open_;
  bool unloaded_ = false;
  bool restoring_ = false;
};

/// The running main window; null before the start has created it and after it has ended.
extern QPointer<frmMain> MainForm;

}  // namespace zth::shell

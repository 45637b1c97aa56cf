#include "shell/frmMain.h"

#include <algorithm>
#include <utility>

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QComboBox>
#include <QLabel>
#include <QMdiSubWindow>
#include <QScopedValueRollback>
#include <QShortcut>
#include <QTimer>
#include <QToolBar>

#include "base/Product.h"
#include "chip/ChipModel.h"
#include "link/BoardName.h"
#include "link/LinkErrors.h"
#include "link/Waiting.h"
#include "platform/Guard.h"
#include "shell/Commands.h"
#include "shell/FirstContact.h"
#include "shell/Icons.h"
#include "shell/Layout.h"
#include "shell/Leaving.h"
#include "shell/LinkPanel.h"
#include "shell/MdiDesk.h"
#include "shell/MonitorJobs.h"
#include "shell/Placement.h"
#include "shell/StatusBar.h"
#include "shell/WaitingSigns.h"
#include "shell/WindowFactory.h"
#include "shell/frmSplash.h"
#include "tasks/Discovery.h"
#include "tasks/Recorder.h"
#include "tasks/TasksState.h"
#include "widgets/Named.h"
#include "windows/ChildWindow.h"
#include "windows/Handlers.h"
#include "windows/data/LogJob.h"
#include "windows/guide/GuidePages.h"
#include "windows/guide/frmGuide.h"

namespace zth::shell {

QPointer<frmMain> MainForm;

frmMain::frmMain(platform::Services& services)
    : services_(services),
      context_{services, *this},
      jobs_(services.clock),
      area_(new MdiDesk(this)),
      status_(new StatusBar(services.clock, this)),
      link_(new LinkPanel(status_)),
      waiting_(std::make_unique<WaitingSigns>(*this, *area_, *status_)) {
  setObjectName("frmMain");
  setWindowIcon(ProgramIcon());
  area_->setObjectName("MDIForm");
  setCentralWidget(area_);
  BuildMenus();
  BuildToolBar();
  setStatusBar(status_);
  status_->insertPermanentWidget(1, link_);  // after the message
  BuildTimer();
  auto* toRead = new QShortcut(Qt::Key_F5, this);
  toRead->setAutoRepeat(false);
  connect(toRead, &QShortcut::activated, this, platform::Guarded([this] {
            if (!IsDragging()) ReadActiveWindowAgain();
          }));
}

frmMain::~frmMain() = default;

bool frmMain::IsDragging() {
  return QApplication::mouseButtons() != Qt::NoButton;
}

void frmMain::BuildTimer() {
  AddMonitorJobs(jobs_, context_);
  tmrMaster_ = widgets::Named<QTimer>("tmrMaster", this);
  tmrMaster_->setTimerType(Qt::PreciseTimer);
  tmrMaster_->setInterval(50);
  services_.clock.Adopt(*tmrMaster_);
  connect(tmrMaster_, &QTimer::timeout, this, platform::Guarded([this] { tmrMaster_Timer(); }));
}

void frmMain::Form_Load(frmSplash& splash) {
  RestorePlacement(*this, services_.settings);
  setWindowState(Qt::WindowMaximized);
  setWindowTitle(base::kTitle);

  const std::vector<QString> devices = tasks::FindDevices(splash, services_);
  for (const QString& device : devices) {
    const QSignalBlocker quiet(cmbDevices_);
    cmbDevices_->addItem(device);
    cmbDevices_->setCurrentIndex(-1);
  }
  if (devices.empty()) {
    AskAtStart({base::kTitle, "Failed to find the " + tasks::Work.start.DeviceName, platform::BoxIcon::Critical,
                platform::BoxButtons::Ok},
               services_);
    services_.process.End(1);
  }
  cmbDevices_->setCurrentIndex(0);
  splash.SetBoard(link::BoardName());
  FitToolBar();
  tasks::WaitPainted(1000, services_);
}

void frmMain::Form_Unload() {
  if (unloaded_) return;
  unloaded_ = true;
  if (!isMinimized()) StorePlacement(*this, services_.settings);
}

void frmMain::FinishWork() {
  windows::FinishLog(services_.files);
}

void frmMain::SaveForEnd() {
  FinishWork();
  KeepLayout();
  if (isVisible() && !isMinimized()) StorePlacement(*this, services_.settings);
}

void frmMain::KeepChanges() {
  changes_ = std::make_unique<ChangesFile>(windows::Context{services_, *this});
  changes_->Offer();
}

void frmMain::KeepLayout() {
  // If a failed link ends the program during the restore, the windows that are not back yet must not be lost.
  if (!unloaded_ && !restoring_ && RestoresWindows(services_.settings)) StoreLayout(*area_, services_.settings);
}

void frmMain::RestoreWindows() {
  if (!RestoresWindows(services_.settings)) return;
  const std::optional<KeptLayout> layout = StoredLayout(services_.settings);
  if (!layout) return;
  // A window that the start has opened by itself stays in front.
  const QMdiSubWindow* opened = area_->currentSubWindow();
  const QString front = opened != nullptr ? opened->widget()->objectName() : layout->active;
  const QScopedValueRollback restoring(restoring_, true);
  for (const KeptWindow& kept : layout->windows) {
    const auto* entry =
        std::ranges::find_if(kMenuEntries, [&](const MenuEntry& row) { return kept.name == row.window; });
    // Nobody wants About back: it is read once and closed.
    if (entry == kMenuEntries.end() || kept.name == "frmAbout") continue;
    if (!findChild<QAction*>(entry->name)->isEnabled()) continue;
    windows::ChildWindow* window = OpenWindow(kept.name);
    if (window == nullptr) continue;
    auto* frame = qobject_cast<QMdiSubWindow*>(window->parentWidget());
    if (kept.place.isValid()) area_->PutBack(*frame, kept.place);
    if (kept.shown == Shown::Maximised) frame->showMaximized();
    if (kept.shown == Shown::Minimised) frame->showMinimized();
    RestoreCharts(*window, kept.charts);
  }
  if (windows::ChildWindow* window = FindWindow(front)) {
    area_->setActiveSubWindow(qobject_cast<QMdiSubWindow*>(window->parentWidget()));
  }
}

void frmMain::CloseAllWindows() {
  KeepLayout();
  const auto names = open_.keys();
  for (const QString& name : names) {
    if (windows::ChildWindow* window = FindWindow(name)) window->Unload();
  }
  FinishWork();
  Form_Unload();
}

windows::ChildWindow* frmMain::FindWindow(const QString& name) const {
  return open_.value(name);
}

windows::ChildWindow* frmMain::OpenWindow(const QString& name) {
  windows::ChildWindow* window = FindWindow(name);
  const bool isNew = window == nullptr;
  if (isNew) {
    window = MakeWindow(name, context_);
    if (window == nullptr) return nullptr;
    connect(window, &windows::ChildWindow::Unloaded, this, [this](const QString& closed) { open_.remove(closed); });
    QMdiSubWindow& frame = area_->AddFrame(*window);
    open_[name] = window;
    waiting_->Load(*window, frame);
    NoteStartRanges(*window);
  }
  auto* frame = qobject_cast<QMdiSubWindow*>(window->parentWidget());
  if (frame->isMinimized()) {
    frame->showNormal();
  } else {
    window->show();
    frame->show();
  }
  area_->setActiveSubWindow(frame);
  if (isNew) {
    const QSize wanted = window->OpeningSize(area_->viewport()->size());
    if (wanted.isValid()) frame->resize(wanted.expandedTo(frame->minimumSizeHint()));
    area_->BringInside(*frame);
  }
  return window;
}

void frmMain::OpenGuide() {
  const QMdiSubWindow* frame = area_->currentSubWindow();
  const QString from = frame != nullptr && frame->widget() != nullptr ? frame->widget()->objectName() : QString();
  auto* guide = qobject_cast<windows::frmGuide*>(OpenWindow("frmGuide"));
  if (guide != nullptr && from != guide->objectName()) guide->Go(windows::GuidePlaceFor(from));
}

QStringList frmMain::Devices() const {
  QStringList devices;
  for (int i = 0; i < cmbDevices_->count(); ++i) devices << cmbDevices_->itemText(i);
  return devices;
}

void frmMain::SetStatus(const QString& text) {
  status_->SetStatus(text);
}

void frmMain::Tell(const QString& text) {
  status_->showMessage(text, StatusBar::kMessageMs);
}

void frmMain::EnableTimer(bool on) {
  if (on) {
    // After the window has closed, an interrupted handler must not restart the timer.
    if (!unloaded_) tmrMaster_->start();
  } else {
    tmrMaster_->stop();
  }
}

void frmMain::mnuExit_Click() {
  FinishWork();
  services_.process.End(0);
}

void frmMain::tbToolBar_ButtonClick(const QString& key) {
  const auto* row = std::find_if(kToolButtons.begin(), kToolButtons.end(),
                                 [&](const ToolButton& button) { return key == button.key; });
  if (row != kToolButtons.end()) OpenWindow(row->window);
}

void frmMain::cmbDevices_Click() {
  if (cmbDevices_->currentIndex() < 0) return;
  tasks::SelectDevice(cmbDevices_->currentText());
  status_->SetBoard(link::BoardName());
  ShowOrigins();
}

void frmMain::ShowLink() {
  link_->Look(services_.clock.Now());
  // What concerns the values that are shown comes first.
  const QString notice = link_->Notice().isEmpty() ? tasks::RecordingTrouble() : link_->Notice();
  const QString before = std::exchange(notice_, notice);
  if (before != notice_ && !before.isEmpty() && status_->currentMessage() == before) status_->clearMessage();
  const QString news = link_->TakeNews();
  if (!news.isEmpty()) Tell(news);
  // The notice shows for as long as it holds. A message of a few seconds replaces it only for that time.
  if (!notice_.isEmpty() && status_->currentMessage().isEmpty()) status_->showMessage(notice_);
}

void frmMain::tmrMaster_Timer() {
  const link::TimerTick tick;
  jobs_.Tick();
  ShowLink();
  // Writes from anywhere can change the model of the chip; usually they have not.
  const chip::ModelOrigin model = chip::ModelReadFrom();
  if (model == modelFrom_) return;
  modelFrom_ = model;
  ShowOrigins();
}

void frmMain::ShowOrigins() {
  for (const QPointer<windows::ChildWindow>& window : open_) {
    if (window != nullptr) window->ShowOrigin();
  }
}

void frmMain::ReadActiveWindowAgain() {
  const QMdiSubWindow* frame = area_->activeSubWindow();
  if (frame == nullptr || frame->isMinimized()) {
    const link::UserAction action([] { return QString(); });
    if (chip::ModelIsUnread()) chip::ReadChipModel();
    return;
  }
  if (auto* window = qobject_cast<windows::ChildWindow*>(frame->widget())) window->ReadAgain();
}

void frmMain::changeEvent(QEvent* event) {
  QMainWindow::changeEvent(event);
  if (event->type() == QEvent::FontChange && cmbDevices_ != nullptr) FitToolBar();
}

bool frmMain::UserLeaves() {
  if (unloaded_) return true;
  const link::UserAction action([] { return QString(); });
  bool leaves = false;
  FinishWork();  // the file may be writable by now
  platform::Guarded([&] { leaves = MayLeave(services_); })();
  if (leaves && changes_ != nullptr) changes_->End();
  return leaves;
}

void frmMain::closeEvent(QCloseEvent* event) {
  if (!UserLeaves()) {
    event->ignore();
    return;
  }
  tmrMaster_->stop();
  CloseAllWindows();
  event->accept();
  emit Closed();
}

}  // namespace zth::shell

#include "shell/frmMain.h"

#include <algorithm>
#include <utility>

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QComboBox>
#include <QLabel>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>
#include <QScopedValueRollback>
#include <QShortcut>
#include <QTimer>
#include <QToolBar>
#include <QToolButton>

#include "base/Product.h"
#include "link/BoardName.h"
#include "link/LinkErrors.h"
#include "link/Waiting.h"
#include "platform/Guard.h"
#include "shell/Commands.h"
#include "shell/Discovery.h"
#include "shell/FirstContact.h"
#include "shell/Icons.h"
#include "shell/Layout.h"
#include "shell/Leaving.h"
#include "shell/LinkPanel.h"
#include "shell/MdiDesk.h"
#include "shell/MonitorJobs.h"
#include "shell/Placement.h"
#include "shell/ProgramState.h"
#include "shell/StatusBar.h"
#include "shell/WaitingSigns.h"
#include "shell/WindowFactory.h"
#include "shell/frmSplash.h"
#include "widgets/Badge.h"
#include "widgets/Named.h"
#include "windows/ChildWindow.h"
#include "windows/Handlers.h"
#include "windows/data/LogJob.h"
#include "windows/guide/GuidePages.h"
#include "windows/guide/frmGuide.h"

namespace zth::shell {

QPointer<frmMain> MainForm;

namespace {

/// True while the user drags something. It must be dropped with the same chip and values as when it was picked up.
bool IsDragging() {
  return QApplication::mouseButtons() != Qt::NoButton;
}

}  // namespace

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

void frmMain::BuildMenus() {
  QHash<QString, QMenu*> menus;
  for (const Menu& row : kMenus) {
    QMenu* menu = menuBar()->addMenu(row.caption);
    menu->setObjectName(row.name);
    menu->setToolTipsVisible(true);
    menus[row.name] = menu;
  }
  for (const MenuEntry& row : kMenuEntries) {
    auto* action = widgets::Named<QAction>(row.name, row.caption, this);
    action->setShortcut(QKeySequence(row.shortcut));
    const QString window = row.window;
    if (window.isEmpty()) {
      connect(action, &QAction::triggered, this, platform::Guarded([this] { mnuExit_Click(); }));
    } else {
      action->setEnabled(WindowExists(window));
      connect(action, &QAction::triggered, this, platform::Guarded([this, window] {
                window == "frmGuide" ? OpenGuide() : static_cast<void>(OpenWindow(window));
              }));
    }
    if (QMenu* menu = menus.value(row.menu)) {
      if (QString(row.name) == "mnuExit") menu->addSeparator();
      menu->addAction(action);
      addAction(action);  // so that its key still works while the window menu is rebuilt
    } else {
      menuBar()->addAction(action);
    }
  }
  mnuWindow_ = menus["mnuWindow"];
  connect(mnuWindow_, &QMenu::aboutToShow, this, &frmMain::BuildWindowMenu);
  BuildWindowMenu();
}

void frmMain::BuildWindowMenu() {
  mnuWindow_->clear();
  const QList<QMdiSubWindow*> windows = area_->subWindowList(QMdiArea::CreationOrder);
  int number = 0;
  for (QMdiSubWindow* window : windows) {
    if (window->isHidden()) continue;
    ++number;
    const QString title = QString(window->windowTitle()).replace('&', "&&");
    QAction* action = mnuWindow_->addAction(number < 10 ? QString("&%1 %2").arg(number).arg(title) : title);
    action->setCheckable(true);
    action->setChecked(window == area_->activeSubWindow());
    connect(action, &QAction::triggered, window, [this, window] {
      if (window->isMinimized()) window->showNormal();
      area_->setActiveSubWindow(window);
    });
  }
  if (number == 0) mnuWindow_->addAction("No window open")->setEnabled(false);
  mnuWindow_->addSeparator();
  QAction* tile = mnuWindow_->addAction("&Tile", area_, &MdiDesk::Tile);
  QAction* cascade = mnuWindow_->addAction("&Cascade", area_, &QMdiArea::cascadeSubWindows);
  tile->setEnabled(number > 0);
  cascade->setEnabled(number > 0);
  mnuWindow_->addSeparator();
  QAction* restore = mnuWindow_->addAction("&Restore Windows at Start");
  restore->setObjectName("mnuRestore");
  restore->setToolTip("At the next start the windows open that are open at the end, with the reads of their opening");
  restore->setCheckable(true);
  restore->setChecked(RestoresWindows(services_.settings));
  connect(restore, &QAction::toggled, this, [this](bool on) { PutRestoresWindows(services_.settings, on); });
  mnuWindow_->addSeparator();
  mnuWindow_->addAction(findChild<QAction*>("mnuGuide"));
}

void frmMain::BuildToolBar() {
  auto* bar = addToolBar("Tool Bar");
  bar->setObjectName("tbToolBar");
  bar->setMovable(false);
  bar->setContextMenuPolicy(Qt::PreventContextMenu);
  // What does not fit is hidden behind the arrow, starting from the right, so the device list, which decides where all
  // windows write, is on the left.
  AddDevices(*bar);
  bar->addSeparator();
  for (const ToolButton& row : kToolButtons) {
    const QString key = row.key;
    auto* action = widgets::Named<QAction>("tbToolBar(" + key + ")", ToolIcon(key), row.toolTip, this);
    action->setToolTip(row.toolTip);
    action->setEnabled(WindowExists(row.window));
    connect(action, &QAction::triggered, this, platform::Guarded([this, key] { tbToolBar_ButtonClick(key); }));
    bar->addAction(action);
    bar->widgetForAction(action)->setFocusPolicy(Qt::TabFocus);
  }
  FitToolBar();
}

void frmMain::AddDevices(QToolBar& bar) {
  // All its letters are used as mnemonics by menus or windows, so the list has its own key.
  auto* label = widgets::Named<QLabel>("lblDevices", " Device ", &bar);
  cmbDevices_ = widgets::Named<QComboBox>("cmbDevices", &bar);
  cmbDevices_->setSizeAdjustPolicy(QComboBox::AdjustToContents);
  cmbDevices_->setMinimumContentsLength(14);
  cmbDevices_->setAccessibleName("Device");
  cmbDevices_->setToolTip("The chip that all windows work on (F2)");
  auto* toDevices = new QShortcut(Qt::Key_F2, this);
  connect(toDevices, &QShortcut::activated, cmbDevices_, [this] {
    if (!IsDragging()) cmbDevices_->setFocus(Qt::ShortcutFocusReason);
  });
  label->setBuddy(cmbDevices_);
  bar.addWidget(label);
  bar.addWidget(cmbDevices_);
  windows::OnSelect(*cmbDevices_, [this] { cmbDevices_Click(); });
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

  const std::vector<QString> devices = FindDevices(splash, services_);
  for (const QString& device : devices) {
    const QSignalBlocker quiet(cmbDevices_);
    cmbDevices_->addItem(device);
    cmbDevices_->setCurrentIndex(-1);
  }
  if (devices.empty()) {
    AskAtStart({base::kTitle, "Failed to find the " + Program.DeviceName, platform::BoxIcon::Critical,
                platform::BoxButtons::Ok},
               services_);
    services_.process.End(1);
  }
  cmbDevices_->setCurrentIndex(0);
  splash.SetBoard(link::BoardName());
  FitToolBar();
  WaitPainted(1000, services_);
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

void frmMain::SetStatus(const QString& text) {
  status_->SetStatus(text);
}

void frmMain::Tell(const QString& text) {
  status_->showMessage(text, StatusBar::kMessageMs);
}

void frmMain::MarkAlerts(const QString& window, int count) {
  for (const ToolButton& row : kToolButtons) {
    auto* action = window == row.window ? findChild<QAction*>("tbToolBar(" + QString(row.key) + ")") : nullptr;
    if (action == nullptr) continue;
    const QIcon icon = ToolIcon(row.key);
    action->setIcon(count > 0 ? widgets::WithBadge(icon, count) : icon);
    // Appended to the button's own text, which says what it opens.
    const QString alerts = count == 1 ? "1 alert" : QString("%1 alerts").arg(count);
    action->setToolTip(count > 0 ? row.toolTip + (": " + alerts) : row.toolTip);
    auto* button = findChild<QToolBar*>("tbToolBar")->widgetForAction(action);
    button->setAccessibleDescription(count > 0 ? alerts : QString());
  }
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
  SelectDevice(cmbDevices_->currentText());
  status_->SetBoard(link::BoardName());
  ShowOrigins();
}

void frmMain::ShowLink() {
  link_->Look(services_.clock.Now());
  const QString before = std::exchange(notice_, link_->Notice());
  if (before != notice_ && !before.isEmpty() && status_->currentMessage() == before) status_->clearMessage();
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
  if (frame == nullptr || frame->isMinimized()) return;
  if (auto* window = qobject_cast<windows::ChildWindow*>(frame->widget())) window->ReadAgain();
}

void frmMain::FitToolBar() {
  // The icons scale with the font, so that they are not tiny beside large texts.
  const int side = std::max(24, fontMetrics().height() * 3 / 2);
  findChild<QToolBar*>("tbToolBar")->setIconSize({side, side});
  // The device list is always shown: the tool bar's minimum width is the list and the arrow for the rest.
  const auto* label = findChild<QLabel*>("lblDevices");
  const int around = 4 * side;
  setMinimumWidth(label->sizeHint().width() + cmbDevices_->sizeHint().width() + around);
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

#include "shell/frmMain.h"

#include <algorithm>

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QComboBox>
#include <QLabel>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>
#include <QShortcut>
#include <QTimer>
#include <QToolBar>
#include <QToolButton>

#include "base/Product.h"
#include "link/LinkErrors.h"
#include "platform/Guard.h"
#include "shell/Commands.h"
#include "shell/Discovery.h"
#include "shell/Icons.h"
#include "shell/Leaving.h"
#include "shell/MdiDesk.h"
#include "shell/MonitorJobs.h"
#include "shell/Placement.h"
#include "shell/ProgramState.h"
#include "shell/StatusBar.h"
#include "shell/WindowFactory.h"
#include "shell/frmSplash.h"
#include "widgets/Named.h"
#include "windows/ChildWindow.h"
#include "windows/Handlers.h"
#include "windows/data/LogJob.h"

namespace zth::shell {

QPointer<frmMain> MainForm;

namespace {

/// What the pointer holds is let go over the chip and the values that it was taken hold of over.
bool IsDragging() {
  return QApplication::mouseButtons() != Qt::NoButton;
}

}  // namespace

frmMain::frmMain(platform::Services& services)
    : services_(services),
      context_{services, *this},
      jobs_(services.clock),
      area_(new MdiDesk(this)),
      status_(new StatusBar(services.clock, this)) {
  setObjectName("frmMain");
  setWindowIcon(ProgramIcon());
  area_->setObjectName("MDIForm");
  setCentralWidget(area_);
  BuildMenus();
  BuildToolBar();
  setStatusBar(status_);
  BuildTimer();
  auto* toRead = new QShortcut(Qt::Key_F5, this);
  toRead->setAutoRepeat(false);
  connect(toRead, &QShortcut::activated, this, platform::Guarded([this] {
            if (!IsDragging()) ReadActiveWindowAgain();
          }));
}

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
      connect(action, &QAction::triggered, this, platform::Guarded([this, window] { OpenWindow(window); }));
    }
    if (QMenu* menu = menus.value(row.menu)) {
      if (QString(row.name) == "mnuExit") menu->addSeparator();
      menu->addAction(action);
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
  QAction* tile = mnuWindow_->addAction("&Tile", area_, &QMdiArea::tileSubWindows);
  QAction* cascade = mnuWindow_->addAction("&Cascade", area_, &QMdiArea::cascadeSubWindows);
  tile->setEnabled(number > 0);
  cascade->setEnabled(number > 0);
}

void frmMain::BuildToolBar() {
  auto* bar = addToolBar("Tool Bar");
  bar->setObjectName("tbToolBar");
  bar->setMovable(false);
  bar->setContextMenuPolicy(Qt::PreventContextMenu);
  // What does not fit goes behind the arrow from the right, so the list that decides where all windows write stands
  // left.
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
  // Every letter of it is a menu's or a window's, so the list has a key of its own.
  auto* label = widgets::Named<QLabel>("lblDevices", " Device ", &bar);
  cmbDevices_ = widgets::Named<QComboBox>("cmbDevices", &bar);
  cmbDevices_->setSizeAdjustPolicy(QComboBox::AdjustToContents);
  cmbDevices_->setMinimumContentsLength(14);
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
    services_.prompts.Ask({base::kTitle, "Failed to find the " + Program.DeviceName, platform::BoxIcon::Critical,
                           platform::BoxButtons::Ok});
    services_.process.End(1);
  }
  cmbDevices_->setCurrentIndex(0);
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
  if (isVisible() && !isMinimized()) StorePlacement(*this, services_.settings);
}

void frmMain::CloseAllWindows() {
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
    area_->AddFrame(*window);
    open_[name] = window;
    window->Load();
  }
  auto* frame = qobject_cast<QMdiSubWindow*>(window->parentWidget());
  if (frame->isMinimized()) {
    frame->showNormal();
  } else {
    window->show();
    frame->show();
  }
  area_->setActiveSubWindow(frame);
  if (isNew) area_->BringInside(*frame);
  return window;
}

void frmMain::SetStatus(const QString& text) {
  status_->SetStatus(text);
}

void frmMain::Tell(const QString& text) {
  constexpr int kMilliseconds = 10'000;
  statusBar()->showMessage(text, kMilliseconds);
}

void frmMain::EnableTimer(bool on) {
  if (on) {
    // Once closed, no handler that was cut short brings it back.
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
  ShowOrigins();
}

void frmMain::tmrMaster_Timer() {
  jobs_.Tick();
  // What the program knows of a chip changes by writes from anywhere; as a rule it has not.
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
  // The icons follow the font, so that a tool bar beside large texts is not a row of specks.
  const int side = std::max(24, fontMetrics().height() * 3 / 2);
  findChild<QToolBar*>("tbToolBar")->setIconSize({side, side});
  // The device list never gives way: the arrow for all else beside it is the least that the bar shows.
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
  bool leaves = false;
  FinishWork();  // perhaps a file can be written by now
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

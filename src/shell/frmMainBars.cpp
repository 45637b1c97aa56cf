#include <algorithm>

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>
#include <QShortcut>
#include <QToolBar>
#include <QToolButton>

#include "base/Counted.h"
#include "platform/Guard.h"
#include "shell/Commands.h"
#include "shell/Icons.h"
#include "shell/Layout.h"
#include "shell/MdiDesk.h"
#include "shell/WindowFactory.h"
#include "shell/frmMain.h"
#include "widgets/Badge.h"
#include "widgets/Named.h"
#include "windows/Handlers.h"
#include "windows/tools/Undoing.h"

// The main window's menus and tool bar.
namespace zth::shell {

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
      connect(action, &QAction::triggered, this, platform::Guarded([this, undoes = QString(row.name) == "mnuUndo"] {
                undoes ? windows::UndoLastAction({services_, *this}) : mnuExit_Click();
              }));
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

void frmMain::FitToolBar() {
  // The icons scale with the font, so that they are not tiny beside large texts.
  const int side = std::max(24, fontMetrics().height() * 3 / 2);
  findChild<QToolBar*>("tbToolBar")->setIconSize({side, side});
  // The device list is always shown: the tool bar's minimum width is the list and the arrow for the rest.
  const auto* label = findChild<QLabel*>("lblDevices");
  const int around = 4 * side;
  setMinimumWidth(label->sizeHint().width() + cmbDevices_->sizeHint().width() + around);
}

void frmMain::MarkAlerts(const QString& window, int count) {
  for (const ToolButton& row : kToolButtons) {
    auto* action = window == row.window ? findChild<QAction*>("tbToolBar(" + QString(row.key) + ")") : nullptr;
    if (action == nullptr) continue;
    const QIcon icon = ToolIcon(row.key);
    action->setIcon(count > 0 ? widgets::WithBadge(icon, count) : icon);
    // Appended to the button's own text, which says what it opens.
    const QString alerts = QString::fromStdString(base::Counted(count, "alerts"));
    action->setToolTip(count > 0 ? row.toolTip + (": " + alerts) : row.toolTip);
    auto* button = findChild<QToolBar*>("tbToolBar")->widgetForAction(action);
    button->setAccessibleDescription(count > 0 ? alerts : QString());
  }
}

}  // namespace zth::shell

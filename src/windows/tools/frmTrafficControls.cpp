#include <algorithm>

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QTableView>
#include <QTimer>
#include <QVBoxLayout>

#include "platform/Guard.h"
#include "tasks/Traffic.h"
#include "widgets/Named.h"
#include "widgets/PopUpMenu.h"
#include "windows/FileDrops.h"
#include "windows/Handlers.h"
#include "windows/SearchKeys.h"
#include "windows/tools/TrafficDelegate.h"
#include "windows/tools/TrafficModel.h"
#include "windows/tools/frmTraffic.h"

// The controls of the bus traffic's window.
namespace zth::windows {
namespace {

/// Between two looks at what has been added, in milliseconds. The view has a timer of its own, so that showing the
/// traffic never takes time from a tick.
constexpr int kLookMs = 100;

constexpr int kLongestMark = 200;  // characters
constexpr int kLongestAsker = 18;  // characters of a window's name

}  // namespace

frmTraffic::frmTraffic(const Context& context)
    : ChildWindow("frmTraffic", "Bus Traffic", context), model_(new TrafficModel(this)) {
  QHBoxLayout* filters = MakeFilters();
  auto* checks = new QHBoxLayout;
  for (QCheckBox* box : {chkWrites_, chkNoMonitor_, chkFailures_}) checks->addWidget(box);
  checks->addStretch();
  MakeTable();
  auto* column = new QVBoxLayout(this);
  column->addLayout(filters);
  column->addLayout(checks);
  column->addWidget(tblTraffic_, 1);
  // In a frame of their own, so that Tab goes through them as they stand.
  auto* buttons = new QWidget(this);
  buttons->setLayout(MakeButtons());
  column->addWidget(buttons);
  lblTold_ = widgets::Named<QLabel>("lblTold", this);
  lblTold_->setTextFormat(Qt::PlainText);
  lblTold_->setWordWrap(true);
  lblState_ = widgets::Named<QLabel>("lblState", this);
  auto* line = new QHBoxLayout;
  line->addWidget(lblTold_, 1);
  line->addWidget(lblState_);
  column->addLayout(line);
  model_->SetPalette(palette());
  TakeFiles(*this, 1, [this](const QStringList& paths, const QPoint&) { ShowFile(paths.first()); });
  ConnectControls();
  ShowLive();
}

frmTraffic::~frmTraffic() = default;

QHBoxLayout* frmTraffic::MakeFilters() {
  txtFilter_ = widgets::Named<QLineEdit>("txtFilter", this);
  txtFilter_->setPlaceholderText("Name, address or byte");
  KeepRoomForHint(*txtFilter_);
  txtFilter_->setToolTip("Shows the calls that hold this text anywhere but in their time (Ctrl+F)");
  txtFilter_->setClearButtonEnabled(true);
  auto* lblFilter = widgets::Named<QLabel>("lblFilter", "F&ilter", this);
  lblFilter->setBuddy(txtFilter_);
  cmbAsker_ = widgets::Named<QComboBox>("cmbAsker", this);
  cmbAsker_->addItem("Everyone");
  cmbAsker_->setMinimumContentsLength(kLongestAsker);
  cmbAsker_->setToolTip("Shows the calls of one window, the monitor's reads for it among them");
  auto* lblAsker = widgets::Named<QLabel>("lblAsker", "Asked &by", this);
  lblAsker->setBuddy(cmbAsker_);
  chkWrites_ = widgets::Named<QCheckBox>("chkWrites", "W&rites only", this);
  chkNoMonitor_ = widgets::Named<QCheckBox>("chkNoMonitor", "Without the &monitor", this);
  chkNoMonitor_->setToolTip("Leaves out what the program reads by itself, over and over");
  chkFailures_ = widgets::Named<QCheckBox>("chkFailures", "Failures onl&y", this);
  auto* row = new QHBoxLayout;
  row->addWidget(lblFilter);
  row->addWidget(txtFilter_, 1);
  row->addWidget(lblAsker);
  row->addWidget(cmbAsker_);
  return row;
}

void frmTraffic::MakeTable() {
  tblTraffic_ = widgets::Named<QTableView>("tblTraffic", this);
  AddSearchKeys(*txtFilter_, *tblTraffic_);
  tblTraffic_->setModel(model_);
  tblTraffic_->setItemDelegate(new TrafficDelegate(*tblTraffic_));
  tblTraffic_->setAccessibleName("Calls");
  tblTraffic_->setSelectionBehavior(QAbstractItemView::SelectRows);
  tblTraffic_->setSelectionMode(QAbstractItemView::ExtendedSelection);
  tblTraffic_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  tblTraffic_->setTabKeyNavigation(false);
  tblTraffic_->setWordWrap(false);
  tblTraffic_->setAlternatingRowColors(true);
  tblTraffic_->setShowGrid(false);
  tblTraffic_->setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
  // By rows, the view would look at every row each time that it moves.
  tblTraffic_->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
  tblTraffic_->setMinimumHeight(fontMetrics().height() * 8);
  // Every row has the same height, so that no row has to be measured.
  tblTraffic_->verticalHeader()->hide();
  tblTraffic_->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  tblTraffic_->verticalHeader()->setMinimumSectionSize(1);
  tblTraffic_->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 4);
  QHeaderView& head = *tblTraffic_->horizontalHeader();
  head.setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  head.setHighlightSections(false);
  head.setSectionsMovable(true);
  for (int column = 0; column < TrafficModel::kColumns; ++column) {
    const QString title = model_->headerData(column, Qt::Horizontal, Qt::DisplayRole).toString();
    const int wanted = fontMetrics().horizontalAdvance(TrafficModel::WidestText(column));
    const int room = fontMetrics().averageCharWidth() * 2;
    head.resizeSection(column, std::max(wanted, fontMetrics().horizontalAdvance(title)) + room);
  }
  auto* copy = widgets::Named<QAction>("actCopyRows", "&Copy", tblTraffic_);
  copy->setShortcut(QKeySequence::Copy);
  copy->setShortcutContext(Qt::WidgetWithChildrenShortcut);
  tblTraffic_->addAction(copy);
  connect(copy, &QAction::triggered, this, [this] { CopyRows(Copy::Text); });
  tblTraffic_->setContextMenuPolicy(Qt::CustomContextMenu);
  connect(tblTraffic_, &QWidget::customContextMenuRequested, this, [this](const QPoint& at) {
    QMenu& menu = widgets::MakePopUpMenu(*tblTraffic_, "mnuTable");
    AddCopies(menu);
    menu.popup(tblTraffic_->viewport()->mapToGlobal(at));
  });
}

QHBoxLayout* frmTraffic::MakeButtons() {
  cmdHold_ = MakeButton("cmdHold", "Hol&d", "Stops the view; the calls go on and are kept", &frmTraffic::cmdHold_Click);
  cmdHold_->setCheckable(true);
  cmdClear_ = MakeButton("cmdClear", "C&lear", "Forgets all calls so far", &frmTraffic::cmdClear_Click);
  txtMark_ = widgets::Named<QLineEdit>("txtMark", this);
  txtMark_->setPlaceholderText("Note");
  txtMark_->setAccessibleName("Note of the mark");
  txtMark_->setMaxLength(kLongestMark);
  KeepRoomForHint(*txtMark_);
  cmdMark_ = MakeButton("cmdMark", "Mar&k", "Puts a mark with this note behind the latest call (Enter in the note)",
                        &frmTraffic::cmdMark_Click);
  cmdCopy_ = MakeButton("cmdCopy", "Co&py...", "Copies the selected rows, or all that are shown (Ctrl+C)",
                        &frmTraffic::cmdCopy_Click);
  cmdSave_ = MakeButton("cmdSave", "&Save...", "Saves calls as a recording, which can be replayed",
                        &frmTraffic::cmdSave_Click);
  auto* open = MakeButton("cmdOpen", "Ope&n...", "Shows a recording", &frmTraffic::cmdOpen_Click);
  cmdLive_ = MakeButton("cmdLive", "Back to Liv&e", "Closes the file and shows the calls as they are made",
                        &frmTraffic::ShowLive);
  auto* row = new QHBoxLayout;
  row->setContentsMargins({});
  row->addWidget(cmdHold_);
  row->addWidget(cmdClear_);
  row->addWidget(txtMark_, 1);
  row->addWidget(cmdMark_);
  for (QPushButton* button : {cmdCopy_, cmdSave_, open, cmdLive_}) row->addWidget(button);
  return row;
}

QPushButton* frmTraffic::MakeButton(const char* name, const char* caption, const char* tip,
                                    void (frmTraffic::*click)()) {
  auto* button = widgets::Named<QPushButton>(name, caption, this);
  button->setToolTip(tip);
  OnClick(*button, [this, click] { (this->*click)(); });
  return button;
}

void frmTraffic::AddCopies(QMenu& menu) {
  widgets::AddEntry(menu, *this, "mnuCopyText", "Copy as &Text", [this] { CopyRows(Copy::Text); });
  widgets::AddEntry(menu, *this, "mnuCopyI2c", "Copy for &i2c-tools", [this] { CopyRows(Copy::I2cTools); });
  widgets::AddEntry(menu, *this, "mnuCopyC", "Copy as &C", [this] { CopyRows(Copy::C); });
}

void frmTraffic::ConnectControls() {
  OnChange(*txtFilter_, [this] { ShowFilter(); });
  OnSelect(*cmbAsker_, [this] { ShowFilter(); });
  for (QCheckBox* box : {chkWrites_, chkNoMonitor_, chkFailures_}) {
    OnToggle(*box, [this] { ShowFilter(); });
  }
  connect(txtMark_, &QLineEdit::returnPressed, this, platform::Guarded([this] { cmdMark_Click(); }));
  AddFindKey(*this, *txtFilter_);
  auto* timer = widgets::Named<QTimer>("tmrTraffic", this);
  timer->setInterval(kLookMs);
  connect(timer, &QTimer::timeout, this, [this] { tmrTraffic_Timer(); });
  Services().clock.Adopt(*timer);
  timer->start();
}

}  // namespace zth::windows

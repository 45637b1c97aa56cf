#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QTableView>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "chip/RegisterGroups.h"
#include "widgets/Named.h"
#include "widgets/PopUpMenu.h"
#include "windows/FileDrops.h"
#include "windows/Handlers.h"
#include "windows/SearchKeys.h"
#include "windows/tools/CompareColumns.h"
#include "windows/tools/CompareModel.h"
#include "windows/tools/SnapshotPage.h"
#include "windows/tools/frmCompare.h"

// The controls of the comparison's window.
namespace zth::windows {

frmCompare::frmCompare(const Context& context)
    : ChildWindow("frmCompare", "Compare Configurations", context), model_(new CompareModel(this)) {
  tabPages_ = widgets::Named<QTabWidget>("tabPages", this);
  tabPages_->setDocumentMode(true);  // the pages keep the window's own background
  tabPages_->addTab(MakePage(), "Co&mparison");
  snapshots_ = new SnapshotPage(context, this);
  tabPages_->addTab(snapshots_, "&Snapshots");
  OnTab(*tabPages_);
  (new QVBoxLayout(this))->addWidget(tabPages_);
  model_->SetPalette(palette());
  ConnectControls();
  ShowColumns();
  Tell("No chip has been read yet: press Read.");
  cmdRead_->setFocus();
}

QWidget* frmCompare::MakePage() {
  auto* page = new QWidget(this);
  columns_ = new CompareColumns({Services(), TheDesktop()}, page);
  auto* column = new QVBoxLayout(page);
  column->addWidget(columns_);
  column->addLayout(MakeFilters());
  MakeTable();
  column->addWidget(tblCompare_, 1);
  MakeLeft();
  column->addWidget(lblLeft_);
  column->addWidget(lstLeft_);
  column->addLayout(MakeButtons());
  lblTold_ = widgets::Named<QLabel>("lblTold", this);
  lblTold_->setTextFormat(Qt::PlainText);
  lblTold_->setWordWrap(true);
  lblTold_->setMinimumHeight(2 * fontMetrics().lineSpacing());  // so that nothing moves when a text appears
  lblState_ = widgets::Named<QLabel>("lblState", this);
  auto* line = new QHBoxLayout;
  line->addWidget(lblTold_, 1);
  line->addWidget(lblState_);
  column->addLayout(line);
  return page;
}

QHBoxLayout* frmCompare::MakeFilters() {
  txtFilter_ = widgets::Named<QLineEdit>("txtFilter", this);
  txtFilter_->setPlaceholderText("Name, bit or address");
  txtFilter_->setToolTip("Shows the registers with this name, bit or address (Ctrl+F)");
  txtFilter_->setClearButtonEnabled(true);
  KeepRoomForHint(*txtFilter_);
  auto* lblFilter = widgets::Named<QLabel>("lblFilter", "F&ilter", this);
  lblFilter->setBuddy(txtFilter_);
  cmbGroup_ = widgets::Named<QComboBox>("cmbGroup", this);
  cmbGroup_->addItem("All");
  for (const chip::RegisterGroup& group : chip::kRegisterGroups) {
    cmbGroup_->addItem(QString::fromStdString(chip::TextOf(group)));
  }
  auto* lblGroup = widgets::Named<QLabel>("lblGroup", "&Group", this);
  lblGroup->setBuddy(cmbGroup_);
  chkDifferences_ = widgets::Named<QCheckBox>("chkDifferences", "Onl&y differences", this);
  chkFields_ = widgets::Named<QCheckBox>("chkFields", "All fi&elds", this);
  chkFields_->setToolTip("Shows every field of every register, not only those that differ");
  auto* row = new QHBoxLayout;
  row->addWidget(lblFilter);
  row->addWidget(txtFilter_, 1);
  row->addWidget(lblGroup);
  row->addWidget(cmbGroup_);
  row->addWidget(chkDifferences_);
  row->addWidget(chkFields_);
  return row;
}

void frmCompare::MakeTable() {
  tblCompare_ = widgets::Named<QTableView>("tblCompare", this);
  tblCompare_->setModel(model_);
  tblCompare_->setAccessibleName("Registers");
  tblCompare_->setSelectionBehavior(QAbstractItemView::SelectRows);
  tblCompare_->setSelectionMode(QAbstractItemView::ExtendedSelection);
  tblCompare_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  tblCompare_->setTabKeyNavigation(false);
  tblCompare_->setWordWrap(false);
  tblCompare_->setTextElideMode(Qt::ElideNone);
  tblCompare_->setAlternatingRowColors(true);
  tblCompare_->setShowGrid(false);
  tblCompare_->setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
  tblCompare_->setMinimumHeight(fontMetrics().height() * 8);
  tblCompare_->verticalHeader()->hide();
  tblCompare_->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  tblCompare_->verticalHeader()->setMinimumSectionSize(1);
  tblCompare_->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 4);
  QHeaderView& head = *tblCompare_->horizontalHeader();
  head.setSectionResizeMode(QHeaderView::ResizeToContents);
  head.setStretchLastSection(true);
  head.setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  head.setHighlightSections(false);
  auto* copy = widgets::Named<QAction>("actCopyRows", "&Copy", tblCompare_);
  copy->setShortcut(QKeySequence::Copy);
  copy->setShortcutContext(Qt::WidgetWithChildrenShortcut);
  connect(copy, &QAction::triggered, this, [this] { CopyRows(); });
  widgets::AddPopUpMenu(*tblCompare_, "mnuTable", *copy);
  AddSearchKeys(*txtFilter_, *tblCompare_);
  AddFindKey(*this, *txtFilter_);
}

void frmCompare::MakeLeft() {
  lblLeft_ = widgets::Named<QLabel>("lblLeft", "&Not written:", this);
  lstLeft_ = widgets::Named<QTreeWidget>("lstLeft", this);
  lblLeft_->setBuddy(lstLeft_);
  lstLeft_->setHeaderHidden(true);
  lstLeft_->setRootIsDecorated(false);
  lstLeft_->setUniformRowHeights(true);
  lstLeft_->setAccessibleName("Not written");
  lstLeft_->setFixedHeight(fontMetrics().height() * 5);
  lblLeft_->hide();
  lstLeft_->hide();
}

QHBoxLayout* frmCompare::MakeButtons() {
  cmdRead_ = widgets::Named<QPushButton>("cmdRead", "&Read", this);
  cmdRead_->setToolTip("Reads every chip among the columns, but no register that the read would change");
  cmbFrom_ = widgets::Named<QComboBox>("cmbFrom", this);
  cmbFrom_->setToolTip("The column that is written to the chip, or exported");
  auto* lblFrom = widgets::Named<QLabel>("lblFrom", "Take from col&umn", this);
  lblFrom->setBuddy(cmbFrom_);
  cmdWrite_ = widgets::Named<QPushButton>("cmdWrite", "Write Selecte&d to Chip...", this);
  cmdExport_ = widgets::Named<QPushButton>("cmdExport", "E&xport...", this);
  cmdExport_->setToolTip("Saves or copies that column, or what differs in it, in one of five forms");
  auto* row = new QHBoxLayout;
  row->addWidget(cmdRead_);
  row->addStretch();
  row->addWidget(lblFrom);
  row->addWidget(cmbFrom_);
  row->addWidget(cmdWrite_);
  row->addWidget(cmdExport_);
  return row;
}

void frmCompare::ConnectControls() {
  OnChange(*txtFilter_, [this] { ShowFilter(); });
  OnSelect(*cmbGroup_, [this] { ShowFilter(); });
  OnSelect(*cmbFrom_, [] {});
  OnToggle(*chkDifferences_, [this] { ShowFilter(); });
  OnToggle(*chkFields_, [this] { ShowFilter(); });
  OnClick(*cmdRead_, [this] { cmdRead_Click(); });
  OnClick(*cmdWrite_, [this] { cmdWrite_Click(); });
  OnClick(*cmdExport_, [this] { cmdExport_Click(); });
  connect(columns_, &CompareColumns::Changed, this, [this] { ShowColumns(); });
  connect(columns_, &CompareColumns::Told, this, [this](const QString& text) { Tell(text); });
  connect(snapshots_, &SnapshotPage::Changed, this, [this] {
    columns_->ShowSources();
    ShowColumns();
  });
  TakeFiles(*this, static_cast<int>(CompareColumns::kMost),
            [this](const QStringList& paths, const QPoint& at) { columns_->Open(paths, mapTo(window(), at)); });
}

}  // namespace zth::windows

#include "windows/regmap/AllRegisters.h"

#include <algorithm>

#include <QAction>
#include <QComboBox>
#include <QEvent>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>
#include <QVBoxLayout>

#include "base/Counted.h"
#include "chip/ReadEffects.h"
#include "link/Declarations.h"
#include "link/Transfers.h"
#include "link/USBStuff.h"
#include "platform/Guard.h"
#include "widgets/Named.h"
#include "widgets/PopUpMenu.h"
#include "windows/Handlers.h"
#include "windows/SearchKeys.h"
#include "windows/limits/frmLimits.h"
#include "windows/regmap/RegisterModel.h"
#include "windows/regmap/RegisterTree.h"

namespace zth::windows {
namespace {

QString Count(std::size_t number, const char* nouns) {
  return QString::fromStdString(base::Counted(static_cast<std::int64_t>(number), nouns));
}

}  // namespace

AllRegisters::AllRegisters(const Context& context, QWidget* parent)
    : QWidget(parent), context_(context), model_(new RegisterModel(this)), filter_(new RegisterFilter(this)) {
  MakeControls();
  MakeTable();
  AddCopy();
  auto* top = new QHBoxLayout;
  auto* lblSearch = widgets::Named<QLabel>("lblSearch", "&Search", this);
  lblSearch->setBuddy(txtSearch_);
  auto* lblGroup = widgets::Named<QLabel>("lblGroup", "&Group", this);
  lblGroup->setBuddy(cmbGroup_);
  top->addWidget(lblSearch);
  top->addWidget(txtSearch_, 1);
  top->addWidget(lblGroup);
  top->addWidget(cmbGroup_);
  auto* bottom = new QHBoxLayout;
  bottom->addWidget(cmdReadSelected_);
  bottom->addWidget(cmdReadShown_);
  bottom->addWidget(lblTold_, 1);
  auto* column = new QVBoxLayout(this);
  column->addLayout(top);
  column->addWidget(tblRegisters_, 1);
  column->addLayout(bottom);
  model_->SetPalette(palette());
}

void AllRegisters::MakeControls() {
  txtSearch_ = widgets::Named<QLineEdit>("txtSearch", this);
  txtSearch_->setPlaceholderText("Name, bit or address");
  txtSearch_->setClearButtonEnabled(true);
  cmbGroup_ = widgets::Named<QComboBox>("cmbGroup", this);
  cmbGroup_->addItem("All");
  cmbGroup_->addItems(RegisterGroups());
  cmbGroup_->addItem("Not in the tree");
  tblRegisters_ = widgets::Named<QTableView>("tblRegisters", this);
  AddSearchKeys(*txtSearch_, *tblRegisters_);
  cmdReadSelected_ = widgets::Named<QPushButton>("cmdReadSelected", "&Read Selected", this);
  cmdReadShown_ = widgets::Named<QPushButton>("cmdReadShown", "Rea&d Shown", this);
  cmdReadShown_->setToolTip("Reads every register of the table as it shows, but those that a read would clear");
  lblTold_ = widgets::Named<QLabel>("lblTold", "Nothing has been read yet.", this);
  lblTold_->setWordWrap(true);
  lblTold_->setMinimumHeight(2 * fontMetrics().lineSpacing());  // so that nothing moves when a text appears
  OnChange(*txtSearch_, [this] { ShowRows(); });
  OnSelect(*cmbGroup_, [this] { ShowRows(); });
  OnClick(*cmdReadSelected_, [this] { cmdReadSelected_Click(); });
  OnClick(*cmdReadShown_, [this] { cmdReadShown_Click(); });
}

void AllRegisters::MakeTable() {
  filter_->setSourceModel(model_);
  tblRegisters_->setModel(filter_);
  tblRegisters_->setAccessibleName("All registers");
  tblRegisters_->setSelectionBehavior(QAbstractItemView::SelectRows);
  tblRegisters_->setSelectionMode(QAbstractItemView::ExtendedSelection);
  tblRegisters_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  tblRegisters_->setTabKeyNavigation(false);
  tblRegisters_->setWordWrap(false);
  tblRegisters_->setTextElideMode(Qt::ElideNone);
  tblRegisters_->setAlternatingRowColors(true);
  tblRegisters_->setShowGrid(false);
  tblRegisters_->setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
  tblRegisters_->verticalHeader()->hide();
  tblRegisters_->verticalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
  QHeaderView& head = *tblRegisters_->horizontalHeader();
  head.setSectionResizeMode(QHeaderView::ResizeToContents);
  head.setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  head.setHighlightSections(false);
  tblRegisters_->setSortingEnabled(true);
  tblRegisters_->sortByColumn(RegisterModel::kAddress, Qt::AscendingOrder);
}

void AllRegisters::AddCopy() {
  auto* copy = widgets::Named<QAction>("actCopyRows", "&Copy", tblRegisters_);
  copy->setShortcut(QKeySequence::Copy);
  copy->setShortcutContext(Qt::WidgetWithChildrenShortcut);
  connect(copy, &QAction::triggered, this, [this] { CopyRows(); });
  widgets::AddPopUpMenu(*tblRegisters_, "mnuTable", *copy);
}

void AllRegisters::ShowRows() {
  const int group = cmbGroup_->currentIndex();
  const bool outside = group == cmbGroup_->count() - 1;
  filter_->Show(txtSearch_->text(), group == 0 || outside ? QString() : cmbGroup_->currentText(), outside);
  // Sorts rows that come back by the selected header, too.
  filter_->sort(filter_->sortColumn(), filter_->sortOrder());
}

std::vector<int> AllRegisters::SelectedRows() const {
  std::vector<int> rows;
  for (const QModelIndex& index : tblRegisters_->selectionModel()->selectedRows()) rows.push_back(index.row());
  std::ranges::sort(rows);
  return rows;
}

std::vector<int> AllRegisters::ShownRows() const {
  std::vector<int> rows(static_cast<std::size_t>(filter_->rowCount()));
  for (int row = 0; row < filter_->rowCount(); ++row) rows[static_cast<std::size_t>(row)] = row;
  return rows;
}

std::vector<std::int32_t> AllRegisters::AddressesOf(const std::vector<int>& rows) const {
  std::vector<std::int32_t> addresses;
  for (const int row : rows) {
    const int address = filter_->index(row, RegisterModel::kAddress).data(RegisterModel::kSortRole).toInt();
    if (std::ranges::count(addresses, address) == 0) addresses.push_back(address);
  }
  return addresses;
}

void AllRegisters::cmdReadSelected_Click() {
  const std::vector<int> rows = SelectedRows();
  const std::vector<std::int32_t> addresses = AddressesOf(rows);
  if (addresses.empty()) {
    lblTold_->setText("No register is selected.");
  } else if (rows.size() == 1 && chip::ReadClears(addresses[0])) {
    // The only way to read such a register here: the user has selected it and nothing else.
    const link::FailureWatch watch;
    const int value = link::ReadRegister(link::Bus.DeviceAddress, addresses[0]);
    const QString name = filter_->index(rows[0], RegisterModel::kName).data().toString();
    if (watch.Failed()) {
      lblTold_->setText("The transfer failed: " + name + " was not read.");
      return;
    }
    Note(addresses[0], value);
    NoteStatusRead(context_.desktop, addresses[0], value);
    lblTold_->setText(name + " was read, and by that cleared of what is over.");
  } else {
    Read(addresses);
  }
}

void AllRegisters::cmdReadShown_Click() {
  Read(AddressesOf(ShownRows()));
}

void AllRegisters::ReadAgain() {
  std::vector<std::int32_t> addresses;
  for (std::int32_t address = 0; address <= 0xFF; ++address) {
    if (model_->IsRead(address)) addresses.push_back(address);
  }
  Read(addresses);
}

void AllRegisters::Read(const std::vector<std::int32_t>& addresses) {
  if (addresses.empty()) return;
  std::size_t left = 0;
  std::size_t failed = 0;
  for (const std::int32_t address : addresses) {
    if (chip::ReadClears(address)) {
      ++left;
      continue;
    }
    const link::FailureWatch watch;
    const int value = link::ReadRegister(link::Bus.DeviceAddress, address);
    if (watch.Failed()) {
      ++failed;  // the row keeps its previous value
      continue;
    }
    model_->Note(address, value, context_.services.clock.WallTime());
  }
  model_->ShowNoted();
  QString told = Count(addresses.size() - left - failed, "registers") + " read.";
  if (failed != 0) told += ' ' + Count(failed, "transfers") + " failed.";
  if (left != 0) told += ' ' + Count(left, "registers") + " left out: a read clears them. Select one alone to read it.";
  lblTold_->setText(told);
}

void AllRegisters::Note(std::int32_t address, int value) {
  model_->Note(address, value, context_.services.clock.WallTime());
  model_->ShowNoted();
}

void AllRegisters::Forget() {
  model_->Forget();
  lblTold_->setText("Nothing has been read yet.");
}

void AllRegisters::CopyRows() {
  QStringList lines;
  for (const int row : SelectedRows()) {
    QStringList fields;
    for (int column = 0; column < RegisterModel::kColumns; ++column) {
      fields << filter_->index(row, column).data().toString();
    }
    lines << fields.join('\t');
  }
  if (!lines.isEmpty()) context_.services.clipboard.PutText(lines.join('\n'));
}

void AllRegisters::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::PaletteChange && lblTold_ != nullptr) model_->SetPalette(palette());
}

}  // namespace zth::windows

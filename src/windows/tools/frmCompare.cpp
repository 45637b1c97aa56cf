#include "windows/tools/frmCompare.h"

#include <algorithm>

#include <QCheckBox>
#include <QComboBox>
#include <QEvent>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPointer>
#include <QPushButton>
#include <QSignalBlocker>
#include <QTableView>
#include <QTreeWidget>

#include "link/ChipId.h"
#include "tasks/Comparison.h"
#include "widgets/PopUpMenu.h"
#include "windows/tools/CompareColumns.h"
#include "windows/tools/CompareExport.h"
#include "windows/tools/CompareModel.h"
#include "windows/tools/CompareWrite.h"
#include "windows/tools/SnapshotPage.h"

namespace zth::windows {
namespace {

using Columns = std::vector<CompareColumns::Column>;

/// The column of a place; null if it shows nothing.
const CompareColumns::Column* ColumnAt(const Columns& columns, int place) {
  const auto found = std::ranges::find(columns, static_cast<std::size_t>(place), &CompareColumns::Column::place);
  return found == columns.end() ? nullptr : &*found;
}

}  // namespace

void frmCompare::ShowColumns() {
  std::vector<const tasks::RegisterImage*> images;
  QStringList titles;
  const QVariant from = cmbFrom_->currentData();
  const QSignalBlocker quiet(*cmbFrom_);
  cmbFrom_->clear();
  for (const CompareColumns::Column& column : columns_->Columns()) {
    images.push_back(column.image);
    titles << QString("%1: %2").arg(column.place + 1).arg(column.name);
    cmbFrom_->addItem(QString("Column %1").arg(column.place + 1), static_cast<int>(column.place));
  }
  cmbFrom_->setCurrentIndex(std::max(0, cmbFrom_->findData(from)));
  model_->Show(tasks::Compare(images, 0), titles);
  ShowState();
}

void frmCompare::ShowFilter() {
  tasks::ComparisonFilter filter;
  filter.onlyDifferences = chkDifferences_->isChecked();
  filter.text = txtFilter_->text().toStdString();
  if (cmbGroup_->currentIndex() > 0) filter.group = cmbGroup_->currentText().toStdString();
  model_->SetFilter(filter, chkFields_->isChecked());
  ShowState();
}

void frmCompare::ShowState() {
  lblState_->setText(QString("%1 of %2 registers differ").arg(model_->Differing()).arg(model_->Registers()));
}

void frmCompare::Tell(const QString& text) {
  lblTold_->setText(text);
}

void frmCompare::ShowLeft(const std::vector<std::string>& left) {
  lstLeft_->clear();
  for (const std::string& one : left) new QTreeWidgetItem(lstLeft_, {QString::fromStdString(one)});
  lblLeft_->setVisible(!left.empty());
  lstLeft_->setVisible(!left.empty());
}

std::vector<tasks::Wanted> frmCompare::Selected() const {
  std::vector<tasks::Wanted> wanted;
  for (const QModelIndex& index : tblCompare_->selectionModel()->selectedRows()) {
    const tasks::Wanted one = model_->WantedOf(index.row());
    const auto same = std::ranges::find(wanted, one.reg, &tasks::Wanted::reg);
    if (same == wanted.end()) {
      wanted.push_back(one);
    } else {
      same->mask |= one.mask;
    }
  }
  return wanted;
}

void frmCompare::cmdRead_Click() {
  ShowLeft({});
  Tell(columns_->Read());
}

void frmCompare::cmdWrite_Click() {
  ShowLeft({});
  const std::vector<tasks::Wanted> wanted = Selected();
  if (wanted.empty()) return Tell("Nothing written: select registers or fields in the table first.");
  const Columns columns = columns_->Columns();
  const CompareColumns::Column* column = ColumnAt(columns, cmbFrom_->currentData().toInt());
  if (column == nullptr || column->image->IsEmpty()) return Tell("Nothing written: the column has not been read.");
  const QPointer<frmCompare> self(this);
  // Copies: what is read back changes the column of the chip.
  const tasks::RegisterImage image = *column->image;
  const tasks::RegisterImage now = columns_->ImageOf(link::ChipInUse());
  const Written written = WriteToChip({Services(), TheDesktop()}, *this, image, column->name, wanted, now);
  if (self == nullptr) return;
  ShowColumns();
  ShowLeft(written.left);
  Tell(written.told);
}

void frmCompare::cmdExport_Click() {
  const Columns columns = columns_->Columns();
  const CompareColumns::Column* column = ColumnAt(columns, cmbFrom_->currentData().toInt());
  if (column == nullptr) return;
  const tasks::RegisterImage image = *column->image;
  const tasks::RegisterImage reference = *columns.front().image;
  const auto tell = [this](const QString& text) {
    columns_->ShowSources();  // a file that was saved can be chosen
    Tell(text);
  };
  const auto number = column->place + 1;
  QMenu& menu = widgets::MakePopUpMenu(*this, "mnuExport");
  AddExports(
      menu, *this, {Services(), TheDesktop()},
      {"Column", QString("&Save Column %1 As").arg(number), QString("&Copy Column %1 As").arg(number), !image.IsEmpty(),
       [image] {
         return tasks::ExportSubject{image, {}};
       },
       tell});
  menu.addSeparator();
  const auto against = columns.front().place + 1;
  AddExports(menu, *this, {Services(), TheDesktop()},
             {"Differences", QString("S&ave Differences of %1 to %2 As").arg(number).arg(against),
              QString("C&opy Differences of %1 to %2 As").arg(number).arg(against),
              !image.IsEmpty() && !reference.IsEmpty() && number != against,
              [image, reference] {
                return tasks::ExportSubject{image, reference};
              },
              tell});
  menu.popup(cmdExport_->mapToGlobal(QPoint(0, cmdExport_->height())));
}

void frmCompare::CopyRows() {
  QModelIndexList rows = tblCompare_->selectionModel()->selectedRows();
  std::ranges::sort(rows, {}, &QModelIndex::row);
  QStringList lines;
  for (const QModelIndex& row : rows) {
    QStringList cells;
    for (int column = 0; column < model_->columnCount(); ++column) {
      cells << model_->index(row.row(), column).data().toString().trimmed();
    }
    lines << cells.join('\t');
  }
  if (!lines.isEmpty()) Services().clipboard.PutText(lines.join('\n'));
}

void frmCompare::OriginChanged() {
  cmdWrite_->setToolTip("Writes the selected registers and fields as they are in that column to " +
                        link::TextOf(link::ChipInUse()) + ", the chip in use, and reads each back");
  snapshots_->ShowChip();
}

void frmCompare::changeEvent(QEvent* event) {
  ChildWindow::changeEvent(event);
  if (event->type() == QEvent::PaletteChange && lblTold_ != nullptr) model_->SetPalette(palette());
}

QSize frmCompare::OpeningSize(const QSize& desk) const {
  tblCompare_->resizeColumnsToContents();
  // The table in full, with some room for the differences that a read will show.
  const int wanted = tblCompare_->horizontalHeader()->length() + fontMetrics().averageCharWidth() * 40;
  return QSize(wanted, desk.height() * 4 / 5).expandedTo(sizeHint()).boundedTo(desk);
}

}  // namespace zth::windows

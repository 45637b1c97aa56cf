#include "windows/Rows.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QTabWidget>
#include <QVBoxLayout>

#include "widgets/UpDown.h"
#include "windows/BoundControls.h"

namespace zth::windows {
namespace {

constexpr int kColumns = 3;

QLabel* AddLabel(QGridLayout& grid, int line, const Binding& row, QWidget* buddy) {
  auto* label = new QLabel(CaptionOf(row), grid.parentWidget());
  // "lbl" in place of the control's own prefix.
  label->setObjectName("lbl" + NameOf(row.control).mid(3));
  label->setToolTip(PlaceOf(row));
  label->setBuddy(buddy);
  grid.addWidget(label, line, 0);
  return label;
}

void AddCheck(QGridLayout& grid, int line, const Binding& row) {
  auto* check = new QCheckBox(CaptionOf(row), grid.parentWidget());
  check->setObjectName(NameOf(row.control));
  if (row.caption == nullptr) {
    check->hide();
  } else {
    grid.addWidget(check, line, 0, 1, kColumns, Qt::AlignLeft);
  }
}

void AddList(QGridLayout& grid, int line, const Binding& row) {
  auto* list = new QComboBox(grid.parentWidget());
  list->setObjectName(NameOf(row.control));
  for (const char* item : row.items) list->addItem(QString::fromUtf8(item));
  AddLabel(grid, line, row, list);
  grid.addWidget(list, line, 1);
}

void AddText(QGridLayout& grid, int line, const Binding& row) {
  auto* box = new QLineEdit(grid.parentWidget());
  box->setObjectName(NameOf(row.control));
  auto* upDown = new widgets::UpDown(box, {row.code->min, row.code->max, 1}, grid.parentWidget());
  upDown->setObjectName(row.upDown);
  AddLabel(grid, line, row, box);
  QHBoxLayout* pair = upDown->Row();
  if (*row.code->unit != '\0') {
    // Before the stretch at the pair's end.
    pair->insertWidget(pair->count() - 1, new QLabel(QString::fromLatin1(row.code->unit), grid.parentWidget()));
    pair->insertSpacing(pair->count() - 2, grid.parentWidget()->fontMetrics().averageCharWidth());
  }
  grid.addLayout(pair, line, 1);
}

}  // namespace

void BuildRows(QGridLayout& grid, std::span<const Binding> rows) {
  int line = grid.count() == 0 ? 0 : grid.rowCount();
  for (const Binding& row : rows) {
    if (row.code != nullptr) {
      AddText(grid, line, row);
    } else if (!row.items.empty()) {
      AddList(grid, line, row);
    } else {
      AddCheck(grid, line, row);
    }
    ++line;
  }
}

void BuildGroup(QGridLayout& grid, const QString& heading, std::span<const Binding> rows) {
  int line = 0;
  if (grid.count() != 0) {
    line = grid.rowCount();
    grid.setRowMinimumHeight(line, grid.parentWidget()->fontMetrics().height() / 3);
    ++line;
  }
  auto* label = new QLabel(heading, grid.parentWidget());
  QFont font = label->font();
  font.setBold(true);
  label->setFont(font);
  grid.addWidget(label, line, 0, 1, kColumns);
  BuildRows(grid, rows);
}

namespace {

QGridLayout& MakeGrid(QWidget* parent) {
  auto* grid = new QGridLayout(parent);
  // Labels and fields stand in two columns as wide as they need to be; what is left goes to the right of them.
  grid->setColumnStretch(kColumns - 1, 1);
  grid->setHorizontalSpacing(2 * parent->fontMetrics().averageCharWidth());
  return *grid;
}

QVBoxLayout& AddBarePage(QTabWidget& tabs, const QString& caption) {
  auto* page = new QWidget(&tabs);
  tabs.addTab(page, caption);
  return *new QVBoxLayout(page);
}

}  // namespace

QGroupBox* MakeFrame(const QString& name, const QString& caption, QWidget* parent) {
  auto* frame = new QGroupBox(caption, parent);
  frame->setObjectName(name);
  MakeGrid(frame);
  return frame;
}

QGridLayout& GridOf(QGroupBox& frame) {
  return *static_cast<QGridLayout*>(frame.layout());
}

QGridLayout& AddPage(QTabWidget& tabs, const QString& caption) {
  QVBoxLayout& column = AddBarePage(tabs, caption);
  auto* rows = new QWidget(column.parentWidget());
  QGridLayout& grid = MakeGrid(rows);
  grid.setContentsMargins(0, 0, 0, 0);
  column.addWidget(rows);
  column.addStretch();
  return grid;
}

QGridLayout& AddFramedPage(QTabWidget& tabs, const QString& caption, const QString& frame,
                           const QString& frameCaption) {
  QVBoxLayout& column = AddBarePage(tabs, caption);
  QGroupBox* box = MakeFrame(frame, frameCaption, column.parentWidget());
  column.addWidget(box);
  column.addStretch();
  return GridOf(*box);
}

}  // namespace zth::windows

#include "windows/Rows.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>

#include "widgets/UpDown.h"
#include "windows/BoundControls.h"

namespace zth::windows {
namespace {

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
    grid.addWidget(check, line, 0, 1, 2, Qt::AlignLeft);
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
  grid.addLayout(upDown->Row(), line, 1);
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
  grid.addWidget(label, line, 0, 1, 2);
  BuildRows(grid, rows);
}

QGroupBox* MakeFrame(const QString& name, const QString& caption, QWidget* parent) {
  auto* frame = new QGroupBox(caption, parent);
  frame->setObjectName(name);
  auto* grid = new QGridLayout(frame);
  grid->setColumnStretch(1, 1);
  return frame;
}

QGridLayout& GridOf(QGroupBox& frame) {
  return *static_cast<QGridLayout*>(frame.layout());
}

}  // namespace zth::windows

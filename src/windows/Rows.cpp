#include "windows/Rows.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QTabWidget>
#include <QVBoxLayout>

#include "widgets/Named.h"
#include "widgets/UpDown.h"
#include "windows/Editors.h"

namespace zth::windows {
namespace {

constexpr int kColumns = 3;

/// The first line under what the grid holds already.
int NextLine(const QGridLayout& grid) {
  return grid.count() == 0 ? 0 : grid.rowCount();
}

}  // namespace

PlacedRow PlaceRow(QGridLayout& grid, const Binding& row, int columns) {
  QWidget* parent = grid.parentWidget();
  PlacedRow placed{&Editor::Make(row, parent)->Control()};
  const int line = NextLine(grid);
  if (row.code == nullptr && row.items.empty()) {
    if (row.caption == nullptr) {
      placed.control->hide();
    } else {
      grid.addWidget(placed.control, line, 0, 1, columns, Qt::AlignLeft);
    }
    return placed;
  }
  if (row.code != nullptr) {
    auto* upDown =
        new widgets::UpDown(qobject_cast<QLineEdit*>(placed.control), {row.code->min, row.code->max, 1}, parent);
    upDown->setObjectName(row.upDown);
    placed.pair = upDown->Row();
    grid.addLayout(placed.pair, line, 1);
  } else {
    grid.addWidget(placed.control, line, 1);
  }
  placed.label = new QLabel(CaptionOf(row), parent);
  // "lbl" in place of the control's own prefix.
  placed.label->setObjectName("lbl" + NameOf(row.control).mid(3));
  placed.label->setBuddy(placed.control);
  grid.addWidget(placed.label, line, 0);
  return placed;
}

void BuildRows(QGridLayout& grid, std::span<const Binding> rows) {
  for (const Binding& row : rows) {
    const PlacedRow placed = PlaceRow(grid, row, kColumns);
    if (placed.label != nullptr) placed.label->setToolTip(PlaceOf(row));
    if (placed.pair == nullptr || *row.code->unit == '\0') continue;
    // Before the stretch at the pair's end.
    placed.pair->insertWidget(placed.pair->count() - 1, new QLabel(row.code->unit, grid.parentWidget()));
    placed.pair->insertSpacing(placed.pair->count() - 2, grid.parentWidget()->fontMetrics().averageCharWidth());
  }
}

void BuildGroup(QGridLayout& grid, const QString& heading, std::span<const Binding> rows) {
  int line = NextLine(grid);
  if (line != 0) {
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
  auto* frame = widgets::Named<QGroupBox>(name, caption, parent);
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

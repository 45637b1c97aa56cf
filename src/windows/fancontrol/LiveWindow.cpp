#include "windows/fancontrol/LiveWindow.h"

#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>

#include "widgets/Named.h"
#include "windows/Rows.h"

namespace zth::windows {
namespace {

QLabel* AddHintLabel(const PlacedRow& placed) {
  auto* label = widgets::Named<QLabel>("lblChip" + placed.control->objectName().mid(3), placed.control->parentWidget());
  // Its room is there whether it says something or not, so that nothing moves.
  label->setMinimumWidth(label->fontMetrics().horizontalAdvance("chip: -188"));
  label->setIndent(label->fontMetrics().horizontalAdvance(' '));
  placed.pair->insertWidget(placed.pair->count() - 1, label);
  return label;
}

}  // namespace

LiveWindow::LiveWindow(const QString& name, const QString& caption, const Context& context, unsigned shows,
                       std::span<const Binding> rows, std::span<const ReadStep> reads)
    : ChildWindow(name, caption, context, shows), rows_(rows), reads_(reads) {
  SelectOnEnter();
}

void LiveWindow::AddRows(QWidget& parent, std::span<const Binding> rows) {
  auto* grid = static_cast<QGridLayout*>(parent.layout());
  if (grid == nullptr) {
    grid = new QGridLayout(&parent);
    grid->setColumnStretch(0, 1);
  }
  for (const Binding& row : rows) {
    const PlacedRow placed = PlaceRow(*grid, row, 2);
    if (row.code == nullptr) continue;
    placed.control->setToolTip(row.code->unitName);
    auto polled = PolledDegrees(row.reg);
    if (polled) hints_.emplace_back(*static_cast<QLineEdit*>(placed.control), *AddHintLabel(placed), std::move(polled));
  }
}

void LiveWindow::Finish() {
  controls_ = new BoundControls(*this, rows_, [this](const Binding& row) { Control_Change(row); });
}

void LiveWindow::Control_Change(const Binding& row) {
  if (!ready_) return;
  controls_->Write(row);
  AfterWrite(row);
}

void LiveWindow::LoadControls() {
  controls_->Load(reads_);
  for (ChipHint& hint : hints_) hint.Settle();
}

void LiveWindow::RefreshHints() {
  for (ChipHint& hint : hints_) hint.Refresh(IsOfOtherChip());
}

void LiveWindow::Reread() {
  SetReady(false);
  Load();
}

}  // namespace zth::windows

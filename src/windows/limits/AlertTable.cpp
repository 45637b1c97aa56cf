#include "windows/limits/AlertTable.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QLabel>

#include "base/BitField.h"
#include "chip/ChipState.h"
#include "link/Declarations.h"
#include "link/USBStuff.h"
#include "widgets/Named.h"
#include "widgets/Toggle.h"
#include "windows/Editors.h"
#include "windows/Handlers.h"

namespace zth::windows {
namespace {

enum Column { kLabelColumn, kMaskColumn, kLampColumn };

}  // namespace

AlertTable::AlertTable(const AlertTab& tab, QWidget* parent) : QWidget(parent), tab_(tab) {
  auto* grid = new QGridLayout(this);
  grid->setContentsMargins(0, 0, 0, 0);
  grid->setHorizontalSpacing(fontMetrics().averageCharWidth() * 3);
  grid->setVerticalSpacing(4);
  AddHeading(tab.channel, kLabelColumn, *grid);
  if (tab.mask != nullptr) AddHeading(tab.maskHeading, kMaskColumn, *grid);
  AddHeading(tab.status, kLampColumn, *grid);
  for (int row = 0; row < static_cast<int>(tab.rows.size()); ++row) AddRow(row, *grid);
  // Wide enough for every caption that a row can take, so that nothing moves when the pins change.
  grid->setColumnMinimumWidth(kLabelColumn, fontMetrics().horizontalAdvance("THERM1% Over Limit"));
  grid->setRowStretch(static_cast<int>(tab.rows.size()) + 1, 1);
}

void AlertTable::AddHeading(const AlertHeading& heading, int column, QGridLayout& grid) {
  auto* label = widgets::Named<QLabel>(NameOf({"Label3", heading.index}), heading.caption, this);
  QFont heavy = label->font();
  heavy.setBold(true);
  label->setFont(heavy);
  grid.addWidget(label, 0, column, column == kLabelColumn ? Qt::AlignLeft : Qt::AlignHCenter);
}

void AlertTable::AddRow(int row, QGridLayout& grid) {
  const AlertRow& text = tab_.rows[static_cast<std::size_t>(row)];
  Row controls{new QLabel(text.label, this), nullptr, new widgets::Toggle(this)};
  controls.label->setObjectName(NameOf({tab_.label, tab_.firstLabel + row}));
  grid.addWidget(controls.label, row + 1, kLabelColumn);
  if (tab_.mask != nullptr) {
    controls.mask = widgets::Named<QCheckBox>(NameOf({tab_.mask, row}), this);
    controls.mask->setToolTip("Tick to mask the channel's interrupt");
    grid.addWidget(controls.mask, row + 1, kMaskColumn, Qt::AlignCenter);
    OnToggle(*controls.mask, [this, row] { Mask_Click(row); });
  }
  controls.lamp->setObjectName(NameOf({tab_.lamp, row}));
  controls.lamp->setToolTip("Interrupt Status: Green=OK, Red=Bad, Invisible=Disabled");
  grid.addWidget(controls.lamp, row + 1, kLampColumn, Qt::AlignCenter);
  Describe(controls);
  rows_.push_back(controls);
}

void AlertTable::Describe(const Row& row) {
  const QString channel = row.label->text();
  row.lamp->setAccessibleName(channel + " status");
  if (row.mask != nullptr) row.mask->setAccessibleName(channel + " mask");
}

void AlertTable::Mask_Click(int row) {
  const AlertRow& text = tab_.rows[static_cast<std::size_t>(row)];
  const bool on = rows_[static_cast<std::size_t>(row)].mask->isChecked();
  const base::BitField bit{static_cast<std::uint8_t>(text.bit), 1};
  link::ModifyRegister(link::Bus.DeviceAddress, text.maskRegister, base::Mask(bit), base::PutField(0, bit, on ? 1 : 0));
}

void AlertTable::ShowMasks(int reg, int value) {
  for (std::size_t row = 0; row < rows_.size(); ++row) {
    const AlertRow& text = tab_.rows[row];
    if (text.maskRegister == reg) rows_[row].mask->setChecked(base::GetBit(static_cast<unsigned>(value), text.bit));
  }
}

void AlertTable::ShowStatus(int reg, int value) {
  for (std::size_t row = 0; row < rows_.size(); ++row) {
    const AlertRow& text = tab_.rows[row];
    if (text.statusRegister == reg) rows_[row].lamp->SetValue(base::GetBit(static_cast<unsigned>(value), text.bit));
  }
}

void AlertTable::SetLive(int row, bool live) {
  const Row& controls = rows_.at(static_cast<std::size_t>(row));
  controls.label->setEnabled(live);
  if (controls.mask != nullptr) controls.mask->setEnabled(live);
  controls.lamp->setVisible(live);
}

void AlertTable::SetLiveByPins() {
  for (int row = 0; row < static_cast<int>(rows_.size()); ++row) {
    const PinCondition live = tab_.rows[static_cast<std::size_t>(row)].live;
    if (live != nullptr) SetLive(row, live(chip::Model.PinFunctions));
  }
}

void AlertTable::EnableLabel(int row, bool on) {
  rows_.at(static_cast<std::size_t>(row)).label->setEnabled(on);
}

void AlertTable::SetCaption(int row, const QString& caption) {
  const Row& controls = rows_.at(static_cast<std::size_t>(row));
  controls.label->setText(caption);
  Describe(controls);
}

}  // namespace zth::windows

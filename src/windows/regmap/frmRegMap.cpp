#include "windows/regmap/frmRegMap.h"

#include <algorithm>
#include <utility>

#include <QCheckBox>
#include <QEvent>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QStringList>
#include <QTabWidget>
#include <QTreeWidget>

#include "base/NumberText.h"
#include "base/Rounding.h"
#include "chip/ChipState.h"
#include "chip/RegMapStuff.h"
#include "link/Declarations.h"
#include "link/Transfers.h"
#include "link/USBStuff.h"
#include "platform/Guard.h"
#include "windows/BoxHint.h"
#include "windows/PendingMarks.h"
#include "windows/SharedState.h"
#include "windows/limits/frmLimits.h"
#include "windows/regmap/AllRegisters.h"
#include "windows/regmap/BitDisplay.h"
#include "windows/regmap/RegisterTexts.h"
#include "windows/regmap/RegisterTree.h"

namespace zth::windows {
namespace {

constexpr int kRegisterLevels = 3;

QString Hex(std::int32_t value) {
  return QString::fromStdString(base::HexText(value));
}

std::int32_t HexReading(const QLineEdit& box) {
  return base::LeadingHex(box.text().toStdString());
}

std::int32_t DecimalReading(const QLineEdit& box) {
  return base::RoundToInt(base::LeadingDecimal(box.text().toStdString()));
}

const chip::RegisterEntry* EntryOf(const QTreeWidgetItem& node) {
  const int row = node.childCount() == 0 ? chip::RowOfName(node.text(0).toStdString()) : -1;
  return row < 0 ? nullptr : &chip::Model.RegisterTable.at(static_cast<std::size_t>(row));
}

const chip::RegisterEntry& EntryOf(int row) {
  return chip::Model.RegisterTable.at(static_cast<std::size_t>(row));
}

/// The message below the search box; empty when all matches are in the tree.
QString SearchNote(const std::vector<std::int32_t>& beside, bool any) {
  if (beside.empty()) return any ? "" : "No register has such a name, bit or address.";
  QStringList addresses;
  for (const std::int32_t address : beside) addresses << HexWithSuffix(address);
  const QString name = chip::RowOfAddress(beside[0]) < 0 ? "" : DescriptionOf(EntryOf(chip::RowOfAddress(beside[0])));
  if (beside.size() > 1) return "Not in the tree; read them by address: " + addresses.join(", ");
  return "Not in the tree; read it by address: " + (addresses << name).join(' ').trimmed();
}

void CollectRows(const QTreeWidgetItem& node, QStringList& rows) {
  if (node.isHidden()) return;
  if (const chip::RegisterEntry* entry = EntryOf(node)) {
    const QVariant read = node.data(0, kReadRole);
    rows << RowText(*entry, read.isValid() ? read.toInt() : -1);
  }
  for (int i = 0; i < node.childCount(); ++i) CollectRows(*node.child(i), rows);
}

}  // namespace

void frmRegMap::Form_Load() {
  BuildRegisterTree(*TreeView1_);
  TreeView1_->topLevelItem(0)->setExpanded(true);
  txtFind_->setFocus();
  Shared.RegMapOpen = true;
}

void frmRegMap::Form_Unload() {
  Shared.RegMapOpen = false;
}

bool frmRegMap::ContinuousRead() const {
  return chkContRead_->isChecked();
}

void frmRegMap::TreeView1_NodeClick(const QTreeWidgetItem& node) {
  if (FullPath(node).split('\\').size() < kRegisterLevels) return;
  const int row = chip::RowOfName(node.text(0).toStdString());
  if (row >= 0) ShowRegisterDetails(row);
}

void frmRegMap::ShowRegisterDetails(int row) {
  const chip::RegisterEntry& entry = EntryOf(row);
  lblRegDescription_->setText(DescriptionOf(entry));
  lblCurrentAddr_->setText(HexWithSuffix(entry.Address));
  SetAddressBox(lblCurrentAddr_->text());
  lblReadOnly_->setText(entry.ReadOnly ? "Yes" : "No");
  fraBits_->ShowBitNames(QString::fromStdString(entry.BitNames));
  shown_ = Shown{entry.Address, row};
  const int value = ReadShown();
  if (IsUnread()) return;
  MarkNodes(entry.Address, value);
  all_->Note(entry.Address, value);
}

int frmRegMap::ReadShown() {
  const link::FailureWatch watch;
  const int value = link::ReadRegister(link::Bus.DeviceAddress, shown_->address);
  NoteOrigin(watch.Failed());
  if (!IsUnread()) NoteStatusRead(TheDesktop(), shown_->address, value);
  lblDecVal_->setText(QString::number(value));
  lblHexVal_->setText(Hex(value));
  fraBits_->ShowRegisterBits(value);
  TellWrites();
  return value;
}

void frmRegMap::TellWrites() {
  const std::int32_t address = HexReading(*txtReadAddr_);
  const bool same = shown_ && shown_->address == address;
  const bool own = same && !IsOfOtherChip() && !IsUnread();
  const QString name = same && shown_->row >= 0 ? QString::fromStdString(EntryOf(shown_->row).Name) : QString();
  QString origin;
  if (!shown_) origin = "\nNothing has been read yet: the digits are not this register's.";
  if (shown_ && !same) origin = "\nThe digits were read from " + HexWithSuffix(shown_->address) + ".";
  if (same && !own) origin = "\nThe digits were read from another chip.";
  if (same && IsUnread()) origin = "\nThe digits are not this register's: their transfer failed.";
  for (int bit = 0; bit < BitDisplay::kBits; ++bit) {
    fraBits_->TellFlip(bit, WriteHint(address, fraBits_->Value() ^ (1 << bit), name) + origin, !own);
  }
  const std::int32_t value = DecimalReading(*txtDec_);
  const QString write = WriteHint(address, value, name);
  cmdWrite_->setToolTip(write);
  cmdWrite_->setAccessibleDescription(write);
  const QString beyond = ValueHint(value);
  for (QLineEdit* box : {txtHex_, txtDec_}) {
    ShowHint(*box, beyond, write);
    if (beyond.isEmpty()) box->setAccessibleDescription(write);
  }
  ShowHint(*txtReadAddr_, AddressHint(address));
  ShowWrite();
}

void frmRegMap::ShowWrite() {
  const auto pointed = std::ranges::find_if(writers_, &QWidget::underMouse);
  const auto focused = std::ranges::find_if(writers_, &QWidget::hasFocus);
  const auto told = pointed != writers_.end() ? pointed : focused;
  lblWrites_->setText(told != writers_.end() ? (*told)->toolTip() : QString());
}

void frmRegMap::SetAddressBox(const QString& text) {
  if (keepsAddress_) return;
  txtReadAddr_->setModified(false);
  if (txtReadAddr_->text() == text.toUpper()) return;
  // Keep the cursor, so that a read while the user types does not split the digits.
  const int cursor = txtReadAddr_->cursorPosition();
  txtReadAddr_->setText(text);
  txtReadAddr_->setCursorPosition(cursor);
}

void frmRegMap::RepeatRead() {
  // Reads the address in the box, even if half typed. But only a read requested by the user may replace the text being
  // typed.
  const QScopedValueRollback keeps(keepsAddress_, txtReadAddr_->hasFocus() && txtReadAddr_->isModified());
  cmdRead_Click();
}

void frmRegMap::cmdRead_Click() {
  const std::int32_t address = HexReading(*txtReadAddr_);
  const int row = chip::RowOfAddress(address);
  if (row >= 0) {
    ShowRegisterDetails(row);
  } else {
    ShowUnknown(address);
  }
}

void frmRegMap::ShowUnknown(std::int32_t address) {
  lblRegDescription_->setText("Unknown");
  lblCurrentAddr_->setText(HexWithSuffix(address));
  SetAddressBox(lblCurrentAddr_->text());
  fraBits_->ShowBitNames("7:6:5:4:3:2:1:0");
  shown_ = Shown{address, -1};
  ReadShown();
}

void frmRegMap::Reread() {
  // A bar about another chip belongs to the tree's page, which answers it whichever page is shown.
  if (tabPages_->currentWidget() == all_ && !IsOfOtherChip()) {
    all_->ReadAgain();
    return;
  }
  if (!shown_) return;
  if (shown_->row >= 0) {
    ShowRegisterDetails(shown_->row);
  } else {
    ShowUnknown(shown_->address);
  }
}

void frmRegMap::OriginChanged() {
  const link::ChipId inUse = link::ChipInUse();
  if (std::exchange(marksOf_, inUse) != inUse) {
    ClearMarks();
    all_->Forget();
  }
  fraDetails_->setTitle("Register Details" + OriginNote());
  for (QLabel* value : {lblHexVal_, lblDecVal_}) MarkControl(*value, *this, false, IsOfOtherChip() || IsUnread());
  TellWrites();
}

void frmRegMap::ClearMarks() {
  for (QTreeWidgetItemIterator at(TreeView1_); *at != nullptr; ++at) {
    (*at)->setData(0, Qt::FontRole, {});
    (*at)->setData(0, kReadRole, {});
    (*at)->setToolTip(0, {});
  }
}

void frmRegMap::cmdWrite_Click() {
  link::WriteRegisterValue(link::Bus.DeviceAddress, HexReading(*txtReadAddr_), DecimalReading(*txtDec_));
  cmdRead_Click();
}

void frmRegMap::lblBit_Click(int bit) {
  fraBits_->Flip(bit);
  // Writes the digits on the screen, whatever address the box holds by now.
  link::WriteRegisterValue(link::Bus.DeviceAddress, HexReading(*txtReadAddr_), fraBits_->Value());
  cmdRead_Click();
}

void frmRegMap::txtReadAddr_Change() {
  const QString upper = txtReadAddr_->text().toUpper();
  if (txtReadAddr_->text() != upper) {
    const bool typed = txtReadAddr_->isModified();
    const int cursor = txtReadAddr_->cursorPosition();
    txtReadAddr_->setText(upper);
    txtReadAddr_->setCursorPosition(cursor);
    txtReadAddr_->setModified(typed);
  }
  TellWrites();
}

void frmRegMap::txtDec_Change() {
  if (!UpdatingValue) {
    UpdatingValue = true;
    txtHex_->setText(Hex(DecimalReading(*txtDec_)));
    UpdatingValue = false;
  }
  TellWrites();
}

void frmRegMap::txtHex_Change() {
  if (!UpdatingValue) {
    UpdatingValue = true;
    txtDec_->setText(QString::number(HexReading(*txtHex_)));
    UpdatingValue = false;
  }
  TellWrites();
}

void frmRegMap::MarkNodes(std::int32_t address, int value) {
  for (QTreeWidgetItemIterator at(TreeView1_); *at != nullptr; ++at) {
    const chip::RegisterEntry* entry = EntryOf(**at);
    if (entry == nullptr || entry->Address != address) continue;
    QFont font = (*at)->font(0);
    font.setBold(value != entry->Default);
    (*at)->setFont(0, font);
    (*at)->setData(0, kReadRole, value);
    (*at)->setToolTip(0, QString("%1, default %2, last read %3")
                             .arg(HexWithSuffix(entry->Address), HexWithSuffix(entry->Default), HexWithSuffix(value)));
  }
}

void frmRegMap::txtFind_Change() {
  const QString text = txtFind_->text().trimmed();
  const bool any = FilterRegisterTree(*TreeView1_, text);
  lblNoMatch_->setText(text.isEmpty() ? QString() : SearchNote(AddressesBesideTree(text), any));
  lblNoMatch_->setVisible(!lblNoMatch_->text().isEmpty());
  if (text.isEmpty() && TreeView1_->currentItem() != nullptr) TreeView1_->scrollToItem(TreeView1_->currentItem());
}

void frmRegMap::txtFind_Enter() {
  const QString text = txtFind_->text().trimmed();
  if (text.isEmpty()) return;
  if (QTreeWidgetItem* first = FirstRegister(*TreeView1_)) {
    // Reads it once, like any other way to it: selecting the node that is already current would signal no change.
    if (first == TreeView1_->currentItem()) {
      TreeView1_NodeClick(*first);
    } else {
      TreeView1_->setCurrentItem(first);
    }
  } else if (const auto beside = AddressesBesideTree(text); !beside.empty()) {
    // A read may clear such a register, so only the address is filled in: the user presses the button.
    txtReadAddr_->setText(HexWithSuffix(beside[0]));
    cmdRead_->setFocus();
  }
}

void frmRegMap::CopyRows() {
  const QTreeWidgetItem* node = TreeView1_->currentItem();
  if (node == nullptr) return;
  QStringList rows;
  CollectRows(*node, rows);
  Services().clipboard.PutText(rows.join('\n'));
}

bool frmRegMap::eventFilter(QObject* watched, QEvent* event) {
  const QEvent::Type type = event->type();
  if ((type == QEvent::Enter || type == QEvent::Leave || type == QEvent::FocusIn || type == QEvent::FocusOut) &&
      std::ranges::count(writers_, watched) != 0) {
    // Queued: the control itself handles the event first.
    QMetaObject::invokeMethod(this, &frmRegMap::ShowWrite, Qt::QueuedConnection);
  }
  if (watched == TreeView1_->viewport()) {
    const bool press = event->type() == QEvent::MouseButtonPress || event->type() == QEvent::MouseButtonDblClick;
    if (press) {
      treePressed_ = true;
      shownByPress_ = false;
    }
    if (event->type() == QEvent::MouseButtonRelease) treePressed_ = false;
  }
  if (watched == txtFind_ && event->type() == QEvent::KeyPress) {
    const auto& pressed = *static_cast<QKeyEvent*>(event);
    const int key = pressed.key();
    if (key == Qt::Key_Return || key == Qt::Key_Enter) {
      // The key goes no further: the window would press the button that has the focus by then, and so read.
      if (!pressed.isAutoRepeat()) platform::Guarded([this] { txtFind_Enter(); })();
      return true;
    }
  }
  return ChildWindow::eventFilter(watched, event);
}

void frmRegMap::changeEvent(QEvent* event) {
  ChildWindow::changeEvent(event);
  if (event->type() != QEvent::PaletteChange || all_ == nullptr) return;
  ColourRegisterTree(*TreeView1_, palette());
  OriginChanged();
}

}  // namespace zth::windows

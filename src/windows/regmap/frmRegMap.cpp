#include "windows/regmap/frmRegMap.h"

#include <algorithm>

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QStringList>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "base/NumberText.h"
#include "base/Rounding.h"
#include "base/Twips.h"
#include "chip/RegMapStuff.h"
#include "link/Declarations.h"
#include "link/USBStuff.h"
#include "platform/Guard.h"
#include "windows/Handlers.h"
#include "windows/SharedState.h"
#include "windows/regmap/BitDisplay.h"
#include "windows/regmap/BoxHint.h"
#include "windows/regmap/RegisterSearch.h"
#include "windows/regmap/RegisterTree.h"

namespace zth::windows {
namespace {

constexpr int kIndentationTwips = 200;
constexpr int kRegisterLevels = 3;

template <typename Control>
Control* Named(Control* control, const char* name) {
  control->setObjectName(name);
  return control;
}

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
  return row < 0 ? nullptr : &chip::RegisterTable.at(static_cast<std::size_t>(row));
}

/// Shows the registers that fit and what leads to them. True when something of the node is left.
bool Filter(QTreeWidgetItem& node, const QString& text) {
  bool any = false;
  if (const chip::RegisterEntry* entry = EntryOf(node)) any = FitsSearch(*entry, text);
  for (int i = 0; i < node.childCount(); ++i) any = Filter(*node.child(i), text) || any;
  node.setHidden(!any);
  if (any && !text.isEmpty()) node.setExpanded(true);
  return any;
}

QString Description(const chip::RegisterEntry& entry) {
  return QString::fromStdString(entry.Caption) + " Register";
}

/// So that the window does not change its width from register to register.
int WidestDescription(const QFontMetrics& metrics) {
  int widest = 0;
  for (const chip::RegisterEntry& entry : chip::RegisterTable) {
    widest = std::max(widest, metrics.horizontalAdvance(Description(entry)));
  }
  return widest;
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

frmRegMap::frmRegMap(const Context& context) : ChildWindow("frmRegMap", "Register Map", context) {
  auto* right = new QVBoxLayout;
  auto* tree = MakeTreeFrame();
  right->addWidget(MakeReadWriteFrame());
  right->addWidget(MakeDetailsFrame());
  fraBits_ = new BitDisplay(this);
  right->addWidget(fraBits_);
  right->addStretch();

  auto* row = new QHBoxLayout(this);
  row->addWidget(tree, 1);
  row->addLayout(right);

  connect(fraBits_, &BitDisplay::lblBit_Click, this,
          [this](int bit) { platform::Guarded([this, bit] { lblBit_Click(bit); })(); });
  ConnectTree();
  ConnectBoxes();
}

QGroupBox* frmRegMap::MakeTreeFrame() {
  auto* frame = Named(new QGroupBox("Register Map", this), "Frame1");
  txtFind_ = Named(new QLineEdit(frame), "txtFind");
  txtFind_->setPlaceholderText("Name, bit or address");
  txtFind_->setClearButtonEnabled(true);
  txtFind_->installEventFilter(this);
  auto* lblFind = Named(new QLabel("&Search", frame), "lblFind");
  lblFind->setBuddy(txtFind_);
  TreeView1_ = Named(new QTreeWidget(frame), "TreeView1");
  TreeView1_->setHeaderHidden(true);
  TreeView1_->setIndentation(base::PixelsFromTwips(kIndentationTwips));
  TreeView1_->setExpandsOnDoubleClick(true);
  TreeView1_->setUniformRowHeights(true);
  TreeView1_->setAccessibleName("Registers");
  TreeView1_->viewport()->installEventFilter(this);
  TreeView1_->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
  TreeView1_->header()->setStretchLastSection(false);
  // Wide enough for the longest name with its two levels, high enough to hold a group.
  TreeView1_->setMinimumSize(fontMetrics().averageCharWidth() * 42, fontMetrics().height() * 20);
  lblNoMatch_ = Named(new QLabel("No register has such a name, bit or address.", frame), "lblNoMatch");
  lblNoMatch_->setWordWrap(true);
  lblNoMatch_->hide();

  auto* grid = new QGridLayout(frame);
  grid->addWidget(lblFind, 0, 0);
  grid->addWidget(txtFind_, 0, 1);
  grid->addWidget(lblNoMatch_, 1, 0, 1, 2);
  grid->addWidget(TreeView1_, 2, 0, 1, 2);
  grid->setRowStretch(2, 1);
  return frame;
}

QGroupBox* frmRegMap::MakeReadWriteFrame() {
  auto* frame = Named(new QGroupBox("Read/Write", this), "Frame6");
  auto* grid = new QGridLayout(frame);
  const auto addBox = [&](int row, const char* labelName, const char* caption, const char* name) {
    auto* box = Named(new QLineEdit(frame), name);
    auto* label = Named(new QLabel(caption, frame), labelName);
    label->setBuddy(box);
    grid->addWidget(label, row, 0);
    grid->addWidget(box, row, 1);
    return box;
  };
  txtReadAddr_ = addBox(0, "Label11", "A&ddress", "txtReadAddr");
  cmdRead_ = Named(new QPushButton("&Read", frame), "cmdRead");
  chkContRead_ = Named(new QCheckBox("Conti&nuous Read", frame), "chkContRead");
  grid->addWidget(cmdRead_, 0, 2);
  grid->addWidget(chkContRead_, 1, 1, 1, 2);
  txtHex_ = addBox(2, "Label5", "Value(He&x)", "txtHex");
  txtDec_ = addBox(3, "Label6", "Value(D&ec)", "txtDec");
  cmdWrite_ = Named(new QPushButton("Wri&te", frame), "cmdWrite");
  grid->addWidget(cmdWrite_, 3, 2);
  grid->setColumnStretch(1, 1);
  chkContRead_->setToolTip("Repeats the read once a second");
  return frame;
}

QGroupBox* frmRegMap::MakeDetailsFrame() {
  auto* frame = Named(new QGroupBox("Register Details", this), "Frame3");
  auto* grid = new QGridLayout(frame);
  lblRegDescription_ = Named(new QLabel("Description", frame), "lblRegDescription");
  QFont heavy = lblRegDescription_->font();
  heavy.setBold(true);
  lblRegDescription_->setFont(heavy);
  lblRegDescription_->setMinimumWidth(WidestDescription(QFontMetrics(heavy)));
  grid->addWidget(lblRegDescription_, 0, 0, 1, 2);
  const auto addValue = [&](int row, const char* labelName, const char* caption, const char* name, const char* start) {
    auto* value = Named(new QLabel(start, frame), name);
    grid->addWidget(Named(new QLabel(caption, frame), labelName), row, 0);
    grid->addWidget(value, row, 1);
    return value;
  };
  lblCurrentAddr_ = addValue(1, "Label8", "Address", "lblCurrentAddr", "Address");
  lblHexVal_ = addValue(2, "Label9", "Current Value (Hex)", "lblHexVal", "HexVal");
  lblDecVal_ = addValue(3, "Label10", "Current Value (Dec)", "lblDecVal", "DecVal");
  lblReadOnly_ = addValue(4, "Label1", "Read Only", "lblReadOnly", "ReadOnly");
  grid->setColumnMinimumWidth(0, fontMetrics().averageCharWidth() * 20);
  grid->setColumnStretch(1, 1);
  return frame;
}

void frmRegMap::ConnectTree() {
  const auto click = [this](const QTreeWidgetItem* node) {
    if (node != nullptr) platform::Guarded([this, node] { TreeView1_NodeClick(*node); })();
  };
  // A node is shown once for each click, and when the keyboard moves to it: by the change of the current node, and by
  // the click where it changes nothing.
  connect(TreeView1_, &QTreeWidget::currentItemChanged, this, [this, click](QTreeWidgetItem* node) {
    shownByPress_ = treePressed_;
    click(node);
  });
  connect(TreeView1_, &QTreeWidget::itemClicked, this, [this, click](QTreeWidgetItem* node) {
    if (!shownByPress_) click(node);
    shownByPress_ = false;
  });
  auto* copy = Named(new QAction("&Copy", TreeView1_), "actCopy");
  copy->setShortcut(QKeySequence::Copy);
  copy->setShortcutContext(Qt::WidgetWithChildrenShortcut);
  connect(copy, &QAction::triggered, this, [this] { CopyRows(); });
  TreeView1_->addAction(copy);
  TreeView1_->setContextMenuPolicy(Qt::ActionsContextMenu);
}

void frmRegMap::ConnectBoxes() {
  OnClick(*cmdRead_, [this] { cmdRead_Click(); });
  OnClick(*cmdWrite_, [this] { cmdWrite_Click(); });
  OnChange(*txtReadAddr_, [this] { txtReadAddr_Change(); });
  OnChange(*txtDec_, [this] { txtDec_Change(); });
  OnChange(*txtHex_, [this] { txtHex_Change(); });
  OnChange(*txtFind_, [this] { txtFind_Change(); });
  for (QLineEdit* box : {txtHex_, txtDec_}) {
    connect(box, &QLineEdit::returnPressed, this, platform::Guarded([this] { cmdWrite_Click(); }));
  }
}

void frmRegMap::Form_Load() {
  BuildRegisterTree(*TreeView1_);
  TreeView1_->topLevelItem(0)->setExpanded(true);
  txtFind_->setFocus();
  RegMapOpen = true;
}

void frmRegMap::Form_Unload() {
  RegMapOpen = false;
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
  const chip::RegisterEntry& entry = chip::RegisterTable.at(static_cast<std::size_t>(row));
  lblRegDescription_->setText(Description(entry));
  lblCurrentAddr_->setText(HexWithSuffix(entry.Address));
  SetAddressBox(lblCurrentAddr_->text());
  lblReadOnly_->setText(entry.ReadOnly ? "Yes" : "No");
  fraBits_->ShowBitNames(QString::fromStdString(entry.BitNames));
  const int value = link::ReadRegister(link::DeviceAddress, entry.Address);
  ShowValue(value);
  MarkNodes(entry.Address, value);
}

void frmRegMap::ShowValue(int value) {
  lblDecVal_->setText(QString::number(value));
  lblHexVal_->setText(Hex(value));
  fraBits_->ShowRegisterBits(value);
}

void frmRegMap::SetAddressBox(const QString& text) {
  // The cursor stays, so that a read in the middle of typing does not part the digits.
  const int cursor = txtReadAddr_->cursorPosition();
  txtReadAddr_->setText(text);
  txtReadAddr_->setCursorPosition(cursor);
}

void frmRegMap::cmdRead_Click() {
  const std::int32_t address = HexReading(*txtReadAddr_);
  const int row = chip::RowOfAddress(address);
  if (row >= 0) {
    ShowRegisterDetails(row);
    return;
  }
  lblRegDescription_->setText("Unknown");
  lblCurrentAddr_->setText(HexWithSuffix(address));
  SetAddressBox(lblCurrentAddr_->text());
  fraBits_->ShowBitNames("7:6:5:4:3:2:1:0");
  ShowValue(link::ReadRegister(link::DeviceAddress, address));
}

void frmRegMap::cmdWrite_Click() {
  link::WriteRegisterValue(link::DeviceAddress, HexReading(*txtReadAddr_), DecimalReading(*txtDec_));
  cmdRead_Click();
}

void frmRegMap::lblBit_Click(int bit) {
  fraBits_->Flip(bit);
  // The digits on the screen are what is written, whatever address the box holds by now.
  link::WriteRegisterValue(link::DeviceAddress, HexReading(*txtReadAddr_), fraBits_->Value());
  cmdRead_Click();
}

void frmRegMap::txtReadAddr_Change() {
  const QString upper = txtReadAddr_->text().toUpper();
  if (txtReadAddr_->text() != upper) SetAddressBox(upper);
  MarkBoxesBeyondByte();
}

void frmRegMap::txtDec_Change() {
  if (!UpdatingValue) {
    UpdatingValue = true;
    txtHex_->setText(Hex(DecimalReading(*txtDec_)));
    UpdatingValue = false;
  }
  MarkBoxesBeyondByte();
}

void frmRegMap::txtHex_Change() {
  if (!UpdatingValue) {
    UpdatingValue = true;
    txtDec_->setText(QString::number(HexReading(*txtHex_)));
    UpdatingValue = false;
  }
  MarkBoxesBeyondByte();
}

void frmRegMap::MarkBoxesBeyondByte() {
  ShowHint(*txtReadAddr_, AddressHint(HexReading(*txtReadAddr_)));
  const QString hint = ValueHint(DecimalReading(*txtDec_));
  ShowHint(*txtHex_, hint);
  ShowHint(*txtDec_, hint);
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
  bool any = false;
  for (int i = 0; i < TreeView1_->topLevelItemCount(); ++i) any = Filter(*TreeView1_->topLevelItem(i), text) || any;
  lblNoMatch_->setVisible(!any);
  if (text.isEmpty() && TreeView1_->currentItem() != nullptr) TreeView1_->scrollToItem(TreeView1_->currentItem());
}

void frmRegMap::CopyRows() {
  const QTreeWidgetItem* node = TreeView1_->currentItem();
  if (node == nullptr) return;
  QStringList rows;
  CollectRows(*node, rows);
  QApplication::clipboard()->setText(rows.join('\n'));
}

bool frmRegMap::eventFilter(QObject* watched, QEvent* event) {
  if (watched == TreeView1_->viewport()) {
    const bool press = event->type() == QEvent::MouseButtonPress || event->type() == QEvent::MouseButtonDblClick;
    if (press) {
      treePressed_ = true;
      shownByPress_ = false;
    }
    if (event->type() == QEvent::MouseButtonRelease) treePressed_ = false;
  }
  if (watched == txtFind_ && event->type() == QEvent::KeyPress) {
    const int key = static_cast<QKeyEvent*>(event)->key();
    if (key == Qt::Key_Escape && !txtFind_->text().isEmpty()) {
      txtFind_->clear();
      return true;
    }
    if (key == Qt::Key_Down) {
      TreeView1_->setFocus();
      return true;
    }
  }
  return ChildWindow::eventFilter(watched, event);
}

void frmRegMap::changeEvent(QEvent* event) {
  ChildWindow::changeEvent(event);
  if (event->type() != QEvent::PaletteChange || TreeView1_ == nullptr) return;
  ColourRegisterTree(*TreeView1_, palette());
  MarkBoxesBeyondByte();
}

}  // namespace zth::windows

#include <algorithm>

#include <QAction>
#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "base/Twips.h"
#include "chip/ChipState.h"
#include "chip/RegMapStuff.h"
#include "widgets/Named.h"
#include "widgets/PopUpMenu.h"
#include "windows/Handlers.h"
#include "windows/SearchKeys.h"
#include "windows/regmap/AllRegisters.h"
#include "windows/regmap/BitDisplay.h"
#include "windows/regmap/RegisterTexts.h"
#include "windows/regmap/frmRegMap.h"

// Creates, lays out and connects the controls of the register map.
namespace zth::windows {
namespace {

constexpr int kIndentationTwips = 200;

/// Keeps the window's width the same for all registers.
int WidestDescription(const QFontMetrics& metrics) {
  int widest = 0;
  for (const chip::RegisterEntry& entry : chip::Model.RegisterTable) {
    widest = std::max(widest, metrics.horizontalAdvance(DescriptionOf(entry)));
  }
  return widest;
}

}  // namespace

frmRegMap::frmRegMap(const Context& context) : ChildWindow("frmRegMap", "Register Map", context, kShowsDetails) {
  // The first page is the original window with its tree; the table is on the second page.
  tabPages_ = widgets::Named<QTabWidget>("tabPages", this);
  tabPages_->setDocumentMode(true);  // the pages keep the window's own background
  tabPages_->addTab(MakeFirstPage(), "&By topic");
  all_ = new AllRegisters({Services(), TheDesktop()}, this);
  tabPages_->addTab(all_, "A&ll registers");
  OnTab(*tabPages_);
  (new QVBoxLayout(this))->addWidget(tabPages_);

  connect(fraBits_, &BitDisplay::lblBit_Click, this,
          [this](int bit) { ByUser(*fraBits_, [this, bit] { lblBit_Click(bit); })(); });
  ConnectTree();
  ConnectBoxes();
  writers_ = {txtHex_, txtDec_, cmdWrite_};
  for (auto* bit : fraBits_->findChildren<BitLabel*>()) writers_.push_back(bit);
  for (QWidget* writer : writers_) writer->installEventFilter(this);
  TellWrites();
}

QWidget* frmRegMap::MakeFirstPage() {
  auto* page = new QWidget(this);
  auto* right = new QVBoxLayout;
  auto* tree = MakeTreeFrame();
  right->addWidget(MakeReadWriteFrame());
  right->addWidget(MakeDetailsFrame());
  fraBits_ = new BitDisplay(this);
  right->addWidget(fraBits_);
  lblWrites_ = widgets::Named<QLabel>("lblWrites", this);
  lblWrites_->setWordWrap(true);
  lblWrites_->setAlignment(Qt::AlignLeft | Qt::AlignTop);
  lblWrites_->setTextFormat(Qt::PlainText);
  lblWrites_->setMinimumHeight(3 * fontMetrics().lineSpacing());  // nothing moves when it shows a text
  right->addWidget(lblWrites_);
  right->addStretch();

  auto* row = new QHBoxLayout(page);
  row->addWidget(tree, 1);
  row->addLayout(right);
  return page;
}

QGroupBox* frmRegMap::MakeTreeFrame() {
  auto* frame = widgets::Named<QGroupBox>("Frame1", "Register Map", this);
  txtFind_ = widgets::Named<QLineEdit>("txtFind", frame);
  txtFind_->setPlaceholderText("Name, bit or address");
  txtFind_->setClearButtonEnabled(true);
  txtFind_->installEventFilter(this);
  auto* lblFind = widgets::Named<QLabel>("lblFind", "&Search", frame);
  lblFind->setBuddy(txtFind_);
  TreeView1_ = widgets::Named<QTreeWidget>("TreeView1", frame);
  AddSearchKeys(*txtFind_, *TreeView1_);
  TreeView1_->setHeaderHidden(true);
  TreeView1_->setIndentation(base::PixelsFromTwips(kIndentationTwips));
  TreeView1_->setExpandsOnDoubleClick(true);
  TreeView1_->setUniformRowHeights(true);
  TreeView1_->setAccessibleName("Registers");
  TreeView1_->viewport()->installEventFilter(this);
  TreeView1_->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
  TreeView1_->header()->setStretchLastSection(false);
  // Wide enough for the longest name with its two levels, tall enough for a group.
  TreeView1_->setMinimumSize(fontMetrics().averageCharWidth() * 42, fontMetrics().height() * 20);
  lblNoMatch_ = widgets::Named<QLabel>("lblNoMatch", frame);
  lblNoMatch_->setWordWrap(true);
  lblNoMatch_->setTextFormat(Qt::PlainText);
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
  auto* frame = widgets::Named<QGroupBox>("Frame6", "Read/Write", this);
  auto* grid = new QGridLayout(frame);
  const auto addBox = [&](int row, const char* labelName, const char* caption, const char* name) {
    auto* box = widgets::Named<QLineEdit>(name, frame);
    auto* label = widgets::Named<QLabel>(labelName, caption, frame);
    label->setBuddy(box);
    grid->addWidget(label, row, 0);
    grid->addWidget(box, row, 1);
    return box;
  };
  txtReadAddr_ = addBox(0, "Label11", "A&ddress", "txtReadAddr");
  cmdRead_ = widgets::Named<QPushButton>("cmdRead", "&Read", frame);
  chkContRead_ = widgets::Named<QCheckBox>("chkContRead", "Conti&nuous Read", frame);
  grid->addWidget(cmdRead_, 0, 2);
  grid->addWidget(chkContRead_, 1, 1, 1, 2);
  txtHex_ = addBox(2, "Label5", "Value(He&x)", "txtHex");
  txtDec_ = addBox(3, "Label6", "Value(D&ec)", "txtDec");
  // An empty box counts as 0.
  for (QLineEdit* box : {txtReadAddr_, txtHex_, txtDec_}) box->setPlaceholderText("0");
  cmdWrite_ = widgets::Named<QPushButton>("cmdWrite", "Wr&ite", frame);
  grid->addWidget(cmdWrite_, 3, 2);
  grid->setColumnStretch(1, 1);
  chkContRead_->setToolTip("Repeats the read once a second");
  return frame;
}

QGroupBox* frmRegMap::MakeDetailsFrame() {
  auto* frame = widgets::Named<QGroupBox>("Frame3", "Register Details", this);
  fraDetails_ = frame;
  auto* grid = new QGridLayout(frame);
  lblRegDescription_ = widgets::Named<QLabel>("lblRegDescription", "Description", frame);
  QFont heavy = lblRegDescription_->font();
  heavy.setBold(true);
  lblRegDescription_->setFont(heavy);
  lblRegDescription_->setMinimumWidth(WidestDescription(QFontMetrics(heavy)));
  grid->addWidget(lblRegDescription_, 0, 0, 1, 2);
  const auto addValue = [&](int row, const char* labelName, const char* caption, const char* name, const char* start) {
    auto* value = widgets::Named<QLabel>(name, start, frame);
    grid->addWidget(widgets::Named<QLabel>(labelName, caption, frame), row, 0);
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
    if (node != nullptr) ByUser(*TreeView1_, [this, node] { TreeView1_NodeClick(*node); })();
  };
  // A node is shown once for each click, and when the keyboard moves to it: by the change of the current node, or by
  // the click if that changes nothing.
  connect(TreeView1_, &QTreeWidget::currentItemChanged, this, [this, click](QTreeWidgetItem* node) {
    shownByPress_ = treePressed_;
    click(node);
  });
  connect(TreeView1_, &QTreeWidget::itemClicked, this, [this, click](QTreeWidgetItem* node) {
    if (!shownByPress_) click(node);
    shownByPress_ = false;
  });
  auto* copy = widgets::Named<QAction>("actCopy", "&Copy", TreeView1_);
  copy->setShortcut(QKeySequence::Copy);
  copy->setShortcutContext(Qt::WidgetWithChildrenShortcut);
  connect(copy, &QAction::triggered, this, [this] { CopyRows(); });
  widgets::AddPopUpMenu(*TreeView1_, "mnuTree", *copy);
}

void frmRegMap::ConnectBoxes() {
  OnClick(*cmdRead_, [this] { cmdRead_Click(); });
  OnClick(*cmdWrite_, [this] { cmdWrite_Click(); });
  OnChange(*txtReadAddr_, [this] { txtReadAddr_Change(); });
  OnChange(*txtDec_, [this] { txtDec_Change(); });
  OnChange(*txtHex_, [this] { txtHex_Change(); });
  OnChange(*txtFind_, [this] { txtFind_Change(); });
  for (QLineEdit* box : {txtHex_, txtDec_}) {
    connect(box, &QLineEdit::returnPressed, this, ByUser(*box, [this] { cmdWrite_Click(); }));
  }
}

}  // namespace zth::windows

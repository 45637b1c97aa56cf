#include "windows/guide/frmGuide.h"

#include <algorithm>

#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalBlocker>
#include <QSplitter>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "platform/Guard.h"
#include "widgets/Named.h"
#include "windows/Handlers.h"
#include "windows/guide/GuidePages.h"
#include "windows/guide/GuideView.h"

namespace zth::windows {
namespace {

constexpr int kPlaceRole = Qt::UserRole;
constexpr int kTextRole = Qt::UserRole + 1;

/// Hides everything except items that contain the text and their parents. True when the item stays visible.
bool Filter(QTreeWidgetItem& item, const QString& text) {
  bool any = item.data(0, kTextRole).toString().contains(text, Qt::CaseInsensitive);
  for (int i = 0; i < item.childCount(); ++i) any = Filter(*item.child(i), text) || any;
  item.setHidden(!any);
  if (any && !text.isEmpty()) item.setExpanded(true);
  return any;
}

}  // namespace

frmGuide::frmGuide(const Context& context) : ChildWindow("frmGuide", "User's Guide", context) {
  auto* split = widgets::Named<QSplitter>("splGuide", this);
  split->setChildrenCollapsible(false);
  split->addWidget(MakeContents());
  split->addWidget(MakePage());
  split->setStretchFactor(1, 1);
  (new QVBoxLayout(this))->addWidget(split);
  FillContents();
  ColourContents();
  connect(treContents_, &QTreeWidget::currentItemChanged, this, [this](const QTreeWidgetItem* item) {
    if (item != nullptr) platform::Guarded([this, item] { treContents_Picked(*item); })();
  });
  connect(treContents_, &QTreeWidget::itemClicked, this,
          [this](const QTreeWidgetItem* item) { platform::Guarded([this, item] { treContents_Picked(*item); })(); });
  connect(txtPage_, &GuideView::LinkFollowed, this,
          [this](const QString& link) { platform::Guarded([this, link] { FollowLink(link); })(); });
  connect(txtSearch_, &QLineEdit::returnPressed, this, platform::Guarded([this] { txtSearch_Enter(); }));
  OnChange(*txtSearch_, [this] { txtSearch_Change(); });
  OnClick(*cmdBack_, [this] { cmdBack_Click(); });
}

QWidget* frmGuide::MakeContents() {
  auto* side = new QWidget(this);
  cmdBack_ = widgets::Named<QPushButton>("cmdBack", "&Back", side);
  cmdBack_->setToolTip("The place that was read before (Alt+Left)");
  txtSearch_ = widgets::Named<QLineEdit>("txtSearch", side);
  txtSearch_->setPlaceholderText("Any text");
  txtSearch_->setToolTip("Enter: the next place");
  txtSearch_->setClearButtonEnabled(true);
  txtSearch_->installEventFilter(this);
  auto* lblSearch = widgets::Named<QLabel>("lblSearch", "&Search", side);
  lblSearch->setBuddy(txtSearch_);
  treContents_ = widgets::Named<QTreeWidget>("treContents", side);
  treContents_->setHeaderHidden(true);
  treContents_->setUniformRowHeights(true);
  treContents_->setAccessibleName("Contents");
  treContents_->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
  treContents_->header()->setStretchLastSection(false);
  treContents_->setMinimumWidth(fontMetrics().averageCharWidth() * 42);
  lblTold_ = widgets::Named<QLabel>("lblTold", side);
  lblTold_->setWordWrap(true);
  lblTold_->setTextFormat(Qt::PlainText);
  lblTold_->hide();

  auto* top = new QHBoxLayout;
  top->addWidget(cmdBack_);
  top->addWidget(lblSearch);
  top->addWidget(txtSearch_, 1);
  auto* column = new QVBoxLayout(side);
  column->setContentsMargins(0, 0, 0, 0);
  column->addLayout(top);
  column->addWidget(treContents_, 1);
  column->addWidget(lblTold_);
  return side;
}

QWidget* frmGuide::MakePage() {
  txtPage_ = widgets::Named<GuideView>("txtPage", this);
  txtPage_->setAccessibleName("Page");
  txtPage_->setMinimumSize(fontMetrics().averageCharWidth() * 40, fontMetrics().height() * 16);
  txtPage_->installEventFilter(this);
  return txtPage_;
}

void frmGuide::FillContents() {
  QTreeWidgetItem* windows = nullptr;
  std::vector<QTreeWidgetItem*> above;  // the last item of each level
  for (const GuideSection& section : GuideSections()) {
    auto* item = new QTreeWidgetItem(QStringList{section.heading});
    item->setData(0, kPlaceRole, section.Place());
    item->setData(0, kTextRole, section.text);
    const auto level = static_cast<std::size_t>(section.level);
    above.resize(std::min(above.size(), level - 1));
    if (!above.empty()) {
      above.back()->addChild(item);
    } else if (windows != nullptr && section.page.startsWith("windows/")) {
      windows->addChild(item);
    } else {
      treContents_->addTopLevelItem(item);
    }
    if (section.page == "windows/README.md" && section.level == 1) windows = item;
    above.push_back(item);
  }
  treContents_->topLevelItem(0)->setExpanded(true);
}

void frmGuide::Form_Load() {
  Show(GuidePlaceFor({}));
  before_.clear();
  cmdBack_->setEnabled(false);
  txtPage_->setFocus();
}

void frmGuide::Go(const QString& place) {
  if (!GuideHas(place)) {
    lblTold_->setText(place + " is not part of the built-in guide.");
    lblTold_->show();
    return;
  }
  const QString now = txtPage_->PlaceInSight();
  if (now != place) before_.push_back(now);
  Show(place);
}

void frmGuide::Show(const QString& place) {
  lblTold_->hide();
  txtPage_->ShowPlace(place);
  PickInContents(place);
  cmdBack_->setEnabled(!before_.empty());
}

void frmGuide::PickInContents(const QString& place) {
  const QSignalBlocker quiet(treContents_);
  for (QTreeWidgetItemIterator at(treContents_); *at != nullptr; ++at) {
    if ((*at)->data(0, kPlaceRole).toString() != place) continue;
    treContents_->setCurrentItem(*at);
    treContents_->scrollToItem(*at);
    return;
  }
}

void frmGuide::treContents_Picked(const QTreeWidgetItem& item) {
  Go(item.data(0, kPlaceRole).toString());
}

void frmGuide::FollowLink(const QString& link) {
  const QString place = PlaceOf(link, txtPage_->Page());
  if (!place.isEmpty()) {
    Go(place);
  } else if (!Services().shell.Open(link)) {
    lblTold_->setText("No browser has opened " + link);
    lblTold_->show();
  }
}

void frmGuide::cmdBack_Click() {
  if (before_.empty()) return;
  const QString place = before_.back();
  before_.pop_back();
  Show(place);
  if (before_.empty()) txtPage_->setFocus();  // or the focus would be lost with the disabled button
}

void frmGuide::txtSearch_Change() {
  const QString text = txtSearch_->text().trimmed();
  bool any = false;
  for (int i = 0; i < treContents_->topLevelItemCount(); ++i) any = Filter(*treContents_->topLevelItem(i), text) || any;
  txtPage_->MarkFound(text);
  lblTold_->setText("No section holds this text.");
  lblTold_->setVisible(!any);
}

void frmGuide::txtSearch_Enter() {
  const QString text = txtSearch_->text().trimmed();
  if (text.isEmpty() || txtPage_->FindNext(text)) return;
  const QStringList& pages = GuidePages();
  const auto here = pages.indexOf(txtPage_->Page());
  for (qsizetype step = 1; step <= pages.size(); ++step) {
    const QString& page = pages[(here + step) % pages.size()];
    const bool holds = std::ranges::any_of(GuideSections(), [&](const GuideSection& section) {
      return section.page == page && section.text.contains(text, Qt::CaseInsensitive);
    });
    if (!holds) continue;
    Go(page);
    if (txtPage_->FindNext(text)) return;
  }
}

bool frmGuide::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::KeyPress) return ChildWindow::eventFilter(watched, event);
  const auto* key = static_cast<QKeyEvent*>(event);
  if (watched == txtSearch_ && key->key() == Qt::Key_Escape && !txtSearch_->text().isEmpty()) {
    txtSearch_->clear();
    return true;
  }
  if (watched == txtPage_ && key->key() == Qt::Key_Left && key->modifiers() == Qt::AltModifier) {
    cmdBack_Click();
    return true;
  }
  return ChildWindow::eventFilter(watched, event);
}

void frmGuide::ColourContents() {
  const QColor accent = palette().color(QPalette::Highlight);
  const bool lightText = palette().color(QPalette::HighlightedText).lightnessF() > 0.5;
  QPalette colours;
  colours.setResolveMask(0);
  for (const auto group : {QPalette::Active, QPalette::Inactive}) {
    colours.setColor(group, QPalette::Highlight, lightText ? accent.darker(130) : accent.lighter(130));
  }
  treContents_->setPalette(colours);
}

void frmGuide::changeEvent(QEvent* event) {
  ChildWindow::changeEvent(event);
  if (event->type() == QEvent::PaletteChange && treContents_ != nullptr) ColourContents();
}

QSize frmGuide::sizeHint() const {
  // About eighty characters per line next to the contents, limited so that it fits on a small screen.
  return {std::min(fontMetrics().averageCharWidth() * 130, 1200), std::min(fontMetrics().height() * 36, 600)};
}

}  // namespace zth::windows

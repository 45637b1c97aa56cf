#include "windows/tools/SnapshotPage.h"

#include <algorithm>

#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "base/Counted.h"
#include "base/Product.h"
#include "link/ChipId.h"
#include "tasks/RegisterImage.h"
#include "widgets/Named.h"
#include "windows/Handlers.h"
#include "windows/SearchKeys.h"
#include "windows/tools/CompareColumns.h"

namespace zth::windows {
namespace {

constexpr int kLongestName = 100;  // characters

QString CountOf(const tasks::RegisterImage& image) {
  const auto count = std::ranges::count_if(image.bytes, [](const tasks::HeldByte& held) { return held.known != 0; });
  return QString::fromStdString(base::Counted(count, "registers"));
}

}  // namespace

SnapshotPage::SnapshotPage(const Context& context, QWidget* parent)
    : QWidget(parent),
      context_(context),
      snapshots_(context.services.files, SnapshotFolder(context.services.process)),
      canKeep_(!SnapshotFolder(context.services.process).isEmpty()),
      lstSnapshots_(widgets::Named<QTreeWidget>("lstSnapshots", this)),
      txtName_(widgets::Named<QLineEdit>("txtName", this)),
      cmdTake_(widgets::Named<QPushButton>("cmdTake", "Ta&ke Snapshot", this)),
      cmdRename_(widgets::Named<QPushButton>("cmdRename", "&Rename", this)),
      cmdDelete_(widgets::Named<QPushButton>("cmdDelete", "&Delete", this)),
      lblSnapshot_(widgets::Named<QLabel>("lblSnapshot", this)) {
  MakeList();
  txtName_->setMaxLength(kLongestName);
  txtName_->setPlaceholderText("Name of a snapshot");
  KeepRoomForHint(*txtName_);
  cmdRename_->setToolTip("Gives the selected snapshot the name in the box");
  cmdDelete_->setToolTip("Deletes the selected snapshot, after a question");
  auto* lblName = widgets::Named<QLabel>("lblName", "&Name", this);
  lblName->setBuddy(txtName_);
  lblSnapshot_->setWordWrap(true);
  lblSnapshot_->setTextFormat(Qt::PlainText);
  lblSnapshot_->setMinimumHeight(2 * fontMetrics().lineSpacing());
  auto* row = new QHBoxLayout;
  row->addWidget(lblName);
  row->addWidget(txtName_, 1);
  for (QPushButton* button : {cmdTake_, cmdRename_, cmdDelete_}) row->addWidget(button);
  auto* column = new QVBoxLayout(this);
  column->addWidget(lstSnapshots_, 1);
  column->addLayout(row);
  column->addWidget(lblSnapshot_);
  OnClick(*cmdTake_, [this] { cmdTake_Click(); });
  OnClick(*cmdRename_, [this] { cmdRename_Click(); });
  OnClick(*cmdDelete_, [this] { cmdDelete_Click(); });
  OnChange(*txtName_, [this] { ShowButtons(); });
  connect(lstSnapshots_, &QTreeWidget::currentItemChanged, this, [this] {
    if (lstSnapshots_->currentItem() != nullptr) txtName_->setText(Current());
    ShowButtons();
  });
  ShowChip();
  ShowList();
  if (!canKeep_) lblSnapshot_->setText("There is no folder to keep snapshots in.");
}

void SnapshotPage::MakeList() {
  lstSnapshots_->setHeaderLabels({"Snapshot", "Holds"});
  lstSnapshots_->setRootIsDecorated(false);
  lstSnapshots_->setUniformRowHeights(true);
  lstSnapshots_->setAllColumnsShowFocus(true);
  lstSnapshots_->setAccessibleName("Snapshots");
  lstSnapshots_->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
  lstSnapshots_->setMinimumHeight(fontMetrics().height() * 6);
}

void SnapshotPage::ShowChip() {
  cmdTake_->setToolTip("Reads " + link::TextOf(link::ChipInUse()) +
                       ", all that can be read without changing it, and keeps it by that name");
}

void SnapshotPage::ShowList(const QString& current) {
  lstSnapshots_->clear();
  for (const tasks::Snapshot& snapshot : snapshots_.List()) {
    const QString holds = snapshot.trouble.isEmpty() ? CountOf(snapshot.image) : snapshot.trouble;
    auto* item = new QTreeWidgetItem(lstSnapshots_, {snapshot.name, holds});
    item->setToolTip(0, snapshot.path);
    if (snapshot.name == current) lstSnapshots_->setCurrentItem(item);
  }
  ShowButtons();
}

void SnapshotPage::ShowButtons() {
  const QString current = Current();
  const QString name = tasks::Snapshots::Tidy(txtName_->text());
  cmdTake_->setEnabled(canKeep_);
  cmdRename_->setEnabled(!current.isEmpty() && !name.isEmpty() && name != current);
  cmdDelete_->setEnabled(!current.isEmpty());
}

QString SnapshotPage::Current() const {
  const QTreeWidgetItem* item = lstSnapshots_->currentItem();
  return item == nullptr ? QString() : item->text(0);
}

void SnapshotPage::cmdTake_Click() {
  const QDateTime now = context_.services.clock.WallTime();
  const QString chip = link::TextOf(link::ChipInUse());
  QString name = tasks::Snapshots::Tidy(txtName_->text());
  if (name.isEmpty()) name = chip + now.toString(", yyyy-MM-dd HH:mm:ss");
  const auto kept = snapshots_.List();
  if (std::ranges::find(kept, name, &tasks::Snapshot::name) != kept.end()) {
    lblSnapshot_->setText("Nothing read: there is a snapshot with this name already.");
    return;
  }
  const tasks::ImageReading reading = tasks::ReadImage(tasks::ReadableRegisters());
  const QString read = chip + ": " + QString::fromStdString(tasks::ReadingWords(reading));
  const QString error = snapshots_.Save(
      name, reading.image, {now.toString("yyyy-MM-dd").toStdString(), now.toString("HH:mm:ss").toStdString(), ""});
  lblSnapshot_->setText(error.isEmpty() ? read + " Kept as \"" + name + "\"." : "Not kept: " + error);
  ShowList(name);
  emit Changed();
}

void SnapshotPage::cmdRename_Click() {
  const QString name = tasks::Snapshots::Tidy(txtName_->text());
  const QString error = snapshots_.Rename(Current(), name);
  lblSnapshot_->setText(error.isEmpty() ? QString() : "Not renamed: " + error);
  if (!error.isEmpty()) return;
  ShowList(name);
  emit Changed();
}

void SnapshotPage::cmdDelete_Click() {
  const QString name = Current();
  constexpr int kKeep = 1;
  const QPointer<SnapshotPage> self(this);
  const int answer = context_.services.prompts.Choose({base::kTitle,
                                                       "Delete the snapshot " + name + "?",
                                                       {"&Delete it", "&Keep it"},
                                                       kKeep,
                                                       platform::BoxIcon::Warning,
                                                       this});
  if (answer == kKeep || self == nullptr) return;
  const QString error = snapshots_.Delete(name);
  lblSnapshot_->setText(error.isEmpty() ? QString() : "Not deleted: " + error);
  ShowList();
  emit Changed();
}

}  // namespace zth::windows

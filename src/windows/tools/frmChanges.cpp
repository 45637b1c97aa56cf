#include "windows/tools/frmChanges.h"

#include <algorithm>
#include <iterator>

#include <QDateTime>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QStringList>
#include <QTimer>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "base/Counted.h"
#include "tasks/ChangeWords.h"
#include "tasks/TasksState.h"
#include "widgets/Named.h"
#include "windows/Handlers.h"
#include "windows/SharedState.h"

namespace zth::windows {
namespace {

constexpr int kShowAfterMs = 200;

QString Counted(std::size_t count, const char* nouns) {
  return QString::fromStdString(base::Counted(static_cast<std::int64_t>(count), nouns));
}

/// "2 registers", "1 register and the board", "the board".
QString CountOf(const tasks::Action& action) {
  QStringList counts;
  if (!action.registers.empty()) counts << Counted(action.registers.size(), "registers");
  if (!action.board.empty()) counts << "the board";
  return counts.join(" and ");
}

}  // namespace

frmChanges::frmChanges(const Context& context)
    : ChildWindow("frmChanges", "Session Changes", context),
      trvActions_(widgets::Named<QTreeWidget>("trvActions", this)),
      lstLeft_(widgets::Named<QTreeWidget>("lstLeft", this)),
      cmdUndo_(widgets::Named<QPushButton>("cmdUndo", "&Undo Last Action", this)),
      cmdPutBack_(widgets::Named<QPushButton>("cmdPutBack", "&Put Back as Found", this)),
      lblState_(widgets::Named<QLabel>("lblState", this)),
      tmrShow_(widgets::Named<QTimer>("tmrShow", this)) {
  MakeLists();
  auto* lblActions = widgets::Named<QLabel>("lblActions", "&Done to this chip since the start, the last on top:", this);
  lblActions->setBuddy(trvActions_);
  auto* lblLeft = widgets::Named<QLabel>("lblLeft", "&Not put back:", this);
  lblLeft->setBuddy(lstLeft_);
  lblState_->setWordWrap(true);
  lblState_->setTextFormat(Qt::PlainText);
  lblState_->setMinimumHeight(2 * fontMetrics().lineSpacing());
  cmdPutBack_->setToolTip("Writes the first known value back to every register that this session has written");
  auto* buttons = new QHBoxLayout;
  buttons->addWidget(cmdUndo_);
  buttons->addWidget(cmdPutBack_);
  buttons->addStretch();
  auto* column = new QVBoxLayout(this);
  column->addWidget(lblActions);
  column->addWidget(trvActions_, 3);
  column->addWidget(lblLeft);
  column->addWidget(lstLeft_, 1);
  column->addLayout(buttons);
  column->addWidget(lblState_);

  OnClick(*cmdUndo_, [this] { cmdUndo_Click(); });
  OnClick(*cmdPutBack_, [this] { PutBackAsFound(); });
  // A recall writes many registers: show them once, a moment later.
  tmrShow_->setSingleShot(true);
  tmrShow_->setInterval(kShowAfterMs);
  context.services.clock.Adopt(*tmrShow_);
  connect(tmrShow_, &QTimer::timeout, this, [this] { ShowChanges(); });
  listening_ = tasks::Work.traffic->Listen([this](const tasks::TrafficRecord& record, const std::string&) {
    if (link::IsWrite(record.form) && !tmrShow_->isActive()) tmrShow_->start();
  });
}

void frmChanges::MakeLists() {
  trvActions_->setHeaderLabels({"What", "Change", "When"});
  trvActions_->setUniformRowHeights(true);
  trvActions_->setSelectionMode(QAbstractItemView::SingleSelection);
  trvActions_->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
  trvActions_->setMinimumSize(fontMetrics().averageCharWidth() * 70, fontMetrics().height() * 10);
  trvActions_->setAccessibleName("Done to this chip since the start");
  lstLeft_->setHeaderHidden(true);
  lstLeft_->setRootIsDecorated(false);
  lstLeft_->setUniformRowHeights(true);
  lstLeft_->setAccessibleName("Not put back");
}

void frmChanges::Form_Load() {
  ShowChanges();
}

QString frmChanges::WhenOf(const tasks::Action& action) const {
  if (action.isEarlier) return "in an earlier session";
  const double ago = Services().clock.Now() - action.ended;
  return Services().clock.WallTime().addMSecs(static_cast<qint64>(-ago * 1000)).toString("HH:mm:ss");
}

void frmChanges::ShowChanges() {
  ShowActions();
  ShowLeft();
  const bool any = LastAction() != nullptr;
  cmdUndo_->setEnabled(any);
  cmdPutBack_->setEnabled(any);
}

void frmChanges::ShowActions() {
  trvActions_->clear();
  const auto& actions = tasks::Work.journal->Actions();
  for (auto at = actions.rbegin(); at != actions.rend(); ++at) {
    const tasks::Action& action = *at;
    if (!action.Concerns(KeyInUse())) continue;
    auto* item =
        new QTreeWidgetItem(trvActions_, {QString::fromStdString(action.who), CountOf(action), WhenOf(action)});
    for (const tasks::Touched& change : action.registers) {
      new QTreeWidgetItem(item, {QString::fromStdString(tasks::RegisterWords(change.reg)),
                                 QString::fromStdString(tasks::ChangeWords(change))});
    }
    for (const tasks::BoardTouched& change : action.board) {
      new QTreeWidgetItem(item, {QString::fromStdString(tasks::BoardWords(change.part, change.number)),
                                 QString::fromStdString(tasks::BoardChangeWords(change))});
    }
    if (trvActions_->topLevelItemCount() == 1) item->setExpanded(true);
  }
}

void frmChanges::ShowLeft() {
  lstLeft_->clear();
  std::vector<std::string> left = left_;
  std::ranges::copy(LeftBeforehand(), std::back_inserter(left));
  for (const std::string& one : left) new QTreeWidgetItem(lstLeft_, {QString::fromStdString(one)});
}

void frmChanges::Show(const Undone& undone, const QString& more) {
  if (undone.outcome.isEmpty()) return;
  left_ = undone.left;
  lblState_->setText(undone.outcome + more);
  ShowChanges();
}

void frmChanges::cmdUndo_Click() {
  if (Shared.RecallRunning) return;
  const QPointer<frmChanges> self(this);  // it may be closed while the box is open
  const Undone undone = UndoLast({Services(), TheDesktop()}, this);
  if (self != nullptr) Show(undone);
}

void frmChanges::PutBackAsFound() {
  if (Shared.RecallRunning) return;
  const QPointer<frmChanges> self(this);
  const Undone undone = PutBackAll({Services(), TheDesktop()}, this);
  if (self != nullptr) Show(undone, " Windows that are open show what they read before (F5 reads again).");
}

}  // namespace zth::windows

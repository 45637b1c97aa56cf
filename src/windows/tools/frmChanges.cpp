#include "windows/tools/frmChanges.h"

#include <algorithm>

#include <QDateTime>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTimer>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "base/Counted.h"
#include "link/ChipId.h"
#include "link/Waiting.h"
#include "tasks/ChangeWords.h"
#include "tasks/TasksState.h"
#include "widgets/Named.h"
#include "windows/Handlers.h"
#include "windows/SharedState.h"

namespace zth::windows {
namespace {

constexpr int kShowAfterMs = 200;

tasks::ChipKey InUse() {
  const link::ChipId chip = link::ChipInUse();
  return {chip.mode, static_cast<std::uint8_t>(chip.address)};
}

/// The last action on the chip in use; null if there is none.
const tasks::Action* LastAction() {
  const auto& actions = tasks::Work.journal->Actions();
  const auto last = std::find_if(actions.rbegin(), actions.rend(),
                                 [chip = InUse()](const tasks::Action& action) { return action.chip == chip; });
  return last == actions.rend() ? nullptr : &*last;
}

QString Counted(std::size_t count, const char* nouns) {
  return QString::fromStdString(base::Counted(static_cast<std::int64_t>(count), nouns));
}

/// Carries out a plan; what has not been put back, with what the plan had left.
std::vector<tasks::Left> PutBack(const tasks::PutBackPlan& plan) {
  const tasks::Journal::Pause pause(*tasks::Work.journal);
  std::vector<tasks::Left> left = tasks::RunPutBack(plan);
  left.insert(left.end(), plan.left.begin(), plan.left.end());
  return left;
}

QString Outcome(const tasks::PutBackPlan& plan, const std::vector<tasks::Left>& left) {
  std::vector<std::uint8_t> registers;
  for (const tasks::PutBackPlan::Step& step : plan.steps) registers.push_back(step.reg);
  std::erase_if(registers, [&](std::uint8_t reg) {
    return std::ranges::any_of(left, [reg](const tasks::Left& one) { return one.reg == reg; });
  });
  const QString whole = Counted(registers.size(), "registers") + " as before.";
  return left.empty() ? whole : whole + ' ' + Counted(left.size(), "items") + " not put back.";
}

/// The outcome of the undoing, and what was not undone.
std::pair<QString, std::vector<tasks::Left>> Undo(const tasks::Action& last) {
  const tasks::Action action = last;
  const tasks::PutBackPlan plan = tasks::PlanPutBack(action.registers);
  const std::vector<tasks::Left> left = PutBack(plan);
  tasks::Work.journal->Forget(action);
  return {"Undone: " + QString::fromStdString(action.who) + ". " + Outcome(plan, left), left};
}

}  // namespace

void UndoLastAction(const Context& context) {
  if (Shared.RecallRunning) return context.desktop.Tell("Not undone: a recall is running");
  const tasks::Action* last = LastAction();
  if (last == nullptr) return context.desktop.Tell("Nothing to undo");
  const link::UserAction action([] { return QString(); });
  const auto [told, left] = Undo(*last);
  QString text = told;
  for (const tasks::Left& one : left) text += ' ' + QString::fromStdString(tasks::LeftWords(one)) + '.';
  context.desktop.Tell(text);
}

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
    if (record.form == link::Form::Write && !tmrShow_->isActive()) tmrShow_->start();
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
    if (action.chip != InUse()) continue;
    const QString count = Counted(action.registers.size(), "registers");
    auto* item = new QTreeWidgetItem(trvActions_, {QString::fromStdString(action.who), count, WhenOf(action)});
    for (const tasks::Touched& change : action.registers) {
      new QTreeWidgetItem(item, {QString::fromStdString(tasks::RegisterWords(change.reg)),
                                 QString::fromStdString(tasks::ChangeWords(change))});
    }
    if (trvActions_->topLevelItemCount() == 1) item->setExpanded(true);
  }
}

void frmChanges::ShowLeft() {
  lstLeft_->clear();
  std::vector<tasks::Left> left = tasks::PlanPutBack(tasks::Work.journal->ChangesOf(InUse())).left;
  left.insert(left.begin(), left_.begin(), left_.end());
  for (const tasks::Left& one : left) new QTreeWidgetItem(lstLeft_, {QString::fromStdString(tasks::LeftWords(one))});
}

void frmChanges::cmdUndo_Click() {
  const tasks::Action* last = LastAction();
  if (last == nullptr || Shared.RecallRunning) return;
  const auto [told, left] = Undo(*last);
  left_ = left;
  lblState_->setText(told);
  ShowChanges();
}

void frmChanges::PutBackAsFound() {
  if (Shared.RecallRunning) return;
  const tasks::PutBackPlan plan = tasks::PlanPutBack(tasks::Work.journal->ChangesOf(InUse()));
  left_ = PutBack(plan);
  tasks::Work.journal->ForgetAll(InUse());
  lblState_->setText(Outcome(plan, left_) + " Windows that are open show what they read before (F5 reads again).");
  ShowChanges();
}

}  // namespace zth::windows

#include "windows/tools/Undoing.h"

#include <algorithm>
#include <cstdint>

#include <QStringList>

#include "base/Counted.h"
#include "base/Product.h"
#include "link/ChipId.h"
#include "link/Waiting.h"
#include "tasks/BoardPutBack.h"
#include "tasks/ChangeWords.h"
#include "tasks/PutBack.h"
#include "tasks/TasksState.h"
#include "windows/SharedState.h"

namespace zth::windows {
namespace {

using Board = std::vector<tasks::BoardTouched>;

enum Answer { kSetBack, kLeave, kCancel };

QString Counted(std::size_t count, const char* nouns) {
  return QString::fromStdString(base::Counted(static_cast<std::int64_t>(count), nouns));
}

/// Heaters and switches are never put back without this question: something may depend on them.
Answer AskAbout(const Board& board, const char* who, const Context& context, QWidget* asker) {
  QStringList lines;
  for (const tasks::BoardTouched& change : board) {
    if (!change.before) continue;
    lines << QString::fromStdString(tasks::BoardWords(change.part, change.number) + ": " +
                                    tasks::BoardChangeWords(change));
  }
  if (lines.isEmpty()) return kSetBack;
  return static_cast<Answer>(context.services.prompts.Choose(
      {base::kTitle,
       QString("%1 has set heaters or switches of the board:\n\n%2\n\nSet them back as well?")
           .arg(who, lines.join('\n')),
       {"&Set them back", "&Leave them", "&Cancel"},
       kCancel,
       platform::BoxIcon::Warning,
       asker}));
}

struct Registers {
  std::size_t put = 0;
  std::vector<std::string> left;
};

Registers PutBack(const std::vector<tasks::Touched>& changes) {
  const tasks::PutBackPlan plan = tasks::PlanPutBack(changes);
  std::vector<tasks::Left> left = tasks::RunPutBack(plan);
  left.insert(left.end(), plan.left.begin(), plan.left.end());
  Registers done;
  for (const tasks::PutBackPlan::Step& step : plan.steps) {
    if (std::ranges::none_of(left, [&](const tasks::Left& one) { return one.reg == step.reg; })) ++done.put;
  }
  for (const tasks::Left& one : left) done.left.push_back(tasks::LeftWords(one));
  return done;
}

/// Registers first: those of the pins set switches by themselves.
Undone Run(const std::vector<tasks::Touched>& registers, const Board& board, Answer answer) {
  const tasks::Journal::Pause pause(*tasks::Work.journal);
  Registers done = PutBack(registers);
  QString outcome = registers.empty() ? QString() : Counted(done.put, "registers") + " as before.";
  std::vector<tasks::BoardLeft> left = tasks::NeverReadOf(board);
  if (answer == kSetBack) {
    for (const tasks::BoardLeft& one : tasks::RunBoardPutBack(board)) left.push_back(one);
    const std::size_t set = board.size() - left.size();
    if (set != 0) outcome += ' ' + Counted(set, "parts") + " of the board as before.";
  } else if (!board.empty()) {
    outcome += " Heaters and switches left as they are.";
  }
  for (const tasks::BoardLeft& one : left) done.left.push_back(tasks::BoardLeftWords(one));
  if (!done.left.empty()) outcome += ' ' + Counted(done.left.size(), "items") + " not put back.";
  return {outcome.trimmed(), done.left};
}

}  // namespace

tasks::ChipKey KeyInUse() {
  const link::ChipId chip = link::ChipInUse();
  return {chip.mode, static_cast<std::uint8_t>(chip.address)};
}

const tasks::Action* LastAction() {
  const auto& actions = tasks::Work.journal->Actions();
  const auto last = std::find_if(actions.rbegin(), actions.rend(), [key = KeyInUse()](const tasks::Action& action) {
    // One that has changed another chip as well is undone there.
    return action.chip == key || (action.registers.empty() && action.Concerns(key));
  });
  return last == actions.rend() ? nullptr : &*last;
}

std::vector<std::string> LeftBeforehand() {
  std::vector<std::string> left;
  const tasks::Journal& journal = *tasks::Work.journal;
  for (const tasks::Left& one : tasks::PlanPutBack(journal.ChangesOf(KeyInUse())).left) {
    left.push_back(tasks::LeftWords(one));
  }
  for (const tasks::BoardLeft& one : tasks::NeverReadOf(journal.BoardChangesOf(KeyInUse().mode))) {
    left.push_back(tasks::BoardLeftWords(one));
  }
  return left;
}

Undone UndoLast(const Context& context, QWidget* asker) {
  const tasks::Action* last = LastAction();
  if (last == nullptr) return {};
  const tasks::Action action = *last;
  const Answer answer = AskAbout(action.board, "The last action", context, asker);
  if (answer == kCancel || Shared.RecallRunning) return {};
  Undone undone = Run(action.registers, action.board, answer);
  undone.outcome = "Undone: " + QString::fromStdString(action.who) + ". " + undone.outcome;
  tasks::Work.journal->Forget(action);
  return undone;
}

Undone PutBackAll(const Context& context, QWidget* asker) {
  const tasks::ChipKey key = KeyInUse();
  const Board board = tasks::Work.journal->BoardChangesOf(key.mode);
  const Answer answer = AskAbout(board, "This session", context, asker);
  if (answer == kCancel || Shared.RecallRunning) return {};
  const std::vector<tasks::Touched> registers = tasks::Work.journal->ChangesOf(key);
  Undone undone = Run(registers, board, answer);
  tasks::Work.journal->ForgetAll(key);
  if (answer == kSetBack) tasks::Work.journal->ForgetBoard(key.mode);
  return undone;
}

void UndoLastAction(const Context& context) {
  if (Shared.RecallRunning) return context.desktop.Tell("Not undone: a recall is running");
  if (LastAction() == nullptr) return context.desktop.Tell("Nothing to undo");
  const link::UserAction action([] { return QString(); });
  const Undone undone = UndoLast(context, nullptr);
  QString text = undone.outcome;
  for (const std::string& one : undone.left) text += ' ' + QString::fromStdString(one) + '.';
  if (!text.isEmpty()) context.desktop.Tell(text);
}

}  // namespace zth::windows

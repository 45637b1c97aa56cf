#include "windows/tools/CompareWrite.h"

#include <algorithm>
#include <iterator>
#include <optional>

#include <QPointer>
#include <QStringList>
#include <QWidget>

#include "base/Counted.h"
#include "base/Product.h"
#include "link/ChipId.h"
#include "tasks/ChangeWords.h"
#include "windows/SharedState.h"

namespace zth::windows {
namespace {

/// Lines in a box at most; the window lists them all.
constexpr std::size_t kMostLines = 12;

QString Registers(std::size_t count) {
  return QString::fromStdString(base::Counted(static_cast<std::int64_t>(count), "registers"));
}

std::vector<std::string> WordsOf(const std::vector<tasks::Left>& left) {
  std::vector<std::string> words;
  for (const tasks::Left& one : left) words.push_back(tasks::LeftWords(one));
  return words;
}

QString Listed(const QString& title, const std::vector<std::string>& words) {
  if (words.empty()) return {};
  QStringList lines;
  for (std::size_t i = 0; i < std::min(words.size(), kMostLines); ++i) lines << QString::fromStdString(words[i]);
  if (words.size() > kMostLines) lines << QString("and %1 more").arg(words.size() - kMostLines);
  return "\n\n" + title + lines.join('\n');
}

/// "PWM1 Config (21h): 11h -> 71h, Bhvr 0 -> 3", in the order of the writes.
std::vector<std::string> ChangesOf(const tasks::WritePlan& plan, const tasks::RegisterImage& now) {
  std::vector<std::string> words;
  for (const tasks::WriteStep& step : plan.steps) {
    const tasks::HeldByte held = now.bytes.at(step.reg);
    const bool isKnown = held.IsWhole();
    const std::string fields = tasks::FieldNames(step.reg, step.mask);
    // The other bits keep what the chip holds, which nobody has read yet.
    const bool isPart = !isKnown && !fields.empty();
    const tasks::Touched change{step.reg, isKnown ? std::optional(held.value) : std::nullopt,
                                static_cast<std::uint8_t>((held.value & ~step.mask) | (step.to & step.mask))};
    words.push_back(tasks::RegisterWords(step.reg) + (isPart ? ", " + fields : ": " + tasks::ChangeWords(change)));
  }
  return words;
}

/// The plan that the user wants; nothing after a "Cancel".
std::optional<tasks::WritePlan> AskFor(const Context& context, QWidget& asker, const tasks::RegisterImage& image,
                                       const QString& from, const std::vector<tasks::Wanted>& wanted,
                                       const tasks::RegisterImage& now) {
  tasks::WritePlan plan = tasks::PlanWrite(image, wanted);
  tasks::WritePlan locking = tasks::PlanWrite(image, wanted, tasks::Lock::Set);
  const bool mayLock = locking.left != plan.left;
  if (plan.steps.empty() && !mayLock) return plan;
  const QString text =
      QString("Write %1 of %2 to %3?").arg(Registers(plan.steps.size()), from, link::TextOf(link::ChipInUse())) +
      Listed({}, ChangesOf(plan, now)) + Listed("Not written:\n", WordsOf(plan.left));
  QStringList choices{"&Write", "&Cancel"};
  // Only a reset ends the lock, so it is set only by a button of its own.
  if (mayLock) choices.insert(1, "Write and &lock");
  const auto cancel = static_cast<int>(choices.size()) - 1;
  const int taken =
      context.services.prompts.Choose({base::kTitle, text, choices, cancel, platform::BoxIcon::Warning, &asker});
  if (taken == cancel) return std::nullopt;
  return taken == 0 ? plan : locking;
}

}  // namespace

Written WriteToChip(const Context& context, QWidget& asker, const tasks::RegisterImage& image, const QString& from,
                    const std::vector<tasks::Wanted>& wanted, const tasks::RegisterImage& now) {
  if (Shared.RecallRunning) return {"Nothing written: a recall is running.", {}};
  const link::ChipId chip = link::ChipInUse();
  const QPointer<QWidget> self(&asker);
  const std::optional<tasks::WritePlan> plan = AskFor(context, asker, image, from, wanted, now);
  if (!plan || self == nullptr) return {"Nothing written.", {}};
  if (plan->steps.empty()) return {"Nothing written: nothing of it can be written.", WordsOf(plan->left)};
  if (link::ChipInUse() != chip || Shared.RecallRunning) return {"Nothing written: another chip is in use now.", {}};
  const std::vector<tasks::Left> left = tasks::RunWrite(*plan);
  const auto failed = std::ranges::count_if(plan->steps, [&](const tasks::WriteStep& step) {
    return std::ranges::any_of(left, [&](const tasks::Left& one) { return one.reg == step.reg; });
  });
  QString told = Registers(plan->steps.size() - static_cast<std::size_t>(failed)) + " of " + link::TextOf(chip) +
                 " as in " + from + ".";
  std::vector<std::string> words = WordsOf(left);
  std::ranges::copy(WordsOf(plan->left), std::back_inserter(words));
  if (!words.empty()) {
    told +=
        ' ' + QString::fromStdString(base::Counted(static_cast<std::int64_t>(words.size()), "items")) + " not written.";
  }
  return {told, words};
}

}  // namespace zth::windows

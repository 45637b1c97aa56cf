#include "tasks/Journal.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "chip/WriteEffects.h"
#include "link/Declarations.h"

namespace zth::tasks {
namespace {

/// Writes of the same control closer together than this many seconds are one action: a slider that is dragged, a box
/// whose arrow is held down.
constexpr double kOneAction = 1.0;

/// Adds a later change of a register to an earlier one.
void Add(std::vector<Touched>& registers, const Touched& change) {
  const auto earlier = std::ranges::find(registers, change.reg, &Touched::reg);
  if (earlier != registers.end()) {
    earlier->after = change.after;
  } else {
    registers.push_back(change);
  }
}

/// Adds a later change to a sum whose order is that of the last writes.
void MoveToEnd(std::vector<Touched>& sum, Touched change) {
  const auto earlier = std::ranges::find(sum, change.reg, &Touched::reg);
  if (earlier != sum.end()) {
    change.before = earlier->before;
    sum.erase(earlier);
  }
  sum.push_back(change);
}

}  // namespace

Journal::Journal(Traffic& traffic)
    : listening_(traffic.Listen([this](const TrafficRecord& record, const std::string& who) { Saw(record, who); })) {}

void Journal::Saw(const TrafficRecord& record, const std::string& who) {
  if (record.isNote || !record.succeeded) return;
  const bool isWrite = record.form == link::Form::Write;
  if (!isWrite && record.form != link::Form::Read && record.form != link::Form::ReadBlock) return;
  if (isWrite && paused_ == 0) EnterWrite(record, who);
  Known& known = known_[{record.mode, record.address}];
  if (isWrite) {
    for (const std::uint8_t reg : chip::ChangedByWrite(record.reg, record.bytes[0])) known[reg].reset();
  }
  for (std::size_t i = 0; i < record.count && record.reg + i < known.size(); ++i)
    known[record.reg + i] = record.bytes[i];
}

Action& Journal::ActionOf(const TrafficRecord& record, const std::string& who) {
  const ChipKey chip{record.mode, record.address};
  // A part of an action, such as the hooks of a write, is named after it and belongs to it.
  const auto isSame = [&](const Action& last) {
    if (last.chip != chip) return false;
    if (record.action != 0 && last.serial == record.action) return true;
    return last.who == who && record.time - last.ended < kOneAction;
  };
  if (actions_.empty() || !isSame(actions_.back())) actions_.push_back({chip, who, 0, record.action, false, {}});
  return actions_.back();
}

void Journal::EnterWrite(const TrafficRecord& record, const std::string& who) {
  const Known& known = known_[{record.mode, record.address}];
  // An Apply writes all its registers, most of them as they are.
  if (known[record.reg] == record.bytes[0]) return;
  ++revision_;
  Action& action = ActionOf(record, who);
  action.ended = record.time;
  Add(action.registers, {record.reg, known[record.reg], record.bytes[0]});
  for (const std::uint8_t reg : chip::ChangedByWrite(record.reg, record.bytes[0])) {
    Add(action.registers, {reg, known[reg], std::nullopt});
  }
}

std::vector<Touched> Journal::ChangesOf(const ChipKey& chip) const {
  std::vector<Touched> sum;
  for (const Action& action : actions_) {
    if (action.chip != chip) continue;
    for (const Touched& change : action.registers) MoveToEnd(sum, change);
  }
  std::erase_if(sum, [](const Touched& touched) { return touched.before && touched.before == touched.after; });
  return sum;
}

void Journal::Adopt(std::vector<Action> earlier) {
  ++revision_;
  for (Action& action : earlier) action.isEarlier = true;
  actions_.insert(actions_.begin(), std::make_move_iterator(earlier.begin()), std::make_move_iterator(earlier.end()));
}

void Journal::Forget(const Action& action) {
  ++revision_;
  std::erase_if(actions_, [serial = action.serial, ended = action.ended](const Action& other) {
    return other.serial == serial && other.ended == ended;
  });
}

void Journal::ForgetAll(const ChipKey& chip) {
  ++revision_;
  std::erase_if(actions_, [&](const Action& action) { return action.chip == chip; });
}

}  // namespace zth::tasks

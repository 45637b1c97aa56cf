#include "tasks/Journal.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "chip/WriteEffects.h"
#include "link/Declarations.h"
#include "tasks/TrafficWords.h"

namespace zth::tasks {
namespace {

/// Writes of the same control closer together than this many seconds are one action: a slider that is dragged, a box
/// whose arrow is held down.
constexpr double kOneAction = 1.0;

/// The adapter reports twice the percentage. A byte beyond says nothing: the journal's file holds one for a heater that
/// was not read.
constexpr unsigned kDriveScale = 2;
constexpr unsigned kMostPercent = 100;

/// What the program sets by itself: at its start, and to follow the pins. Putting back the pins sets it again.
bool SetsByItself(const std::string& who) {
  return who.empty() || who == "start" || who.starts_with("start,") || who.ends_with(", pins") || IsOfMonitor(who);
}

/// Adds a later change of a register to an earlier one.
void Add(std::vector<Touched>& registers, const Touched& change) {
  const auto earlier = std::ranges::find(registers, change.reg, &Touched::reg);
  if (earlier != registers.end()) {
    earlier->after = change.after;
  } else {
    registers.push_back(change);
  }
}

void Add(std::vector<BoardTouched>& board, const BoardTouched& change) {
  const auto earlier = std::ranges::find_if(
      board, [&](const BoardTouched& one) { return one.part == change.part && one.number == change.number; });
  if (earlier != board.end()) {
    earlier->after = change.after;
  } else {
    board.push_back(change);
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
  SawBoard(record, who);
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

void Journal::SawBoard(const TrafficRecord& record, const std::string& who) {
  switch (record.form) {
    case link::Form::ReadPort:
      knownOfBoard_[{BoardPart::Switches, record.address}] = record.bytes[0];
      break;
    case link::Form::ReadHeaters:
      for (std::uint8_t heater = 1; heater <= 2; ++heater) {
        const unsigned percent = record.bytes[heater - 1U] / kDriveScale;
        if (percent <= kMostPercent) knownOfBoard_[{BoardPart::Heater, heater}] = static_cast<std::uint8_t>(percent);
      }
      break;
    case link::Form::SetHeater:
      EnterBoard(record, who, BoardPart::Heater);
      break;
    case link::Form::WritePort:
    case link::Form::WritePortWithByte:
      EnterBoard(record, who, BoardPart::Switches);
      break;
    default:
      break;
  }
}

void Journal::EnterBoard(const TrafficRecord& record, const std::string& who, BoardPart part) {
  const auto known = knownOfBoard_.find({part, record.address});
  const bool isKnown = known != knownOfBoard_.end();
  const std::uint8_t after = record.bytes[0];
  if (paused_ == 0 && !SetsByItself(who) && !(isKnown && known->second == after)) {
    ++revision_;
    Action& action = ActionOf(record, {record.mode, kBoardOnly}, who);
    action.ended = record.time;
    Add(action.board, {part, record.address, isKnown ? std::optional(known->second) : std::nullopt, after});
  }
  knownOfBoard_[{part, record.address}] = after;
}

Action& Journal::ActionOf(const TrafficRecord& record, const ChipKey& chip, const std::string& who) {
  const auto isOfBoard = [](const ChipKey& key) { return key.address == kBoardOnly; };
  // A part of an action, such as the hooks of a write, is named after it and belongs to it.
  const auto isSame = [&](const Action& last) {
    const bool mixed = last.chip.mode == chip.mode && (isOfBoard(last.chip) || isOfBoard(chip));
    if (last.chip != chip && !mixed) return false;
    if (record.action != 0 && last.serial == record.action) return true;
    return last.who == who && record.time - last.ended < kOneAction;
  };
  if (actions_.empty() || !isSame(actions_.back())) actions_.push_back({chip, who, 0, record.action, false, {}, {}});
  if (isOfBoard(actions_.back().chip)) actions_.back().chip = chip;
  return actions_.back();
}

void Journal::EnterWrite(const TrafficRecord& record, const std::string& who) {
  const Known& known = known_[{record.mode, record.address}];
  // An Apply writes all its registers, most of them as they are.
  if (known[record.reg] == record.bytes[0]) return;
  ++revision_;
  Action& action = ActionOf(record, {record.mode, record.address}, who);
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

std::vector<BoardTouched> Journal::BoardChangesOf(std::int16_t mode) const {
  std::vector<BoardTouched> sum;
  for (const Action& action : actions_) {
    if (action.chip.mode != mode) continue;
    for (const BoardTouched& change : action.board) Add(sum, change);
  }
  std::erase_if(sum, [](const BoardTouched& touched) { return touched.before == touched.after; });
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
  for (Action& action : actions_) {
    if (action.chip != chip) continue;
    action.registers.clear();
    action.chip.address = kBoardOnly;
  }
  RemoveEmpty();
}

void Journal::ForgetBoard(std::int16_t mode) {
  for (Action& action : actions_) {
    if (action.chip.mode == mode) action.board.clear();
  }
  RemoveEmpty();
}

void Journal::RemoveEmpty() {
  ++revision_;
  std::erase_if(actions_, [](const Action& action) { return action.registers.empty() && action.board.empty(); });
}

}  // namespace zth::tasks

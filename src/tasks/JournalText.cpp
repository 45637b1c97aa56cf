#include "tasks/JournalText.h"

#include <utility>

#include "tasks/TrafficReader.h"

namespace zth::tasks {
namespace {

std::string Line(const Action& action, link::Form form, std::uint8_t reg, std::uint8_t value) {
  TrafficRecord record;
  record.time = action.ended;
  record.form = form;
  record.mode = action.chip.mode;
  record.address = action.chip.address;
  record.reg = reg;
  record.count = 1;
  record.bytes[0] = value;
  return TrafficLineText(record, action.who, 0) + "\n";
}

}  // namespace

std::string JournalText(const std::vector<Action>& actions, const TrafficHead& head) {
  std::string text = TrafficHeadText(head);
  for (const Action& action : actions) {
    for (const Touched& change : action.registers) {
      if (change.before) text += Line(action, link::Form::Read, change.reg, *change.before);
    }
    for (const Touched& change : action.registers) {
      if (change.after) text += Line(action, link::Form::Write, change.reg, *change.after);
    }
  }
  return text;
}

std::vector<Action> ActionsOf(const std::string& text) {
  Traffic traffic;
  const Journal journal(traffic);
  TrafficReader reader([rest = text]() mutable { return std::exchange(rest, {}); });
  while (reader.Next()) traffic.Add(reader.Record(), reader.Text());
  return journal.Actions();
}

}  // namespace zth::tasks

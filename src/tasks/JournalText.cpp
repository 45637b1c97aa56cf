#include "tasks/JournalText.h"

#include <utility>

#include "tasks/TrafficReader.h"

namespace zth::tasks {
namespace {

/// More than any heater reports: it was not read.
constexpr std::uint8_t kNotRead = 0xFF;

std::string Line(const Action& action, TrafficRecord record) {
  record.time = action.ended;
  record.mode = action.chip.mode;
  return TrafficLineText(record, action.who, 0) + "\n";
}

std::string Line(const Action& action, link::Form form, std::uint8_t reg, std::uint8_t value) {
  TrafficRecord record;
  record.form = form;
  record.address = action.chip.address;
  record.reg = reg;
  record.count = 1;
  record.bytes[0] = value;
  return Line(action, record);
}

/// The read that would have shown the value before, if it was known.
std::string BoardRead(const Action& action, const BoardTouched& change) {
  if (!change.before) return {};
  TrafficRecord record;
  if (change.part == BoardPart::Heater) {
    record.form = link::Form::ReadHeaters;
    record.count = 3;
    record.bytes = {kNotRead, kNotRead, 0};
    record.bytes.at(change.number - 1U) = static_cast<std::uint8_t>(*change.before * 2U);
  } else {
    record.form = link::Form::ReadPort;
    record.address = change.number;
    record.count = 1;
    record.bytes[0] = *change.before;
  }
  return Line(action, record);
}

std::string BoardWrite(const Action& action, const BoardTouched& change) {
  TrafficRecord record;
  record.form = change.part == BoardPart::Heater ? link::Form::SetHeater : link::Form::WritePort;
  record.address = change.number;
  record.count = 1;
  record.bytes[0] = change.after;
  return Line(action, record);
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
    for (const BoardTouched& change : action.board) text += BoardRead(action, change) + BoardWrite(action, change);
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

#include <algorithm>

#include "chip/RegisterFields.h"
#include "chip/RegisterNames.h"
#include "chip/WriteEffects.h"
#include "command/Commands.h"
#include "command/Readings.h"
#include "command/Verify.h"
#include "link/BoardName.h"
#include "tasks/Discovery.h"

namespace zth::command {
namespace {

std::string BitsText(base::BitField bits) {
  const int high = bits.shift + bits.width - 1;
  return bits.width == 1 ? std::to_string(high) : std::to_string(high) + ":" + std::to_string(bits.shift);
}

void ShowReading(const Sample& sample, const Output& output) {
  const std::string name(NameOfReading(*sample.row));
  const std::string unit(UnitOfReading(*sample.row));
  const bool isWide = sample.raw > 0xFF;
  const std::string raw = (isWide ? ByteText(sample.raw / 256).substr(0, 2) : "") + ByteText(sample.raw % 256);
  output.Result(name + " = " + NumberText(sample.value) + " " + unit + " (raw " + raw + ")",
                {{"name", name}, {"value", sample.value}, {"unit", unit}, {"raw", std::int64_t{sample.raw}}});
}

void ShowPlan(const Assignment& assignment, const Output& output) {
  const Target& target = assignment.target;
  const std::string reg = ByteText(target.reg);
  if (target.kind == Kind::Register) {
    const std::string value = ByteText(assignment.value);
    output.Result("write " + reg + " = " + value + " (" + target.name + ")",
                  {{"transfer", "write"}, {"register", reg}, {"name", target.name}, {"value", value}});
  } else {
    const std::string bits = BitsText(target.bits);
    const std::string name = chip::RowAt(target.reg)->name;
    output.Result("read " + reg + " (" + name + ")", {{"transfer", "read"}, {"register", reg}, {"name", name}});
    output.Result(
        "write " + reg + " as read, with bits " + bits + " = " + std::to_string(assignment.value),
        {{"transfer", "write"}, {"register", reg}, {"bits", bits}, {"value", std::int64_t{assignment.value}}});
  }
  ShowFollowers(target.reg, output);
}

}  // namespace

void ShowFollowers(std::uint8_t reg, const Output& output) {
  const auto show = [&output](const std::string& text) { output.Result(text, {{"transfer", text}}); };
  if (reg >= "PWM1 Config"_reg && reg <= "PWM4 Config"_reg) show("read " + ByteText(reg));
  if (!chip::IsOfEasyOption(reg)) return;
  show("read " + ByteText("Pin Config 1"_reg) + " to " + ByteText("Pin Config 4"_reg));
  show("write the board's two switches, over USB");
}

void ShowSample(const Sample& sample, const Output& output) {
  if (sample.row) return ShowReading(sample, output);
  const Target& target = *sample.target;
  const std::string reg = ByteText(target.reg);
  const auto raw = std::int64_t{sample.raw};
  if (target.kind == Kind::Field) {
    output.Result(target.name + " = " + NumberText(sample.value) + " (" + reg + " = " + ByteText(sample.raw) + ")",
                  {{"name", target.name},
                   {"register", reg},
                   {"bits", BitsText(target.bits)},
                   {"value", static_cast<std::int64_t>(sample.value)},
                   {"raw", raw}});
    return;
  }
  const std::string fields = chip::FieldsText(chip::RowAt(target.reg)->bitNames, sample.raw);
  output.Result(target.name + " (" + reg + ") = " + ByteText(sample.raw) + (fields.empty() ? "" : ": " + fields),
                {{"name", target.name}, {"register", reg}, {"raw", raw}});
}

Job PrepareFind(const Request& /*request*/, const Setting& /*setting*/) {
  return [](Session& session) {
    for (const QString& chip : session.Chips()) {
      tasks::SelectDevice(chip);
      const std::string board = link::BoardName().toStdString();
      const std::string text = chip.toStdString();
      session.Out().Result(text + (board.empty() ? "" : " (" + board + ")"), {{"chip", text}, {"board", board}});
    }
  };
}

Job PrepareRead(const Request& request, const Setting& /*setting*/) {
  return [targets = TargetsOf(request.words)](Session& session) {
    for (const Sample& sample : session.Take(targets)) ShowSample(sample, session.Out());
  };
}

Job PrepareWrite(const Request& request, const Setting& setting) {
  std::vector<Assignment> assignments;
  for (const std::string& word : request.words) assignments.push_back(AssignmentOf(word));
  if (request.dryRun) {
    for (const Assignment& assignment : assignments) ShowPlan(assignment, setting.output);
    return {};
  }
  return [assignments, verify = request.verify](Session& session) {
    Expected expected;
    for (const auto& [target, value] : assignments) {
      if (target.kind == Kind::Register) {
        session.Write(target.reg, value);
      } else {
        session.Modify(target.reg, target.bits, value);
      }
      expected.Put(target.reg, base::Mask(target.bits), value << target.bits.shift);
    }
    if (verify) expected.Verify(session);
  };
}

}  // namespace zth::command

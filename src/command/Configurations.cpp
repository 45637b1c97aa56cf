#include <array>
#include <optional>
#include <set>

#include "base/Counted.h"
#include "base/NumberText.h"
#include "chip/RegisterFields.h"
#include "chip/RegisterNames.h"
#include "command/Commands.h"
#include "command/Verify.h"
#include "tasks/SavedConfig.h"

namespace zth::command {
namespace {

struct SavedWrite {
  std::uint8_t reg = 0;
  unsigned value = 0;
};

std::string NameOf(std::uint8_t reg) {
  const chip::RegisterRow* row = chip::RowAt(reg);
  return row == nullptr ? "no register" : row->name;
}

/// The writes of a recall, in order. Throws Failure for a file that the window would take only in part.
std::vector<SavedWrite> WritesOf(const std::string& file, platform::Services& services) {
  const auto refuse = [&file](const std::string& why) {
    return Failure{kUsage, "'" + file + "' " + why, "Give a file that the program or zth4718 dump has saved"};
  };
  const std::string text = TextOfFile(file, services);
  if (const char* encoding = tasks::WideEncoding(text)) throw refuse(std::string("is in ") + encoding);
  tasks::SavedReader reader(text);
  if (!reader.FindStart()) throw refuse("is no saved configuration");
  std::vector<SavedWrite> writes;
  int address = 0;
  int value = 0;
  auto result = reader.Next(address, value);
  for (; result == tasks::SavedReader::Result::Line; result = reader.Next(address, value)) {
    writes.push_back({static_cast<std::uint8_t>(address), static_cast<unsigned>(value)});
  }
  if (result == tasks::SavedReader::Result::Broken) throw refuse("breaks off before its \"}\"");
  if (writes.empty()) throw refuse("holds no register");
  return writes;
}

void ShowRegister(const chip::RegisterRow& row, unsigned value, const Output& output) {
  output.Result("", {{"name", row.name}, {"register", ByteText(row.address)}, {"raw", std::int64_t{value}}});
}

/// Values by address; none where nothing is known.
using Values = std::array<std::optional<unsigned>, 256>;
/// Gives them once there is a connection.
using Source = std::function<Values(Session&)>;

/// Each address that can be written, once.
template <typename Visit>
void ForEachWritable(const Visit& visit) {
  std::set<std::uint8_t> seen;
  for (const chip::RegisterRow& row : chip::kRegisterRows) {
    if (!row.readOnly && seen.insert(row.address).second) visit(row);
  }
}

Source SourceOf(const std::string& word, const Setting& setting) {
  Values values;
  if (word == "chip") {
    return [](Session& session) {
      Values read;
      ForEachWritable([&](const chip::RegisterRow& row) { read.at(row.address) = session.Read(row.address); });
      return read;
    };
  }
  if (word == "default") {
    ForEachWritable([&](const chip::RegisterRow& row) { values.at(row.address) = row.defaultValue; });
  } else {
    for (const SavedWrite& write : WritesOf(word, setting.services)) values.at(write.reg) = write.value;
  }
  return [values](Session& /*session*/) { return values; };
}

/// "Bhvr 0 -> 3", or nothing for a register without named bits.
std::string FieldChanges(const chip::RegisterRow& row, unsigned from, unsigned to) {
  std::string text;
  for (const chip::NamedField& field : chip::FieldsOf(row.bitNames)) {
    const unsigned before = base::GetField(from, field.bits);
    const unsigned after = base::GetField(to, field.bits);
    if (before == after) continue;
    text.append(text.empty() ? ": " : ", ").append(field.name);
    text += " " + std::to_string(before) + " -> " + std::to_string(after);
  }
  return text;
}

/// A register that only one side holds does not differ.
std::int64_t ShowDifferences(const Values& a, const Values& b, const Output& output) {
  std::int64_t differing = 0;
  ForEachWritable([&](const chip::RegisterRow& row) {
    const auto from = a.at(row.address);
    const auto to = b.at(row.address);
    if (!from || !to || *from == *to) return;
    ++differing;
    const std::string reg = ByteText(row.address);
    output.Result(std::string(row.name) + " (" + reg + ") " + ByteText(*from) + " -> " + ByteText(*to) +
                      FieldChanges(row, *from, *to),
                  {{"name", row.name}, {"register", reg}, {"a", std::int64_t{*from}}, {"b", std::int64_t{*to}}});
  });
  return differing;
}

}  // namespace

Job PrepareDump(const Request& request, const Setting& /*setting*/) {
  return [request](Session& session) {
    const QDateTime now = session.Services().clock.WallTime();
    std::string text = tasks::SavedHead(now.toString("yyyy-MM-dd").toStdString(),
                                        now.toString("HH:mm:ss").toStdString(), request.comment);
    // Row by row, so that an address with two names is read and saved twice, as the window does.
    for (const chip::RegisterRow& row : chip::kRegisterRows) {
      if (row.readOnly) continue;
      const unsigned value = session.Read(row.address);
      if (request.changedOnly && value == row.defaultValue) continue;
      text += tasks::SavedLine(row.address, static_cast<std::int32_t>(value), row.name);
      if (session.Out().Json()) ShowRegister(row, value, session.Out());
    }
    if (!session.Out().Json()) session.Out().Text(text.append(tasks::kSavedEnd));
  };
}

Job PrepareApply(const Request& request, const Setting& setting) {
  const std::vector<SavedWrite> writes = WritesOf(request.words.front(), setting.services);
  if (request.dryRun) {
    for (const auto& [reg, value] : writes) {
      const std::string text = ByteText(reg);
      setting.output.Result("write " + text + " = " + ByteText(value) + " (" + NameOf(reg) + ")",
                            {{"transfer", "write"}, {"register", text}, {"value", ByteText(value)}});
      ShowFollowers(reg, setting.output);
    }
    return {};
  }
  return [writes, verify = request.verify](Session& session) {
    Expected expected;
    for (const auto& [reg, value] : writes) {
      session.Write(reg, value);
      expected.Put(reg, 0xFF, value);
    }
    session.Out().Remark(base::Counted(static_cast<std::int64_t>(writes.size()), "registers") + " written");
    if (verify) expected.Verify(session);
  };
}

Job PrepareDiff(const Request& request, const Setting& setting) {
  const Source a = SourceOf(request.words.front(), setting);
  const Source b = SourceOf(request.words.size() > 1 ? request.words.back() : "chip", setting);
  return [a, b](Session& session) {
    const Values from = a(session);
    const std::int64_t differing = ShowDifferences(from, b(session), session.Out());
    if (differing == 0) return;
    throw Failure{kDiffers, base::Counted(differing, "registers") + (differing == 1 ? " differs" : " differ"), ""};
  };
}

}  // namespace zth::command

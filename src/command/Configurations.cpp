#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "base/Counted.h"
#include "chip/RegisterNames.h"
#include "command/Commands.h"
#include "command/Verify.h"
#include "link/ChipId.h"
#include "tasks/Comparison.h"
#include "tasks/Exports.h"
#include "tasks/RegisterImage.h"
#include "tasks/SavedConfig.h"

namespace zth::command {
namespace {

using tasks::RegisterImage;

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

/// Gives a configuration once there is a connection.
using Source = std::function<RegisterImage(Session&)>;

/// Reads every register that can be written, once.
RegisterImage ReadChip(Session& session) {
  RegisterImage image;
  image.origin = link::TextOf(link::ChipInUse()).toStdString();
  for (const std::uint8_t reg : tasks::ComparableRegisters()) {
    image.Put(reg, static_cast<std::uint8_t>(session.Read(reg)));
  }
  return image;
}

Source SourceOf(const std::string& word, const Setting& setting) {
  if (word == "chip") return ReadChip;
  if (word == "default") return [](Session& /*session*/) { return tasks::DefaultImage(); };
  const tasks::ImageOrError read = tasks::ImageOfText(TextOfFile(word, setting.services), word);
  if (!read) throw Failure{kUsage, "'" + word + "' cannot be compared: " + read.error, "Give default, chip or a file"};
  return [image = *read.image](Session& /*session*/) { return image; };
}

std::int64_t ShowDifferences(const RegisterImage& a, const RegisterImage& b, const Output& output) {
  std::int64_t differing = 0;
  for (const tasks::ComparedRow& row : tasks::Compare({&a, &b}, 0)) {
    if (!row.Differs()) continue;
    ++differing;
    const std::string reg = ByteText(row.reg);
    output.Result(row.name + " (" + reg + "): " + tasks::DifferenceWords(row, 1),
                  {{"name", row.name},
                   {"register", reg},
                   {"a", std::int64_t{row.held[0].value}},
                   {"b", std::int64_t{row.held[1].value}}});
  }
  return differing;
}

/// The moment, as a saved configuration tells it.
tasks::TextNotes NotesOf(const Request& request, const Session& session) {
  const QDateTime now = session.Services().clock.WallTime();
  return {now.toString("yyyy-MM-dd").toStdString(), now.toString("HH:mm:ss").toStdString(), request.comment};
}

constexpr std::array kForms{std::pair<std::string_view, tasks::ExportForm>{"saved", tasks::ExportForm::Saved},
                            std::pair<std::string_view, tasks::ExportForm>{"c", tasks::ExportForm::C},
                            std::pair<std::string_view, tasks::ExportForm>{"i2cset", tasks::ExportForm::Script},
                            std::pair<std::string_view, tasks::ExportForm>{"csv", tasks::ExportForm::Csv}};

}  // namespace

Job PrepareDump(const Request& request, const Setting& /*setting*/) {
  return [request](Session& session) {
    const tasks::TextNotes notes = NotesOf(request, session);
    std::string text = tasks::SavedHead(notes.date, notes.time, notes.comment);
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
    const RegisterImage from = a(session);
    const std::int64_t differing = ShowDifferences(from, b(session), session.Out());
    if (differing == 0) return;
    throw Failure{kDiffers, base::Counted(differing, "registers") + (differing == 1 ? " differs" : " differ"), ""};
  };
}

Job PrepareExport(const Request& request, const Setting& /*setting*/) {
  const auto* const form =
      std::ranges::find(kForms, std::string_view(request.form), &std::pair<std::string_view, tasks::ExportForm>::first);
  if (form == kForms.end()) {
    throw Failure{kUsage, "'" + request.form + "' is no form", "Give --as saved, c, i2cset or csv"};
  }
  return [request, as = form->second](Session& session) {
    const RegisterImage image = ReadChip(session);
    session.Out().Text(tasks::ExportText(as, {image}, NotesOf(request, session)));
  };
}

}  // namespace zth::command

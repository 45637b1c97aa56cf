#include "command/Commands.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "command/Failure.h"
#include "link/Asker.h"
#include "tasks/Recorder.h"
#include "tasks/SavedConfig.h"

namespace zth::command {
namespace {

struct Command {
  std::string_view name;
  Job (*prepare)(const Request&, const Setting&);
};

constexpr std::array<Command, 15> kCommands{{{"find", PrepareFind},
                                             {"read", PrepareRead},
                                             {"write", PrepareWrite},
                                             {"dump", PrepareDump},
                                             {"apply", PrepareApply},
                                             {"diff", PrepareDiff},
                                             {"watch", PrepareWatch},
                                             {"log", PrepareLog},
                                             {"export", PrepareExport},
                                             {"curve", PrepareCurve},
                                             {"limits", PrepareLimits},
                                             {"alerts", PrepareAlerts},
                                             {"serve", PrepareServe},
                                             {"characterise", PrepareCharacterise},
                                             {"run", PrepareRun}}};

std::string Sentence(const Failure& failure) {
  return failure.what + "." + (failure.remedy.empty() ? "" : " " + failure.remedy + ".");
}

int RunSession(const CommandLine& line, const Setting& setting) {
  if (!line.options.device.empty()) Session::ChipOf(line.options.device);
  Session session(setting, line.options);
  if (line.request.name == "doctor") {
    Session::TakeBoard(line.options.board, setting.services);
    return RunDoctor(session, line.request.noTransfers);
  }
  const Job job = Prepare(line.request, setting);
  if (!job) return kDone;
  Session::TakeBoard(line.options.board, setting.services);
  try {
    session.Start();
    const link::Asker asker(link::Asker::Kind::Action, [&line] { return "zth4718 " + line.request.name; });
    job(session);
  } catch (Failure& failure) {
    if (!session.Writes().empty() && (failure.status == kLinkFailed || failure.status == kEnded)) {
      failure.what += "; written before: " + session.Writes();
    }
    throw;
  }
  const QString trouble = tasks::RecordingTrouble();
  if (!trouble.isEmpty()) setting.output.Error("zth4718: " + trouble.toStdString());
  return kDone;
}

}  // namespace

Job Prepare(const Request& request, const Setting& setting) {
  const auto* const command = std::ranges::find(kCommands, std::string_view(request.name), &Command::name);
  if (command == kCommands.end()) throw Failure{kUsage, "'" + request.name + "' is no command here", ""};
  return command->prepare(request, setting);
}

int Run(const std::vector<std::string>& arguments, platform::Services& services, const Console& console) {
  Output output(console, false, false);
  try {
    const CommandLine line = ParseCommandLine(arguments);
    if (!line.help.empty()) {
      output.Text(line.help);
      return kDone;
    }
    output = Output(console, line.options.json, line.options.quiet);
    return RunSession(line, {services, output});
  } catch (const Failure& failure) {
    output.Error("zth4718: " + Sentence(failure));
    return failure.status;
  }
}

std::string TextOfFile(const std::string& name, platform::Services& services) {
  const auto bytes = services.files.Read(QString::fromStdString(name), tasks::SavedReader::kMostBytes);
  if (!bytes) throw Failure{kUsage, "'" + name + "' cannot be read", "Check its name and its permissions"};
  return bytes->toStdString();
}

}  // namespace zth::command

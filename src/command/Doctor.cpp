#include <sstream>

#include "command/Commands.h"
#include "command/Devices.h"
#include "link/BoardName.h"
#include "link/Declarations.h"
#include "tasks/StartReport.h"

namespace zth::command {
namespace {

/// The report line by line, without the blank ones between its parts if it is for a program.
void ShowReport(const Session& session) {
  std::istringstream lines(tasks::StartDetails(session.Services()).toStdString());
  for (std::string line; std::getline(lines, line);) {
    if (!line.empty() || !session.Out().Json()) session.Out().Result(line, {{"report", line}});
  }
}

/// A library that names its board before it has looked for one needs no device of this machine: it simulates or
/// replays.
bool NeedsDevices(std::int16_t mode) {
  return link::BoardNameOf(mode).isEmpty();
}

/// What can be said of the libraries and of this machine without calling what transfers.
int LookOnly(const Session& session) {
  platform::Libraries& libraries = session.Services().libraries;
  const bool hasSmbus = link::LoadSmbus(libraries).isEmpty();
  const bool hasUsb = link::LoadUsbFunctions(libraries).isEmpty();
  const auto remedy = [](const std::string& error) {
    if (error.empty()) return "";
    return error.find("File not found") == std::string::npos
               ? "install what the error names, or a library built for this system"
               : "put the library there, or name another board with --board";
  };
  const auto show = [&](const char* name, const link::LibraryReport& report, std::int16_t mode) {
    const std::string file = report.file.toStdString();
    const std::string error = report.error.toStdString();
    const std::string board = link::BoardNameOf(mode).toStdString();
    const std::string trouble = link::BoardTrouble(mode).simplified().toStdString();
    session.Out().Result(std::string(name) + ": " + file + (board.empty() ? "" : " (" + board + ")") +
                             (error.empty() ? ", usable" : "; error: " + error + "; remedy: " + remedy(error)) +
                             (trouble.empty() ? "" : "; it says: " + trouble),
                         {{"link", name},
                          {"file", file},
                          {"board", board},
                          {"error", error},
                          {"remedy", remedy(error)},
                          {"trouble", trouble}});
  };
  show("USB adapter", link::Bus.UsbLibrary, link::kModeUsb);
  show("SMBus host", link::Bus.SmbusLibrary, link::kModeSmbus);
  if (!hasSmbus && !hasUsb) {
    throw Failure{kNoHardware, "There is no library for either link",
                  "Name a board with --board, or put the maker's library beside the program"};
  }
  if (session.Services().machine == nullptr) return kDone;
  const DevicesNeeded needed{hasSmbus && NeedsDevices(link::kModeSmbus), hasUsb && NeedsDevices(link::kModeUsb)};
  return ShowDevices(*session.Services().machine, needed, session.Out()) ? kNoHardware : kDone;
}

}  // namespace

int RunDoctor(Session& session, bool noTransfers) {
  if (noTransfers) return LookOnly(session);
  try {
    session.Start();
  } catch (const Failure& failure) {
    if (failure.status != kEnded) ShowReport(session);
    throw;
  }
  for (const QString& chip : session.Chips()) {
    session.Out().Result("Found: " + chip.toStdString(), {{"chip", chip.toStdString()}});
  }
  ShowReport(session);
  return kDone;
}

}  // namespace zth::command

#pragma once

#include <functional>
#include <string>
#include <vector>

#include "command/CommandLine.h"
#include "command/Output.h"
#include "command/Session.h"
#include "platform/Services.h"

namespace zth::command {

/// Runs the command line behind the program's name; returns the exit status (Failure.h).
int Run(const std::vector<std::string>& arguments, platform::Services& services, const Console& console);

/// A command that is known to be right, to be run on a connection.
using Job = std::function<void(Session&)>;

/// Makes the job of a request: everything that can be wrong without a transfer throws here. An empty job needs no
/// connection and is done.
Job Prepare(const Request& request, const Setting& setting);

// The commands, each in a file with those of its kind.
Job PrepareFind(const Request& request, const Setting& setting);
Job PrepareRead(const Request& request, const Setting& setting);
Job PrepareWrite(const Request& request, const Setting& setting);
Job PrepareDump(const Request& request, const Setting& setting);
Job PrepareApply(const Request& request, const Setting& setting);
Job PrepareDiff(const Request& request, const Setting& setting);
Job PrepareWatch(const Request& request, const Setting& setting);
Job PrepareLog(const Request& request, const Setting& setting);
Job PrepareCurve(const Request& request, const Setting& setting);
Job PrepareLimits(const Request& request, const Setting& setting);
Job PrepareAlerts(const Request& request, const Setting& setting);
Job PrepareExport(const Request& request, const Setting& setting);
Job PrepareServe(const Request& request, const Setting& setting);
Job PrepareCharacterise(const Request& request, const Setting& setting);
Job PrepareRun(const Request& request, const Setting& setting);

/// Starts by itself, because it goes on where a start fails. Returns the exit status.
int RunDoctor(Session& session, bool noTransfers);

/// A sample as a result.
void ShowSample(const Sample& sample, const Output& output);

/// The transfers that the link makes by itself behind a write, in words.
void ShowFollowers(std::uint8_t reg, const Output& output);

/// A file's text. Throws Failure if it cannot be read.
std::string TextOfFile(const std::string& name, platform::Services& services);

}  // namespace zth::command

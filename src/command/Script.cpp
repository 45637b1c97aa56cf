#include <memory>

#include "command/Commands.h"
#include "command/Condition.h"
#include "tasks/TasksState.h"

namespace zth::command {
namespace {

constexpr double kLook = 0.1;  // seconds between two looks of wait-for

using Words = std::vector<std::string>;

Words Behind(const Words& words, std::size_t count) {
  return {words.begin() + static_cast<std::ptrdiff_t>(count), words.end()};
}

Job WaitOf(const Words& words) {
  if (words.size() != 2) throw Failure{kUsage, "wait takes a time", "Give wait 2s"};
  return [seconds = SecondsOf(words[1])](Session& session) { session.Wait(seconds); };
}

Job WaitForOf(const Words& words) {
  if (words.size() != 6 || words[4] != "within") {
    throw Failure{kUsage, "wait-for takes a condition and a time", "Give wait-for Tach2 > 1000 within 5s"};
  }
  const auto condition = std::make_shared<Condition>(Words(words.begin() + 1, words.begin() + 4));
  return [condition, seconds = SecondsOf(words[5]), text = words[5]](Session& session) {
    const double end = session.Now() + seconds;
    while (!condition->Holds(session)) {
      if (session.Now() >= end) throw Failure{kDiffers, condition->Words() + " within " + text, ""};
      session.Wait(kLook);
    }
  };
}

Job AssertOf(const Words& words) {
  const auto condition = std::make_shared<Condition>(Behind(words, 1));
  return [condition](Session& session) {
    if (!condition->Holds(session)) throw Failure{kDiffers, condition->Words(), ""};
  };
}

Job NoteOf(const Words& words) {
  std::string note;
  for (const std::string& word : Behind(words, 1)) note += (note.empty() ? "" : " ") + word;
  return [note](Session& session) {
    tasks::Work.traffic->AddNote(note, session.Now());
    session.Out().Result(note, {{"note", note}});
  };
}

/// One line as a job; an empty one for a line without a command.
Job JobOf(const Words& words, const Setting& setting) {
  if (words.empty()) return {};
  const std::string& name = words.front();
  if (name == "wait") return WaitOf(words);
  if (name == "wait-for") return WaitForOf(words);
  if (name == "assert") return AssertOf(words);
  if (name == "note") return NoteOf(words);
  if (name == "run" || name == "doctor" || name == "serve")
    throw Failure{kUsage, "'" + name + "' is no command of a script", ""};
  const CommandLine line = ParseCommandLine(words);
  const Options& options = line.options;
  if (!options.board.empty() || !options.device.empty() || !options.record.empty() || options.json || options.quiet ||
      !line.help.empty()) {
    throw Failure{kUsage, "This option holds for the whole script", "Give it before the word run"};
  }
  return Prepare(line.request, setting);
}

/// Calls `run` for a line, whose failures then name it.
template <typename Run>
void OnLine(std::size_t number, const Run& run) {
  try {
    run();
  } catch (Failure& failure) {
    failure.what.insert(0, "line " + std::to_string(number) + ": ");
    throw;
  }
}

}  // namespace

Job PrepareRun(const Request& request, const Setting& setting) {
  const std::string text = TextOfFile(request.words.front(), setting.services);
  std::vector<std::pair<std::size_t, Job>> jobs;
  std::size_t number = 0;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = std::min(text.find('\n', at), text.size());
    const std::string line = text.substr(at, end - at);
    at = end + 1;
    ++number;
    OnLine(number, [&] {
      if (Job job = JobOf(WordsOf(line), setting)) jobs.emplace_back(number, std::move(job));
    });
  }
  if (jobs.empty()) throw Failure{kUsage, "'" + request.words.front() + "' holds no command", ""};
  return [jobs](Session& session) {
    for (const auto& [line, job] : jobs) {
      OnLine(line, [&session, &run = job] { run(session); });
    }
  };
}

}  // namespace zth::command

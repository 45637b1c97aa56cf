#include "command/CommandLine.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cctype>
#include <utility>

#include "base/NumberText.h"
#include "base/Product.h"
#include "command/Failure.h"

namespace zth::command {
namespace {

constexpr char kNames[] =
    "a register (\"PWM1 Config\", 21h), a field (PWM1_Config.Bhvr), a reading (Remote1) or a group";

/// The commands, and where their parts go.
class Grammar {
 public:
  explicit Grammar(CommandLine& line) : line_(line) {
    app_.fallthrough();
    app_.require_subcommand(1);
    app_.set_version_flag("--version", std::string("zth4718 ") + base::kVersionText);
    app_.add_option("--board", line.options.board, "A board's name, a folder of libraries, or replay:FILE");
    app_.add_option("--device", line.options.device, "The chip: 58@usb, 2c@smbus; by default the first one found");
    app_.add_option("--record", line.options.record, "Write every transfer to this file");
    app_.add_flag("--json", line.options.json, "One JSON object a line");
    app_.add_flag("--quiet", line.options.quiet, "No remarks on standard error");
    AddDiagnosis();
    AddRegisters();
    AddConfigurations();
    AddSamples();
    AddWords(Add("curve", "Print the duty for each temperature"), "PWM", "PWM1 to PWM4")->required()->expected(1);
    AddMeasuring();
    Add("limits", "Print the limits and whether the readings are within them");
    Add("alerts", "Print the alerts; reading them clears those that have ended");
    AddServe();
    AddWords(Add("run", "Run the commands of a file"), "SCRIPT", "A command a line")->required()->expected(1);
  }

  CLI::App& App() { return app_; }
  void Parse(std::vector<std::string> arguments) {
    std::reverse(arguments.begin(), arguments.end());
    app_.parse(std::move(arguments));
    line_.request.name = app_.get_subcommands().front()->get_name();
    if (!interval_.empty()) line_.request.interval = SecondsOf(interval_);
    if (!duration_.empty()) line_.request.duration = SecondsOf(duration_);
  }

 private:
  CLI::App* Add(const char* name, const char* does) { return app_.add_subcommand(name, does); }
  CLI::Option* AddWords(CLI::App* command, const char* name, const char* means) {
    return command->add_option(name, line_.request.words, means);
  }

  void AddDiagnosis() {
    auto* doctor = Add("doctor", "Say what was looked for and found, with a remedy for each fault");
    doctor->add_flag("--no-transfers", line_.request.noTransfers, "Touch no bus");
    Add("find", "List the chips");
  }

  void AddRegisters() {
    AddWords(Add("read", "Read registers, fields and readings"), "WHAT", kNames)->required();
    auto* write = Add("write", "Write registers or fields");
    AddWords(write, "WHAT=VALUE", "A register or a field, and 17, 11h, 0x11 or 0b10001")->required();
    AddWriteOptions(write);
  }

  void AddConfigurations() {
    auto* dump = Add("dump", "Print the chip's configuration as a saved one");
    dump->add_flag("--changed", line_.request.changedOnly, "Only registers that differ from their defaults");
    dump->add_option("--comment", line_.request.comment, "A comment for the head");
    auto* exports = Add("export", "Print the chip's configuration to hand over");
    exports->add_option("--as", line_.request.form, "saved, c, i2cset or csv; saved by default");
    exports->add_option("--comment", line_.request.comment, "A comment for the head");
    auto* apply = Add("apply", "Write a saved configuration to the chip");
    AddWords(apply, "FILE", "A saved configuration")->required()->expected(1);
    AddWriteOptions(apply);
    AddWords(Add("diff", "Compare configurations"), "A B", "default, chip or a file; B is the chip if left out")
        ->required()
        ->expected(1, 2);
  }

  void AddSamples() {
    auto* watch = Add("watch", "Print a line for each sample");
    AddWords(watch, "WHAT", kNames);
    AddPace(watch);
    auto* log = Add("log", "Write samples to a file, comma-separated");
    AddWords(log, "FILE WHAT", "A new file, then what to log")->required();
    auto* append = log->add_flag("--append", line_.request.append, "Go on with a file that is there");
    log->add_flag("--force", line_.request.force, "Write over a file that is there")->excludes(append);
    AddPace(log);
  }

  void AddServe() {
    auto* serve = Add("serve", "Serve the readings of all chips over HTTP, in the OpenMetrics format");
    serve->add_option("--listen", line_.request.listen, "An IP address and a port; 127.0.0.1:9418 by default");
    serve->add_flag("--alerts", line_.request.alerts, "Read the host's status registers too, which clears them");
  }

  void AddMeasuring() {
    auto* measure = Add("characterise", "Measure fans, heat and the chip's control, and put everything back");
    AddWords(measure, "WHAT", "fans, heat, controller or all; fans by default");
    MeasuringOptions& options = line_.request.measuring;
    measure->add_option("--pwm", options.pwms, "The PWMs: 1,2; all by default");
    measure->add_option("--pulses", options.pulses, "Tach pulses per revolution; by default as the chip is set");
    measure->add_option("--step", options.step, "Of the duty, percent; 5 by default");
    measure->add_option("--heater", options.heater, "1 or 2; 1 by default");
    measure->add_option("--heat", options.heat, "Its drive, percent; 60 by default");
    measure->add_option("--watts", options.watts, "Its power at 100 %, for results in K/W");
    measure->add_option("--duties", options.duties, "Of the fans for heat: 100,60,35 by default");
    measure->add_option("--keep", options.keep, "The temperature that a proposal keeps; 60C by default");
    measure->add_option("--limit", options.limit, "The temperature that ends it; 85C by default");
    measure->add_option("--most", options.most, "The time that ends it; 1h by default");
    measure->add_option("--out", options.folder, "A folder for the report's files");
  }

  void AddWriteOptions(CLI::App* command) {
    auto* verify = command->add_flag("--verify", line_.request.verify, "Read back what was written");
    command->add_flag("--dry-run", line_.request.dryRun, "Print the transfers, make none")->excludes(verify);
  }

  void AddPace(CLI::App* command) {
    command->add_option("--interval", interval_, "Between two samples: 500ms, 1s; 1s by default");
    command->add_option("--for", duration_, "How long: 10m, 2h; by default until Ctrl-C");
  }

  CommandLine& line_;
  CLI::App app_{"Reads, writes and watches a ZTH4718 from scripts.", "zth4718"};
  std::string interval_;
  std::string duration_;
};

}  // namespace

CommandLine ParseCommandLine(const std::vector<std::string>& arguments) {
  CommandLine line;
  Grammar grammar(line);
  try {
    grammar.Parse(arguments);
  } catch (const CLI::CallForHelp&) {
    line.help = grammar.App().help();
  } catch (const CLI::CallForVersion&) {
    line.help = grammar.App().version() + "\n";
  } catch (const CLI::ParseError& error) {
    throw Failure{kUsage, error.what(), "See zth4718 --help"};
  }
  return line;
}

double SecondsOf(const std::string& text) {
  constexpr double kYear = 365.0 * 24 * 3600;
  const auto letters = std::find_if(text.begin(), text.end(), [](unsigned char c) { return std::isalpha(c) != 0; });
  const std::string number(text.begin(), letters);
  const std::string unit(letters, text.end());
  const double scale = unit == "ms" ? 0.001 : unit == "s" ? 1 : unit == "m" ? 60 : unit == "h" ? 3600 : 0;
  const double seconds = base::IsDecimal(number) ? base::LeadingDecimal(number) * scale : 0;
  if (seconds <= 0 || seconds > kYear) throw Failure{kUsage, "'" + text + "' is no time", "Give 500ms, 2s, 10m or 1h"};
  return seconds;
}

std::vector<std::string> WordsOf(const std::string& line) {
  std::vector<std::string> words;
  bool inWord = false;
  bool quoted = false;
  for (const char c : line) {
    if (c == '#' && !inWord) break;
    if (c == '"') {
      if (!inWord) words.emplace_back();
      quoted = !quoted;
      inWord = true;
    } else if (!quoted && (c == ' ' || c == '\t' || c == '\r')) {
      inWord = false;
    } else {
      if (!inWord) words.emplace_back();
      inWord = true;
      words.back() += c;
    }
  }
  if (quoted) throw Failure{kUsage, "A quotation mark is not closed", "Close it on the same line"};
  return words;
}

}  // namespace zth::command

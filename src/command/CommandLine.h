#pragma once

#include <optional>
#include <string>
#include <vector>

/// The command line in parts. This room's only user of the library that reads it.
namespace zth::command {

/// What is said before or after the command.
struct Options {
  std::string board;   ///< a board's name, a folder, or "replay:" and a file; empty: as the loader finds libraries
  std::string device;  ///< "58@usb", "2c@smbus"; empty: the first chip found
  std::string record;  ///< a file for the traffic; empty: none
  bool json = false;
  bool quiet = false;
};

/// What characterise is asked for, as given; empty or 0 for what is left out.
struct MeasuringOptions {
  std::string pwms;    ///< "1,2"
  std::string duties;  ///< "100,60,35"
  std::string keep;    ///< "60C"
  std::string limit;   ///< likewise
  std::string most;    ///< a time
  std::string folder;
  int pulses = 0;
  int step = 0;  ///< percent
  int heater = 0;
  double heat = 0;  ///< percent
  double watts = 0;
};

/// A command with its own words and options.
struct Request {
  std::string name;                ///< "read"
  std::vector<std::string> words;  ///< the names, files and so on behind it
  std::string comment;             ///< of dump and export
  std::string form = "saved";      ///< of export
  bool verify = false;
  bool dryRun = false;
  bool noTransfers = false;
  bool changedOnly = false;
  bool append = false;                    ///< of log: to a file that is there
  bool force = false;                     ///< of log: in place of it
  bool alerts = false;                    ///< of serve
  std::string listen = "127.0.0.1:9418";  ///< of serve
  double interval = 1;                    ///< seconds between two samples
  std::optional<double> duration;         ///< seconds; none: until a signal
  MeasuringOptions measuring;
};

struct CommandLine {
  Options options;
  Request request;
  std::string help;  ///< what is to be shown in place of doing anything
};

/// Takes the arguments behind the program's name apart. Throws Failure.
CommandLine ParseCommandLine(const std::vector<std::string>& arguments);

/// Seconds of "500ms", "2s", "10m" or "1h", more than 0 and at most a year. Throws Failure.
double SecondsOf(const std::string& text);

/// A script's line as words: blanks part them, double quotes hold one together, "#" begins a comment. Throws Failure.
std::vector<std::string> WordsOf(const std::string& line);

}  // namespace zth::command

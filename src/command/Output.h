#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace zth::command {

/// Where the command writes: standard output and standard error. Texts are UTF-8 and whole lines.
struct Console {
  std::function<void(std::string_view text)> out;
  std::function<void(std::string_view text)> error;
};

using Value = std::variant<std::string, std::int64_t, double, bool>;
/// The parts of a result, for readers that are programs.
using Row = std::vector<std::pair<std::string, Value>>;

/// Results as lines for people, or as one JSON object a line.
class Output {
 public:
  Output(Console console, bool json, bool quiet) : console_(std::move(console)), json_(json), quiet_(quiet) {}

  /// One result: `line` without its end for people, `row` for programs.
  void Result(std::string_view line, const Row& row) const;

  /// A text that is a result as it stands, such as a file's.
  void Text(std::string_view text) const { console_.out(text); }

  /// A remark on standard error, which --quiet leaves out.
  void Remark(std::string_view line) const;

  /// An error, in one line on standard error.
  void Error(std::string_view line) const;

  bool Json() const { return json_; }

 private:
  Console console_;
  bool json_;
  bool quiet_;
};

/// A number in as few digits as needed: "25.5", "0.25", "1200".
std::string NumberText(double value);

/// A byte as the register map writes it: "0Ah".
std::string ByteText(unsigned value);

}  // namespace zth::command

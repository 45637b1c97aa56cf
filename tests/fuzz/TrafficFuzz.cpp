// Whatever a file contains, the reader of recordings ends, in pieces of any size the same way, and each line that it
// takes is written so that it reads the same again.

#include <algorithm>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "tasks/TrafficReader.h"

namespace {

using zth::tasks::TrafficReader;

/// What the reader gives: each record written again, then the fault.
std::vector<std::string> Read(std::string_view text, std::size_t piece) {
  TrafficReader reader([&text, piece] {
    const std::string next(text.substr(0, piece));
    text.remove_prefix(next.size());
    return next;
  });
  std::vector<std::string> lines;
  while (reader.Next()) lines.push_back(zth::tasks::TrafficLineText(reader.Record(), reader.Text(), 0));
  const std::string begin = "line " + std::to_string(reader.Line()) + ": ";
  if (!reader.Fault().empty() && reader.Line() > 0 && !reader.Fault().starts_with(begin)) std::abort();
  lines.push_back(reader.Fault());
  return lines;
}

/// A line that was written must be read as the same line.
void ExpectSame(const std::string& line) {
  const auto again = Read(std::string(zth::tasks::kTrafficTitle) + "\n" + line + "\n", 64);
  if (again.size() != 2 || again.front() != line || !again.back().empty()) std::abort();
}

}  // namespace

// libFuzzer names this function.
extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size);   // NOLINT
extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {  // NOLINT
  const std::string text(reinterpret_cast<const char*>(data), size);
  const auto lines = Read(text, std::max<std::size_t>(size, 1));
  if (lines != Read(text, 3)) std::abort();
  for (std::size_t i = 0; i + 1 < lines.size(); ++i) ExpectSame(lines[i]);
  return 0;
}

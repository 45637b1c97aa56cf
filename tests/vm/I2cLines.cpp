// i2c-lines copied FILE: prints the calls of a recording as the bus traffic's window copies them for i2c-tools.
// i2c-lines map SEED: prints a saved configuration with random values of all registers that can be written.
// i2c-lines script FILE: prints a configuration as the script that it is exported as.
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "chip/RegisterNames.h"
#include "tasks/Exports.h"
#include "tasks/TrafficCopies.h"
#include "tasks/TrafficReader.h"

namespace {

using namespace zth;

int Fail(const std::string& why) {
  std::fprintf(stderr, "i2c-lines: %s\n", why.c_str());
  return 1;
}

int Print(const std::string& text) {
  std::fputs(text.c_str(), stdout);
  return 0;
}

std::string Whole(const std::string& path) {
  std::ifstream file(path);
  return std::string{std::istreambuf_iterator<char>(file), {}};
}

int Copied(std::string whole) {
  tasks::TrafficReader reader([&whole] { return std::exchange(whole, {}); });
  tasks::Traffic traffic;
  std::vector<std::uint64_t> numbers;
  while (reader.Next()) {
    numbers.push_back(traffic.End());
    traffic.Add(reader.Record(), reader.Text());
  }
  Print(tasks::AsI2cTools(traffic, numbers));
  if (!reader.Fault().empty()) return Fail(reader.Fault());
  return numbers.empty() ? Fail("there are no calls") : 0;
}

int Map(unsigned seed) {
  std::mt19937 random(seed);
  tasks::RegisterImage image;
  for (const std::uint8_t reg : tasks::ComparableRegisters()) {
    // Reset and ready are never written.
    const unsigned bits = reg == "Configuration 0"_reg || reg == "Configuration 1"_reg ? 0x7FU : 0xFFU;
    image.Put(reg, static_cast<std::uint8_t>(random() & bits));
  }
  return Print(tasks::ExportText(tasks::ExportForm::Saved, {image}, {}));
}

int Script(const std::string& text) {
  const tasks::ImageOrError read = tasks::ImageOfText(text, "a file");
  if (!read) return Fail(read.error);
  return Print(tasks::ExportText(tasks::ExportForm::Script, {*read.image}, {}));
}

}  // namespace

int main(int argc, char** argv) {
  const std::string what = argc == 3 ? argv[1] : "";
  if (what == "copied") return Copied(Whole(argv[2]));
  if (what == "map") return Map(static_cast<unsigned>(std::atoi(argv[2])));
  if (what == "script") return Script(Whole(argv[2]));
  return Fail("usage: i2c-lines copied FILE | map SEED | script FILE");
}

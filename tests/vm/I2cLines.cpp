// i2c-lines FILE: prints the calls of a recording as the bus traffic's window copies them for i2c-tools.
#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

#include "tasks/TrafficCopies.h"
#include "tasks/TrafficReader.h"

int main(int argc, char** argv) {
  std::ifstream file(argc == 2 ? argv[1] : "");
  std::string whole{std::istreambuf_iterator<char>(file), {}};
  zth::tasks::TrafficReader reader([&whole] { return std::exchange(whole, {}); });
  zth::tasks::Traffic traffic;
  std::vector<std::uint64_t> numbers;
  while (reader.Next()) {
    numbers.push_back(traffic.End());
    traffic.Add(reader.Record(), reader.Text());
  }
  std::fputs(zth::tasks::AsI2cTools(traffic, numbers).c_str(), stdout);
  std::fputs(reader.Fault().c_str(), stderr);
  return reader.Fault().empty() && !numbers.empty() ? 0 : 1;
}

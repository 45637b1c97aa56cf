#pragma once

#include <cctype>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "simulator/ChipTime.h"

namespace zth::simulator {

/// Plays steps separated by blanks. In hexadecimal, "2C=AB" writes a register, "2C" reads it, "2C:AB" expects this
/// value. "~0.5" lets seconds pass, "~" two conversions. "t2=90.5" sets and "d0:255" expects a quantity of the bench,
/// given by a letter and a number.
template <typename Bench>
void Play(Bench& bench, const std::string& steps) {
  std::istringstream words(steps);
  std::string done;
  for (std::string word; words >> word;) {
    SCOPED_TRACE("at the end of " + (done += " " + word));
    if (word[0] == '~') {
      bench.Run(word.size() == 1 ? 2 * kConversionSeconds : std::stod(word.substr(1)));
      continue;
    }
    const char kind = std::islower(word[0]) != 0 ? word[0] : '\0';
    const std::size_t middle = word.find_first_of("=:");
    const std::string number = word.substr(kind == '\0' ? 0 : 1, middle - (kind == '\0' ? 0 : 1));
    const int which = number.empty() ? 0 : std::stoi(number, nullptr, 16);
    const std::string text = middle == std::string::npos ? "" : word.substr(middle + 1);
    const double value = text.empty()                  ? 0
                         : kind == '\0' || kind == 'p' ? std::stoi(text, nullptr, 16)
                                                       : std::stod(text);
    if (middle == std::string::npos || word[middle] == ':') {
      const double got = bench.Get(kind, which);
      if (text.empty()) continue;
      EXPECT_EQ(got, value) << std::hex << "0x" << static_cast<int>(got);
    } else {
      bench.Set(kind, which, value);
    }
  }
}

}  // namespace zth::simulator

#pragma once

#include <string>
#include <vector>

#include "platform/Services.h"

namespace zth::testing {

/// The boxes that one place of the program can ask, caught while it asks them.
struct BoxSource {
  std::string file;  ///< the source that asks, below src/
  std::vector<platform::BoxQuestion> boxes;
  std::vector<platform::ChoiceQuestion> choices = {};
};

/// Every box of the program, a row for each place that asks. `EveryPlaceThatAsksABox` is what the sources say of it.
std::vector<BoxSource> EveryBox();

/// The sources that ask a box, once for each place, in order.
std::vector<std::string> EveryPlaceThatAsksABox();

}  // namespace zth::testing

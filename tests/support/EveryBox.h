#pragma once

#include <string>
#include <vector>

#include "platform/Services.h"

namespace zth::testing {

/// The boxes that one place in the program can show, caught while they are open.
struct BoxSource {
  std::string file;  ///< the source that shows it, below src/
  std::vector<platform::BoxQuestion> boxes;
  std::vector<platform::ChoiceQuestion> choices = {};
};

/// Every box of the program, with a row for each place that shows one. `EveryPlaceThatAsksABox` finds the places in the
/// sources.
std::vector<BoxSource> EveryBox();

/// The sources that show a box, once for each place, in order.
std::vector<std::string> EveryPlaceThatAsksABox();

}  // namespace zth::testing

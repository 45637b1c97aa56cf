#include "chip/FanCurve.h"

#include <cmath>
#include <cstddef>

#include "base/NumberText.h"
#include "base/Rounding.h"

namespace zth::chip {

int DutyRise(int quarters, int trange) {
  // The items show thirds of a degree with one decimal.
  const double shown = base::LeadingDecimal(kTrangeItems.at(static_cast<std::size_t>(trange)));
  const double sixths = std::round(shown * 6);
  // 0.64 * 255 * (quarters / 4) / (sixths / 6) in whole numbers, so that only the result is rounded.
  return base::RoundToInt(1224.0 * quarters / (5 * sixths));
}

}  // namespace zth::chip

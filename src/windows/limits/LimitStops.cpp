#include "windows/limits/LimitStops.h"

#include <cmath>
#include <map>

#include "widgets/LGaugeScale.h"

namespace zth::windows {

std::vector<double> LimitStops(const GaugeTab& tab, const LimitChannel& channel, double value) {
  const double bottom = tab.scaleFollowsChannel ? 0 : tab.scaleMin;
  const widgets::DialScale scale(bottom, tab.scaleFollowsChannel ? tab.show(0xFF, channel) : tab.scaleMax);
  // By what each would show behind its write; of several places the one nearest to that.
  std::map<double, double> placeOf;
  double last = std::nan("");
  for (int i = 0;; ++i) {
    const double place = scale.Settle(bottom + i * scale.Resolution());
    if (place == last) break;
    last = place;
    const double shown = tab.show(tab.encode(place, channel), channel);
    const auto [entry, added] = placeOf.try_emplace(shown, place);
    if (!added && std::abs(place - shown) < std::abs(entry->second - shown)) entry->second = place;
  }
  placeOf[value] = value;
  std::vector<double> stops;
  stops.reserve(placeOf.size());
  for (const auto& [shown, place] : placeOf) stops.push_back(place);
  return stops;
}

}  // namespace zth::windows

#include "windows/limits/LimitStops.h"

#include <cmath>

#include "widgets/LGaugeScale.h"

namespace zth::windows {

LimitPlaces PlacesOf(const GaugeTab& tab, const LimitChannel& channel) {
  const double bottom = tab.scaleFollowsChannel ? 0 : tab.scaleMin;
  const widgets::DialScale scale(bottom, tab.scaleFollowsChannel ? tab.show(0xFF, channel) : tab.scaleMax);
  LimitPlaces placeOf;
  double last = std::nan("");
  for (int i = 0;; ++i) {
    const double place = scale.Settle(bottom + i * scale.Resolution());
    if (place == last) break;
    last = place;
    const double shown = tab.show(tab.encode(place, channel), channel);
    // If several places give the same limit, keep the nearest one.
    const auto [entry, added] = placeOf.try_emplace(shown, place);
    if (!added && std::abs(place - shown) < std::abs(entry->second - shown)) entry->second = place;
  }
  return placeOf;
}

std::vector<double> LimitStops(const LimitPlaces& places, double value) {
  std::vector<double> stops;
  stops.reserve(places.size() + 1);
  auto place = places.begin();
  for (; place != places.end() && place->first < value; ++place) stops.push_back(place->second);
  stops.push_back(value);
  if (place != places.end() && place->first == value) ++place;
  for (; place != places.end(); ++place) stops.push_back(place->second);
  return stops;
}

}  // namespace zth::windows

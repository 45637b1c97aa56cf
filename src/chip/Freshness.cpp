#include "chip/Freshness.h"

#include <algorithm>

#include "chip/ChipState.h"

namespace zth::chip {
namespace {

constexpr int kNoticeAfter = 3;

const GroupFreshness& Group(int group) {
  return Model.Freshness.groups.at(static_cast<std::size_t>(group));
}

}  // namespace

QString TimeText(double seconds) {
  if (seconds < 60) return QString("%1 s").arg(static_cast<int>(seconds));
  if (seconds < 3600) return QString("%1 min").arg(static_cast<int>(seconds / 60));
  return QString("%1 h").arg(static_cast<int>(seconds / 3600));
}

bool IsStale(int group) {
  return Group(group).stale;
}

QString AgeText(int group) {
  const GroupFreshness& of = Group(group);
  if (!of.stale) return {};
  if (!of.readAt || of.readFrom != link::ChipInUse()) return "never read";
  return TimeText(std::max(0.0, Model.Freshness.now - *of.readAt)) + " old";
}

QString AgeSuffix(int group) {
  return IsStale(group) ? ", " + AgeText(group) : QString();
}

int GroupOfLogRow(std::size_t row) {
  constexpr std::array<std::size_t, 4> kEnds{4, 12, 16, 39};
  constexpr std::array kGroups{kTemperatureGroup, kTachGroup, kPwmGroup, kVoltageGroup, kDynamicTminGroup};
  const auto end = std::upper_bound(kEnds.begin(), kEnds.end(), row);
  return kGroups.at(static_cast<std::size_t>(end - kEnds.begin()));
}

void NoteReading(int group, bool failed) {
  FreshnessState& state = Model.Freshness;
  GroupFreshness& of = state.groups.at(static_cast<std::size_t>(group));
  of.stale = failed;
  if (failed) {
    if (++state.staleInARow >= kNoticeAfter) state.notice = true;
    return;
  }
  of.readAt = state.now;
  of.readFrom = link::ChipInUse();
  state.staleInARow = 0;
  // Not at the first good reading: the notice would come and go with a link that fails now and then.
  if (std::ranges::none_of(state.groups, &GroupFreshness::stale)) state.notice = false;
}

QString FreshnessNotice() {
  if (!Model.Freshness.notice) return {};
  return QString("Readings of %1 fail: what is grey or has an age is old").arg(link::TextOf(link::ChipInUse()));
}

}  // namespace zth::chip

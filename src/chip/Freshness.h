#pragma once

#include <array>
#include <cstddef>
#include <optional>

#include <QString>

#include "link/ChipId.h"

/// Tells how far the measurements can be trusted. A group is stale when a transfer failed while it was read. None of
/// the values of that read is used, so the last good ones stay, with their age, until the group is read without a
/// failure. When the link's library does not report failures, nothing is ever stale.
namespace zth::chip {

inline constexpr int kTemperatureGroup = 1;
inline constexpr int kTachGroup = 2;
inline constexpr int kPwmGroup = 3;
inline constexpr int kVoltageGroup = 4;
inline constexpr int kThermGroup = 5;
inline constexpr int kDynamicTminGroup = 6;

/// The state of one group.
struct GroupFreshness {
  bool stale = false;            ///< a transfer failed in the latest read
  std::optional<double> readAt;  ///< time of the last good read, in seconds of the clock
  link::ChipId readFrom;         ///< the chip of that read
};

struct FreshnessState {
  std::array<GroupFreshness, 7> groups;  ///< 1 to 6; 0 is not in use
  double now = 0;                        ///< seconds of the clock; set by the caller before it reads groups
  int staleInARow = 0;                   ///< failed reads in a row, over all groups
  bool notice = false;                   ///< the user is to be told
};

/// A readable duration: "3 s", "12 min", "5 h".
QString TimeText(double seconds);

bool IsStale(int group);

/// The age of a stale group's values: "3 s old", or "never read" when the chip in use has given none. Empty while they
/// are fresh.
QString AgeText(int group);

/// The age to append to a text that shows such a value: ", 3 s old".
QString AgeSuffix(int group);

/// The group that the row of `LogChannelTable` is read with.
int GroupOfLogRow(std::size_t row);

/// Records that `group` has been read, and whether a transfer failed.
void NoteReading(int group, bool failed);

/// The notice for the user while reads fail: from the third failure in a row until no group is stale. Empty otherwise.
QString FreshnessNotice();

}  // namespace zth::chip

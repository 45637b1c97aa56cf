#pragma once

#include <array>
#include <cstddef>
#include <optional>

#include <QString>

#include "link/ChipId.h"

/// How far the measurements can be trusted. A group in whose reading a transfer failed is stale: none of its values is
/// taken, so that the last good ones stand, with their age, until the group is read well again. Where the link's
/// library does not tell of failures nothing is ever stale.
namespace zth::chip {

inline constexpr int kTemperatureGroup = 1;
inline constexpr int kTachGroup = 2;
inline constexpr int kPwmGroup = 3;
inline constexpr int kVoltageGroup = 4;
inline constexpr int kThermGroup = 5;
inline constexpr int kDynamicTminGroup = 6;

/// How one group stands.
struct GroupFreshness {
  bool stale = false;            ///< a transfer failed when it was read last
  std::optional<double> readAt;  ///< when it was last read well, in seconds of the clock
  link::ChipId readFrom;         ///< and from which chip
};

struct FreshnessState {
  std::array<GroupFreshness, 7> groups;  ///< 1 to 6; 0 is not in use
  double now = 0;                        ///< seconds of the clock; whoever has groups read puts it before
  int staleInARow = 0;                   ///< readings of groups, whichever, that have failed one after the other
  bool notice = false;                   ///< the user is to be told
};

/// A time for people: "3 s", "12 min", "5 h".
QString TimeText(double seconds);

bool IsStale(int group);

/// How old the values of a stale group are: "3 s old", "never read" where the chip in use has given none; empty while
/// they are fresh.
QString AgeText(int group);

/// The same behind a text that shows such a value: ", 3 s old".
QString AgeSuffix(int group);

/// The group that a row of `LogChannelTable` is read in.
int GroupOfLogRow(std::size_t row);

/// Group `group` has been read, with or without a failed transfer.
void NoteReading(int group, bool failed);

/// What the user is to be told while readings fail: after the third in a row, until no group is stale any more. Empty
/// as a rule.
QString FreshnessNotice();

}  // namespace zth::chip

#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "tasks/TrafficRecord.h"

/// Bus traffic as text, a line for each call. docs/traffic.md holds the grammar. Plain C++ without Qt, because the
/// replay libraries use it too.
namespace zth::tasks {

/// The first line of each recording.
inline constexpr std::string_view kTrafficTitle = "# ZTH4718 bus traffic 1";

/// The line of a head which says so.
inline constexpr std::string_view kFailuresUnknown = "# smbus failures unknown";

/// Bytes in a line at most. Who asked, or a note, is cut so that the line fits.
inline constexpr std::size_t kMostTrafficLine = 2048;

/// What the head of a recording says.
struct TrafficHead {
  std::string started;             ///< UTC: "2026-11-23T10:12:13.123Z"
  std::string board;               ///< as link::BoardName; empty for a library without a name
  std::string program;             ///< version of the program that recorded
  bool smbusFailuresKnown = true;  ///< false if the SMBus library did not tell which transfers failed
};

/// The lines of a head, each with its end of line.
std::string TrafficHeadText(const TrafficHead& head);

/// A call or a note as a line, without its end of line. `text`: who asked, or the note. `start`: the time that the line
/// counts from, usually that of the first record.
std::string TrafficLineText(const TrafficRecord& record, std::string_view text, double start);

/// Takes a call's line apart. `text` is who asked, a part of `line`. Returns what is wrong with the line, in words that
/// follow its number; empty if it is a call.
std::string_view ParseTrafficCall(std::string_view line, TrafficRecord& record, std::string_view& text);

/// False if a line holds bytes that are no UTF-8, or characters of control other than tabs.
bool IsTrafficText(std::string_view line);

/// What the SMBus library is taken to have read when a line says only that the read failed.
inline constexpr std::uint8_t kByteOfFailedRead = 0xFF;
/// The result that a USB entry is taken to have returned when a line says only that the call failed.
std::int16_t ResultOfFailure(link::Form form);

}  // namespace zth::tasks

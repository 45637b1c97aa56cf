#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "tasks/TrafficRecord.h"

/// A record of the bus traffic in words, as the columns of a table. Numbers are hexadecimal, "58h", and without the "h"
/// where they are bytes that were sent. A text is empty where a call has no such part.
namespace zth::tasks {

/// Seconds with six decimals, as in a recording.
std::string SecondsText(double seconds);

/// "USB" or "SMBus".
std::string BusText(const TrafficRecord& record);

/// The address on the bus as the link was given it.
std::string AddressText(const TrafficRecord& record);

/// "R", "W", "R block", "W port" and so on, with ", failed" for a call that failed; "mark" for a note.
std::string CallText(const TrafficRecord& record);

/// "21h", of a block "88h-9Bh".
std::string RegisterText(const TrafficRecord& record);

/// The register's name in the chip's table, of a block the first and the last one. Of an address with two rows both
/// names: which of them applies depends on the chip's pins at that time.
std::string NameText(const TrafficRecord& record);
std::string NameOfRegister(std::uint8_t reg);

/// "12 80 80 80", with at most `most` bytes and then "...". Empty for a failed read, which has given none.
std::string BytesText(const TrafficRecord& record, std::size_t most = kMostBytes);

/// What a write has changed: "11 → 31: Bhvr 0 → 1", with at most `most` fields and then the number of the others; "31,
/// unchanged". Empty if the traffic does not show the value before.
std::string ChangeText(const TrafficRecord& record, std::size_t most = 8);

/// "Bhvr = 2, Inv = 1"; of a block those of each register that has any, after its name.
std::string FieldsText(const TrafficRecord& record);

/// The window, "monitor" or "start" at the beginning of who asked: "frmLimits" for "frmLimits opens" and for "monitor
/// frmLimits". Empty if nobody has said.
std::string_view SourceOf(std::string_view asker);
bool IsOfMonitor(std::string_view asker);

}  // namespace zth::tasks

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// The chip's readings by name, and the groups in which the chip gives them. Makes no transfer.
namespace zth::command {

/// The rows of chip::LogChannelTable, then the on-times of THERM1 and THERM2.
inline constexpr std::size_t kReadings = 47;

std::string_view NameOfReading(std::size_t row);

/// "°C", "rpm", "%" or "V".
std::string_view UnitOfReading(std::size_t row);

/// As in chip/Freshness.h.
int MeasurementGroupOf(std::size_t row);

/// The value that was measured last, in the reading's unit.
double ValueOfReading(std::size_t row);

/// The value's registers, as they were read: one byte, or two as high * 256 + low.
unsigned RawOfReading(std::size_t row, const std::array<std::uint8_t, 256>& bytes);

/// Whether the pins that the model knows provide the reading.
bool IsProvided(std::size_t row);

/// The reading with this key (Names.h), with or without " Temp".
std::optional<std::size_t> ReadingOfKey(std::string_view key);

/// The readings of a group by its key, such as "voltages"; none if there is no such group.
std::vector<std::size_t> GroupOfKey(std::string_view key);

/// "temperatures, fans, ..." for people.
std::string GroupNames();

}  // namespace zth::command

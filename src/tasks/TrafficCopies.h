#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tasks/Traffic.h"

/// Records of the traffic as text to paste elsewhere. `numbers` are those of records that are held.
namespace zth::tasks {

/// A line for each record, the columns of the table separated by tabs.
std::string AsText(const Traffic& traffic, const std::vector<std::uint64_t>& numbers);

/// Lines for a shell with i2c-tools: i2cset for a write, i2cget for each register read. They take the adapter's number
/// from the variable BUS. What only the board's adapter can do, what has failed and the marks are comments.
///
/// i2c-tools take addresses of 7 bits. So does the SMBus link. The board's adapter takes the 8 bits that are sent first
/// on the wire: its 58h is 0x2c.
std::string AsI2cTools(const Traffic& traffic, const std::vector<std::uint64_t>& numbers);

/// A row for each write, "{0x21, 0x31}, // PWM1 Config", for a table in C. All others are comments.
std::string AsC(const Traffic& traffic, const std::vector<std::uint64_t>& numbers);

}  // namespace zth::tasks

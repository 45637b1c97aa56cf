#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// Duty registers in percent: what the windows' text boxes show and send, and what a slider sends. Every rounding is
/// half to even; a text that begins with no number counts as 0.
namespace zth::chip {

/// The digits of raw * 100 / 255.
std::string DutyPercentText(std::uint8_t raw);

/// The leading number * 255 / 100. Not limited to a byte: that is the link's affair.
std::int32_t DutyFromText(std::string_view text);

/// The byte of a slider at `percent`, 0 to 100: the product with 2.55 in double precision, which lies just under some
/// of the ties.
std::uint8_t DutyFromPercent(double percent);

}  // namespace zth::chip

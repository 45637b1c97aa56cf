#pragma once

#include <cstdint>

#include <QString>

#include "chip/RegMapStuff.h"

namespace zth::windows {

/// What the window calls a register, "PWM2 Config Register".
QString DescriptionOf(const chip::RegisterEntry& entry);

/// Whether a register answers to what the user typed into the search box: a part of its name, the beginning of the name
/// of one of its bits, or its address in hexadecimal ("4C", "4Ch", "0x4c"). Case and blanks at the ends do not count;
/// an empty text fits all.
bool FitsSearch(const chip::RegisterEntry& entry, const QString& text);

/// The whole text as an address, "4C", "4Ch" or "0x4c"; -1 for any other.
int AddressOf(QString text);

/// The fields of a register that holds `value`, by their bit names, "Bhvr = 2, Inv = 1, Slow = 0, Spin = 1": bits of
/// one name make one number. Reserved bits are left out, and so are bits that only have numbers.
QString FieldsText(const chip::RegisterEntry& entry, int value);

/// One register as a line of tab-separated fields: name, address, value last read (`value` below 0: not read yet),
/// default, read only, bit names from bit 7 down.
QString RowText(const chip::RegisterEntry& entry, int value);

/// A byte as the window shows addresses, "4Ch".
QString HexWithSuffix(int value);

/// What becomes of a number that is no byte: the window passes on what was typed, the link has the last word. Empty for
/// 0 to 255.
QString AddressHint(std::int32_t address);
QString ValueHint(std::int32_t value);

/// What a write of `value` does, told before it: "Writes 80h to register 00h, Configuration 0". `name` is the name that
/// the address shows under; empty: its first in the table. A value beyond a byte is told as it is sent, for an address
/// beyond one AddressHint speaks.
QString WriteHint(std::int32_t address, std::int32_t value, const QString& name = {});

}  // namespace zth::windows

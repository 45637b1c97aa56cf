#pragma once

#include <cstdint>

#include <QString>

#include "chip/RegMapStuff.h"

namespace zth::windows {

/// The window's description of a register, "PWM2 Config Register".
QString DescriptionOf(const chip::RegisterEntry& entry);

/// Whether a register matches the text in the search box: part of its name, the start of a bit's name, or its address
/// in hexadecimal ("4C", "4Ch", "0x4c"). Case and leading or trailing blanks are ignored; an empty text matches all.
bool FitsSearch(const chip::RegisterEntry& entry, const QString& text);

/// The whole text as an address, "4C", "4Ch" or "0x4c"; -1 for any other text.
int AddressOf(QString text);

/// The fields of a register that holds `value`, by their bit names, "Bhvr = 2, Inv = 1, Slow = 0, Spin = 1": bits with
/// the same name form one number. Reserved bits and bits with only a number as their name are left out.
QString FieldsText(const chip::RegisterEntry& entry, int value);

/// A register as a line of tab-separated fields: name, address, last value (`value` below 0: not read yet), default,
/// read only, bit names from bit 7 down.
QString RowText(const chip::RegisterEntry& entry, int value);

/// A byte in the window's format for addresses, "4Ch".
QString HexWithSuffix(int value);

/// What happens to a number that is not a byte: the window passes it on as typed, and the link decides. Empty for 0 to
/// 255.
QString AddressHint(std::int32_t address);
QString ValueHint(std::int32_t value);

/// What writing `value` would do: "Writes 80h to register 00h, Configuration 0". `name` is the name that the address is
/// shown under; if empty, its first name in the table. For a value beyond a byte, gives the value as sent; for an
/// address beyond a byte, see AddressHint.
QString WriteHint(std::int32_t address, std::int32_t value, const QString& name = {});

}  // namespace zth::windows

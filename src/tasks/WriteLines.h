#pragma once

#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>

/// Lines that others run or compile: calls of i2c-tools, and rows of a table in C.
namespace zth::tasks {

/// "0x2c", as i2c-tools take it.
std::string LowerHex(unsigned byte);

/// "0x2C", as in C.
std::string UpperHex(unsigned byte);

/// "i2cset -y BUS ADDRESS 0x21 0x31"; with "-m 0xe0" if only some bits are to be changed. `bus` and `address` are put
/// in as they are.
std::string I2cSetLine(std::string_view bus, std::string_view address, std::uint8_t reg, std::uint8_t value,
                       std::uint8_t mask = 0xFF);

/// "i2cget -y BUS ADDRESS 0x21"
std::string I2cGetLine(std::string_view bus, std::string_view address, std::uint8_t reg);

/// "{0x21, 0x31}"
std::string CRow(std::initializer_list<unsigned> bytes);

/// A chip's address on its link as i2c-tools take it. They take 7 bits, and so does the SMBus link; the board's adapter
/// takes the 8 bits that are sent first on the wire. Nothing for a reserved address, which i2c-tools refuse.
std::optional<std::uint8_t> I2cAddress(std::int16_t mode, std::uint8_t address);

}  // namespace zth::tasks

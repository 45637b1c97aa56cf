#include "tasks/WriteLines.h"

#include <array>
#include <cstdio>

#include "link/Declarations.h"

namespace zth::tasks {
namespace {

constexpr std::uint8_t kFirst7Bit = 0x08;  // the addresses below and above are reserved
constexpr std::uint8_t kLast7Bit = 0x77;

std::string Hex(const char* format, unsigned byte) {
  std::array<char, 8> text{};
  std::snprintf(text.data(), text.size(), format, byte);
  return text.data();
}

std::string Call(std::string_view tool, std::string_view bus, std::string_view address, std::uint8_t reg) {
  std::string line(tool);
  return line.append(" ").append(bus).append(" ").append(address).append(" ").append(LowerHex(reg));
}

}  // namespace

std::string LowerHex(unsigned byte) {
  return Hex("0x%02x", byte);
}

std::string UpperHex(unsigned byte) {
  return Hex("0x%02X", byte);
}

std::string I2cSetLine(std::string_view bus, std::string_view address, std::uint8_t reg, std::uint8_t value,
                       std::uint8_t mask) {
  const std::string tool = mask == 0xFF ? "i2cset -y" : "i2cset -y -m " + LowerHex(mask);
  return Call(tool, bus, address, reg) + ' ' + LowerHex(value);
}

std::string I2cGetLine(std::string_view bus, std::string_view address, std::uint8_t reg) {
  return Call("i2cget -y", bus, address, reg);
}

std::string CRow(std::initializer_list<unsigned> bytes) {
  std::string row;
  for (const unsigned byte : bytes) row += (row.empty() ? "{" : ", ") + UpperHex(byte);
  return row + '}';
}

std::optional<std::uint8_t> I2cAddress(std::int16_t mode, std::uint8_t address) {
  const auto bits = static_cast<std::uint8_t>(mode == link::kModeUsb ? address / 2 : address);
  return bits < kFirst7Bit || bits > kLast7Bit ? std::nullopt : std::optional(bits);
}

}  // namespace zth::tasks

#include "link/SMBusStuff.h"

#include "link/Declarations.h"

namespace zth::link {

std::uint8_t ReadSmbusByte(std::int32_t address, std::int32_t reg) {
  if (Smbus.ReadSmbus == nullptr) return 0;
  return Smbus.ReadSmbus(static_cast<std::uint8_t>(address), static_cast<std::uint8_t>(reg));
}

void WriteSmbusByte(std::int32_t address, std::int32_t reg, std::uint8_t value) {
  if (Smbus.WriteSmbus == nullptr) return;
  Smbus.WriteSmbus(static_cast<std::uint8_t>(address), static_cast<std::uint8_t>(reg), value);
}

void ReadSmbusBytes(std::int32_t address, std::int32_t first, int count) {
  for (int i = 0; i < count; ++i) ReadBuffer[static_cast<std::size_t>(i)] = ReadSmbusByte(address, first + i);
}

}  // namespace zth::link

#include "link/SMBusStuff.h"

#include "link/Declarations.h"
#include "link/Transfers.h"

namespace zth::link {

std::uint8_t ReadSmbusByte(std::int32_t address, std::int32_t reg) {
  if (Bus.Smbus.ReadSmbus == nullptr) return 0;
  NoteTransfer();
  const TransferTime time(Direction::Read);
  return Bus.Smbus.ReadSmbus(static_cast<std::uint8_t>(address), static_cast<std::uint8_t>(reg));
}

void WriteSmbusByte(std::int32_t address, std::int32_t reg, std::uint8_t value) {
  if (Bus.Smbus.WriteSmbus == nullptr) return;
  NoteTransfer();
  const TransferTime time(Direction::Write);
  Bus.Smbus.WriteSmbus(static_cast<std::uint8_t>(address), static_cast<std::uint8_t>(reg), value);
}

void ReadSmbusBytes(std::int32_t address, std::int32_t first, int count) {
  for (int i = 0; i < count; ++i) Bus.ReadBuffer[static_cast<std::size_t>(i)] = ReadSmbusByte(address, first + i);
}

}  // namespace zth::link

#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#include "link/Declarations.h"

/// The only access to the hardware: register operations over either link, and the USB adapter's own functions.
///
/// Addresses are bus addresses; registers are 0 to 255. `InterfaceMode` selects the link at each call. A failed USB
/// transfer calls ReportLinkError, which usually does not return. A register outside 0 to 255 is not transferred: it
/// would corrupt the value on USB and wrap around on SMBus.
namespace zth::link {

/// Returns the register's value, 0 to 255. On USB it is also in ReadBuffer[0]; on SMBus ReadBuffer is unchanged. 0 for
/// a register outside 0 to 255.
std::int16_t ReadRegister(std::int32_t address, std::int32_t reg);

/// Reads `count` consecutive registers into ReadBuffer from index 0. Returns 0 or the transport's failure code. Reads
/// nothing if the run does not fit ReadBuffer or leaves 0 to 255.
std::int16_t ReadRegisterBlock(std::int32_t address, std::int32_t first, std::int16_t count);

/// Reads a block from the chip in use and copies it out of ReadBuffer before the next call can change it.
template <std::size_t kCount>
std::array<std::uint8_t, kCount> ReadBlock(std::int32_t first) {
  ReadRegisterBlock(Bus.DeviceAddress, first, static_cast<std::int16_t>(kCount));
  std::array<std::uint8_t, kCount> bytes{};
  std::copy_n(Bus.ReadBuffer.begin(), kCount, bytes.begin());
  return bytes;
}

/// Writes a register and then runs AfterRegisterWrite. `value` is clamped to 0 to 255 in place. Returns 0 or the
/// transport's failure code; for a register outside 0 to 255 it returns 0 and runs no hook.
std::int16_t WriteRegister(std::int32_t address, std::int32_t reg, std::int32_t& value);

/// Like WriteRegister, for callers that do not need the clamped value.
std::int16_t WriteRegisterValue(std::int32_t address, std::int32_t reg, std::int32_t value);

/// Reads a register and writes it back with the bits of `own` replaced by `bits`. Bits of `bits` outside `own` are ORed
/// in.
void ModifyRegister(std::int32_t address, std::int32_t reg, unsigned own, unsigned bits);

/// USB only: drives heater 1 or 2 at `percent`, which is clamped to 0 to 100 in place.
std::int16_t SetHeater(std::int32_t heater, std::int32_t& percent);

/// USB only: reads the two heaters' values into bytes 0 and 1 of ReadBuffer.
std::int16_t ReadHeaterState();

/// USB only: reads the port byte of the switch device at `address`.
std::int16_t ReadBoardPort(std::int32_t address);

/// USB only: writes a port byte; a byte outside 0 to 255 is not sent, and 0 is returned.
std::int16_t WriteBoardPort(std::int32_t address, std::int32_t port);

/// USB only: the same write, passing one byte of ReadBuffer; the result is ignored.
void WriteBoardPortUnchecked(std::int32_t address, std::int32_t port);

/// Downloads the firmware file at an ANSI path to the adapter: above 0 if the adapter is present and accepted it. 0
/// without the library.
std::int16_t LoadFirmware(const char* path);

/// The first contact with the adapter after the firmware download: 0 if it answered.
std::int16_t ConnectAdapter();

}  // namespace zth::link

#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#include "link/Declarations.h"

/// The one door to the hardware: the register operations over either link, and what only the USB adapter offers.
///
/// Addresses are bus addresses; registers are 0 to 255. The link is chosen by `InterfaceMode` at each call. A failed
/// USB transfer ends in ReportLinkError, which as a rule does not return. A register outside 0 to 255 makes no
/// transfer: it would change the value on USB and wrap around on SMBus.
namespace zth::link {

/// The register's value, 0 to 255. On USB it also stands in ReadBuffer[0]; on SMBus ReadBuffer stays as it is. 0 for a
/// register outside 0 to 255.
std::int16_t ReadRegister(std::int32_t address, std::int32_t reg);

/// Reads `count` consecutive registers into ReadBuffer from index 0. 0, or the transport's failure code. A run that
/// does not fit ReadBuffer or leaves 0 to 255 is not read.
std::int16_t ReadRegisterBlock(std::int32_t address, std::int32_t first, std::int16_t count);

/// The same of the chip in use, taken out of ReadBuffer before the next call can change it.
template <std::size_t kCount>
std::array<std::uint8_t, kCount> ReadBlock(std::int32_t first) {
  ReadRegisterBlock(Bus.DeviceAddress, first, static_cast<std::int16_t>(kCount));
  std::array<std::uint8_t, kCount> bytes{};
  std::copy_n(Bus.ReadBuffer.begin(), kCount, bytes.begin());
  return bytes;
}

/// Writes a register and then runs AfterRegisterWrite. `value` is limited to 0 to 255, for the caller as well. 0, or
/// the transport's failure code; a register outside 0 to 255 gives 0 and runs no hook.
std::int16_t WriteRegister(std::int32_t address, std::int32_t reg, std::int32_t& value);

/// The same for a value that the caller does not need back.
std::int16_t WriteRegisterValue(std::int32_t address, std::int32_t reg, std::int32_t value);

/// Reads a register and writes it with the bits of `own` replaced by `bits`. What `bits` has beyond them is or-ed in.
void ModifyRegister(std::int32_t address, std::int32_t reg, unsigned own, unsigned bits);

/// USB only: drives heater 1 or 2 at `percent`, limited to 0 to 100 for the caller as well.
std::int16_t SetHeater(std::int32_t heater, std::int32_t& percent);

/// USB only: bytes 0 and 1 of ReadBuffer become the two heaters' values.
std::int16_t ReadHeaterState();

/// USB only: the port byte of the switch device at `address`.
std::int16_t ReadBoardPort(std::int32_t address);

/// USB only: writes a port byte; a byte outside 0 to 255 is not sent and gives 0.
std::int16_t WriteBoardPort(std::int32_t address, std::int32_t port);

/// USB only: the same write in the form of one byte of length from ReadBuffer, its result not looked at.
void WriteBoardPortUnchecked(std::int32_t address, std::int32_t port);

/// The adapter's first contact after the firmware download: 0 when it answered.
std::int16_t ConnectAdapter();

}  // namespace zth::link
